// SPDX-License-Identifier: MIT
// How five keys reach a key: lines of areas, and in an area its keys. Nothing here draws.
#pragma once

#include <cstdint>
#include <vector>

#include "keyboard/layout.h"

namespace keyboard {

// A key at a place of a grid of block_columns. Below the rows of the block lies that of commands.
struct GridKey {
    uint16_t code;
    int column, row;
};
inline constexpr int command_row = 6;

// A zone is entered by OK; in any other area a key is selected at once.
struct Area {
    std::vector<GridKey> keys; // never empty
    bool is_zone;
};

enum class Step { up, down, left, right };

class SelectionGrid {
  public:
    // Rows of few keys are areas of their own; those of many have zones.
    SelectionGrid(const Block &block, bool is_zoned, const std::vector<uint16_t> &commands);

    const std::vector<GridKey> &keys() const { return all_; }
    const Area &area() const { return lines_[line_][area_]; }
    // The selected key; null while only a zone is.
    const GridKey *key() const;
    bool is_inside_zone() const { return area().is_zone && is_inside_; }

    void move(Step step);
    // True when the selected key is meant; false when OK entered a zone.
    bool choose();
    void leave_zone() { is_inside_ = false; }
    // As after the opening: the zone in the middle, or the first row.
    void go_home();
    // Selects the key at the place of this one, if there is one.
    void go_to(const GridKey &wanted);

  private:
    void add_line(std::vector<Area> areas);
    void move_line(int by);
    void move_in_line(int by);
    void move_in_area(int columns, int rows);
    void select_middle();

    std::vector<std::vector<Area>> lines_; // never empty, nor is any line
    std::vector<GridKey> all_;
    size_t line_ = 0, area_ = 0, key_ = 0;
    bool is_inside_ = false;
};

} // namespace keyboard
