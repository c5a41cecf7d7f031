// SPDX-License-Identifier: MIT
// Going through three megabytes of text page by page, and finding where all pages start, beside
// laying the same text out in chunks of 100,000 characters.
#include "beside.h"
#include "ground/utf8.h"
#include "text_common.h"

namespace {

constexpr size_t book_bytes = 3'000'000, chunk = 100000;
constexpr int page_height = 760;

// Words with spaces, or Japanese without, in paragraphs.
std::string book(const std::vector<std::string_view> &words, const char *gap, const char *stop,
                 const char *end = "\n") {
    std::mt19937 random(7);
    std::string text;
    for (int word = 1; text.size() < book_bytes; ++word) {
        text += words[random() % words.size()];
        text += word % 72 == 0 ? end : word % 12 == 0 ? stop : gap;
    }
    return text;
}

std::string arabic() {
    return book({"السلام", "عليكم", "كتاب", "في", "من", "على", "البيت", "الكبير", "يوم", "رجل",
                 "وقال", "مدينة", "هذا", "الذي", "كان", "بعد"},
                " ", ". ");
}

std::string japanese() {
    return book({"日本", "の", "は", "東京", "です", "カタカナ", "ひらがな", "本", "を", "読む",
                 "時間", "が", "人", "言葉", "ました", "今日"},
                "", "。");
}

// Numbers and names in marks of embedding, in paragraphs that do not end.
std::string marked() {
    return book({"السلام", "\u202Bعليكم\u202C", "كتاب", "\u2068word\u2069", "من",
                 "\u202A4,312\u202C", "البيت", "الكبير", "يوم", "رجل", "\u2067وقال\u2069", "مدينة",
                 "هذا", "الذي", "كان", "بعد"},
                " ", ". ", " ");
}

// A canvas whose clip is below all text: lines are laid out and not drawn.
struct NothingShows {
    icanvas canvas = {1, 1, 1, 8, 0, 0, INT32_MAX, INT32_MAX, nullptr};
    NothingShows() { kvstate.canvas = &canvas; }
    ~NothingShows() { kvstate.canvas = nullptr; }
};

int pages_of(const std::string &text) {
    int count = 0;
    for (const char *at = text.c_str(); *at != '\0'; ++count)
        at = DrawTextRect(0, 0, bench_width, page_height, at, ALIGN_LEFT);
    return count;
}

std::vector<std::string> chunks_of(const std::string &text) {
    std::vector<std::string> chunks;
    const char *s = text.c_str(), *const end = s + text.size();
    while (s < end) {
        const char *const next = utf8::skip(s, end, chunk);
        chunks.emplace_back(s, next);
        s = next;
    }
    return chunks;
}

int height_of(const std::vector<std::string> &chunks) {
    int height = 0;
    for (const std::string &text : chunks)
        DrawTextRect3(0, 0, bench_width, INT32_MAX, text.c_str(), ALIGN_LEFT, &height);
    return height;
}

template <int flags>
int paginated(const std::string &text) {
    return Paginate(text.c_str(), bench_width, page_height, page_height, flags, nullptr, 0);
}

template <class Pages>
void pages_and_chunks(benchmark::State &state, const std::string &text, const char *font_file,
                      Pages pages) {
    const BenchFont font;
    const NothingShows canvas;
    ifont *const own = font_file != nullptr ? OpenFont(font_file, bench_font_size, 1) : nullptr;
    SetFont(own, BLACK);
    const std::vector<std::string> chunks = chunks_of(text);
    height_of(chunks);
    Turns turns(state, Against::limit);
    for (auto _ : state) {
        turns.other([&] { benchmark::DoNotOptimize(height_of(chunks)); });
        turns.ours([&] { benchmark::DoNotOptimize(pages(text)); });
    }
    CloseFont(own);
}

template <class Pages>
void add(const char *name, const char *language, const std::string &text, const char *font_file,
         Pages pages) {
    benchmark::RegisterBenchmark(
        (std::string(name) + '<' + language + '>').c_str(),
        [=](benchmark::State &state) { pages_and_chunks(state, text, font_file, pages); })
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond)
        ->Iterations(3);
}

void add(const char *language, const std::string &text, const char *font_file) {
    add("pages_and_chunks", language, text, font_file, pages_of);
    add("paginate_and_chunks", language, text, font_file, paginated<ALIGN_LEFT>);
    constexpr int all_rules =
        ALIGN_JUSTIFY | TEXT_WHOLE_NUMBERS | TEXT_MARKS | TEXT_NO_WIDOWS | TEXT_NO_EMPTY_TOP;
    add("paginate_by_rules_and_chunks", language, text, font_file, paginated<all_rules>);
}

} // namespace

int main(int argc, char **argv) {
    add("english", prose(Language::english, book_bytes), nullptr);
    add("arabic", arabic(), nullptr);
    add("marked", marked(), nullptr);
    add("japanese", japanese(), "/usr/share/fonts/truetype/droid/DroidSansFallbackFull.ttf");
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
