// SPDX-License-Identifier: MIT
// OpenRotationSelector(): the device as it is held, four times.
#include <algorithm>
#include <array>
#include <memory>

#include "chrome/selection.h"
#include "ground/guard.h"
#include "kelvane/events.h"
#include "kelvane/frames.h"
#include "kelvane/selectors.h"
#include "raster/box.h"
#include "selectors/sheet.h"

namespace selectors {
namespace {

constexpr int count = 4;
// As one turns the device, to the left first.
constexpr std::array orientations = {0, 1, 3, 2};
constexpr int device_w = 15, device_h = 20, cell_side = 26; // in units

// The device in its own pixels, upright; where these come to lie when it is turned.
class Turned {
  public:
    Turned(const irect &cell, int unit, int orientation)
        : cell_(cell), w_(device_w * unit), h_(device_h * unit), orientation_(orientation) {}

    irect place(const irect &r) const {
        const bool is_flat = orientation_ == 1 || orientation_ == 2;
        const int x0 = cell_.x + (cell_.w - (is_flat ? h_ : w_)) / 2;
        const int y0 = cell_.y + (cell_.h - (is_flat ? w_ : h_)) / 2;
        switch (orientation_) {
        case 1: // its right side is up
            return {x0 + r.y, y0 + w_ - r.x - r.w, r.h, r.w, 0};
        case 2:
            return {x0 + h_ - r.y - r.h, y0 + r.x, r.h, r.w, 0};
        case 3:
            return {x0 + w_ - r.x - r.w, y0 + h_ - r.y - r.h, r.w, r.h, 0};
        default:
            return {x0 + r.x, y0 + r.y, r.w, r.h, 0};
        }
    }

  private:
    irect cell_;
    int w_, h_, orientation_;
};

class RotationSheet : public Sheet {
  public:
    RotationSheet(int orientation, kv_numberhandler hproc, void *context)
        : Sheet("@TurnScreen"), hproc_(hproc), context_(context) {
        const int wanted = orientation >= 0 && orientation < count ? orientation : GetOrientation();
        const auto found = std::find(orientations.begin(), orientations.end(), wanted);
        selected_ = static_cast<int>(found - orientations.begin()) % count;
    }

  private:
    int body_h() const override { return cell_h() + 2 * look().unit; }
    void place_body(const irect &body) override { body_ = body; }
    void draw_body() const override {
        for (int i = 0; i < count; ++i) draw_device(i);
    }
    bool key(int code, int repeats) override;
    void tap(int x, int y) override;
    void answer(bool is_accepted) override {
        if (hproc_)
            hproc_(is_accepted ? orientations[static_cast<size_t>(selected_)] : -1, context_);
    }

    int cell_h() const { return cell_side * look().unit; }
    irect cell(int index) const {
        const int w = body_.w / count;
        return {body_.x + index * w, body_.y, w, cell_h(), 0};
    }
    void draw_device(int index) const;
    void select(int index);

    kv_numberhandler hproc_;
    void *context_;
    int selected_ = 0;
    irect body_{};
};

// The case with the key at its foot, and a page of text, which is always upright.
void RotationSheet::draw_device(int index) const {
    const irect c = cell(index);
    const int u = look().unit, line = std::max(look().hairline, u / 2);
    const Turned turned(c, u, orientations[static_cast<size_t>(index)]);
    const irect body = turned.place({0, 0, device_w * u, device_h * u, 0});
    const irect page = turned.place({u, u, (device_w - 2) * u, (device_h - 5) * u, 0});
    const irect button = turned.place({(device_w - 4) * u / 2, (device_h - 3) * u, 4 * u, u, 0});
    FillAreaRect(&body, BLACK);
    FillAreaRect(&page, WHITE);
    FillAreaRect(&button, WHITE);
    for (int i = 0; i < 4; ++i) {
        const int w = i == 0 ? 5 : i == 3 ? 7 : 9;
        FillArea(page.x + 2 * u, page.y + (2 + 3 * i) * u, w * u, line, BLACK);
    }
    if (index != selected_) return;
    const irect around{c.x + u / 2, c.y, c.w - u, c.h, 0};
    chrome::mark_drawn(around);
}

void RotationSheet::select(int index) {
    const int to = (index + count) % count;
    if (to == selected_) return;
    selected_ = to;
    show_part(body_);
}

bool RotationSheet::key(int code, int) {
    switch (code) {
    case KEY_LEFT:
    case KEY_UP:
    case KEY_PREV:
    case KEY_PREV2:
        select(selected_ - 1);
        return true;
    case KEY_RIGHT:
    case KEY_DOWN:
    case KEY_NEXT:
    case KEY_NEXT2:
        select(selected_ + 1);
        return true;
    default:
        return false;
    }
}

// A second tap on what is chosen accepts it.
void RotationSheet::tap(int x, int y) {
    for (int i = 0; i < count; ++i) {
        if (!raster::contains(raster::Box(cell(i)), x, y)) continue;
        return i == selected_ ? finish(true) : select(i);
    }
}

} // namespace
} // namespace selectors

int OpenRotationSelector(int orientation, kv_numberhandler hproc, void *context) {
    using namespace selectors;
    return ground::guarded(
        0, [&] { return open(std::make_shared<RotationSheet>(orientation, hproc, context)); });
}
