// The skin's check. What the report says a player sees is what the launcher's skin loader
// does with each fault (a stand-in that draws nothing, a rectangular window).
#include "check_Skin.h"

#include "check_Files.h"

#include "FrameWork/_cult/Source/clt_ImageFile.h"
#include "FrameWork/_cult/Source/clt_RegionData.h"
#include "product/tarn_SkinFiles.h"

#include <cstdio>

namespace
{
// The window's fixed geometry.
constexpr int32_t kDesignWidth = 500, kFallbackHeight = 460, kCaptionHeight = 30;
constexpr int32_t kHoverWidth = 25, kHoverHeight = 23; // the area the pointer reacts to
constexpr int32_t kPageX = 194, kPageY = 200, kPageStep = 47, kMostPageButtons = 5;
// A region file larger than this is not read.
constexpr int64_t kMostRegionBytes = 16 << 20;

using SkinFile = TarnSkinFile;
const SkinFile& kBackground = kTarnSkinFiles[SkinBackgroundFile];

std::string Size(int32_t width, int32_t height)
{
    return std::to_string(width) + " x " + std::to_string(height);
}
std::string Size(const CltImage& image)
{
    return Size(image.m_nWidth, image.m_nHeight);
}

int32_t Le32(const uint8_t* p)
{
    return int32_t(p[0] | p[1] << 8 | p[2] << 16 | uint32_t(p[3]) << 24);
}

class SkinCheck
{
  public:
    SkinCheck(const std::string& dataDir, const std::string& shownDir, CheckReport& report)
        : m_dataDir(dataDir), m_shownDir(shownDir), m_report(report)
    {
    }

    void Run()
    {
        CltImage background;
        int32_t width = kDesignWidth, height = kFallbackHeight;
        if (Load(kBackground, background))
        {
            width = background.m_nWidth, height = background.m_nHeight;
            if (width != kDesignWidth || height < kCaptionHeight)
                Add(kBackground, "is " + Size(background) +
                                     "; the caption bar and its buttons are placed for a "
                                     "width of 500");
        }
        CheckRegion(width, height);
        for (const SkinFile& file : kTarnSkinFiles)
        {
            CltImage image;
            if (file.part == SkinCaption && Load(file, image) &&
                (image.m_nWidth != kDesignWidth || image.m_nHeight != kCaptionHeight))
                Add(file, "is " + Size(image) + "; the caption bar is 500 x 30");
        }
        for (const SkinFile& file : kTarnSkinFiles)
        {
            CltImage image;
            if (file.part != SkinTitleButton || !Load(file, image)) continue;
            if (image.m_nHeight < 2)
                Add(file, "is " + Size(image) +
                              "; the launcher reads the key colour at (0, 1), so " + file.without);
            else if (image.m_nWidth < kHoverWidth || image.m_nHeight < kHoverHeight)
                Add(file, "is " + Size(image) +
                              ", smaller than the 25 x 23 area where the pointer makes the "
                              "button react");
        }
        CheckPageFaces(width, height);
    }

  private:
    std::string Path(const char* name) const { return CheckFileName(m_dataDir, name); }
    void Add(const SkinFile& file, const std::string& text)
    {
        m_report.Add(CheckFileName(m_shownDir, file.name), text);
    }

    // Reads a picture as the launcher does; reports why it cannot be used. A palette
    // picture is read, but its palette is not kept: the launcher shows colour numbers.
    bool Load(const SkinFile& file, CltImage& image)
    {
        static const std::string forms =
            " (the launcher reads BMP files of 24 bits and TGA files of 24 or 32 bits, "
            "uncompressed or run-length encoded, as skinbuild writes them)";
        std::string path = Path(file.name);
        int64_t size = FileSize(path);
        if (size < 0) return Add(file, std::string("missing; ") + file.without), false;
        if (size == 0) return Add(file, std::string("is empty; ") + file.without), false;
        if (!LoadImageFile(CLTID_FileStream, image, path.c_str()) || !image.m_pData ||
            image.m_nWidth <= 0 || image.m_nHeight <= 0)
            return Add(file, "cannot be read by the launcher's picture reader" + forms + "; " +
                                 file.without),
                   false;
        if (image.m_Format.id == g_pfIndexed8.id)
            Add(file, "has a palette of colours, which the launcher does not keep" + forms +
                          "; the picture shows in wrong colours");
        return true;
    }

