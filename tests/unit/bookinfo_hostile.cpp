// SPDX-License-Identifier: MIT
// Books that are cut, damaged or made to hurt: each is answered after a bounded amount of reading,
// with the title of its name at least, without a word.
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

#include "kelvane/bookinfo.h"
#include "raster/bitmap_ptr.h"
#include "support/book_files.h"

namespace {

namespace fs = std::filesystem;

constexpr long most_read = 64 << 20; // bytes for all that is asked of one book

class HostileBooks : public testing::Test {
  protected:
    HostileBooks() { books::write_table(); }
    void SetUp() override { testing::internal::CaptureStderr(); }
    void TearDown() override { EXPECT_EQ(testing::internal::GetCapturedStderr(), ""); }

    // Everything that can be asked of a book.
    static const bookinfo &ask(const std::string &path) {
        GetBookInfo("."); // so that the record is made anew
        GetBookISBN(".");
        const long before = bytes_read();
        const bookinfo &b = *GetBookInfo(path.c_str());
        GetBookISBN(path.c_str());
        raster::BitmapPtr(GetBookCover(path.c_str(), 20, 30));
        EXPECT_LT(bytes_read() - before, most_read) << path;
        EXPECT_TRUE(b.title && *b.title) << path;
        return b;
    }

    static void ask_about(const std::string &extension, const std::string &bytes) {
        const std::string path = "book." + extension;
        write_file(path, bytes);
        ask(path);
    }

    // Cut before each byte, and each byte changed to another.
    static void damage_everywhere(const std::string &extension, const std::string &bytes) {
        for (size_t i = 0; i < bytes.size(); ++i) {
            ask_about(extension, bytes.substr(0, i));
            std::string changed = bytes;
            const int values[] = {0, 0xFF, bytes[i] ^ 1};
            changed[i] = static_cast<char>(values[i % 3]);
            ask_about(extension, changed);
        }
    }

    // A number that the system tells of this process.
    static long counted(const char *file, const std::string &name) {
        const std::string all = read_file(file);
        return std::stol(all.substr(all.find(name) + name.size()));
    }
    // By all reads so far.
    static long bytes_read() { return counted("/proc/self/io", "rchar:"); }
    // The most memory that the process has had.
    static long peak_kib() { return counted("/proc/self/status", "VmHWM:"); }

    static std::string bytes_of_zip(const ZipMembers &members) {
        write_zip("made.zip", members);
        return read_file("made.zip");
    }

    const TempDir dir_;
};

TEST_F(HostileBooks, MayBeDamagedAnywhere) {
    damage_everywhere("fb2",
                      books::fb2("<genre>a</genre><coverpage><image l:href=\"#c\"/></coverpage>" +
                                 books::author("a", "b", "c") +
                                 "<book-title>&#65;</book-title><sequence name='a' number='2'/>") +
                          "<binary id='c'>iVBORw0KGgo=</binary> 978-5-699-12014-7");
    damage_everywhere("html", "<html lang=x><meta charset=cp1251><meta name=author content='x'>"
                              "<title a>t</title>080442957X");
    books::Mobi mobi;
    mobi.exth = books::exth_record(100, "a") + books::exth_record(201, books::big_endian(1, 4));
    mobi.pictures = {"\xFF\xD8\xFF", "\x89PNG"};
    damage_everywhere("mobi", mobi.bytes());
}

TEST_F(HostileBooks, InArchivesMayBeDamagedAnywhere) {
    damage_everywhere("epub", bytes_of_zip(books::epub(
                                  books::package("<dc:title>t</dc:title><meta name=\"cover\" "
                                                 "content=\"c\"/>",
                                                 "<item id='c' href='c.png'/>"),
                                  {{"OEBPS/c.png", "\x89PNG"}})));
    damage_everywhere("fb2.zip", bytes_of_zip({{"b.fb2", books::fb2("<genre>g</genre>")}}));
}

TEST_F(HostileBooks, MayRepeatAndNestTheirTags) {
    for (const char *tag :
         {"<author>", "<sequence ", "<document-info", "encoding=", "<genre>a</genre", "<", "&#1;",
          "<book-title>", "<binary id='", "<coverpage><image href='#c'/>", "9-"}) {
        std::string text;
        while (text.size() < 2 << 20) text += tag;
        ask_about("fb2", text);
        ask_about("html", text);
    }
    for (const char *tag :
         {"<dc:creator id='a'>", "<meta property=\"belongs-to-collection\" id='a'>x",
          "series\" content=\"", "<dc:identifier>", "<item id=", "<meta name='cover' content='x'",
          "<dcns:title",
          "<meta refines='#a' property='collection-type'>set<meta property=\""
          "belongs-to-collection\" id='a'>x"}) {
        std::string text = "<package>";
        while (text.size() < 2 << 20) text += tag;
        ask_about("epub", bytes_of_zip(books::epub(text)));
    }
}

TEST_F(HostileBooks, CostLittleHoweverMuchTheyPromise) {
    {
        const std::string zeros(48 << 20, '\0');
        write_zip("bomb.fb2.zip", {{"b.fb2", books::fb2("<book-title>t</book-title>") + zeros}});
        write_zip("bomb.epub", {{"META-INF/container.xml", zeros}, {"c.opf", zeros}});
    }
    write_file("sparse.fb2", books::fb2("<coverpage><image l:href=\"#c\"/></coverpage>"));
    for (const char *name : {"sparse.mobi", "sparse.html", "sparse.epub"}) write_file(name, "x");
    write_file("sparse.mobi", books::Mobi().bytes());
    write_file("/proc/self/clear_refs", "5"); // the peak begins anew
    const long before = peak_kib();
    for (const char *name : {"sparse.fb2", "sparse.mobi", "sparse.html", "sparse.epub"}) {
        fs::resize_file(name, uint64_t{3} << 30);
        ask(name);
    }
    EXPECT_STREQ(ask("bomb.fb2.zip").title, "T");
    EXPECT_STREQ(ask("bomb.epub").title, "bomb");
    EXPECT_LT(peak_kib() - before, 64 << 10);
}

TEST_F(HostileBooks, MayLieAboutTheSizesOfTheirMembers) {
    const std::string good = bytes_of_zip(books::epub(books::package("<dc:title>t</dc:title>")));
    for (size_t entry = good.find("PK\1\2"); entry != good.npos;
         entry = good.find("PK\1\2", entry + 1))
        for (const size_t field : {20, 24, 28, 30, 42})
            for (const unsigned value : {0U, 1U, 0x7FFFU, 0xFFFFU}) {
                std::string bad = good;
                bad[entry + field] = static_cast<char>(value);
                bad[entry + field + 1] = static_cast<char>(value >> 8);
                ask_about("epub", bad);
            }
}

TEST_F(HostileBooks, MayBePipesFoldersOrDevices) {
    for (const char *extension : {"fb2", "epub", "mobi", "html", "fb2.zip"}) {
        const std::string pipe = std::string("pipe.") + extension,
                          folder = std::string("d.") + extension,
                          device = std::string("zero.") + extension;
        ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
        fs::create_directory(folder);
        fs::create_symlink("/dev/zero", device);
        EXPECT_STREQ(ask(pipe).title, "pipe");
        EXPECT_STREQ(ask(folder).title, "d");
        EXPECT_STREQ(ask(device).title, "zero");
    }
    fs::create_directories("system/tmp");
    fs::create_symlink("loop.fb2", "loop.fb2");
    EXPECT_STREQ(ask("loop.fb2").title, "loop");
}

} // namespace
