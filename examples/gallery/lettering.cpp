// SPDX-License-Identifier: MIT
#include "lettering.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdint>
#include <map>
#include <tuple>
#include <vector>

namespace {

// A letter is a list of strokes, a stroke a list of points on a grid: a digit for x and a letter
// for y, where a is the top and m the base line. A stroke that begins with ~ is rounded.
struct Letter {
    char sign;
    std::string_view strokes;
};

constexpr int grid_height = 12, gap = 4, space = 6;

constexpr Letter letters[] = {
    {'A', "0m4a8m 1i7i"},
    {'B', "0a0m 0a4a ~4a7a7g4g 0g4g ~4g8g8m4m 4m0m"},
    {'C', "~8c6a2a0d0j2m6m8k"},
    {'D', "0a0m 0a3a ~3a6a8d8j6m3m 3m0m"},
    {'E', "7a0a0m7m 0g6g"},
    {'F', "7a0a0m 0g6g"},
    {'G', "~8c6a2a0d0j2m6m8k 8k8h5h"},
    {'H', "0a0m 8a8m 0g8g"},
    {'I', "0a0m"},
    {'J', "5a5i ~5i5m0m0k"},
    {'K', "0a0m 7a0h 3e8m"},
    {'L', "0a0m6m"},
    {'M', "0m0a4h8a8m"},
    {'N', "0m0a8m8a"},
    {'O', "~2a6a8d8j6m2m0j0d2a"},
    {'P', "0m0a4a ~4a8a8h4h 4h0h"},
    {'Q', "~2a6a8d8j6m2m0j0d2a 5j8m"},
    {'R', "0m0a4a ~4a8a8g4g 4g0g 4g8m"},
    {'S', "~8c6a2a0b0e2g6g8h8l6m2m0k"},
    {'T', "0a8a 4a4m"},
    {'U', "0a0i ~0i0m8m8i 8i8a"},
    {'V', "0a4m8a"},
    {'W', "0a2m4d6m8a"},
    {'X', "0a8m 8a0m"},
    {'Y', "0a4g8a 4g4m"},
    {'Z', "0a8a0m8m"},
    {'0', "~2a5a7d7j5m2m0j0d2a"},
    {'1', "0c3a3m"},
    {'2', "~0c2a5a7b7e5h 5h0m7m"},
    {'3', "~0b2a5a7b7f5g3g ~3g5g7h7l5m2m0l"},
    {'4', "5m5a0i7i"},
    {'5', "6a1a0f ~0f2e5e7g7k5m2m0l"},
    {'6', "~6a3c0g0k2m5m7k7h5f2f0i"},
    {'7', "0a7a2m"},
    {'8', "~2a5a7b7f5g2g0f0b2a ~2g5g7h7l5m2m0l0h2g"},
    {'9', "~1m4k7g7c5a2a0c0f2h5h7e"},
    {'.', "0m0m"},
    {',', "1m0o"},
    {':', "0e0e 0l0l"},
    {'-', "0g5g"},
    {'+', "0g6g 3d3j"},
    {'=', "0e6e 0i6i"},
    {'/', "0m5a"},
    {'(', "~2a0d0j2m"},
    {')', "~0a2d2j0m"},
    {'_', "0m7m"},
    {'<', "5c0g5k"},
    {'>', "0c5g0k"},
    {'\'', "0a0c"},
};

struct Point {
    double x, y;
};
using Stroke = std::vector<Point>;

// Cuts the corners: each pass replaces a corner by two points a quarter of the way along its
// sides.
Stroke rounded(const Stroke &stroke) {
    const bool closed = stroke.front().x == stroke.back().x && stroke.front().y == stroke.back().y;
    Stroke cut;
    if (!closed) cut.push_back(stroke.front());
    for (size_t i = 0; i + 1 < stroke.size(); i++) {
        const Point a = stroke[i], b = stroke[i + 1];
        cut.push_back({a.x * 0.75 + b.x * 0.25, a.y * 0.75 + b.y * 0.25});
        cut.push_back({a.x * 0.25 + b.x * 0.75, a.y * 0.25 + b.y * 0.75});
    }
    cut.push_back(closed ? cut.front() : stroke.back());
    return cut;
}

std::vector<Stroke> parse(std::string_view text) {
    std::vector<Stroke> strokes;
    while (!text.empty()) {
        const bool round = text.front() == '~';
        if (round) text.remove_prefix(1);
        Stroke stroke;
        for (; text.size() > 1 && text.front() != ' '; text.remove_prefix(2))
            stroke.push_back({double(text[0] - '0'), double(text[1] - 'a')});
        if (!text.empty()) text.remove_prefix(1);
        for (int pass = 0; round && pass < 3; pass++) stroke = rounded(stroke);
        strokes.push_back(std::move(stroke));
    }
    return strokes;
}

double distance_to_segment(Point p, Point a, Point b) {
    const double dx = b.x - a.x, dy = b.y - a.y, length2 = dx * dx + dy * dy;
    double t = length2 > 0 ? ((p.x - a.x) * dx + (p.y - a.y) * dy) / length2 : 0;
    t = std::clamp(t, 0.0, 1.0);
    return std::hypot(p.x - a.x - t * dx, p.y - a.y - t * dy);
}

double distance_to_letter(Point p, const std::vector<Stroke> &strokes) {
    double nearest = 1e9;
    for (const Stroke &stroke : strokes)
        for (size_t i = 0; i + 1 < stroke.size(); i++)
            nearest = std::min(nearest, distance_to_segment(p, stroke[i], stroke[i + 1]));
    return nearest;
}

// How much of each pixel the letter covers, 0 to 255.
struct Mask {
    int width = 0, height = 0, margin = 0;
    std::vector<uint8_t> cover;
};

const Letter *find_letter(char sign) {
    sign = static_cast<char>(std::toupper(static_cast<unsigned char>(sign)));
    const auto *found = std::find_if(std::begin(letters), std::end(letters),
                                     [=](const Letter &l) { return l.sign == sign; });
    return found == std::end(letters) ? nullptr : found;
}

int grid_width(const Letter &letter) {
    int width = 0;
    for (char c : letter.strokes)
        if (c >= '0' && c <= '9') width = std::max(width, c - '0');
    return width;
}

Mask make_mask(const Letter &letter, int height, bool bold) {
    const double unit = double(height) / grid_height;
    const double radius = std::max(0.6, unit * (bold ? 1.15 : 0.75));
    const auto strokes = parse(letter.strokes);
    Mask mask;
    mask.margin = int(std::ceil(radius)) + 1;
    mask.width = int(std::ceil(grid_width(letter) * unit)) + 2 * mask.margin;
    mask.height = int(std::ceil(height + 2 * unit)) + 2 * mask.margin;
    mask.cover.resize(size_t(mask.width) * size_t(mask.height));
    auto *out = mask.cover.data();
    for (int y = 0; y < mask.height; y++) {
        for (int x = 0; x < mask.width; x++) {
            const Point p = {(x - mask.margin + 0.5) / unit, (y - mask.margin + 0.5) / unit};
            const double edge = radius + 0.5 - distance_to_letter(p, strokes) * unit;
            *out++ = uint8_t(std::clamp(edge, 0.0, 1.0) * 255);
        }
    }
    return mask;
}

const Mask &find_mask(const Letter &letter, int height, bool bold) {
    static std::map<std::tuple<char, int, bool>, Mask> masks;
    auto [found, is_new] = masks.try_emplace({letter.sign, height, bold});
    if (is_new) found->second = make_mask(letter, height, bold);
    return found->second;
}

void draw_mask(int x, int y, const Mask &mask, const Ink &ink) {
    const int from = ink.paper & 255, to = ink.color & 255;
    const uint8_t *cover = mask.cover.data();
    for (int row = 0; row < mask.height; row++)
        for (int column = 0; column < mask.width; column++, cover++)
            if (*cover != 0)
                DrawPixel(x - mask.margin + column, y - mask.margin + row,
                          (from + (to - from) * *cover / 255) * 0x010101);
}

double advance(char sign, int height) {
    const Letter *letter = find_letter(sign);
    return double(letter ? grid_width(*letter) + gap : space) * height / grid_height;
}

} // namespace

int text_width(std::string_view text, int height) {
    double width = 0;
    for (char c : text) width += advance(c, height);
    return std::max(0, int(width - double(gap) * height / grid_height));
}

void draw_text(int x, int y, std::string_view text, const Ink &ink, Align align) {
    if (align == Align::centre) x -= text_width(text, ink.height) / 2;
    if (align == Align::right) x -= text_width(text, ink.height);
    double pen = x;
    for (char c : text) {
        if (const Letter *letter = find_letter(c))
            draw_mask(int(pen), y, find_mask(*letter, ink.height, ink.bold), ink);
        pen += advance(c, ink.height);
    }
}
