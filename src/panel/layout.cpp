// SPDX-License-Identifier: MIT
// Places the parts of the panel from both ends.
#include "panel/layout.h"

#include <algorithm>
#include <cstdlib>
#include <optional>

#include "chrome/panel.h"
#include "kelvane/languages.h"
#include "kelvane/text.h"
#include "kelvane/theme.h"
#include "text/font_scope.h"
#include "theme/circumstances.h"

namespace panel {
namespace {

constexpr int least_text_units = 10; // below that a text says nothing

struct Loaded {
    theme::Circumstances when;
    Look look;
};
// Never destroyed: an application that just exits leaves its fonts to the system.
std::optional<Loaded> &loaded = *new std::optional<Loaded>;

Look load_look() {
    using theme::Picture;
    Look l;
    const int size = chrome::panel_text_size();
    l.bold.reset(OpenFont("defaultb", size, 1));
    l.regular.reset(OpenFont("default", size, 1));
    for (size_t level = 0; level < l.battery.size(); ++level)
        l.battery[level] = Picture(("panel_battery_" + std::to_string(level)).c_str());
    l.plug = Picture("panel_plug");
    l.lock = Picture("panel_lock");
    l.no_network = Picture("panel_wifi_0");
    l.network = Picture("panel_wifi_3");
    l.unit = std::clamp(GetThemeInt("unit.size", 4), 1, 64);
    l.rule = std::clamp(GetThemeInt("separator.size", 1), 1, 64);
    return l;
}

int width_of(const Item &item) {
    if (item.picture) return item.picture->width;
    const text::FontScope font(item.font);
    return StringWidth(item.text.c_str());
}

bool is_empty(const Item &item) {
    return !item.picture && (item.text.empty() || !item.font);
}

int height_of(const Item &item) {
    return item.picture ? item.picture->height : item.font->height;
}

class Row {
  public:
    Row(const Look &l, const irect &strip)
        : strip_(strip), gap_(l.gap()), start_(l.margin()), end_(strip.w - l.margin()) {}

    void put_first(Item &item) {
        const int w = width_of(item);
        if (!has_room(item, w)) return;
        place(item, start_, w);
        start_ += w + gap_;
    }
    void put_last(Item &item) {
        const int w = width_of(item);
        if (!has_room(item, w)) return;
        end_ -= w;
        place(item, end_, w);
        end_ -= gap_;
    }
    // Between the application's parts and the device's.
    void leave_gap() { end_ -= gap_; }
    // All the room that is left, of which a text takes what it needs.
    void fill(Item &item, int least) {
        if (has_room(item, least)) place(item, start_, end_ - start_);
    }

  private:
    bool has_room(const Item &item, int w) const {
        return !is_empty(item) && w > 0 && w <= end_ - start_ && height_of(item) <= strip_.h;
    }
    void place(Item &item, int x, int w) const {
        const bool mirrored = IsRTL() != 0;
        item.place = {strip_.x + (mirrored ? strip_.w - x - w : x), strip_.y, w, strip_.h,
                      VALIGN_MIDDLE | (mirrored ? ALIGN_RIGHT : ALIGN_LEFT) | TEXT_DOTS};
    }

    irect strip_;
    int gap_, start_, end_;
};

void take(Items &items, Part part, const std::string &text, const text::FontPtr &font) {
    Item &item = items[static_cast<size_t>(part)];
    item.text = text;
    item.font = font.get();
}

void take(Items &items, Part part, const theme::Picture &picture) {
    items[static_cast<size_t>(part)].picture = picture.get();
}

Items make_items(const Contents &c, const Look &l) {
    Items items;
    take(items, Part::clock, c.clock, l.bold);
    take(items, Part::text, c.text, l.regular);
    take(items, Part::pages, c.pages, l.regular);
    take(items, Part::percent, c.percent, l.regular);
    take(items, Part::battery, l.battery[static_cast<size_t>(std::clamp(c.battery_level, 0, 5))]);
    if (c.is_locked) take(items, Part::lock, l.lock);
    if (c.is_charging) take(items, Part::plug, l.plug);
    if (c.network == Network::missing) take(items, Part::network, l.no_network);
    if (c.network == Network::connected) take(items, Part::network, l.network);
    return items;
}

} // namespace

bool Item::operator==(const Item &other) const {
    return text == other.text && picture == other.picture && font == other.font &&
           place.x == other.place.x && place.w == other.place.w;
}

const Look &look() {
    const theme::Circumstances now;
    if (!loaded || loaded->when != now) loaded.emplace(Loaded{now, load_look()});
    return loaded->look;
}

void drop_look() {
    loaded.reset();
}

Items lay_out(const Contents &contents, const irect &strip) {
    const Look &l = look();
    Items items = make_items(contents, l);
    const auto item = [&](Part part) -> Item & { return items[static_cast<size_t>(part)]; };
    Row row(l, strip);
    row.put_first(item(Part::clock));
    for (const Part part : {Part::battery, Part::percent, Part::plug, Part::network, Part::lock})
        row.put_last(item(part));
    row.leave_gap();
    row.put_last(item(Part::pages));
    row.fill(item(Part::text), least_text_units * l.unit);
    return items;
}

} // namespace panel
