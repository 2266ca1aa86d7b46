// demo_art: paints the demo product's skin pictures in code, the art a publisher would hand
// to skinbuild: a 500-pixel-wide background with bevelled corners, notched sides and a
// medallion that breaks the bottom edge; a lake at dusk in a framed panel; the name drawn
// in strokes; two caption bars; six title buttons; three page buttons.
//
//   demo_art ART_FOLDER
#include "skin_Builder.h"
#include "skin_Picture.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <deque>
#include <string>

namespace
{
struct Colour
{
    double r, g, b;
};

Colour Hex(uint32_t v)
{
    return Colour{double(v >> 16 & 0xFF), double(v >> 8 & 0xFF), double(v & 0xFF)};
}
Colour Mix(Colour a, Colour b, double t)
{
    t = std::clamp(t, 0.0, 1.0);
    return Colour{a.r + (b.r - a.r) * t, a.g + (b.g - a.g) * t, a.b + (b.b - a.b) * t};
}
Colour Scale(Colour c, double k)
{
    return Colour{c.r * k, c.g * k, c.b * k};
}
void Put(SkinPicture& p, int32_t x, int32_t y, Colour c, double alpha = 1.0)
{
    uint8_t* px = p.At(x, y);
    auto byte = [](double v) { return uint8_t(std::lround(std::clamp(v, 0.0, 255.0))); };
    px[0] = byte(c.r), px[1] = byte(c.g), px[2] = byte(c.b), px[3] = byte(alpha * 255);
}
Colour Get(const SkinPicture& p, int32_t x, int32_t y)
{
    const uint8_t* px = p.At(x, y);
    return Colour{double(px[0]), double(px[1]), double(px[2])};
}
// Lays c over the pixel with coverage a (the pixel stays as opaque as it was).
void Blend(SkinPicture& p, int32_t x, int32_t y, Colour c, double a)
{
    if (x < 0 || y < 0 || x >= p.width || y >= p.height || a <= 0) return;
    double keep = p.At(x, y)[3] / 255.0;
    Put(p, x, y, Mix(Get(p, x, y), c, a), keep);
}
// A small fixed noise in [-1, 1], for texture.
double Noise(int32_t x, int32_t y)
{
    uint32_t h = uint32_t(x) * 374761393u + uint32_t(y) * 668265263u;
    h = (h ^ (h >> 13)) * 1274126177u;
    return double((h ^ (h >> 16)) & 0xFFFF) / 32767.5 - 1.0;
}
double SegmentDistance(double px, double py, double ax, double ay, double bx, double by)
{
    double dx = bx - ax, dy = by - ay;
    double t = std::clamp(((px - ax) * dx + (py - ay) * dy) / (dx * dx + dy * dy), 0.0, 1.0);
    return std::hypot(px - ax - t * dx, py - ay - t * dy);
}

constexpr int32_t kWidth = 500, kHeight = 470, kBodyBottom = 440;
constexpr double kMedallionX = 96, kMedallionY = 418, kMedallionR = 48;

bool InShape(int32_t x, int32_t y)
{
    if (std::hypot(x + 0.5 - kMedallionX, y + 0.5 - kMedallionY) <= kMedallionR) return true;
    if (y >= kBodyBottom) return false;
    int32_t right = kWidth - 1 - x, up = kBodyBottom - 1 - y;
    if (x + y < 8 || right + y < 8) return false;     // top corners
    if (x + up < 26 || right + up < 26) return false; // bottom corners
    int32_t notch = 10 - std::abs(y - 170) / 2;       // a notch in each side
    return x >= notch && right >= notch;
}

// Chebyshev distance of every inside pixel to the outside (0 outside).
std::vector<int32_t> DistanceToOutside()
{
    std::vector<int32_t> d(size_t(kWidth) * kHeight, -1);
    std::deque<std::pair<int32_t, int32_t>> queue;
    for (int32_t y = 0; y < kHeight; ++y)
        for (int32_t x = 0; x < kWidth; ++x)
            if (!InShape(x, y)) d[size_t(y) * kWidth + x] = 0, queue.emplace_back(x, y);
    // Pixels on the picture's border count as next to the outside.
    for (int32_t y = 0; y < kHeight; ++y)
        for (int32_t x = 0; x < kWidth; ++x)
        {
            bool border = x == 0 || y == 0 || x == kWidth - 1 || y == kHeight - 1;
            if (border && d[size_t(y) * kWidth + x] < 0)
                d[size_t(y) * kWidth + x] = 1, queue.emplace_back(x, y);
        }
    while (!queue.empty())
    {
        auto [x, y] = queue.front();
        queue.pop_front();
        for (int32_t dy = -1; dy <= 1; ++dy)
            for (int32_t dx = -1; dx <= 1; ++dx)
            {
                int32_t nx = x + dx, ny = y + dy;
                if (nx < 0 || ny < 0 || nx >= kWidth || ny >= kHeight) continue;
                int32_t& n = d[size_t(ny) * kWidth + nx];
                if (n < 0) n = d[size_t(y) * kWidth + x] + 1, queue.emplace_back(nx, ny);
            }
    }
    return d;
}

// The lake at dusk inside the panel (x0, y0)-(x1, y1).
void PaintScene(SkinPicture& p, int32_t x0, int32_t y0, int32_t x1, int32_t y1)
{
    const int32_t horizon = y0 + 190;
    auto sky = [&](double y)
    {
        double t = (y - y0) / double(horizon - y0);
        return t < 0.55 ? Mix(Hex(0x14204A), Hex(0x5A3F78), t / 0.55)
                        : Mix(Hex(0x5A3F78), Hex(0xF09A55), (t - 0.55) / 0.45);
    };
    for (int32_t y = y0; y < y1; ++y)
        for (int32_t x = x0; x < x1; ++x)
        {
            double u = x - x0;
            double far = horizon - 34 - 18 * std::sin(u * 0.045) -
                         40 * std::max(0.0, 1 - std::abs(u - 100) / 45);
            double near = horizon - 4 - 52 * std::max(0.0, 1 - std::abs(u - 38) / 48) -
                          30 * std::max(0.0, 1 - std::abs(u - 128) / 34) + 3 * std::sin(u * 0.31);
            Colour c;
            if (y < far)
            {
                c = sky(y);
                double moon = std::hypot(x - (x0 + 44.0), y - (y0 + 48.0));
                if (moon < 11)
                    c = Mix(Hex(0xFFF4D8), Hex(0xF0D8A8), moon / 11);
                else if (moon < 30)
                    c = Mix(c, Hex(0xFFE8C0), 0.35 * (1 - (moon - 11) / 19));
                if (y < y0 + 110 && Noise(x, y) > 0.992) c = Hex(0xEAF0FF);
            }
            else if (y < near)
                c = Mix(Hex(0x4C4470), Hex(0x6A5680), (y - far) / 60);
            else if (y < horizon)
                c = Mix(Hex(0x231F36), Hex(0x2E2840), (y - near) / 30);
            else
            {
                // Water: the mountains and the sky mirrored, darkened with depth, with
                // ripples and the moon's broken path.
                double depth = (y - horizon) / double(y1 - horizon);
                double mirror = 2 * horizon - y + 1.5 * std::sin(y * 0.8 + u * 0.07);
                Colour m = mirror >= near  ? Hex(0x1A1828)
                           : mirror >= far ? Hex(0x3A345A)
                                           : sky(mirror);
                c = Mix(Scale(m, 0.8), Hex(0x0A1024), 0.25 + 0.6 * depth);
                if (int32_t(y - horizon) % 3 == 0) c = Scale(c, 0.9);
                double path = std::abs(u - 44) - 2 - depth * 10;
                if (path < 0 && Noise(int32_t(u) / 3, y) > -0.2)
                    c = Mix(c, Hex(0xFFE6B8), 0.6 * (1 - depth));
            }
            Put(p, x, y, c);
        }
}

// The name in strokes, gold with a drop shadow, in the box (x0, y0) with letters h high.
void PaintLogo(SkinPicture& p, double x0, double y0, double h)
{
    struct Segment
    {
        double ax, ay, bx, by;
    };
    const std::vector<std::vector<Segment>> letters = {
        {{0, 0, 0.8, 0}, {0.4, 0, 0.4, 1}},                         // T
        {{0, 1, 0.4, 0}, {0.4, 0, 0.8, 1}, {0.17, 0.6, 0.63, 0.6}}, // A
        {{0, 1, 0, 0},
         {0, 0, 0.55, 0},
         {0.55, 0, 0.75, 0.13},
         {0.75, 0.13, 0.75, 0.37},
         {0.75, 0.37, 0.55, 0.5},
         {0.55, 0.5, 0, 0.5},
         {0.35, 0.5, 0.8, 1}},                            // R
        {{0, 1, 0, 0}, {0, 0, 0.8, 1}, {0.8, 1, 0.8, 0}}, // N
    };
    const double advance = 0.8 * h + 0.22 * h, half = h * 0.075;
    std::vector<Segment> strokes;
    for (size_t i = 0; i < letters.size(); ++i)
        for (const Segment& s : letters[i])
            strokes.push_back({x0 + i * advance + s.ax * h, y0 + s.ay * h,
                               x0 + i * advance + s.bx * h, y0 + s.by * h});
    auto coverage = [&](double x, double y)
    {
        double d = 1e9;
        for (const Segment& s : strokes)
            d = std::min(d, SegmentDistance(x, y, s.ax, s.ay, s.bx, s.by));
        return std::clamp(half + 0.5 - d, 0.0, 1.0);
    };
    int32_t right = int32_t(x0 + 4 * advance), bottom = int32_t(y0 + h + 2 * half + 6);
    for (int32_t y = int32_t(y0 - half - 2); y < bottom; ++y)
        for (int32_t x = int32_t(x0 - half - 2); x < right; ++x)
        {
            double cx = x + 0.5, cy = y + 0.5;
            Blend(p, x, y, Hex(0x05070C), 0.7 * coverage(cx - 3, cy - 3));
            double a = coverage(cx, cy);
            if (a <= 0) continue;
            double t = (cy - y0) / h;
            Colour gold = Mix(Hex(0xFBE6A2), Hex(0xB07E2C), t);
            Blend(p, x, y, gold, a);
        }
}

SkinPicture Background()
{
    SkinPicture p;
    p.Resize(kWidth, kHeight);
    std::vector<int32_t> dist = DistanceToOutside();
    for (int32_t y = 0; y < kHeight; ++y)
        for (int32_t x = 0; x < kWidth; ++x)
        {
            int32_t d = dist[size_t(y) * kWidth + x];
            if (d == 0) continue; // transparent
            bool medallion =
                std::hypot(x + 0.5 - kMedallionX, y + 0.5 - kMedallionY) <= kMedallionR - 4;
            Colour c = Mix(Hex(0x1C2638), Hex(0x0B1019), y / double(kBodyBottom));
            c = Scale(c, 1 + 0.05 * Noise(x / 2, y / 2));
            if (medallion)
            {
                double r = std::hypot(x + 0.5 - kMedallionX, y + 0.5 - kMedallionY);
                c = Mix(Hex(0x22406A), Hex(0x0C1830), r / kMedallionR);
            }
            if (d <= 2)
                c = Mix(Hex(0xE9C978), Hex(0x9C7530), (d - 1) / 1.0);
            else if (d == 3)
                c = Hex(0x3A2C12);
            Put(p, x, y, c);
        }
    // The medallion's ring, drawn over the body's trim where they meet.
    for (int32_t y = 360; y < kHeight; ++y)
        for (int32_t x = 40; x < 152; ++x)
        {
            if (dist[size_t(y) * kWidth + x] == 0) continue;
            double r = std::hypot(x + 0.5 - kMedallionX, y + 0.5 - kMedallionY);
            double ring = std::clamp(1.0 - std::abs(r - (kMedallionR - 3.5)) + 1.5, 0.0, 1.0);
            Blend(p, x, y, Mix(Hex(0xF2D488), Hex(0xA27A32), (y - 370) / 96.0), ring);
            double inner = std::clamp(1.0 - std::abs(r - (kMedallionR - 7.5)), 0.0, 1.0);
            Blend(p, x, y, Hex(0x3A2C12), inner);
        }
    // The medallion's emblem: a peak over two waves.
    for (int32_t y = 380; y < 460; ++y)
        for (int32_t x = 60; x < 132; ++x)
        {
            double cx = x + 0.5, cy = y + 0.5;
            double peak = std::min({SegmentDistance(cx, cy, 72, 426, 96, 394),
                                    SegmentDistance(cx, cy, 96, 394, 120, 426),
                                    SegmentDistance(cx, cy, 86, 407, 96, 414),
                                    SegmentDistance(cx, cy, 96, 414, 104, 405)});
            double waves = 1e9;
            for (double wy : {434.0, 442.0})
                if (cx > 74 && cx < 118)
                    waves = std::min(waves, std::abs(cy - (wy + 2 * std::sin((cx - 74) * 0.45))));
            double a = std::clamp(2.0 - std::min(peak, waves), 0.0, 1.0);
            Blend(p, x, y, Hex(0xF0CF7E), a);
        }
    // The framed picture on the left.
    const int32_t px0 = 24, py0 = 46, px1 = 176, py1 = 356;
    PaintScene(p, px0, py0, px1, py1);
    for (int32_t y = py0 - 4; y < py1 + 4; ++y)
        for (int32_t x = px0 - 4; x < px1 + 4; ++x)
        {
            int32_t d = std::min({x - (px0 - 4), px1 + 3 - x, y - (py0 - 4), py1 + 3 - y});
            if (d > 3) continue;
            Put(p, x, y,
                d == 0 || d == 3 ? Hex(0x3A2C12)
                                 : Mix(Hex(0xF2D488), Hex(0xA27A32), (y - py0) / 310.0));
        }
    // The name, and a rule under it with a diamond in the middle.
    PaintLogo(p, 212, 74, 62);
    for (int32_t x = 206; x < 478; ++x)
    {
        double fade = 1 - std::abs(x - 342) / 136.0;
        Blend(p, x, 162, Hex(0xD8B460), fade);
        Blend(p, x, 163, Hex(0x6A5022), fade);
    }
    for (int32_t y = 154; y < 172; ++y)
        for (int32_t x = 332; x < 352; ++x)
            Blend(
                p, x, y, Hex(0xF0CF7E),
                std::clamp(7.5 - (std::abs(x + 0.5 - 342) + std::abs(y + 0.5 - 162.5)), 0.0, 1.0));
    return p;
}

SkinPicture Caption(bool active)
{
    SkinPicture p;
    p.Resize(500, 30);
    for (int32_t y = 0; y < 30; ++y)
        for (int32_t x = 0; x < 500; ++x)
        {
            Colour c = active ? Mix(Hex(0xF4ECD2), Hex(0xD3C094), y / 29.0)
                              : Mix(Hex(0xC9CCD0), Hex(0x9EA3AA), y / 29.0);
            if (y == 0) c = active ? Hex(0xFFF8E6) : Hex(0xDADCE0);
            if (y >= 27)
                c = active ? Mix(Hex(0xB8923E), Hex(0x6A5022), (y - 27) / 2.0) : Hex(0x70757C);
            Put(p, x, y, c);
        }
    return p;
}

// A title button: a rounded plate with a mark, outside it transparent.
SkinPicture TitleButton(bool close, int look)
{
    const Colour plates[3] = {Hex(0x2A3B56), Hex(0x3F74B0), Hex(0xC99B3E)};
    const Colour marks[3] = {Hex(0xE8EEF6), Hex(0xFFFFFF), Hex(0x1A1408)};
    SkinPicture p;
    p.Resize(25, 23);
    for (int32_t y = 0; y < 23; ++y)
        for (int32_t x = 0; x < 25; ++x)
        {
            double cx = x + 0.5, cy = y + 0.5;
            // Rounded square from (7, 2) to (24, 21), radius 4: over the hover area.
            double qx = std::max(std::abs(cx - 15.5) - 4.5, 0.0),
                   qy = std::max(std::abs(cy - 11.5) - 5.5, 0.0);
            double outside = std::hypot(qx, qy) - 4;
            if (outside > 0.5) continue;
            double mark = close ? std::min(SegmentDistance(cx, cy, 12, 8, 19, 15),
                                           SegmentDistance(cx, cy, 19, 8, 12, 15))
                                : SegmentDistance(cx, cy, 12, 15, 19, 15);
            Colour c = Mix(Scale(plates[look], 1.15), Scale(plates[look], 0.8), y / 22.0);
            if (outside > -1.0) c = Scale(plates[look], 0.55);
            c = Mix(c, marks[look], std::clamp(1.8 - mark, 0.0, 1.0));
            Put(p, x, y, c);
        }
    return p;
}

// A page button face: rounded, with a gold border; soft edges in alpha.
SkinPicture PageButton(uint32_t top, uint32_t bottom, uint32_t border, double borderWidth)
{
    const int32_t w = 270, h = 40;
    SkinPicture p;
    p.Resize(w, h);
    for (int32_t y = 0; y < h; ++y)
        for (int32_t x = 0; x < w; ++x)
        {
            double cx = x + 0.5, cy = y + 0.5;
            double qx = std::max(std::abs(cx - w / 2.0) - (w / 2.0 - 9), 0.0);
            double qy = std::max(std::abs(cy - h / 2.0) - (h / 2.0 - 9), 0.0);
            double inside = 8.5 - std::hypot(qx, qy); // distance inwards from the edge
            if (inside <= -0.5) continue;
            Colour c = Mix(Hex(top), Hex(bottom), y / double(h - 1));
            if (inside < borderWidth)
                c = Mix(Hex(border), Scale(Hex(border), 0.6), y / double(h - 1));
            Put(p, x, y, c, std::clamp(inside + 0.5, 0.0, 1.0));
        }
    return p;
}

bool Save(const std::string& dir, const std::string& name, const SkinPicture& p)
{
    std::string file = dir + "/" + name + ".tga";
    if (WriteFile(file, EncodeTga32(p))) return true;
    fprintf(stderr, "demo_art: %s cannot be written\n", file.c_str());
    return false;
}
} // namespace

