// SPDX-License-Identifier: MIT
// Which canvas is drawn on, and its clip.
#include <algorithm>
#include <cstdint>
#include <cstring>

#include "ground/number.h"
#include "internal.h"
#include "raster/clip.h"
#include "raster/pixels.h"

namespace {

using ground::saturated;

struct Span {
    int first, last; // inclusive
};

// A length below 0 runs backwards from its start.
Span span_of(int start, int length) {
    const int64_t end = int64_t{start} + length;
    if (length < 0) return {saturated(end + 1), start};
    return {start, saturated(end - 1)};
}

int length_of(int first, int last) {
    return saturated(int64_t{last} - first + 1);
}

// One axis of MergeClipRect(). A start moved to the clip's edge keeps the length that was asked
// for, unless that reaches beyond the other edge.
void fit_to_clip(int &start, int &length, int64_t clip_start, int64_t clip_length) {
    const int64_t clip_end = clip_start + clip_length;
    if (start < clip_start || start > clip_end) start = static_cast<int>(clip_start);
    if (int64_t{start} + length > clip_end) length = saturated(clip_end - start);
}

void store(int *out, int value) {
    if (out) *out = value;
}

} // namespace

irect iRect(int x, int y, int w, int h, int flags) {
    return {x, y, w, h, flags};
}

void SetCanvas(icanvas *c) {
    kvstate.canvas = c ? c : kvstate.framebuffer;
}

icanvas *GetCanvas() {
    return kvstate.canvas;
}

void ClearScreen() {
    const icanvas *c = kvstate.canvas;
    if (!c || !raster::is_drawable(*c)) return;
    // What lies between its rows may belong to a picture that the canvas is a part of.
    raster::for_each_row(*c, {0, 0, c->width, c->height},
                         [](uint8_t *row, size_t count) { std::memset(row, 0xFF, count); });
}

void SetClip(int x, int y, int w, int h) {
    icanvas *c = kvstate.canvas;
    if (!c) return;
    const Span columns = span_of(x, w), rows = span_of(y, h);
    c->clipx1 = columns.first;
    c->clipx2 = columns.last;
    c->clipy1 = rows.first;
    c->clipy2 = rows.last;
}

void GetClip(int *x, int *y, int *w, int *h) {
    const irect clip = GetClipRect();
    store(x, clip.x);
    store(y, clip.y);
    store(w, clip.w);
    store(h, clip.h);
}

void SetClipRect(const irect *r) {
    if (r) SetClip(r->x, r->y, r->w, r->h);
}

irect GetClipRect() {
    const icanvas *c = kvstate.canvas;
    if (!c) return {};
    return {c->clipx1, c->clipy1, length_of(c->clipx1, c->clipx2), length_of(c->clipy1, c->clipy2),
            0};
}

irect MergeClipRect(const irect *r) {
    if (!r) return {};
    irect fitted = *r;
    const irect clip = GetClipRect();
    fit_to_clip(fitted.x, fitted.w, clip.x, clip.w);
    fit_to_clip(fitted.y, fitted.h, clip.y, clip.h);
    return fitted;
}
