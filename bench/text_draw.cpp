// peers: pangocairo
// SPDX-License-Identifier: MIT
// Drawing a page of about 2,000 glyphs, beside pangocairo, a plain loop that blends the same
// bitmaps, and FreeType alone where nothing is cached.
#include <algorithm>
#include <cstdint>
#include <ft2build.h>
#include <map>
#include <memory>
#include <pango/pangocairo.h>
#include <set>
#include FT_FREETYPE_H

#include "beside.h"
#include "text/current.h"
#include "text_common.h"

namespace {

constexpr int page_height = 1500, page_width = 600, margin = 20;
constexpr size_t glyphs_of_page = 2000;

// Our page: a grey canvas.
struct Page {
    std::vector<uint8_t> pixels = std::vector<uint8_t>(page_width * page_height, 255);
    icanvas canvas = {page_width, page_height,     page_width,   8, 0, page_width - 1,
                      0,          page_height - 1, pixels.data()};
    Page() { kvstate.canvas = &canvas; }
    ~Page() { kvstate.canvas = nullptr; }
};

void draw_laid_out(const std::string &text) {
    DrawTextRect(margin, margin, bench_width, page_height - 2 * margin, text.c_str(), ALIGN_LEFT);
}

// The lines of the page as strings.
std::vector<std::string> lines_of(const std::string &text) {
    std::vector<std::string> lines;
    for (const char *begin = text.c_str(); *begin != '\0';) {
        const icanvas *canvas = kvstate.canvas;
        kvstate.canvas = nullptr;
        const char *end = DrawTextRect(0, 0, bench_width, 1, begin, ALIGN_JUSTIFY);
        kvstate.canvas = const_cast<icanvas *>(canvas);
        lines.emplace_back(begin, end);
        begin = end;
    }
    return lines;
}

void draw_lines(const std::vector<std::string> &lines, int spacing) {
    int y = margin;
    for (const std::string &line : lines) {
        DrawString(margin, y, line.c_str());
        y += spacing;
    }
}

struct PangoPage {
    cairo_surface_t *surface =
        cairo_image_surface_create(CAIRO_FORMAT_ARGB32, page_width, page_height);
    cairo_t *cairo = cairo_create(surface);
    PangoLayout *layout = pango_cairo_create_layout(cairo);
    PangoPage() {
        cairo_font_options_t *options = cairo_font_options_create();
        cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
        pango_cairo_context_set_font_options(pango_layout_get_context(layout), options);
        cairo_font_options_destroy(options);
        PangoFontDescription *font = pango_font_description_from_string("DejaVu Sans");
        pango_font_description_set_absolute_size(font, bench_font_size * PANGO_SCALE);
        pango_layout_set_font_description(layout, font);
        pango_font_description_free(font);
        pango_layout_set_width(layout, bench_width * PANGO_SCALE);
        cairo_set_source_rgb(cairo, 1, 1, 1);
        cairo_paint(cairo);
        cairo_set_source_rgb(cairo, 0, 0, 0);
    }
    ~PangoPage() {
        g_object_unref(layout);
        cairo_destroy(cairo);
        cairo_surface_destroy(surface);
    }
    void set(const std::string &text) {
        pango_layout_set_text(layout, text.data(), static_cast<int>(text.size()));
        pango_layout_context_changed(layout); // or it would remember the same text
    }
    void draw() {
        cairo_move_to(cairo, margin, margin);
        pango_cairo_show_layout(cairo, layout);
        cairo_surface_flush(surface);
    }
};

void draw_and_pango(benchmark::State &state) {
    const BenchFont font;
    Page page;
    PangoPage pango;
    const std::string text = prose(Language::english, glyphs_of_page);
    const std::vector<std::string> lines = lines_of(text);
    pango.set(text);
    pango.draw();
    beside(
        state, Against::peer, [&] { draw_lines(lines, font.font->linespacing); },
        [&] { pango.draw(); });
}

void layout_and_draw_and_pango(benchmark::State &state) {
    const BenchFont font;
    Page page;
    PangoPage pango;
    const std::string text = prose(Language::english, glyphs_of_page);
    beside(
        state, Against::peer, [&] { draw_laid_out(text); },
        [&] {
            pango.set(text);
            pango.draw();
        });
}

// The bitmaps of the page, and where they go.
struct Bitmap {
    int left, top, w, h, stride;
    std::vector<uint8_t> coverage;
};
struct Placed {
    const Bitmap *bitmap;
    int x, y;
};
struct BarePage {
    std::map<unsigned char, Bitmap> bitmaps;
    std::vector<Placed> placed;

