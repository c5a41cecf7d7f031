// SPDX-License-Identifier: MIT
// Books of each format, and their covers.
#include <cstring>

#include "failures/sessions.h"
#include "kelvane/bookinfo.h"
#include "raster/bitmap_ptr.h"
#include "support/book_files.h"
#include "unit/picture_files.h"

namespace failures {
namespace {

class Books : public Session {
  public:
    Books() {
        books::write_table();
        const PngKind grey{.color_type = PNG_COLOR_TYPE_GRAY};
        const std::string png = read_file(write_png("p.png", 4, 6, grey, Bytes(24))),
                          title = "\xC4\xEE\xEC", // in windows-1251
            fb2 = books::fb2("<genre>g</genre><book-title>" + title + "</book-title>" +
                                 books::author("a", "b", "c"),
                             "<isbn>978-5-699-12014-7</isbn>", "<?xml encoding='cp1251'?>");
        write_file("b.fb2", fb2);
        write_zip("b.fb2.zip", {{"b.fb2", fb2}});
        write_file("b.html", "<meta charset=cp1251><title>" + title + "</title>9785699120147");
        write_zip("b.epub", books::epub(books::package("<dc:title>Дом</dc:title><dc:identifier>"
                                                       "9785699120147</dc:identifier>",
                                                       "<item properties='cover-image' href='c'/>"),
                                        {{"OEBPS/c", png}}));
        books::Mobi mobi;
        mobi.exth = books::exth_record(503, "Дом") + books::exth_record(104, "9785699120147");
        mobi.pictures = {png};
        write_file("b.mobi", mobi.bytes());
    }

    bool run() override {
        bool all = true;
        for (const char *path : {"b.fb2", "b.fb2.zip", "b.html", "b.epub", "b.mobi"})
            all = tells_all(path) && all;
        for (const char *path : {"b.epub", "b.mobi"})
            all = raster::BitmapPtr(GetBookCover(path, 8, 8)) && all;
        return all;
    }

  private:
    static bool tells_all(const char *path) {
        GetBookInfo("none"), GetBookISBN("none"); // so that nothing is kept
        const bookinfo *b = GetBookInfo(path);
        const bool has_title = b && std::strcmp(b->title, "Дом") == 0;
        const char *isbn = GetBookISBN(path);
        return has_title && isbn && std::strcmp(isbn, "9785699120147") == 0;
    }

    const TempDir dir_;
};

constexpr Area areas_here[] = {{"Books", make<Books>}};

} // namespace

constinit const std::span<const Area> book_areas = areas_here;

} // namespace failures
