// SPDX-License-Identifier: MIT
// Covers: where each format keeps them, and what is made of them.
#include <filesystem>
#include <gtest/gtest.h>
#include <string>

#include "kelvane/bookinfo.h"
#include "kelvane/pictures.h"
#include "support/book_files.h"
#include "unit/picture_files.h"

namespace {

using raster::BitmapPtr;

std::string base64(const std::string &bytes) {
    constexpr std::string_view digits =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (size_t i = 0; i < bytes.size(); i += 3) {
        const size_t count = std::min<size_t>(3, bytes.size() - i);
        uint32_t bits = 0;
        for (size_t j = 0; j < 3; ++j)
            bits = bits << 8 | (j < count ? static_cast<unsigned char>(bytes[i + j]) : 0U);
        for (size_t j = 0; j < 4; ++j) text += j <= count ? digits[bits >> (18 - 6 * j) & 63] : '=';
        if (i % 57 == 54) text += "\r\n";
    }
    return text;
}

class BookCovers : public testing::Test {
  protected:
    BookCovers() { books::write_table(); }

    // A picture file whose width tells it from others.
    static std::string png(int width) {
        const PngKind grey{.color_type = PNG_COLOR_TYPE_GRAY};
        return read_file(
            write_png("p.png", width, 10, grey, Bytes(static_cast<size_t>(width) * 10)));
    }
    static std::string jpeg(int width) {
        return read_file(write_jpeg("p.jpg", width, 10, {.components = 1, .space = JCS_GRAYSCALE},
                                    Bytes(static_cast<size_t>(width) * 10)));
    }
    // The width of the cover, 0 for none.
    static int width_of(const char *path) {
        const BitmapPtr cover(GetBookCover(path, -1, -1));
        return cover ? cover->width : 0;
    }
    int epub(const std::string &metadata, const std::string &rest, ZipMembers more) {
        const std::string path = "e" + std::to_string(++count_) + ".epub";
        write_zip(path, books::epub(books::package(metadata, rest), std::move(more)));
        return width_of(path.c_str());
    }
    int fb2(const std::string &title_info, const std::string &binaries) {
        const std::string path = "f" + std::to_string(++count_) + ".fb2";
        write_file(path, books::fb2(title_info) + binaries);
        return width_of(path.c_str());
    }

