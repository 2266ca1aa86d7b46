// Graphics benchmark: AlphaBlit, TintBlit, KeyBlit and Halve in every blitter form on the
// launcher's image sizes (a 500 x 400 window, 200 x 47 buttons), beside pixman's OVER of
// a8r8g8b8 onto x8r8g8b8 and a plain memcpy of the same bytes; and TGA (raw and RLE) and
// BMP decoding beside stb_image on the same files. Prints every figure, then the ratios
// ours / theirs (below 1 means ours is faster).
#include <benchmark/benchmark.h>
#include <pixman.h>
#include <stb_image.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <map>
#include <memory>
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

void BlitterBench(benchmark::State& state, const CltBlitterForm* form, int op)
{
    std::unique_ptr<CltBlitter> b(CreateBlitterForm(*form));
    Images& d = Data();
    const uint8_t colour[3] = {250, 220, 90};
    for (auto _ : state)
    {
        for (int y : kButtonY)
            switch (op)
            {
            case 0: b->AlphaBlit(0, d.window, d.button, kButtonX, y); break;
            case 1: b->TintBlit(0, d.window, d.mask, kButtonX, y, colour); break;
            case 2:
                b->KeyBlit(d.window, kButtonX, y, d.button, 0, 0, kButtonW, kButtonH, 0xFF000000);
                break;
            }
        if (op == 3) b->Halve(d.halfGrey, d.grey, 0);
        benchmark::ClobberMemory();
    }
    int64_t pixels = op == 3 ? int64_t(kWindowW) * kWindowH : int64_t(5) * kButtonW * kButtonH;
    state.SetItemsProcessed(state.iterations() * pixels);
}

void PixmanOver(benchmark::State& state)
{
    Images& d = Data();
    // pixman wants premultiplied colour; premultiply a copy of the button once.
    std::vector<uint32_t> src(size_t(kButtonW) * kButtonH);
    for (size_t i = 0; i < src.size(); ++i)
    {
        const uint8_t* p = d.button.m_pData + i * 4;
        uint32_t a = p[3];
        src[i] = a << 24 | (p[2] * a / 255) << 16 | (p[1] * a / 255) << 8 | (p[0] * a / 255);
    }
    pixman_image_t* s =
        pixman_image_create_bits(PIXMAN_a8r8g8b8, kButtonW, kButtonH, src.data(), kButtonW * 4);
    pixman_image_t* w =
        pixman_image_create_bits(PIXMAN_x8r8g8b8, kWindowW, kWindowH,
                                 reinterpret_cast<uint32_t*>(d.window.m_pData), d.window.m_nPitch);
    for (auto _ : state)
    {
        for (int y : kButtonY)
            pixman_image_composite32(PIXMAN_OP_OVER, s, nullptr, w, 0, 0, 0, 0, kButtonX, y,
                                     kButtonW, kButtonH);
        benchmark::ClobberMemory();
    }
    pixman_image_unref(s);
    pixman_image_unref(w);
    state.SetItemsProcessed(state.iterations() * 5 * kButtonW * kButtonH);
}

void Memcpy(benchmark::State& state)
{
    Images& d = Data();
    for (auto _ : state)
    {
        for (int y : kButtonY)
            for (int r = 0; r < kButtonH; ++r)
                memcpy(d.window.PixelAddress(kButtonX, y + r), d.button.PixelAddress(0, r),
                       kButtonW * 4);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * 5 * kButtonW * kButtonH);
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

void OursDecode(benchmark::State& state, const char* name)
{
    std::string path = g_Folder + "/" + name;
    for (auto _ : state)
    {
        CltImage image;
        if (!LoadImageFile(CLTID_FileStream, image, path.c_str()))
            state.SkipWithError("load failed");
        benchmark::DoNotOptimize(image.m_pData);
    }
    state.SetItemsProcessed(state.iterations() * kWindowW * kWindowH);
}

void StbDecode(benchmark::State& state, const char* name)
{
    std::string path = g_Folder + "/" + name;
    for (auto _ : state)
    {
        int w, h, n;
        unsigned char* pixels = stbi_load(path.c_str(), &w, &h, &n, 0);
        if (!pixels) state.SkipWithError("stb failed");
        benchmark::DoNotOptimize(pixels);
        stbi_image_free(pixels);
    }
    state.SetItemsProcessed(state.iterations() * kWindowW * kWindowH);
}

// Keeps every repetition's time per iteration for the ratios and shows only the
// aggregates (median, mean, spread) on the console.
class RatioReporter : public benchmark::ConsoleReporter
{
  public:
    std::map<std::string, std::vector<double>> times;
    void ReportRuns(const std::vector<Run>& runs) override
    {
        std::vector<Run> shown;
        for (const Run& run : runs)
            if (run.run_type == Run::RT_Iteration)
                times[run.run_name.str()].push_back(run.GetAdjustedRealTime());
            else
                shown.push_back(run);
        if (!shown.empty()) ConsoleReporter::ReportRuns(shown);
    }
};

// The ratio within each repetition (the i-th run of one beside the i-th of the other):
// its median, lowest and highest.
void PrintRatio(RatioReporter& r, const std::string& ours, const std::string& theirs)
{
    const std::vector<double>&a = r.times[ours], &b = r.times[theirs];
    std::vector<double> ratios;
    for (size_t i = 0; i < a.size() && i < b.size(); ++i)
        ratios.push_back(a[i] / b[i]);
    if (ratios.empty()) return;
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
    std::vector<std::string> names;
    for (int op = 0; op < 4; ++op)
        for (int i = 0; i < count; ++i)
            if (forms[i].supported())
            {
                std::string name = std::string(ops[op]) + "/" + forms[i].name;
                benchmark::RegisterBenchmark(name.c_str(), BlitterBench, &forms[i], op);
            }
    benchmark::RegisterBenchmark("pixman_OVER", PixmanOver);
    benchmark::RegisterBenchmark("memcpy", Memcpy);
    const char* files[] = {"raw.tga", "rle.tga", "picture.bmp"};
    for (const char* f : files)
    {
        benchmark::RegisterBenchmark((std::string("ours/") + f).c_str(), OursDecode, f);
        benchmark::RegisterBenchmark((std::string("stb_image/") + f).c_str(), StbDecode, f);
    }
    // Nine repetitions in random order, so that a slow moment of the machine falls on
    // either side of a ratio. Arguments given on the command line come later and override
    // these.
    std::vector<char*> args = {argv[0], const_cast<char*>("--benchmark_repetitions=9"),
                               const_cast<char*>("--benchmark_enable_random_interleaving=true")};
    for (int i = 1; i < argc; ++i)
        args.push_back(argv[i]);
    int argCount = int(args.size());
    benchmark::Initialize(&argCount, args.data());
    RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);

    printf("\nRatios (time ours / time theirs, median of the repetitions and their range; "
           "below 1: ours is faster):\n");
    for (int op = 0; op < 4; ++op)
        for (int i = 0; i < count; ++i)
            if (forms[i].supported())
            {
                std::string name = std::string(ops[op]) + "/" + forms[i].name;
                PrintRatio(reporter, name, op == 0 ? "pixman_OVER" : "memcpy");
                if (op == 0) PrintRatio(reporter, name, "memcpy");
            }
    for (const char* f : files)
        PrintRatio(reporter, std::string("ours/") + f, std::string("stb_image/") + f);
    for (const char* f : files)
        remove((g_Folder + "/" + f).c_str());
    rmdir(g_Folder.c_str());
    return 0;
}
