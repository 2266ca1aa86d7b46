// Reading pictures (through stb_image) and writing the launcher's BMP and TGA layouts.
#include "skin_Picture.h"

#include <cstdio>
#include <cstring>

#define STB_IMAGE_IMPLEMENTATION
#define STBI_ONLY_PNG
#define STBI_ONLY_TGA
#define STBI_ONLY_BMP
#define STBI_FAILURE_USERMSG
#include <stb/stb_image.h>

namespace
{
void Put16(std::vector<uint8_t>& out, uint32_t v)
{
    out.push_back(uint8_t(v));
    out.push_back(uint8_t(v >> 8));
}
void Put32(std::vector<uint8_t>& out, uint32_t v)
{
    Put16(out, v & 0xFFFF);
    Put16(out, v >> 16);
}
} // namespace

bool ReadPicture(const std::string& file, SkinPicture& picture, std::string& error)
{
    picture = SkinPicture();
    int w = 0, h = 0, channels = 0;
    if (!stbi_info(file.c_str(), &w, &h, &channels))
    {
        FILE* f = fopen(file.c_str(), "rb");
        error = f ? std::string("not a readable PNG, TGA or BMP picture (") +
                        stbi_failure_reason() + ")"
                  : "cannot be opened";
        if (f) fclose(f);
        return false;
    }
    if (w > kMaxPictureSide || h > kMaxPictureSide)
    {
        error = "is " + std::to_string(w) + " x " + std::to_string(h) + " pixels; at most " +
                std::to_string(kMaxPictureSide) + " on a side";
        return false;
    }
    stbi_uc* pixels = stbi_load(file.c_str(), &w, &h, &channels, 4);
    if (!pixels)
    {
        error = std::string("cannot be decoded (") + stbi_failure_reason() + ")";
        return false;
    }
    picture.Resize(w, h);
    memcpy(picture.rgba.data(), pixels, picture.rgba.size());
    stbi_image_free(pixels);
    return true;
}

std::vector<uint8_t> EncodeBmp24(const SkinPicture& picture, uint32_t matte)
{
    uint32_t stride = (uint32_t(picture.width) * 3 + 3) & ~3u;
    uint32_t imageSize = stride * uint32_t(picture.height);
    std::vector<uint8_t> out;
    out.reserve(54 + imageSize);
    out.push_back('B');
    out.push_back('M');
    Put32(out, 54 + imageSize);
    Put32(out, 0);
    Put32(out, 54);
    Put32(out, 40);
    Put32(out, uint32_t(picture.width));
    Put32(out, uint32_t(picture.height)); // positive: bottom row first
    Put16(out, 1);
    Put16(out, 24);
    Put32(out, 0); // BI_RGB
    Put32(out, imageSize);
    Put32(out, 2835);
    Put32(out, 2835);
    Put32(out, 0);
    Put32(out, 0);
    const uint8_t m[3] = {uint8_t(matte), uint8_t(matte >> 8), uint8_t(matte >> 16)}; // B, G, R
    for (int32_t y = picture.height - 1; y >= 0; --y)
    {
        for (int32_t x = 0; x < picture.width; ++x)
        {
            const uint8_t* p = picture.At(x, y);
            uint32_t a = p[3];
            for (int c = 0; c < 3; ++c) // the picture's R, G, B go out as B, G, R
                out.push_back(uint8_t((p[2 - c] * a + m[c] * (255 - a) + 127) / 255));
        }
        for (uint32_t pad = uint32_t(picture.width) * 3; pad < stride; ++pad)
            out.push_back(0);
    }
    return out;
}

std::vector<uint8_t> EncodeTga32(const SkinPicture& picture)
{
    std::vector<uint8_t> out;
    out.reserve(18 + picture.rgba.size());
    const uint8_t header[12] = {0, 0, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0}; // uncompressed true colour
    out.insert(out.end(), header, header + 12);
    Put16(out, uint32_t(picture.width));
    Put16(out, uint32_t(picture.height));
    out.push_back(32);
    out.push_back(0x28); // top row first, 8 alpha bits
    for (int32_t y = 0; y < picture.height; ++y)
        for (int32_t x = 0; x < picture.width; ++x)
        {
            const uint8_t* p = picture.At(x, y);
            out.push_back(p[2]);
            out.push_back(p[1]);
            out.push_back(p[0]);
            out.push_back(p[3]);
        }
    return out;
}

bool WriteFile(const std::string& file, const std::vector<uint8_t>& bytes)
{
    FILE* f = fopen(file.c_str(), "wb");
    if (!f) return false;
    bool ok = fwrite(bytes.data(), 1, bytes.size(), f) == bytes.size();
    return fclose(f) == 0 && ok;
}
