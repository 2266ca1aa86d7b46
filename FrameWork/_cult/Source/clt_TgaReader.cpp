// The TGA reader: true-colour images of 24 or 32 bits, uncompressed (type 2) or run-length
// encoded (type 10), without identification field or colour map, in any of the four
// origins. Rows are stored in file order; the origin from the descriptor makes the picture
// upright for the pixel operations. The image is made bottom-up when the file is, so that
// a DIB section filled from the file is also upright for GDI. (A file stored right to left
// keeps its rows as they are: GDI shows it mirrored, the pixel operations do not.)
//
// Run-length data is decoded as one stream of pixels over the whole image: a packet that
// reaches past the end of a row continues on the next row (as older writers produced). A
// packet that reaches past the image's last pixel makes the file malformed: it is refused
// before anything of that packet is written, so nothing lands outside the image. The data
// is read a chunk at a time, so a large file is never held whole beside its image.
#include <cstdlib>
#include <cstring>

#include "FrameWork/_cult/Source/clt_ImageFile.h"
#include "FrameWork/_cult/Source/clt_Init.h"

namespace
{
class CltTgaReader : public CltImageLoader
{
  public:
    const char* GetExtensions() override { return "tga\0"; }
    bool Load(const CltGuid& streamId, CltImage& image, const char* fileName) override;
    bool Save(const CltGuid&, const CltImage&, const char*) override { return false; }
};

int32_t OriginOf(uint8_t descriptor)
{
    bool top = descriptor & 0x20, right = descriptor & 0x10;
    return top ? (right ? OriginTopRight : OriginTopLeft)
               : (right ? OriginBottomRight : OriginBottomLeft);
}

// Writes n copies of one pixel of bpp bytes.
void Fill(uint8_t* to, const uint8_t* pixel, uint32_t n, uint32_t bpp)
{
    if (bpp == 4)
    {
        uint32_t value;
        memcpy(&value, pixel, 4);
        for (uint32_t i = 0; i < n; ++i)
            memcpy(to + size_t(i) * 4, &value, 4);
        return;
    }
    for (uint32_t i = 0; i < n; ++i, to += 3)
        to[0] = pixel[0], to[1] = pixel[1], to[2] = pixel[2];
}

// The run-length decoder's place in the image's stored rows. Packets are decoded as the
// file's bytes arrive, a chunk at a time; a packet is written a row's part at a time: one
// copy for raw pixels, one fill for a run.
struct RleDecoder
{
    CltImage& image;
    uint32_t bpp;
    uint64_t left; // pixels still to come
    uint32_t x = 0;
    uint8_t* out = image.m_pData; // the stored row being written

    // Decodes the whole packets of [in, end); returns where the first packet that the bytes
    // do not hold whole begins (or end), or null when a packet reaches past the last pixel.
    const uint8_t* Decode(const uint8_t* in, const uint8_t* end)
    {
        return bpp == 4 ? Decode<4>(in, end) : Decode<3>(in, end);
    }

