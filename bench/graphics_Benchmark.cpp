// Graphics benchmark: AlphaBlit, TintBlit, KeyBlit and Halve in every blitter form on the
// launcher's image sizes (a 500 x 400 window, 200 x 47 buttons), beside pixman's OVER of
// a8r8g8b8 onto x8r8g8b8 and a plain memcpy of the same bytes; and TGA (raw and RLE) and
// BMP decoding beside stb_image on the same files. Prints every figure, then the ratios
// ours / theirs (below 1 means ours is faster), each measured with the two side by side.
#include <benchmark/benchmark.h>
#include <pixman.h>
#include <stb_image.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <map>
#include <memory>
#include <regex>
#include <string>
#include <vector>

#include "FrameWork/_cult/Source/clt_Blitter.h"
#include "FrameWork/_cult/Source/clt_ImageFile.h"

namespace
{
const int kWindowW = 500, kWindowH = 400, kButtonW = 200, kButtonH = 47;

// A button-like picture: a soft-edged rounded shape, opaque inside, transparent outside.
void PaintButton(CltImage& image)
{
    for (int y = 0; y < image.m_nHeight; ++y)
        for (int x = 0; x < image.m_nWidth; ++x)
        {
            uint8_t* p = image.PixelAddress(x, y);
            int edge =
                std::min(std::min(x, image.m_nWidth - 1 - x), std::min(y, image.m_nHeight - 1 - y));
            p[0] = uint8_t(40 + x), p[1] = uint8_t(90 + y * 2), p[2] = uint8_t(200 - x / 2);
            p[3] = uint8_t(edge >= 6 ? 255 : edge * 40);
        }
}

void PaintWindow(CltImage& image)
{
    for (int y = 0; y < image.m_nHeight; ++y)
        for (int x = 0; x < image.m_nWidth; ++x)
        {
            uint8_t* p = image.PixelAddress(x, y);
            p[0] = uint8_t(x ^ y), p[1] = uint8_t(x + y), p[2] = uint8_t(y), p[3] = 255;
        }
}

struct Images
{
    CltImage window, button, mask, grey, halfGrey;
    Images()
    {
        window.Create(g_pfArgb32, kWindowW, kWindowH, OriginTopLeft);
        button.Create(g_pfArgb32, kButtonW, kButtonH, OriginTopLeft);
        mask.Create(g_pfGrey8, kButtonW, kButtonH, OriginTopLeft);
        grey.Create(g_pfGrey8, kWindowW, kWindowH, OriginTopLeft);
        halfGrey.Create(g_pfGrey8, kWindowW / 2, kWindowH / 2, OriginTopLeft);
        PaintWindow(window);
        PaintButton(button);
        for (uint32_t i = 0; i < mask.m_nSize; ++i)
            mask.m_pData[i] = button.m_pData[i * 4 % button.m_nSize + 3];
        for (uint32_t i = 0; i < grey.m_nSize; ++i)
            grey.m_pData[i] = uint8_t(i * 7 % 251);
    }
};
Images& Data()
{
    static Images images;
    return images;
}

// Positions of the buttons on the window: a column of five, as on a page.
const int kButtonX = 150, kButtonY[5] = {40, 110, 180, 250, 320};

// One piece of work, done once per iteration, and the pixels it handles.
struct Work
{
    std::function<void()> run;
    int64_t pixels;
};

Work BlitterWork(const CltBlitterForm& form, int op)
{
    std::shared_ptr<CltBlitter> b(CreateBlitterForm(form));
    auto run = [b, op]
    {
        Images& d = Data();
        const uint8_t colour[3] = {250, 220, 90};
        if (op == 3) return b->Halve(d.halfGrey, d.grey, 0);
        for (int y : kButtonY)
            if (op == 0)
                b->AlphaBlit(0, d.window, d.button, kButtonX, y);
            else if (op == 1)
                b->TintBlit(0, d.window, d.mask, kButtonX, y, colour);
            else
                b->KeyBlit(d.window, kButtonX, y, d.button, 0, 0, kButtonW, kButtonH, 0xFF000000);
    };
    return {run, op == 3 ? int64_t(kWindowW) * kWindowH : int64_t(5) * kButtonW * kButtonH};
}

// pixman's OVER of the buttons, which it wants in premultiplied colour (made once).
struct PixmanImages
{
    std::vector<uint32_t> src;
    pixman_image_t *s = nullptr, *w = nullptr;
    PixmanImages()
    {
        Images& d = Data();
        src.resize(size_t(kButtonW) * kButtonH);
        for (size_t i = 0; i < src.size(); ++i)
        {
            const uint8_t* p = d.button.m_pData + i * 4;
            uint32_t a = p[3];
            src[i] = a << 24 | (p[2] * a / 255) << 16 | (p[1] * a / 255) << 8 | (p[0] * a / 255);
        }
        s = pixman_image_create_bits(PIXMAN_a8r8g8b8, kButtonW, kButtonH, src.data(), kButtonW * 4);
        w = pixman_image_create_bits(PIXMAN_x8r8g8b8, kWindowW, kWindowH,
                                     reinterpret_cast<uint32_t*>(d.window.m_pData),
                                     d.window.m_nPitch);
    }
    ~PixmanImages()
    {
        pixman_image_unref(s);
        pixman_image_unref(w);
    }
};

Work PixmanOverWork()
{
    auto images = std::make_shared<PixmanImages>();
    return {[images]
            {
                for (int y : kButtonY)
                    pixman_image_composite32(PIXMAN_OP_OVER, images->s, nullptr, images->w, 0, 0, 0,
                                             0, kButtonX, y, kButtonW, kButtonH);
            },
            int64_t(5) * kButtonW * kButtonH};
}

Work MemcpyWork()
{
    return {[]
            {
                Images& d = Data();
                for (int y : kButtonY)
                    for (int r = 0; r < kButtonH; ++r)
                        memcpy(d.window.PixelAddress(kButtonX, y + r), d.button.PixelAddress(0, r),
                               kButtonW * 4);
            },
            int64_t(5) * kButtonW * kButtonH};
}

// ---- decoding ------------------------------------------------------------------------

std::string g_Folder;

void Put16(std::vector<uint8_t>& v, int x)
{
    v.push_back(uint8_t(x)), v.push_back(uint8_t(x >> 8));
}

// Writes the window picture (skin-like: flat areas and gradients) as TGA and BMP.
void WriteFiles()
{
    char pattern[] = "/tmp/graphics_benchXXXXXX";
    g_Folder = mkdtemp(pattern);
    const int w = kWindowW, h = kWindowH;
    auto pixel = [](int x, int y, uint8_t* p)
    {
        bool flat = (x / 50 + y / 40) % 2 == 0;
        p[0] = flat ? 60 : uint8_t(x / 2), p[1] = flat ? 120 : uint8_t(y / 2),
        p[2] = flat ? 30 : uint8_t(x + y);
        p[3] = flat ? 255 : uint8_t(x);
    };
    for (int rle = 0; rle < 2; ++rle)
    {
        std::vector<uint8_t> f = {0, 0, uint8_t(rle ? 10 : 2), 0, 0, 0, 0, 0, 0, 0, 0, 0};
        Put16(f, w), Put16(f, h);
        f.push_back(32), f.push_back(0x28);
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w;)
            {
                uint8_t p[4], q[4];
                pixel(x, y, p);
                int run = 1;
                while (rle && x + run < w && run < 128 &&
                       (pixel(x + run, y, q), memcmp(p, q, 4) == 0))
                    ++run;
                if (rle && run > 1)
                {
                    f.push_back(uint8_t(0x80 | (run - 1)));
                    f.insert(f.end(), p, p + 4);
                    x += run;
                    continue;
                }
                if (rle) f.push_back(0); // one raw pixel
                f.insert(f.end(), p, p + 4);
                ++x;
            }
        FILE* out = fopen((g_Folder + (rle ? "/rle.tga" : "/raw.tga")).c_str(), "wb");
        fwrite(f.data(), 1, f.size(), out);
        fclose(out);
    }
    std::vector<uint8_t> b(54, 0);
    uint32_t row = (w * 3 + 3) & ~3u, size = 54 + row * h;
    b[0] = 'B', b[1] = 'M';
    memcpy(&b[2], &size, 4);
    b[10] = 54, b[14] = 40;
    memcpy(&b[18], &w, 4);
    memcpy(&b[22], &h, 4);
    b[26] = 1, b[28] = 24;
    for (int y = h - 1; y >= 0; --y)
    {
        for (int x = 0; x < w; ++x)
        {
            uint8_t p[4];
            pixel(x, y, p);
            b.insert(b.end(), p, p + 3);
        }
        b.resize(b.size() + (row - w * 3), 0);
    }
    FILE* out = fopen((g_Folder + "/picture.bmp").c_str(), "wb");
    fwrite(b.data(), 1, b.size(), out);
    fclose(out);
}

