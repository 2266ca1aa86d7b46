// Building a launcher skin: reading the art, checking it against the window's geometry,
// and writing product.bmp, product.rgn and the TGA images.
#include "skin_Builder.h"

#include "skin_Picture.h"
#include "skin_Region.h"

#include "product/tarn_SkinFiles.h"

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <utility>
#include <vector>

namespace
{
// The art's names of the skin files of one part.
std::vector<std::string> ArtNames(TarnSkinPart part)
{
    std::vector<std::string> names;
    for (int id = 0; id < SkinFileCount; ++id)
        if (kTarnSkinFiles[id].part == part) names.push_back(SkinArtName(TarnSkinId(id)));
    return names;
}

std::string Size(const SkinPicture& p)
{
    return std::to_string(p.width) + " x " + std::to_string(p.height);
}

uint32_t Rgb(const uint8_t* p)
{
    return uint32_t(p[0]) << 16 | uint32_t(p[1]) << 8 | p[2];
}

class Builder
{
  public:
    explicit Builder(const SkinOptions& o) : m_o(o) {}

    SkinReport Run()
    {
        BuildBackground();
        for (const std::string& name : ArtNames(SkinCaption))
            BuildCaption(name.c_str());
        for (const std::string& name : ArtNames(SkinTitleButton))
            BuildTitleButton(name.c_str());
        BuildPageButtons();
        if (m_report.Ok()) WriteAll();
        return std::move(m_report);
    }

  private:
    const SkinOptions& m_o;
    SkinReport m_report;
    std::vector<std::pair<std::string, std::vector<uint8_t>>> m_outputs;
    int32_t m_width = 0, m_height = 0; // the background's

    void Error(const std::string& file, const std::string& text)
    {
        m_report.errors.push_back(file + ": " + text);
    }
    void Warning(const std::string& file, const std::string& text)
    {
        m_report.warnings.push_back(file + ": " + text);
    }

    // Finds NAME.png, NAME.tga or NAME.bmp in the art folder and reads it; "" when absent.
    std::string Read(const char* name, SkinPicture& picture)
    {
        for (const char* ext : {".png", ".tga", ".bmp"})
        {
            std::string file = m_o.artDir + "/" + name + ext;
            FILE* f = fopen(file.c_str(), "rb");
            if (!f) continue;
            fclose(f);
            std::string error;
            if (!ReadPicture(file, picture, error))
            {
                Error(file, error);
                return "";
            }
            ApplyKey(picture);
            return file;
        }
        return "";
    }

    // A picture without transparency of its own loses the key colour.
    void ApplyKey(SkinPicture& p) const
    {
        if (!m_o.hasKey) return;
        for (int32_t y = 0; y < p.height; ++y)
            for (int32_t x = 0; x < p.width; ++x)
                if (Rgb(p.At(x, y)) == m_o.key) p.At(x, y)[3] = 0;
    }

    static bool Opaque(const SkinPicture& p, int32_t x, int32_t y) { return p.At(x, y)[3] >= 128; }

    void BuildBackground()
    {
        SkinPicture p;
        std::string file = Read("background", p);
        if (file.empty())
        {
            if (m_report.errors.empty())
                Error(m_o.artDir + "/background.png",
                      "missing: every skin needs a background picture");
            return;
        }
        if (p.width < kSkinWidth || p.height < kCaptionHeight)
        {
            Error(file, "is " + Size(p) +
                            " pixels; the window needs at least 500 x 30 (its caption bar)");
            return;
        }
        if (p.width > kSkinWidth)
            Warning(file,
                    "is " + std::to_string(p.width) +
                        " pixels wide; the caption bar and its buttons cover only the first 500");
        std::vector<SkinRect> rects = BuildRegionRects(
            p.width, p.height, [&](int32_t x, int32_t y) { return Opaque(p, x, y); });
        if (rects.empty())
        {
            Error(file, "has no opaque pixel; the window would have no area");
            return;
        }
        if (rects.size() == 1 && rects[0] == SkinRect{0, 0, p.width, p.height})
            Warning(file, "has no transparent pixel; the window is a plain rectangle");
        m_width = p.width;
        m_height = p.height;
        m_outputs.emplace_back(kTarnSkinFiles[SkinBackgroundFile].name, EncodeBmp24(p, m_o.matte));
        m_outputs.emplace_back(kTarnSkinFiles[SkinRegionFile].name, EncodeRegionData(rects));
    }

