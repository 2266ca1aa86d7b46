// The BMP reader: uncompressed 8-bit (palette index) and 24-bit Windows bitmaps, bottom-up
// or top-down. The info header may be longer than 40 bytes; a colour table of biClrUsed
// entries is skipped (not kept) and the pixels are taken to follow it at once.
//
// The file's rows are 4-byte aligned; the image's rows have the image's own pitch (2-byte
// aligned for a CltImage, 4 for a DIB section). Rows are therefore read one by one with
// the file's alignment unless the two pitches agree, when the block is read in one piece.
#include <cstring>

#include "FrameWork/_cult/Source/clt_ImageFile.h"
#include "FrameWork/_cult/Source/clt_Init.h"

namespace
{
uint32_t Word32(const uint8_t* p)
{
    return uint32_t(p[0]) | uint32_t(p[1]) << 8 | uint32_t(p[2]) << 16 | uint32_t(p[3]) << 24;
}

class CltBmpReader : public CltImageLoader
{
  public:
    const char* GetExtensions() override { return "bmp\0dib\0"; }
    bool Load(const CltGuid& streamId, CltImage& image, const char* fileName) override;
    bool Save(const CltGuid&, const CltImage&, const char*) override { return false; }
};

bool CltBmpReader::Load(const CltGuid& streamId, CltImage& image, const char* fileName)
{
    CltReadStream stream(streamId, fileName);
    if (!stream.IsOpen()) return false;
    // File header (14 bytes, unused), then the info header's first 40 bytes.
    uint8_t header[14 + 40];
    if (!stream.ReadExactly(header, sizeof header)) return false;
    const uint8_t* info = header + 14;
    uint32_t headerSize = Word32(info);
    if (headerSize < 40 || !stream.Skip(headerSize - 40)) return false;
    int32_t width = int32_t(Word32(info + 4));
    int32_t signedHeight = int32_t(Word32(info + 8));
    uint32_t bitCount = uint32_t(info[14]) | uint32_t(info[15]) << 8;
    uint32_t coloursUsed = Word32(info + 32);

    const CltPixelFormat* format = bitCount == 8    ? &g_pfIndexed8
                                   : bitCount == 24 ? &g_pfRgb24
                                                    : nullptr;
    if (!format) return false;
    if (coloursUsed > 0 && !stream.Skip(uint64_t(coloursUsed) * 4)) return false;
    // A bitmap without pixels is refused like a malformed one.
    if (width <= 0 || signedHeight == 0 || signedHeight == INT32_MIN) return false;
    int32_t height = signedHeight < 0 ? -signedHeight : signedHeight;
    int32_t origin = signedHeight < 0 ? OriginTopLeft : OriginBottomLeft;

    // Refuse before allocating what the file cannot fill.
    uint64_t rowBytes = uint64_t(width) * format->bytesPerPixel;
    uint64_t fileRow = (rowBytes + 3) & ~uint64_t(3);
    int64_t remaining = stream.Remaining();
    if (remaining < 0 || fileRow * uint64_t(height) > uint64_t(remaining)) return false;
    if (!image.Create(*format, width, height, origin)) return false;

    return stream.ReadRows(image, rowBytes, uint32_t(fileRow - rowBytes));
}

CltBmpReader s_BmpReader;
CLT_STATIC(CLT_INIT_BMP_READER)
CltImageReaderComponent s_BmpComponent(CLTID_BmpReader, s_BmpReader);
} // namespace
