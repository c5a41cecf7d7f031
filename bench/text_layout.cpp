// peers: pangocairo harfbuzz
// SPDX-License-Identifier: MIT
// Measuring and breaking 100,000 characters of prose at 560 pixels, beside Pango, HarfBuzz with
// lines broken by hand, and a bare loop over a table of advances.
#include <algorithm>
#include <array>
#include <cstring>
#include <ft2build.h>
#include <harfbuzz/hb-ft.h>
#include <harfbuzz/hb.h>
#include <pango/pangocairo.h>
#include FT_FREETYPE_H

#include "beside.h"
#include "text_common.h"

namespace {

constexpr size_t characters = 100000;

struct PangoText {
    cairo_surface_t *surface = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 1, 1);
    cairo_t *cairo = cairo_create(surface);
    PangoLayout *layout = pango_cairo_create_layout(cairo);
    PangoText() {
        PangoFontDescription *font = pango_font_description_from_string("DejaVu Sans");
        pango_font_description_set_absolute_size(font, bench_font_size * PANGO_SCALE);
        pango_layout_set_font_description(layout, font);
        pango_font_description_free(font);
        pango_layout_set_width(layout, bench_width * PANGO_SCALE);
    }
    ~PangoText() {
        g_object_unref(layout);
        cairo_destroy(cairo);
        cairo_surface_destroy(surface);
    }
    int height(const std::string &text) {
        int w, h;
        pango_layout_set_text(layout, text.data(), static_cast<int>(text.size()));
        pango_layout_context_changed(layout); // or it would remember the same text
        pango_layout_get_pixel_size(layout, &w, &h);
        return h;
    }
};

struct FreeTypeFace {
    FT_Library library;
    FT_Face face;
    FreeTypeFace() {
        FT_Init_FreeType(&library);
        FT_New_Face(library, bench_font_file, 0, &face);
        FT_Set_Pixel_Sizes(face, 0, bench_font_size);
    }
    ~FreeTypeFace() {
        FT_Done_Face(face);
        FT_Done_FreeType(library);
    }
};

// Shapes each paragraph, then breaks it at spaces by the shaped advances.
struct HarfBuzzText {
    FreeTypeFace ft;
    hb_font_t *font = hb_ft_font_create(ft.face, nullptr);
    hb_buffer_t *buffer = hb_buffer_create();
    ~HarfBuzzText() {
        hb_buffer_destroy(buffer);
        hb_font_destroy(font);
    }
    int lines_of_paragraph(const char *text, int bytes) {
        hb_buffer_clear_contents(buffer);
        hb_buffer_add_utf8(buffer, text, bytes, 0, bytes);
        hb_buffer_guess_segment_properties(buffer);
        hb_shape(font, buffer, nullptr, 0);
        unsigned count;
        const hb_glyph_info_t *info = hb_buffer_get_glyph_infos(buffer, &count);
        const hb_glyph_position_t *place = hb_buffer_get_glyph_positions(buffer, &count);
        int lines = 1, width = 0, word = 0;
        for (unsigned i = 0; i < count; ++i) {
            width += place[i].x_advance;
            word += place[i].x_advance;
            if (width > bench_width * 64) {
                ++lines;
                width = word;
            }
            if (text[info[i].cluster] == ' ') word = 0;
        }
        return lines;
    }
    int lines(const std::string &text) {
        int count = 0;
        for (size_t begin = 0; begin < text.size();) {
            const size_t end = std::min(text.find('\n', begin), text.size());
            count += lines_of_paragraph(text.data() + begin, static_cast<int>(end - begin));
            begin = end + 1;
        }
        return count;
    }
};

// The least work: one look-up a character, breaks at spaces only.
struct AdvanceTable {
    std::array<unsigned char, 0x500> advances{};
    AdvanceTable() {
        for (unsigned c = 32; c < advances.size(); ++c)
            advances[c] = static_cast<unsigned char>(CharWidth(static_cast<unsigned short>(c)));
    }
    int lines(const std::string &text) const {
        int count = 0, width = 0, word = 0;
        const auto *s = reinterpret_cast<const unsigned char *>(text.data());
        for (const auto *end = s + text.size(); s < end;) {
            unsigned c = *s++;
            if (c >= 0x80) c = (c & 0x1F) << 6 | (*s++ & 0x3F);
            if (c == '\n') {
                ++count;
                width = word = 0;
                continue;
            }
            width += advances[c];
            word += advances[c];
            if (width > bench_width) {
                ++count;
                width = word;
            }
            if (c == ' ') word = 0;
        }
        return count;
    }
};

int lay_out(const std::string &text) {
    return TextRectHeight(bench_width, text.c_str(), ALIGN_LEFT);
}

template <class Other>
void warm(benchmark::State &state, Against against, const std::string &text, Other other) {
    lay_out(text);
    beside(
        state, against, [&] { benchmark::DoNotOptimize(lay_out(text)); },
        [&] { benchmark::DoNotOptimize(other(text)); });
}

void layout_and_pango(benchmark::State &state, Language language) {
    const BenchFont font;
    PangoText pango;
    state.SetLabel("the peer shapes any script");
    warm(state, Against::peer, prose(language, characters),
         [&](const std::string &text) { return pango.height(text); });
}

void layout_and_harfbuzz(benchmark::State &state, Language language) {
    const BenchFont font;
    HarfBuzzText harfbuzz;
    state.SetLabel("the peer shapes any script, and breaks at spaces only");
    warm(state, Against::peer, prose(language, characters),
         [&](const std::string &text) { return harfbuzz.lines(text); });
}

void layout_and_advance_table(benchmark::State &state, Language language) {
    const BenchFont font;
    const AdvanceTable table;
    state.SetLabel("the limit breaks at spaces only");
    warm(state, Against::limit, prose(language, characters),
         [&](const std::string &text) { return table.lines(text); });
}

// The font is opened anew for each run.
void layout_cold_and_pango(benchmark::State &state, Language language) {
    PangoText pango;
    const std::string text = prose(language, characters);
    state.SetLabel("the peer keeps what it knows of the font");
    Turns turns(state, Against::peer);
    for (auto _ : state) {
        const BenchFont font;
        turns.ours([&] { benchmark::DoNotOptimize(lay_out(text)); });
        turns.other([&] { benchmark::DoNotOptimize(pango.height(text)); });
    }
}

void add(const char *name, void (*run)(benchmark::State &, Language)) {
    for (Language language : {Language::english, Language::russian})
        benchmark::RegisterBenchmark((std::string(name) + '<' + name_of(language) + '>').c_str(),
                                     run, language)
            ->UseManualTime()
            ->Iterations(20); // of which Pango needs nearly two seconds
}

} // namespace

int main(int argc, char **argv) {
    add("layout_and_pango", layout_and_pango);
    add("layout_and_harfbuzz", layout_and_harfbuzz);
    add("layout_and_advance_table", layout_and_advance_table);
    add("layout_cold_and_pango", layout_cold_and_pango);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