Work OursDecodeWork(const char* name)
{
    return {[path = g_Folder + "/" + name]
            {
                CltImage image;
                if (!LoadImageFile(CLTID_FileStream, image, path.c_str()))
                    fprintf(stderr, "%s: load failed\n", path.c_str()), exit(1);
                benchmark::DoNotOptimize(image.m_pData);
            },
            int64_t(kWindowW) * kWindowH};
}

Work StbDecodeWork(const char* name)
{
    return {[path = g_Folder + "/" + name]
            {
                int w, h, n;
                unsigned char* pixels = stbi_load(path.c_str(), &w, &h, &n, 0);
                if (!pixels) fprintf(stderr, "%s: stb_image failed\n", path.c_str()), exit(1);
                benchmark::DoNotOptimize(pixels);
                stbi_image_free(pixels);
            },
            int64_t(kWindowW) * kWindowH};
}

void Measure(benchmark::State& state, const Work* work)
{
    for (auto _ : state)
    {
        work->run();
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * work->pixels);
}

// ---- ratios ----------------------------------------------------------------------------

constexpr int kRatioRepetitions = 9;
constexpr int kRounds = 40;              // turns of each side in one repetition
constexpr double kRoundSeconds = 0.0005; // how long the slower side's turn lasts, about

double Seconds(const Work& work, int times)
{
    auto start = std::chrono::steady_clock::now();
    for (int i = 0; i < times; ++i)
    {
        work.run();
        benchmark::ClobberMemory();
    }
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// The two works' times side by side: in each repetition they take turns, each turn about
// half a millisecond, so that a slow moment of the machine, which lasts longer, falls on
// both; the repetition's ratio is one's total over the other's. (Timed as separate
// benchmarks, one after the other, the AlphaBlit / memcpy ratio's median swung from 1.46 to
// 1.90 between runs, its repetitions from 1.24 to 2.55 within one.)
std::vector<double> PairedRatios(const Work& ours, const Work& theirs)
{
    double once = std::max(Seconds(ours, 3), Seconds(theirs, 3)) / 3; // also warms both up
    int times = std::max(1, int(kRoundSeconds / once));
    std::vector<double> ratios;
    for (int r = 0; r < kRatioRepetitions; ++r)
    {
        double a = 0, b = 0;
        for (int round = 0; round < kRounds; ++round)
            if (round % 2)
                a += Seconds(ours, times), b += Seconds(theirs, times);
            else
                b += Seconds(theirs, times), a += Seconds(ours, times);
        ratios.push_back(a / b);
    }
    return ratios;
}

// The ratio's median, lowest and highest over the repetitions.
void PrintRatio(const std::string& ours, const std::string& theirs, std::vector<double> ratios)
{
    std::sort(ratios.begin(), ratios.end());
    size_t n = ratios.size();
    double median = n % 2 ? ratios[n / 2] : (ratios[n / 2 - 1] + ratios[n / 2]) / 2;
    printf("  %-28s / %-16s = %6.2f  (%.2f to %.2f over %zu)\n", ours.c_str(), theirs.c_str(),
           median, ratios.front(), ratios.back(), n);
}
} // namespace

