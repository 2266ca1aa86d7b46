// SkinPicture: a publisher's picture as 8-bit RGBA rows, top row first, and the writers of
// the launcher's skin formats: a 24-bit bottom-up BMP and a 32-bit top-left TGA.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct SkinPicture
{
    int32_t width = 0, height = 0;
    std::vector<uint8_t> rgba; // width * height * 4 bytes

    bool Empty() const { return width <= 0 || height <= 0; }
    const uint8_t* At(int32_t x, int32_t y) const { return &rgba[(size_t(y) * width + x) * 4]; }
    uint8_t* At(int32_t x, int32_t y) { return &rgba[(size_t(y) * width + x) * 4]; }
    void Resize(int32_t w, int32_t h)
    {
        width = w;
        height = h;
        rgba.assign(size_t(w) * size_t(h) * 4, 0);
    }
};

// Pictures larger than this on either side are refused (far beyond any launcher window).
constexpr int32_t kMaxPictureSide = 4096;

// Reads a PNG, TGA or BMP file. On failure the picture is empty and 'error' says why.
bool ReadPicture(const std::string& file, SkinPicture& picture, std::string& error);
// The picture over a matte colour (0xRRGGBB), as a 24-bit bottom-up BMP.
std::vector<uint8_t> EncodeBmp24(const SkinPicture& picture, uint32_t matte);
// The picture as an uncompressed 32-bit TGA stored top row first, alpha kept.
std::vector<uint8_t> EncodeTga32(const SkinPicture& picture);
bool WriteFile(const std::string& file, const std::vector<uint8_t>& bytes);
