// The readers' test picture (tests/images/make_test_images.py writes it and the files
// made from it into CLT_TEST_IMAGES): reading the files and the reference picture.
#pragma once

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
} // namespace test_picture