int main(int argc, char** argv)
{
    WriteFiles();
    const char* ops[] = {"AlphaBlit", "TintBlit", "KeyBlit", "Halve"};
    int count = 0;
    const CltBlitterForm* forms = GetBlitterForms(&count);
    std::vector<std::pair<std::string, std::string>> pairs; // ours, theirs
    std::map<std::string, Work> works;
    works["pixman_OVER"] = PixmanOverWork();
    works["memcpy"] = MemcpyWork();
    for (int op = 0; op < 4; ++op)
        for (int i = 0; i < count; ++i)
            if (forms[i].supported())
            {
                std::string name = std::string(ops[op]) + "/" + forms[i].name;
                works[name] = BlitterWork(forms[i], op);
                if (op == 0) pairs.emplace_back(name, "pixman_OVER");
                pairs.emplace_back(name, "memcpy");
            }
    const char* files[] = {"raw.tga", "rle.tga", "picture.bmp"};
    for (const char* f : files)
    {
        works[std::string("ours/") + f] = OursDecodeWork(f);
        works[std::string("stb_image/") + f] = StbDecodeWork(f);
        pairs.emplace_back(std::string("ours/") + f, std::string("stb_image/") + f);
    }
    for (const auto& [name, work] : works)
        benchmark::RegisterBenchmark(name.c_str(), Measure, &work);
    // Nine repetitions in random order; only their aggregates are shown. Arguments given on
    // the command line come later and override these; a filter also picks the ratios.
    std::vector<char*> args = {argv[0], const_cast<char*>("--benchmark_repetitions=9"),
                               const_cast<char*>("--benchmark_enable_random_interleaving=true"),
                               const_cast<char*>("--benchmark_report_aggregates_only=true")};
    std::string filter = ".";
    for (int i = 1; i < argc; ++i)
    {
        args.push_back(argv[i]);
        if (strncmp(argv[i], "--benchmark_filter=", 19) == 0) filter = argv[i] + 19;
    }
    int argCount = int(args.size());
    benchmark::Initialize(&argCount, args.data());
    benchmark::RunSpecifiedBenchmarks();

    printf("\nRatios (time ours / time theirs, measured side by side; median of the repetitions "
           "and their range; below 1: ours is faster):\n");
    std::regex picked(filter);
    for (const auto& [ours, theirs] : pairs)
        if (std::regex_search(ours, picked) && std::regex_search(theirs, picked))
            PrintRatio(ours, theirs, PairedRatios(works[ours], works[theirs]));
    for (const char* f : files)
        remove((g_Folder + "/" + f).c_str());
    rmdir(g_Folder.c_str());
    return 0;
}
