// SPDX-License-Identifier: MIT
// Walks with five keys. Every way goes round, so that half the keys are always behind.
#include "keyboard/selection.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <utility>

namespace keyboard {
namespace {

constexpr int first_letter_row = 2, last_letter_row = 4, zone_side = 3;
constexpr int first_half = 6; // columns of the left half of a row

int left_of(const RowSpan &span) {
    return (block_columns - static_cast<int>(span.width)) / 2;
}

std::vector<GridKey> keys_of(const Block &block) {
    std::vector<GridKey> keys;
    for (size_t row = 0; row < block_rows.size(); ++row) {
        const RowSpan &span = block_rows[row];
        for (size_t i = 0; i < span.width; ++i)
            if (const uint16_t key = block[span.first + i]; key != code::none)
                keys.push_back({key, left_of(span) + static_cast<int>(i), static_cast<int>(row)});
    }
    return keys;
}

// The keys of some rows and columns.
Area area_of(const std::vector<GridKey> &keys, int first_row, int last_row, int first, int last) {
    Area area{{}, true};
    std::copy_if(keys.begin(), keys.end(), std::back_inserter(area.keys), [=](const GridKey &k) {
        return k.row >= first_row && k.row <= last_row && k.column >= first && k.column <= last;
    });
    return area;
}

// Spreads the commands over the columns.
Area commands_of(const std::vector<uint16_t> &commands) {
    Area area{{}, false};
    const int count = static_cast<int>(commands.size());
    for (int i = 0; i < count; ++i)
        area.keys.push_back({commands[static_cast<size_t>(i)],
                             (2 * i + 1) * block_columns / (2 * count), command_row});
    return area;
}

// Twice the middle column.
int middle_of(const Area &area) {
    const auto [least, most] =
        std::minmax_element(area.keys.begin(), area.keys.end(),
                            [](const GridKey &a, const GridKey &b) { return a.column < b.column; });
    return least->column + most->column;
}

size_t wrapped(size_t at, int by, size_t count) {
    return (at + count + static_cast<size_t>(by)) % count;
}

} // namespace

SelectionGrid::SelectionGrid(const Block &block, bool is_zoned,
                             const std::vector<uint16_t> &commands)
    : all_(keys_of(block)) {
    const int last = block_columns - 1;
    for (int row = 0; row < command_row; ++row) {
        if (!is_zoned) {
            Area whole = area_of(all_, row, row, 0, last);
            whole.is_zone = false;
            add_line({std::move(whole)});
        } else if (row < first_letter_row || row > last_letter_row) {
            add_line({area_of(all_, row, row, 0, first_half - 1),
                      area_of(all_, row, row, first_half, last)});
        } else if (row == first_letter_row) {
            add_line({area_of(all_, row, last_letter_row, 1, zone_side),
                      area_of(all_, row, last_letter_row, zone_side + 1, 2 * zone_side),
                      area_of(all_, row, last_letter_row, 2 * zone_side + 1, last)});
        }
    }
    const Area command_area = commands_of(commands);
    all_.insert(all_.end(), command_area.keys.begin(), command_area.keys.end());
    add_line({command_area});
    go_home();
}

void SelectionGrid::add_line(std::vector<Area> areas) {
    std::erase_if(areas, [](const Area &area) { return area.keys.empty(); });
    if (!areas.empty()) lines_.push_back(std::move(areas));
}

void SelectionGrid::go_home() {
    is_inside_ = false;
    const auto home = std::find_if(lines_.begin(), lines_.end(), [](const auto &line) {
        return line.front().keys.front().row >= first_letter_row;
    });
    line_ = static_cast<size_t>(home - lines_.begin());
    area_ = lines_[line_].size() / 2;
    select_middle();
}

void SelectionGrid::go_to(const GridKey &wanted) {
    for (size_t line = 0; line < lines_.size(); ++line)
        for (size_t area = 0; area < lines_[line].size(); ++area)
            for (size_t key = 0; key < lines_[line][area].keys.size(); ++key) {
                const GridKey &k = lines_[line][area].keys[key];
                if (k.row != wanted.row || k.column != wanted.column) continue;
                line_ = line;
                area_ = area;
                key_ = key;
                is_inside_ = lines_[line][area].is_zone;
                return;
            }
}

void SelectionGrid::select_middle() {
    const Area &here = area();
    const int rows = here.keys.front().row + here.keys.back().row, columns = middle_of(here);
    const auto distance = [&](const GridKey &k) {
        return std::abs(2 * k.column - columns) + std::abs(2 * k.row - rows);
    };
    const auto nearest = std::min_element(
        here.keys.begin(), here.keys.end(),
        [&](const GridKey &a, const GridKey &b) { return distance(a) < distance(b); });
    key_ = static_cast<size_t>(nearest - here.keys.begin());
}

const GridKey *SelectionGrid::key() const {
    return area().is_zone && !is_inside_ ? nullptr : &area().keys[key_];
}

void SelectionGrid::move(Step step) {
    const int by = step == Step::up || step == Step::left ? -1 : 1;
    const bool is_vertical = step == Step::up || step == Step::down;
    if (is_inside_zone())
        is_vertical ? move_in_area(0, by) : move_in_area(by, 0);
    else if (is_vertical)
        move_line(by);
    else if (area().is_zone)
        move_in_line(by);
    else
        move_in_area(by, 0);
}

// To the area, and in one without zones the key, that lies nearest.
void SelectionGrid::move_line(int by) {
    const GridKey *from = key();
    const int column = from ? 2 * from->column : middle_of(area());
    line_ = wrapped(line_, by, lines_.size());
    const auto &line = lines_[line_];
    const auto nearest =
        std::min_element(line.begin(), line.end(), [=](const Area &a, const Area &b) {
            return std::abs(middle_of(a) - column) < std::abs(middle_of(b) - column);
        });
    area_ = static_cast<size_t>(nearest - line.begin());
    select_middle();
    if (area().is_zone) return;
    const auto &keys = area().keys;
    const auto key =
        std::min_element(keys.begin(), keys.end(), [=](const GridKey &a, const GridKey &b) {
            return std::abs(2 * a.column - column) < std::abs(2 * b.column - column);
        });
    key_ = static_cast<size_t>(key - keys.begin());
}

void SelectionGrid::move_in_line(int by) {
    area_ = wrapped(area_, by, lines_[line_].size());
    select_middle();
}

// To the next key of the row or column, round and round.
void SelectionGrid::move_in_area(int columns, int rows) {
    const auto &keys = area().keys;
    const GridKey &from = keys[key_];
    for (size_t i = 1; i < keys.size(); ++i) {
        const int by = (columns + rows) * static_cast<int>(i);
        const size_t candidate = wrapped(key_, by, keys.size());
        const GridKey &k = keys[candidate];
        if (columns != 0 ? k.row != from.row : k.column != from.column) continue;
        key_ = candidate;
        return;
    }
}

bool SelectionGrid::choose() {
    if (area().is_zone && !is_inside_) {
        is_inside_ = true;
        select_middle();
        return false;
    }
    return true;
}

} // namespace keyboard
