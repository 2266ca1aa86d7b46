// BoxProbe: finds a message box of any program by its title, prints what it shows and
// answers it, as a player would; for test drivers that run outside Wine.
//
// Usage: BoxProbe.exe TITLE ANSWER [TIMEOUT_MS]
//   ANSWER  the id of the button to click (1 OK, 2 Cancel, 6 Yes, 7 No), 0 to leave it open
// Prints one line: the title, the text (line breaks as \n, tabs as \t), "style=0x..." (everything
// the box shows of its MessageBox style) and "owner=" with the owner's class or "none", separated
// by tabs. Exit code 0 when a box was found, 1 after the time-out, 2 on usage.
#include "harness/wine_Harness.h"

#include <cstdio>
#include <cstdlib>
#include <string>

namespace
{
std::string OneLine(const std::string& text)
{
    std::string out;
    for (char c : text)
        if (c == '\n')
            out += "\\n";
        else if (c == '\t')
            out += "\\t";
        else if (c != '\r')
            out += c;
    return out;
}
} // namespace

int main(int argc, char** argv)
{
    if (argc < 3)
    {
        fprintf(stderr, "usage: BoxProbe.exe TITLE ANSWER [TIMEOUT_MS]\n");
        return 2;
    }
    int answer = atoi(argv[2]);
    DWORD timeout = argc > 3 ? DWORD(atol(argv[3])) : 10000;
    DWORD start = GetTickCount();
    HWND box = nullptr;
    while (!(box = harness::FindMessageBox(argv[1])))
    {
        if (GetTickCount() - start > timeout) return 1;
        Sleep(20);
    }
    // A box is found before its buttons are made.
    harness::MessageBoxRecord record;
    do
    {
        Sleep(50);
        record = harness::ReadBox(box);
    } while (record.buttons.empty() && GetTickCount() - start < timeout);
    char owner[256] = "none";
    if (HWND o = GetWindow(box, GW_OWNER)) GetClassNameA(o, owner, sizeof owner);
    printf("%s\t%s\tstyle=0x%x\towner=%s\n", record.title.c_str(), OneLine(record.text).c_str(),
           harness::SeenFromOutside(harness::StyleOf(record)), owner);
    fflush(stdout);
    if (answer) harness::Click(box, answer);
    return 0;
}