    template <uint32_t Bpp> const uint8_t* Decode(const uint8_t* in, const uint8_t* end)
    {
        // The place is held in locals while pixels are written: written through a byte
        // pointer, they could otherwise be taken for it and it would be read anew each time.
        const uint32_t width = uint32_t(image.m_nWidth);
        const intptr_t pitch = image.m_nPitch;
        uint64_t pixelsLeft = left;
        uint32_t column = x;
        uint8_t* rowOut = out;
        while (pixelsLeft > 0 && in < end)
        {
            // Raw packets of one pixel (where colours change at every pixel) follow each
            // other in long stretches: each is one fixed-size copy.
            for (; size_t(end - in) >= 1 + Bpp && *in == 0 && pixelsLeft > 0; in += 1 + Bpp)
            {
                memcpy(rowOut + size_t(column) * Bpp, in + 1, Bpp);
                --pixelsLeft;
                if (++column == width) column = 0, rowOut += pitch;
            }
            if (pixelsLeft == 0 || in >= end) break;
            uint32_t count = (*in & 0x7Fu) + 1;
            bool run = *in & 0x80;
            size_t bytes = 1 + size_t(run ? 1 : count) * Bpp;
            if (size_t(end - in) < bytes) break; // the next chunk completes it
            if (count > pixelsLeft) return nullptr;
            pixelsLeft -= count;
            const uint8_t* pixels = in + 1;
            in += bytes;
            while (count > 0)
            {
                uint32_t span = count < width - column ? count : width - column;
                uint8_t* to = rowOut + size_t(column) * Bpp;
                if (run)
                    Fill(to, pixels, span, Bpp);
                else
                {
                    // A lone pixel (the usual raw packet where colours change) is one
                    // fixed-size copy, not a call.
                    if (span == 1)
                        memcpy(to, pixels, Bpp);
                    else
                        memcpy(to, pixels, size_t(span) * Bpp);
                    pixels += size_t(span) * Bpp;
                }
                count -= span;
                if ((column += span) == width)
                {
                    column = 0;
                    rowOut += pitch;
                }
            }
        }
        left = pixelsLeft, x = column, out = rowOut;
        return in;
    }
};

// Run-length data is read in chunks of this size (a file's bytes are not all held at once),
// with room before them for the start of a packet that the chunk before cut off.
constexpr size_t kRleChunk = 32768, kLongestPacket = 1 + 128 * 4;

// Decodes 'remaining' bytes of packets from the stream; false when they end before every
// pixel is produced or a packet reaches past the last pixel.
bool ReadRle(CltReadStream& stream, uint64_t remaining, CltImage& image, uint32_t bpp)
{
    uint8_t* buffer = static_cast<uint8_t*>(malloc(kLongestPacket + kRleChunk));
    if (!buffer) return false;
    RleDecoder decoder{image, bpp, uint64_t(image.m_nWidth) * uint64_t(image.m_nHeight)};
    size_t kept = 0; // bytes of a cut-off packet at the buffer's start
    while (decoder.left > 0)
    {
        size_t n = remaining < kRleChunk ? size_t(remaining) : kRleChunk;
        if (n == 0 || !stream.ReadExactly(buffer + kept, n)) break; // the data ends early
        const uint8_t* stop = decoder.Decode(buffer, buffer + kept + n);
        if (!stop) break;
        remaining -= n;
        kept = size_t(buffer + kept + n - stop);
        memmove(buffer, stop, kept);
    }
    free(buffer);
    return decoder.left == 0;
}

bool CltTgaReader::Load(const CltGuid& streamId, CltImage& image, const char* fileName)
{
    CltReadStream stream(streamId, fileName);
    if (!stream.IsOpen()) return false;
    uint8_t header[18];
    if (!stream.ReadExactly(header, sizeof header)) return false;
    uint8_t type = header[2], depth = header[16], descriptor = header[17];
    int32_t width = header[12] | header[13] << 8, height = header[14] | header[15] << 8;
    if (type != 2 && type != 10) return false;
    if (width == 0 || height == 0) return false; // an image without pixels is refused
    const CltPixelFormat* format = depth == 24 ? &g_pfRgb24 : depth == 32 ? &g_pfArgb32 : nullptr;
    if (!format) return false;
    uint32_t bpp = depth / 8;

    // The least data that can describe the image: packed pixels, or for run-length data
    // one packet (header and one pixel) per 128 pixels.
    uint64_t pixels = uint64_t(width) * uint64_t(height);
    uint64_t least = type == 2 ? pixels * bpp : (pixels + 127) / 128 * (1 + bpp);
    int64_t remaining = stream.Remaining();
    if (remaining < 0 || least > uint64_t(remaining)) return false;

    int32_t origin = OriginOf(descriptor);
    bool bottomUp = origin == OriginBottomLeft || origin == OriginBottomRight;
    if (!image.Create(*format, width, height, bottomUp ? OriginBottomLeft : OriginTopLeft))
        return false;

    if (type == 2)
    {
        if (!stream.ReadRows(image, uint64_t(width) * bpp, 0)) return false;
    }
    else if (!ReadRle(stream, uint64_t(remaining), image, bpp))
        return false;
    image.m_nOrigin = origin;
    return true;
}

CltTgaReader s_TgaReader;
CLT_STATIC(CLT_INIT_TGA_READER)
CltImageReaderComponent s_TgaComponent(CLTID_TgaReader, s_TgaReader);
} // namespace
