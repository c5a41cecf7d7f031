// SPDX-License-Identifier: MIT
// OpenFontSelector(): the families of fonts, each in itself, and then the size of the chosen one.
#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "ground/guard.h"
#include "kelvane/languages.h"
#include "kelvane/selectors.h"
#include "kelvane/text.h"
#include "lists/row.h"
#include "raster/rects.h"
#include "selectors/fields.h"
#include "selectors/list_screen.h"
#include "text/font_scope.h"

namespace selectors {
namespace {

constexpr int least_size = 6, most_size = 200;
constexpr int most_open = 64; // fonts of rows
constexpr int sample_units = 30;

struct Family {
    std::string name; // of the family
    std::string font; // the regular one of its files
    bool is_plain;
};

struct Answer {
    kv_fonthandler hproc;
    void *context;
    void give(const char *font, int size) const {
        if (hproc) hproc(font, size, context);
    }
};

// A family's first file stands for it, until a regular one comes.
void add(std::map<std::string, Family> &families, const char *file) {
    const text::FontPtr font(OpenFont(file, 12, 1));
    if (!font || !font->family) return;
    const bool is_plain = font->isbold == 0 && font->isitalic == 0;
    Family &family = families[font->family];
    if (!family.font.empty() && (family.is_plain || !is_plain)) return;
    family = {font->family, file, is_plain};
}

std::vector<Family> families() {
    std::map<std::string, Family> by_name;
    std::vector<std::string> files; // the list of names is the library's, and may change
    for (char **name = EnumFontsEx(); name && *name; ++name) files.emplace_back(*name);
    for (const std::string &file : files) add(by_name, file.c_str());
    std::vector<Family> sorted;
    sorted.reserve(by_name.size());
    for (const auto &[name, family] : by_name) sorted.push_back(family);
    return sorted;
}

class SizeSheet : public FieldSheet {
  public:
    SizeSheet(int list, std::string font, int size, const Answer &answer)
        : FieldSheet("@FontSize", {{"", size, least_size, most_size, 1}}), list_(list),
          font_(std::move(font)), answer_(answer) {}

  private:
    int sample_h() const override { return sample_units * look().unit; }
    // The name of the family in itself, as large as it would be.
    void draw_sample(const irect &r) const override {
        const text::FontPtr font(OpenFont(font_.c_str(), value(0), 1));
        if (!font) return;
        const text::FontScope scope(font.get());
        const irect clip = GetClipRect(), seen = raster::shared(r, clip);
        SetClipRect(&seen);
        lists::draw_line_of_text(r, font->family, ALIGN_CENTER);
        SetClipRect(&clip);
    }
    // Otherwise the list of fonts is there again.
    void answer(bool is_accepted) override {
        if (!is_accepted) return;
        close_with_above(list_);
        answer_.give(font_.c_str(), value(0));
    }

    int list_; // its number
    std::string font_;
    Answer answer_;
};

class FontScreen : public ListScreen {
  public:
    FontScreen(std::vector<Family> families, const char *selected, int size, const Answer &answer)
        : ListScreen({"@Font", {}, Turning::stays, {}}), families_(std::move(families)),
          size_(size), answer_(answer) {
        list().set_count(static_cast<int>(families_.size()));
        chosen_ = row_of(selected);
        list().select(std::max(chosen_, 0));
    }

  private:
    void fill(int row, ilistrow &out) override;
    void told(int action, int row) override;
    int row_of(const char *font) const;
    const ifont *font_of(int row);

    std::vector<Family> families_;
    std::map<int, text::FontPtr> fonts_; // of the rows that were shown, as large as in this look
    lists::LookPtr look_;
    int size_, chosen_ = -1;
    Answer answer_;
};

// Any file of a family means it.
int FontScreen::row_of(const char *font) const {
    const text::FontPtr wanted(font ? OpenFont(font, 12, 1) : nullptr);
    if (!wanted || !wanted->family) return -1;
    for (size_t i = 0; i < families_.size(); ++i)
        if (families_[i].name == wanted->family) return static_cast<int>(i);
    return -1;
}

const ifont *FontScreen::font_of(int row) {
    const lists::LookPtr look = lists::look();
    if (fonts_.size() >= most_open || look_ != look) fonts_.clear();
    look_ = look;
    text::FontPtr &font = fonts_[row];
    if (!font) {
        const int size = look->body ? look->body->size : 5 * look->unit;
        font.reset(OpenFont(families_[static_cast<size_t>(row)].font.c_str(), size, 1));
    }
    return font.get();
}

void FontScreen::fill(int row, ilistrow &out) {
    if (static_cast<size_t>(row) >= families_.size()) return;
    out.title = families_[static_cast<size_t>(row)].name.c_str();
    out.font = font_of(row);
    out.flags = LIST_ROW_CHOICE | (row == chosen_ ? LIST_ROW_CHOSEN : 0);
}

void FontScreen::told(int action, int row) {
    if (action == LIST_CLOSED) return answer_.give(nullptr, 0);
    if (action != LIST_CHOSEN) return;
    const std::string font = families_[static_cast<size_t>(row)].font;
    const bool is_asking =
        size_ > 0 && open(std::make_shared<SizeSheet>(number(), font, size_, answer_)) != 0;
    if (is_asking) return;
    close_with_above(number());
    answer_.give(size_ < 1 ? font.c_str() : nullptr, 0);
}

} // namespace
} // namespace selectors

int OpenFontSelector(const char *font, int size, kv_fonthandler hproc, void *context) {
    using namespace selectors;
    return ground::guarded(0, [&] {
        const Answer answer{hproc, context};
        return open(std::make_shared<FontScreen>(families(), font, size, answer));
    });
}
