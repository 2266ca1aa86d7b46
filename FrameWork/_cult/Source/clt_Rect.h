// CltRect: left, top, right, bottom as signed 32-bit values. The point test counts the
// right and bottom edges as inside. Intersect follows the system's IntersectRect: rectangles
// that do not overlap give (0, 0, 0, 0), which is empty.
#pragma once

#include <cstdint>

struct CltRect
{
    int32_t left = 0, top = 0, right = 0, bottom = 0;

    constexpr CltRect() = default;
    constexpr CltRect(int32_t l, int32_t t, int32_t r, int32_t b)
        : left(l), top(t), right(r), bottom(b)
    {
    }

    void Set(int32_t l, int32_t t, int32_t r, int32_t b) { *this = CltRect(l, t, r, b); }
    int32_t Width() const { return right - left; }
    int32_t Height() const { return bottom - top; }
    bool IsEmpty() const { return right == left && bottom == top; }
    bool Contains(int32_t x, int32_t y) const
    {
        return left <= x && x <= right && top <= y && y <= bottom;
    }
    void Offset(int32_t dx, int32_t dy)
    {
        left += dx, right += dx;
        top += dy, bottom += dy;
    }
    bool operator!=(const CltRect& o) const
    {
        return left != o.left || top != o.top || right != o.right || bottom != o.bottom;
    }
    bool operator==(const CltRect& o) const { return !(*this != o); }
    // A rectangle that covers no pixel (the system's IsRectEmpty).
    bool CoversNothing() const { return right <= left || bottom <= top; }
    CltRect Intersect(const CltRect& o) const
    {
        if (CoversNothing() || o.CoversNothing()) return CltRect();
        CltRect r(left > o.left ? left : o.left, top > o.top ? top : o.top,
                  right < o.right ? right : o.right, bottom < o.bottom ? bottom : o.bottom);
        return r.CoversNothing() ? CltRect() : r;
    }
    // The smallest rectangle that covers both (the system's UnionRect: one that covers
    // nothing does not count).
    CltRect Union(const CltRect& o) const
    {
        if (o.CoversNothing()) return CoversNothing() ? CltRect() : *this;
        if (CoversNothing()) return o;
        return CltRect(left < o.left ? left : o.left, top < o.top ? top : o.top,
                       right > o.right ? right : o.right, bottom > o.bottom ? bottom : o.bottom);
    }
};

struct CltPoint
{
    int32_t x = 0, y = 0;
};