    explicit BarePage(const std::vector<std::string> &lines) {
        int y = margin + GetFont()->baseline;
        for (const std::string &line : lines) {
            for (size_t i = 0; i < line.size(); ++i) {
                const Bitmap &b = bitmap_of(static_cast<unsigned char>(line[i]));
                const int x = margin + StringWidthExt(line.c_str(), static_cast<int>(i));
                if (b.w > 0) placed.push_back({&b, x + b.left, y - b.top});
            }
            y += GetFont()->linespacing;
        }
    }
    const Bitmap &bitmap_of(unsigned char c) {
        const text::Glyph *g = text::current.cache->glyph(text::Mode::antialiased, c);
        const uint8_t *from = g->coverage.get();
        return bitmaps
            .try_emplace(c, Bitmap{g->left, g->top, g->w, g->h, g->stride(),
                                   std::vector<uint8_t>(from, from + g->pixels())})
            .first->second;
    }
    void blend(std::vector<uint8_t> &pixels) const {
        for (const auto &[b, x, y] : placed) {
            const uint8_t *coverage = b->coverage.data();
            uint8_t *row = pixels.data() + y * page_width + x;
            for (int j = 0; j < b->h; ++j, row += page_width, coverage += b->stride)
                for (int i = 0; i < b->w; ++i) {
                    const unsigned t = row[i] * (255U - coverage[i]) + 128U;
                    row[i] = static_cast<uint8_t>((t + (t >> 8)) >> 8);
                }
        }
    }
};

std::unique_ptr<BarePage> make_bare_page(const std::string &text) {
    const BenchFont font;
    return std::make_unique<BarePage>(lines_of(text));
}

void draw_and_plain_blending(benchmark::State &state) {
    const BenchFont font;
    Page page;
    const std::vector<std::string> lines = lines_of(prose(Language::english, glyphs_of_page));
    const BarePage bare_page(lines);
    beside(
        state, Against::peer, [&] { draw_lines(lines, font.font->linespacing); },
        [&] { bare_page.blend(page.pixels); });
}

// FreeType rendering each glyph of the page once, and blending them, is what a first page cannot do
// without.
void first_page_and_freetype(benchmark::State &state) {
    Page page;
    const std::string text = prose(Language::english, glyphs_of_page);
    const std::set<char> distinct(text.begin(), text.end());
    const std::unique_ptr<BarePage> bare_page = make_bare_page(text);
    state.SetLabel("the limit lays nothing out");
    Turns turns(state, Against::limit);
    for (auto _ : state) {
        const BenchFont font;
        FT_Library library;
        FT_Face face;
        FT_Init_FreeType(&library);
        FT_New_Face(library, bench_font_file, 0, &face);
        FT_Set_Pixel_Sizes(face, 0, bench_font_size);
        turns.ours([&] { draw_laid_out(text); });
        turns.other([&] {
            for (const char c : distinct)
                FT_Load_Char(face, static_cast<unsigned char>(c), FT_LOAD_RENDER);
            bare_page->blend(page.pixels);
        });
        FT_Done_FreeType(library);
    }
}

BENCHMARK(draw_and_pango)->UseManualTime();
BENCHMARK(layout_and_draw_and_pango)->UseManualTime();
BENCHMARK(draw_and_plain_blending)->UseManualTime();
BENCHMARK(first_page_and_freetype)->UseManualTime();

} // namespace

BENCHMARK_MAIN();