    const TempDir dir_;
    int count_ = 0;
};

TEST_F(BookCovers, OfAnEpubAreFoundInFourPlaces) {
    const std::string item = "<item id=\"c\" href=\"img/a%20b.png\" media-type=\"image/png\"";
    const ZipMembers picture{{"OEBPS/img/a b.png", png(21)}};
    EXPECT_EQ(epub("", item + " properties=\"svg cover-image\"/>", picture), 21);
    EXPECT_EQ(epub("<meta name=\"cover\" content=\"c\"/>", item + "/>", picture), 21);
    const ZipMembers paged{{"OEBPS/p/cover.xhtml", "<body><img alt='' src='../img/a%20b.png'/>"},
                           {"OEBPS/img/a b.png", png(22)}};
    EXPECT_EQ(epub("", "<guide><reference type=\"cover\" href=\"p/cover.xhtml#top\"/>", paged), 22);
    EXPECT_EQ(epub("",
                   "<item id=\"i1\" href=\"p/cover.xhtml\"/>" + item +
                       "/><spine><itemref idref=\"i1\"/></spine>",
                   paged),
              22);
    EXPECT_EQ(epub("", "<item id=\"i\" href=\"p/c.xhtml\"/><itemref idref=\"i\"/>",
                   {{"OEBPS/p/c.xhtml", "<svg><image xlink:href='/../x.jpg'/><image "
                                        "xlink:href='c.jpg'/></svg>"},
                    {"OEBPS/p/c.jpg", jpeg(23)}}),
              0);
    EXPECT_EQ(
        epub("", "<opf:item id='i' href='p.xhtml'/><opf:itemref idref='i'/>",
             {{"OEBPS/p.xhtml", "<svg:image xlink:href='c.png'/>"}, {"OEBPS/c.png", png(24)}}),
        24);
    EXPECT_EQ(epub("", item + "/>", picture), 0);
}

TEST_F(BookCovers, StayInsideTheArchive) {
    write_file("outside.png", png(21));
    for (const char *href : {"../../outside.png", "/outside.png", "../outside.png",
                             "file:///outside.png", "%2E%2E/%2E%2E/outside.png"})
        EXPECT_EQ(epub("", "<item properties=\"cover-image\" href=\"" + std::string(href) + "\"/>",
                       {{"inside.png", png(22)}}),
                  0)
            << href;
    EXPECT_EQ(epub("", "<item properties=\"cover-image\" href=\"./x/..//../inside.png\"/>",
                   {{"inside.png", png(22)}}),
              22);
}

TEST_F(BookCovers, OfAnFb2StandBehindTheText) {
    const std::string page = "<coverpage><image l:href=\"#c.png\"/></coverpage>",
                      other = "<binary id=\"o\">" + base64(png(31)) + "</binary>",
                      binary = "<binary content-type=\"image/png\" id=\"c.png\">\n" +
                               base64(png(32)) + "</binary>";
    EXPECT_EQ(fb2(page, other + binary), 32);
    EXPECT_EQ(fb2("", other + binary), 0);
    EXPECT_EQ(fb2(page, other), 0);
    EXPECT_EQ(fb2(page, "<binary id=\"c.png\">not a picture</binary>"), 0);
    write_zip("z.fb2.zip", {{"z.fb2", books::fb2(page) + binary}});
    EXPECT_EQ(width_of("z.fb2.zip"), 32);
}

TEST_F(BookCovers, OfAMobiIsTheRecordThatIsNamedOrTheFirstPicture) {
    books::Mobi mobi;
    mobi.pictures = {jpeg(41), png(42)};
    const auto cover = [&] {
        const std::string path = "m" + std::to_string(++count_) + ".mobi";
        write_file(path, mobi.bytes());
        return width_of(path.c_str());
    };
    EXPECT_EQ(cover(), 41);
    mobi.exth = books::exth_record(201, books::big_endian(1, 4));
    EXPECT_EQ(cover(), 42);
    mobi.exth = books::exth_record(201, books::big_endian(0xFFFFFFFF, 4));
    EXPECT_EQ(cover(), 41);
    mobi.first_picture = 9;
    EXPECT_EQ(cover(), 0);
}

TEST_F(BookCovers, AreWhatTheLoaderMakesOfTheFile) {
    Bytes pixels(60 * 80 * 3);
    for (size_t i = 0; i < pixels.size(); ++i) pixels[i] = static_cast<uint8_t>(i * 7 % 251);
    write_png("same.png", 60, 80, {}, pixels);
    write_jpeg("same.jpg", 60, 80, {}, pixels);
    for (const bool is_png : {true, false}) {
        const std::string name = is_png ? "same.png" : "same.jpg";
        const std::string book = name + ".epub";
        write_zip(book,
                  books::epub(books::package("", "<item properties=\"cover-image\" href=\"c\"/>"),
                              {{"OEBPS/c", read_file(name)}}));
        const BitmapPtr cover(GetBookCover(book.c_str(), 50, 30)),
            loaded(is_png ? LoadPNGStretch(name.c_str(), 50, 30, 1, 0)
                          : LoadJPEG(name.c_str(), 50, 30, 100, 100, 1));
        ASSERT_TRUE(cover && loaded);
        EXPECT_EQ(levels(*cover), levels(*loaded)) << name;
        for (const int bad : {0, -2}) EXPECT_EQ(GetBookCover(book.c_str(), bad, 10), nullptr);
    }
    EXPECT_EQ(GetBookCover("same.png", 10, 10), nullptr);
    EXPECT_EQ(GetBookCover(nullptr, 10, 10), nullptr);
}

} // namespace
