// The readers' test picture (tests/images/make_test_images.py writes it and the files
// made from it into CLT_TEST_IMAGES): the files, reading them and the reference picture.
#pragma once

#include "FrameWork/_cult/Source/clt_Image.h"

#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace test_picture
{
using Bytes = std::vector<uint8_t>;

inline Bytes ReadFile(const std::string& name)
{
    std::ifstream in(std::string(CLT_TEST_IMAGES) + "/" + name, std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(in), {});
}

struct Picture
{
    int32_t w = 0, h = 0;
    Bytes rgba; // rows top first
    const uint8_t* At(int32_t x, int32_t y) const { return &rgba[(size_t(y) * w + x) * 4]; }
};

inline Picture ReadPam()
{
    Bytes pam = ReadFile("picture.pam");
    std::string text(pam.begin(), pam.end());
    Picture p;
    size_t end = text.find("ENDHDR\n");
    sscanf(text.c_str(), "P7\nWIDTH %d\nHEIGHT %d", &p.w, &p.h);
    p.rgba.assign(pam.begin() + long(end + 7), pam.end());
    return p;
}
// A file made from the picture: its bits per pixel, the origin its header declares, and
// whether its pixel bytes follow the header packed.
struct File
{
    std::string name;
    uint32_t bits;
    int32_t origin;
    bool raw;
};

// Every file: BMP of 24 and 8 bits both ways up, then TGA of 24 and 32 bits, raw and
// run-length, with each of the four origins.
inline std::vector<File> Files()
{
    std::vector<File> files = {{"bmp24.bmp", 24, OriginBottomLeft, false},
                               {"bmp24_topdown.bmp", 24, OriginTopLeft, false},
                               {"bmp8.bmp", 8, OriginBottomLeft, false},
                               {"bmp8_topdown.bmp", 8, OriginTopLeft, false}};
    const char* origins[] = {"TopLeft", "TopRight", "BottomLeft", "BottomRight"};
    for (uint32_t bits : {24u, 32u})
        for (bool raw : {true, false})
            for (int32_t o = 0; o < 4; ++o)
                files.push_back(
                    {"tga" + std::to_string(bits) + (raw ? "_raw_" : "_rle_") + origins[o] + ".tga",
                     bits, OriginTopLeft + o, raw});
    return files;
}
} // namespace test_picture
