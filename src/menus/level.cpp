// SPDX-License-Identifier: MIT
// Builds levels and walks them.
#include "menus/level.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace menus {
namespace {

class Builder {
  public:
    Builder(const Rules &rules, size_t items) : rules_(rules), y_(first_y()) {
        level_.rows.reserve(items + items / 8); // with titles that are repeated
    }

    void add(Item &&item, bool is_last) {
        const int h = row_height(item.kind, rules_);
        if (rules_.flow == Flow::pages && y_ + h > bottom() && y_ > first_y()) start_page();
        if (item.kind == ITEM_HEADER) header_ = item;
        add_row(std::move(item), h, is_last);
    }

    Level finish() {
        if (header_) level_.rows.front().y = rules_.border;
        level_.height = std::max(lowest_, first_y()) + rules_.indent + rules_.border;
        return std::move(level_);
    }

  private:
    int first_y() const { return rules_.border + rules_.indent; }
    int bottom() const { return rules_.limit - rules_.border - rules_.indent; }

    void start_page() {
        level_.last_page++;
        y_ = first_y();
        if (!header_) return;
        Item repeated = *header_;
        repeated.position = -1;
        repeated.index = 0;
        add_row(std::move(repeated), rules_.header_h, false);
        level_.rows.back().y = rules_.border;
    }

    // A separator among lines between all items takes no room.
    void add_row(Item &&item, int h, bool is_last) {
        const bool between = rules_.lines == Lines::between_items;
        const bool has_line = between && !is_last && item.kind != ITEM_HEADER && h > 0;
        level_.rows.push_back({std::move(item), y_, h, level_.last_page, has_line});
        lowest_ = std::max(lowest_, y_ + h);
        y_ += h + (has_line ? rules_.separator_h : 0);
    }

    const Rules &rules_;
    Level level_;
    std::optional<Item> header_; // the one that is repeated
    int y_;
    int lowest_ = 0;
};

int row_of_position(const Level &level, int position) {
    const auto found = std::find_if(level.rows.begin(), level.rows.end(),
                                    [&](const Row &row) { return row.item.position == position; });
    return found == level.rows.end() ? -1 : static_cast<int>(found - level.rows.begin());
}

int row_count(const Level &level) {
    return static_cast<int>(level.rows.size());
}

} // namespace

const Row *Level::selected() const {
    return current < 0 ? nullptr : &rows[static_cast<size_t>(current)];
}

const Row *Level::title() const {
    const auto first =
        std::find_if(rows.begin(), rows.end(), [this](const Row &row) { return row.page == page; });
    return first != rows.end() && first->item.kind == ITEM_HEADER ? &*first : nullptr;
}

bool Level::is_selectable_at(int row) const {
    return row >= 0 && row < row_count(*this) &&
           is_selectable(rows[static_cast<size_t>(row)].item.kind);
}

int row_height(int kind, const Rules &rules) {
    if (kind == ITEM_HEADER) return rules.header_h;
    if (kind != ITEM_SEPARATOR) return rules.item_h;
    return rules.lines == Lines::between_items ? 0 : rules.separator_h;
}

int unbroken_height(const std::vector<Item> &items, const Rules &rules) {
    int height = 2 * (rules.border + rules.indent);
    for (const Item &item : items) {
        const bool has_line = rules.lines == Lines::between_items && item.kind != ITEM_HEADER &&
                              item.kind != ITEM_SEPARATOR && &item != &items.back();
        height += row_height(item.kind, rules) + (has_line ? rules.separator_h : 0);
    }
    return height;
}

Level build_level(std::vector<Item> items, const Rules &rules, int position) {
    Builder builder(rules, items.size());
    for (Item &item : items) {
        const bool is_last = &item == &items.back();
        builder.add(std::move(item), is_last);
    }
    Level level = builder.finish();
    if (position < 0) return level;
    level.current = nearest_selectable(level, row_of_position(level, position));
    if (const Row *row = level.selected()) level.page = row->page;
    return level;
}

int next_selectable(const Level &level, Direction direction) {
    const int count = row_count(level), start = level.current;
    int row = start;
    for (int tried = 0; tried < count; ++tried) {
        row += static_cast<int>(direction);
        if (row >= count) {
            if (start < 0) return start;
            row = 0;
        }
        if (row < 0) row = count - 1;
        if (row == start || level.is_selectable_at(row)) return row;
    }
    return start;
}

int first_of_next_page(const Level &level, Direction direction) {
    const int step = static_cast<int>(direction);
    for (int page = level.page + step; page >= 0 && page <= level.last_page; page += step)
        for (int row = 0; row < row_count(level); ++row)
            if (level.rows[static_cast<size_t>(row)].page == page && level.is_selectable_at(row))
                return row;
    return -1;
}

int nearest_selectable(const Level &level, int row) {
    if (row < 0) return -1;
    const int count = row_count(level);
    for (int tried = 0; tried < count; ++tried, --row) {
        if (row < 0) row = count - 1;
        if (level.is_selectable_at(row)) return row;
    }
    return -1;
}

} // namespace menus
