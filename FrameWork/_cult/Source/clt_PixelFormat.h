// Pixel formats: a plain record of sixteen 32-bit words that says where each colour
// channel lies in a pixel value, and the four formats the framework uses. Decoding and
// encoding go one pixel at a time through the channel records; a colour is four bytes
// R, G, B, A. The globals are built during static initialisation and never change.
#pragma once

#include <cstdint>

struct CltChannel
{
    uint32_t shift; // moves the channel's bits down to bit 0
    uint32_t mask;  // picks the channel's bits out of the pixel value; 0: no such channel
    uint32_t loss;  // bits the channel lacks against 8, shifted back up when decoding
};

struct CltPixelFormat
{
    CltChannel red, green, blue, alpha;
    uint32_t id;            // two formats are the same exactly when their ids are equal
    uint32_t bytesPerPixel; // 1, 3 or 4
    uint32_t bitsPerPixel;  // 8, 24 or 32
    uint32_t channelCount;
};
static_assert(sizeof(CltPixelFormat) == 64, "sixteen 32-bit words");

extern const CltPixelFormat g_pfIndexed8; // palette index (or a value) in red
extern const CltPixelFormat g_pfArgb32;   // bytes B, G, R, A
extern const CltPixelFormat g_pfRgb24;    // bytes B, G, R
extern const CltPixelFormat g_pfGrey8;    // one byte read as red, green and blue

// A colour: bytes red, green, blue, alpha.
struct CltColour
{
    uint8_t r, g, b, a;
};

CltColour DecodePixel(const CltPixelFormat& format, const uint8_t* pixel);
void EncodePixel(const CltPixelFormat& format, CltColour colour, uint8_t* out);
void ConvertRow(const CltPixelFormat& dstFormat, uint8_t* dst, const CltPixelFormat& srcFormat,
                const uint8_t* src, uint32_t count);