    void BuildCaption(const char* name)
    {
        SkinPicture p;
        std::string file = Read(name, p);
        if (file.empty())
        {
            Warning(std::string(name), "no picture; the caption bar shows only the title there");
            return;
        }
        if (p.width != kSkinWidth || p.height != kCaptionHeight)
        {
            Error(file, "is " + Size(p) + " pixels; the caption bar is 500 x 30");
            return;
        }
        for (uint8_t* px = p.rgba.data(); px < p.rgba.data() + p.rgba.size(); px += 4)
            px[3] = 255; // copied as it is: no transparency
        m_outputs.emplace_back(std::string(name) + ".tga", EncodeTga32(p));
    }

    // Transparent pixels become the key colour, which the launcher reads at (0, 1); an
    // opaque pixel of exactly that colour is moved off it by one step of blue.
    void BuildTitleButton(const char* name)
    {
        SkinPicture p;
        std::string file = Read(name, p);
        if (file.empty())
        {
            Warning(std::string(name), "no picture; that title button is invisible there");
            return;
        }
        if (p.height < 2 || Opaque(p, 0, 1))
        {
            Error(file,
                  "pixel (0, 1) must be transparent: the launcher takes the key colour from it");
            return;
        }
        if (p.width < kTitleButtonWidth || p.height < kTitleButtonHeight)
            Warning(file, "is " + Size(p) +
                              " pixels; the pointer reacts over 25 x 23 pixels from its top-left");
        for (int32_t y = 0; y < p.height; ++y)
            for (int32_t x = 0; x < p.width; ++x)
            {
                uint8_t* px = p.At(x, y);
                uint32_t rgb = Opaque(p, x, y) ? Rgb(px) : m_o.titleKey;
                if (Opaque(p, x, y) && rgb == m_o.titleKey) rgb ^= 1;
                px[0] = uint8_t(rgb >> 16), px[1] = uint8_t(rgb >> 8), px[2] = uint8_t(rgb);
                px[3] = 255;
            }
        m_outputs.emplace_back(std::string(name) + ".tga", EncodeTga32(p));
    }

    void BuildPageButtons()
    {
        SkinPicture first;
        std::string firstFile;
        for (const std::string& art : ArtNames(SkinPageFace))
        {
            const char* name = art.c_str();
            SkinPicture p;
            std::string file = Read(name, p);
            if (file.empty())
            {
                Warning(std::string(name),
                        "no picture; page buttons in that state show only their label");
                continue;
            }
            if (p.width <= 2 * kLabelMargin || p.height <= 2 * kLabelMargin)
            {
                Error(
                    file,
                    "is " + Size(p) +
                        " pixels; a label needs more than 20 x 20 (10 pixels of margin all round)");
                continue;
            }
            if (firstFile.empty())
                first = p, firstFile = file;
            else if (p.width != first.width || p.height != first.height)
            {
                Error(file, "is " + Size(p) + " pixels, but " + firstFile + " is " + Size(first) +
                                "; the three page buttons must have one size");
                continue;
            }
            m_outputs.emplace_back(std::string(name) + ".tga", EncodeTga32(p));
        }
        if (firstFile.empty() || m_width == 0) return;
        if (kPageButtonX + first.width > m_width)
            Warning(firstFile,
                    "page buttons reach x = " + std::to_string(kPageButtonX + first.width) +
                        ", past the window's right edge");
        int32_t bottom = kPageButtonY + (kMostPageButtons - 1) * kPageButtonStep + first.height;
        if (bottom > m_height)
            Warning(firstFile, "a page of five buttons reaches y = " + std::to_string(bottom) +
                                   ", past the window's bottom edge");
    }

    // The skin folder is made when it does not exist yet, as on a publisher's first run.
    void WriteAll()
    {
        std::error_code failed;
        std::filesystem::create_directories(m_o.skinDir, failed);
        if (failed) return Error(m_o.skinDir, "cannot be created (" + failed.message() + ")");
        for (const auto& [name, bytes] : m_outputs)
        {
            std::string file = m_o.skinDir + "/" + name;
            if (!WriteFile(file, bytes))
                Error(file, "cannot be written");
            else
                m_report.written.push_back(file);
        }
    }
};
} // namespace

SkinReport BuildSkin(const SkinOptions& options)
{
    return Builder(options).Run();
}

std::string SkinArtName(TarnSkinId id)
{
    const char* name = kTarnSkinFiles[id].name;
    return std::string(name, size_t(strchr(name, '.') - name));
}
