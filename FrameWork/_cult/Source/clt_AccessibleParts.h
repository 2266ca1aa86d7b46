// The parts of a widget tree a screen reader is told of: the visible widgets that have a
// name, numbered from 1 in tree order (a parent before its children, siblings in order).
// The numbers are the child ids of the window's accessible object. They are worked out at
// each question, never kept: a page change renumbers them, and no number outlives its
// widget.
#pragma once

#include <cstdint>

class CltWidget;

int32_t clt_AccessiblePartCount(CltWidget* root);
// The part with that number, or null.
CltWidget* clt_AccessiblePart(CltWidget* root, int32_t number);
// The number of the part, 0 for a widget that is none.
int32_t clt_AccessiblePartNumber(CltWidget* root, const CltWidget* w);
// The number of the part under the point (window client coordinates): the widget hit, or
// the nearest of its parents that is a part; 0 for none.
int32_t clt_AccessiblePartAt(CltWidget* root, int32_t x, int32_t y);
