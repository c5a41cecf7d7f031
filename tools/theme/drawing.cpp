// SPDX-License-Identifier: MIT
// Draws descriptions with cairo. Everything is fitted to whole pixels after scaling.
#include "drawing.h"

#include <algorithm>
#include <cairo.h>
#include <cmath>
#include <memory>
#include <new>
#include <numbers>

namespace tool {
namespace {

constexpr double grid = 32; // the side of a glyph

struct Free {
    void operator()(cairo_t *cairo) const { cairo_destroy(cairo); }
    void operator()(cairo_surface_t *surface) const { cairo_surface_destroy(surface); }
};
using Cairo = std::unique_ptr<cairo_t, Free>;
using Surface = std::unique_ptr<cairo_surface_t, Free>;

double half_up(double v) {
    return std::floor(v + 0.5);
}

struct Colors {
    int ink, paper;
};

// Where something is drawn: the pixel of its corner, and the pixels of a unit.
struct Frame {
    double x, y, scale, width, height;
};

class Pen {
  public:
    Pen(cairo_t *cairo, const std::map<std::string, std::vector<Step>> &glyphs,
        const Drawing &drawing)
        : cairo_(cairo), glyphs_(glyphs), stroke_(drawing.stroke) {
        cairo_set_line_cap(cairo,
                           drawing.has_round_ends ? CAIRO_LINE_CAP_ROUND : CAIRO_LINE_CAP_SQUARE);
        cairo_set_line_join(cairo,
                            drawing.has_round_ends ? CAIRO_LINE_JOIN_ROUND : CAIRO_LINE_JOIN_MITER);
    }

    void draw(const std::vector<Step> &steps, const Frame &frame, Colors colors) {
        frame_ = frame;
        colors_ = colors;
        weight_ = 1;
        use_color("ink");
        for (const Step &step : steps) draw(step);
    }

  private:
    void draw(const Step &step) {
        const std::vector<double> &n = step.numbers;
        switch (step.verb) {
        case Verb::line:
            line(n);
            break;
        case Verb::area:
            area(n);
            break;
        case Verb::ring:
            arc(n[0], n[1], n[2], 0, 360);
            break;
        case Verb::arc:
            arc(n[0], n[1], n[2], n[3], n[4]);
            break;
        case Verb::disc:
            disc(n[0], n[1], n[2]);
            break;
        case Verb::box:
            box(n[0], n[1], n[2], n[3], n.size() > 4 ? n[4] : 0);
            break;
        case Verb::frame:
            frame(n[0], n[1], n[2], n[3], n[4], n.size() > 5 ? n[5] : 0);
            break;
        case Verb::tile:
            box(0, 0, frame_.width, frame_.height, n.empty() ? 0 : n[0]);
            break;
        case Verb::icon:
            icon(step);
            break;
        case Verb::color:
            use_color(step.word);
            break;
        case Verb::stroke:
            stroke_ = n[0];
            break;
        case Verb::weight:
            weight_ = n[0];
            break;
        }
    }

    void use_color(const std::string &name) {
        const int own = name == "ink" ? colors_.ink : name == "paper" ? colors_.paper : -1;
        const double grey = (own < 0 ? grey_of(name) : own) / 255.0;
        cairo_set_source_rgb(cairo_, grey, grey, grey);
    }

    // The width of a stroke in whole pixels.
    double width() const { return std::max(1.0, half_up(stroke_ * weight_ * frame_.scale)); }
    double x(double v) const { return frame_.x + half_up(v * frame_.scale); }
    double y(double v) const { return frame_.y + half_up(v * frame_.scale); }
    // The middle of a stroke whose edges fall on whole pixels.
    double middle(double v) const { return half_up(v * frame_.scale - width() / 2) + width() / 2; }

