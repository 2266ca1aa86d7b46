// skinbuild: turns a publisher's pictures into the launcher's skin files.
//
//   skinbuild [--key RRGGBB] [--matte RRGGBB] [--title-key RRGGBB] ART_FOLDER SKIN_FOLDER
//
// Exit codes: 0 the skin was written (warnings may be printed), 1 the art has errors and
// nothing was written, 2 the command line is wrong.
#include "skin_Builder.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace
{
int Usage(const char* why)
{
    fprintf(stderr,
            "skinbuild: %s\n"
            "usage: skinbuild [--key RRGGBB] [--matte RRGGBB] [--title-key RRGGBB] ART_FOLDER "
            "SKIN_FOLDER\n",
            why);
    return 2;
}

bool ParseColour(const char* text, uint32_t& colour)
{
    if (strlen(text) != 6) return false;
    char* end = nullptr;
    colour = uint32_t(strtoul(text, &end, 16));
    return *end == '\0';
}
} // namespace

int main(int argc, char** argv)
{
    SkinOptions o;
    std::vector<const char*> folders;
    for (int i = 1; i < argc; ++i)
    {
        const char* a = argv[i];
        uint32_t* colour = !strcmp(a, "--key")         ? &o.key
                           : !strcmp(a, "--matte")     ? &o.matte
                           : !strcmp(a, "--title-key") ? &o.titleKey
                                                       : nullptr;
        if (colour)
        {
            if (i + 1 >= argc || !ParseColour(argv[++i], *colour))
                return Usage(
                    (std::string(a) + " needs a colour as six hexadecimal digits").c_str());
            if (colour == &o.key) o.hasKey = true;
        }
        else if (a[0] == '-' && a[1] == '-')
            return Usage((std::string("unknown option ") + a).c_str());
        else
            folders.push_back(a);
    }
    if (folders.size() != 2) return Usage("give the art folder and the skin folder");
    o.artDir = folders[0];
    o.skinDir = folders[1];
    SkinReport report = BuildSkin(o);
    for (const std::string& w : report.warnings)
        fprintf(stderr, "skinbuild: warning: %s\n", w.c_str());
    for (const std::string& e : report.errors)
        fprintf(stderr, "skinbuild: error: %s\n", e.c_str());
    if (!report.Ok())
    {
        fprintf(stderr, "skinbuild: nothing written\n");
        return 1;
    }
    for (const std::string& f : report.written)
        printf("%s\n", f.c_str());
    return 0;
}
