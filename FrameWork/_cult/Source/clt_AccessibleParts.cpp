// Numbering the accessible parts of a widget tree by one walk in tree order.
#include "FrameWork/_cult/Source/clt_AccessibleParts.h"

#include "FrameWork/_cult/Source/clt_Widget.h"

namespace
{
bool IsPart(const CltWidget* w)
{
    return w->HasFlag(CltWidgetVisible) && *w->Describe().name != '\0';
}

// Counts the parts up to 'number' (or through the whole tree); 'found' is the part with
// that number, or the number of 'wanted'.
struct Walk
{
    int32_t counted = 0;
    int32_t number = 0;
    const CltWidget* wanted = nullptr;
    CltWidget* found = nullptr;
    int32_t foundNumber = 0;

    void Visit(CltWidget* w)
    {
        for (; w && !found && !foundNumber; w = w->NextSibling())
        {
            if (IsPart(w))
            {
                ++counted;
                if (counted == number) found = w;
                if (w == wanted) foundNumber = counted;
            }
            Visit(w->FirstChild());
        }
    }
};
} // namespace

int32_t clt_AccessiblePartCount(CltWidget* root)
{
    Walk walk;
    if (root) walk.Visit(root);
    return walk.counted;
}

CltWidget* clt_AccessiblePart(CltWidget* root, int32_t number)
{
    if (!root || number < 1) return nullptr;
    Walk walk;
    walk.number = number;
    walk.Visit(root);
    return walk.found;
}

int32_t clt_AccessiblePartNumber(CltWidget* root, const CltWidget* w)
{
    if (!root || !w) return 0;
    Walk walk;
    walk.wanted = w;
    walk.Visit(root);
    return walk.foundNumber;
}

int32_t clt_AccessiblePartAt(CltWidget* root, int32_t x, int32_t y)
{
    CltWidget* w = root ? root->HitTestTree(x, y) : nullptr;
    while (w && !IsPart(w))
        w = w->Parent();
    return clt_AccessiblePartNumber(root, w);
}