    void line(const std::vector<double> &n) {
        cairo_set_line_width(cairo_, width());
        for (size_t i = 0; i + 1 < n.size(); i += 2)
            cairo_line_to(cairo_, frame_.x + middle(n[i]), frame_.y + middle(n[i + 1]));
        cairo_stroke(cairo_);
    }
    void area(const std::vector<double> &n) {
        for (size_t i = 0; i + 1 < n.size(); i += 2) cairo_line_to(cairo_, x(n[i]), y(n[i + 1]));
        cairo_close_path(cairo_);
        cairo_fill(cairo_);
    }
    // Circles touch whole pixels on all four sides.
    void arc(double cx, double cy, double radius, double from, double to) {
        const double outer = radius + width() / frame_.scale / 2;
        circle(cx, cy, outer, width() / 2, from, to);
        cairo_set_line_width(cairo_, width());
        cairo_stroke(cairo_);
    }
    void disc(double cx, double cy, double radius) {
        circle(cx, cy, radius, 0, 0, 360);
        cairo_fill(cairo_);
    }
    void circle(double cx, double cy, double outer, double inset, double from, double to) {
        const double left = x(cx - outer), right = x(cx + outer);
        const double top = y(cy - outer), bottom = y(cy + outer);
        const double degree = std::numbers::pi / 180;
        cairo_new_sub_path(cairo_);
        cairo_arc(cairo_, (left + right) / 2, (top + bottom) / 2,
                  std::max(0.0, (right - left) / 2 - inset), from * degree, to * degree);
    }
    struct Edges {
        double left, top, right, bottom;
    };
    Edges edges(double left, double top, double w, double h) const {
        return {x(left), y(top), x(left + w), y(top + h)};
    }
    void fill(const Edges &e, double radius) {
        const double r = std::min({radius, (e.right - e.left) / 2, (e.bottom - e.top) / 2});
        const double quarter = std::numbers::pi / 2;
        cairo_new_sub_path(cairo_);
        cairo_arc(cairo_, e.right - r, e.top + r, r, -quarter, 0);
        cairo_arc(cairo_, e.right - r, e.bottom - r, r, 0, quarter);
        cairo_arc(cairo_, e.left + r, e.bottom - r, r, quarter, 2 * quarter);
        cairo_arc(cairo_, e.left + r, e.top + r, r, 2 * quarter, 3 * quarter);
        cairo_close_path(cairo_);
        cairo_fill(cairo_);
    }
    void box(double left, double top, double w, double h, double radius) {
        fill(edges(left, top, w, h), half_up(radius * frame_.scale));
    }
    // Paper in a border that is as thick on all sides.
    void frame(double left, double top, double w, double h, double border, double radius) {
        const double inset = std::max(1.0, half_up(border * frame_.scale));
        const double outer = half_up(radius * frame_.scale);
        const Edges e = edges(left, top, w, h);
        fill(e, outer);
        use_color("paper");
        fill({e.left + inset, e.top + inset, e.right - inset, e.bottom - inset},
             std::max(0.0, outer - inset));
        use_color("ink");
    }
    // In the middle of the picture and as large as it, unless it says otherwise: SIZE or SIZE X Y.
    void icon(const Step &step) {
        const std::vector<double> &n = step.numbers;
        const double s = frame_.scale, w = half_up(frame_.width * s),
                     h = half_up(frame_.height * s);
        const double side = n.empty() ? std::min(w, h) : half_up(n[0] * s);
        const double left = n.size() > 1 ? half_up(n[1] * s) : std::floor((w - side) / 2);
        const double top = n.size() > 2 ? half_up(n[2] * s) : std::floor((h - side) / 2);
        const Colors colors = step.is_inverse ? Colors{colors_.paper, colors_.ink} : colors_;
        Pen pen(*this);
        pen.draw(glyphs_.at(step.word), {left, top, side / grid, grid, grid}, colors);
        use_color("ink");
    }

    cairo_t *cairo_;
    const std::map<std::string, std::vector<Step>> &glyphs_;
    double stroke_, weight_ = 1;
    Frame frame_{};
    Colors colors_{};
};

Surface make_surface(const Drawing &drawing, double scale) {
    const auto side = [scale](double length) {
        return std::max(1, static_cast<int>(half_up(length * scale)));
    };
    Surface surface(
        cairo_image_surface_create(CAIRO_FORMAT_ARGB32, side(drawing.width), side(drawing.height)));
    if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS) throw std::bad_alloc();
    return surface;
}

// A pixel of a theme is there or it is not: what was touched is there, blended with white.
Picture to_picture(cairo_surface_t *surface) {
    cairo_surface_flush(surface);
    Picture picture{static_cast<size_t>(cairo_image_surface_get_width(surface)),
                    static_cast<size_t>(cairo_image_surface_get_height(surface)),
                    {}};
    const auto stride = static_cast<size_t>(cairo_image_surface_get_stride(surface));
    const unsigned char *data = cairo_image_surface_get_data(surface);
    for (size_t y = 0; y < picture.height; ++y)
        for (size_t x = 0; x < picture.width; ++x) {
            const unsigned char *pixel = data + y * stride + x * 4;
            const auto alpha = *reinterpret_cast<const uint32_t *>(pixel) >> 24;
            const auto grey = *reinterpret_cast<const uint32_t *>(pixel) & 0xFF;
            picture.grey_alpha.push_back(static_cast<uint8_t>(grey + 255 - alpha));
            picture.grey_alpha.push_back(alpha > 0 ? 255 : 0);
        }
    return picture;
}

Picture turned(const Picture &from, Turn turn) {
    Picture to = from;
    for (size_t y = 0; y < from.height; ++y)
        for (size_t x = 0; x < from.width; ++x) {
            const size_t column = turn == Turn::mirrored ? from.width - 1 - x : x;
            const size_t row = turn == Turn::flipped ? from.height - 1 - y : y;
            for (size_t i = 0; i < 2; ++i)
                to.grey_alpha[(y * from.width + x) * 2 + i] =
                    from.grey_alpha[(row * from.width + column) * 2 + i];
        }
    return to;
}

} // namespace

Picture Drawings::draw(const Drawing &drawing, int percent) const {
    if (!drawing.like.empty())
        return turned(draw(*find_picture(drawing.like), percent), drawing.turn);
    const double scale = percent / 100.0;
    const Surface surface = make_surface(drawing, scale);
    const Cairo cairo(cairo_create(surface.get()));
    const int ground = grey_of(drawing.ground);
    if (ground >= 0) {
        cairo_set_source_rgb(cairo.get(), ground / 255.0, ground / 255.0, ground / 255.0);
        cairo_paint(cairo.get());
    }
    const Colors colors = ground >= 0 && ground < 128 ? Colors{255, 0} : Colors{0, 255};
    Pen(cairo.get(), glyphs_, drawing)
        .draw(drawing.steps, {0, 0, scale, drawing.width, drawing.height}, colors);
    return to_picture(surface.get());
}

} // namespace tool