    void CheckPageFaces(int32_t width, int32_t height)
    {
        CltImage faces[3];
        const CltImage* first = nullptr;
        const SkinFile* firstFile = nullptr;
        // In the order in which the launcher takes the size of a missing face from the others.
        for (int i = 0; i < 3; ++i)
        {
            const SkinFile& file = kTarnSkinFiles[kTarnFaceSizeOrder[i]];
            if (!Load(file, faces[i])) continue;
            if (!first)
            {
                first = &faces[i], firstFile = &file;
                continue;
            }
            if (faces[i].m_nWidth != first->m_nWidth || faces[i].m_nHeight != first->m_nHeight)
                Add(file, "is " + Size(faces[i]) + ", but " + firstFile->name + " is " +
                              Size(*first) + "; the buttons change size between looks");
        }
        if (!first) return;
        int32_t right = kPageX + first->m_nWidth;
        int32_t bottom = kPageY + kPageStep * (kMostPageButtons - 1) + first->m_nHeight;
        if (right > width || bottom > height)
            Add(*firstFile, "is " + Size(*first) + "; a page of five buttons reaches (" +
                                std::to_string(right) + ", " + std::to_string(bottom) +
                                "), past the " + Size(width, height) +
                                " background, and is cut off there");
    }

    void CheckRegion(int32_t width, int32_t height)
    {
        const SkinFile& region = kTarnSkinFiles[SkinRegionFile];
        std::string path = Path(region.name);
        FileBytes file = ReadFileBytes(path, kMostRegionBytes);
        if (file.state == FileBytes::Missing)
            return Add(region, std::string("missing; ") + region.without);
        if (file.state == FileBytes::TooLarge) return;
        const uint8_t* data = file.bytes.data();
        uint32_t size = uint32_t(file.bytes.size());
        if (size < 32)
            return Add(region, "is " + std::to_string(size) +
                                   " bytes, shorter than its 32-byte header; " + region.without);
        uint32_t count = uint32_t(Le32(data + 8));
        if (!clt_GetRegionDataSize(data, size))
            return Add(region, "counts " + std::to_string(count) + " rectangles, but its " +
                                   std::to_string(size) + " bytes hold " +
                                   std::to_string((size - 32) / 16) + "; " + region.without);
        if (Le32(data) != 32)
            return Add(region, "has a header size of " + std::to_string(Le32(data)) +
                                   ", not 32; Windows refuses the region and " + region.without);
        if (Le32(data + 4) != 1)
            return Add(region, "has region type " + std::to_string(Le32(data + 4)) +
                                   ", not 1; Windows refuses the region and " + region.without);
        if (count == 0) return Add(region, "holds no rectangle; the window is invisible");
        uint32_t outside = 0, firstOutside = 0;
        for (uint32_t i = 0; i < count; ++i)
        {
            const uint8_t* r = data + 32 + 16 * i;
            int32_t left = Le32(r), top = Le32(r + 4), right = Le32(r + 8), bottom = Le32(r + 12);
            if (left >= right || top >= bottom)
                return Add(region, "has an empty rectangle " + Rect(i, r) +
                                       "; Windows may refuse the region, and then " +
                                       region.without);
            if (left < 0 || top < 0 || right > width || bottom > height)
                if (outside++ == 0) firstOutside = i;
        }
        if (outside)
            Add(region, "has " + std::to_string(outside) + " of " + std::to_string(count) +
                            " rectangles reaching outside the " + Size(width, height) +
                            " background, the first " +
                            Rect(firstOutside, data + 32 + 16 * firstOutside) +
                            "; it was made for another picture, and the window's outline "
                            "does not follow this one");
    }

    // "3 (0, 10, 500, 11)": the rectangle's number, counted from 1, and its corners.
    static std::string Rect(uint32_t index, const uint8_t* r)
    {
        char text[96];
        snprintf(text, sizeof text, "%u (%d, %d, %d, %d)", unsigned(index + 1), Le32(r),
                 Le32(r + 4), Le32(r + 8), Le32(r + 12));
        return text;
    }

    std::string m_dataDir, m_shownDir;
    CheckReport& m_report;
};
} // namespace

void CheckSkin(const std::string& dataDir, const std::string& shownDir, CheckReport& report)
{
    SkinCheck(dataDir, shownDir, report).Run();
}