int main(int argc, char** argv)
{
    if (argc != 2)
    {
        fprintf(stderr, "usage: demo_art ART_FOLDER\n");
        return 2;
    }
    std::string dir = argv[1];
    bool ok = Save(dir, "background", Background()) &&
              Save(dir, SkinArtName(SkinActive), Caption(true)) &&
              Save(dir, SkinArtName(SkinInactive), Caption(false));
    const TarnSkinId looks[2][3] = {{SkinMinimize, SkinOverMinimize, SkinSelectedMinimize},
                                    {SkinClose, SkinOverClose, SkinSelectedClose}};
    for (int close = 0; close < 2; ++close)
        for (int look = 0; look < 3; ++look)
            ok = ok && Save(dir, SkinArtName(looks[close][look]), TitleButton(close == 1, look));
    // Normal: parchment for the blue label; focused: night blue for the grey label;
    // pressed: deep blue for the white label.
    ok = ok && Save(dir, SkinArtName(SkinUnselect), PageButton(0xF6EFD9, 0xD9C89C, 0xA27A32, 2)) &&
         Save(dir, SkinArtName(SkinFocused), PageButton(0x24385A, 0x111C30, 0xE9C978, 3)) &&
         Save(dir, SkinArtName(SkinPressed), PageButton(0x1C5FA8, 0x0C3566, 0xE9C978, 3));
    return ok ? 0 : 1;
}
