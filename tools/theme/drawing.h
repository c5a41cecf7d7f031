// SPDX-License-Identifier: MIT
// Pictures as descriptions, so that they are drawn anew for every scale instead of stretched: lines
// keep whole pixels and edges stay sharp.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "../picture.h"
#include "mistakes.h"

namespace tool {

// One stroke, fill or setting of a drawing; glyphs use it in a grid of 32, pictures in pixels.
enum class Verb { line, area, ring, arc, disc, box, frame, tile, icon, color, stroke, weight };

struct Step {
    Verb verb;
    std::vector<double> numbers;
    std::string word;        // of an icon the glyph, of a colour its name
    bool is_inverse = false; // of an icon: ink and paper change places
    Place place;
};

enum class Turn { none, mirrored, flipped };

struct Drawing {
    std::string name;
    double width = 0, height = 0;
    std::string ground; // "none" for a picture with holes
    double stroke = 0;  // in the grid of glyphs
    bool has_round_ends = true;
    std::vector<Step> steps;
    std::string like; // the picture that this one repeats, if any
    Turn turn = Turn::none;
    Place place;
};

// What the files of a folder describe.
class Drawings {
  public:
    // Adds what a file says, or what is wrong with it.
    void read(const std::filesystem::path &file, std::string_view text, Mistakes &mistakes);
    // Tells of glyphs and pictures that are named and nowhere described.
    void check(Mistakes &mistakes) const;

    const std::vector<Drawing> &pictures() const { return pictures_; }
    // The picture at a scale; check() has found nothing wrong.
    Picture draw(const Drawing &drawing, int percent) const;

  private:
    friend class DrawingReader;
    const Drawing *find_picture(const std::string &name) const;

    std::map<std::string, std::vector<Step>> glyphs_;
    std::vector<Drawing> pictures_;
};

// The grey of a colour's name: black, white or a number such as 0xDDDDDD; below 0 for no colour.
int grey_of(std::string_view color);

} // namespace tool
