// SPDX-License-Identifier: MIT
// Which kind of file a path names, by the table of the device.
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>

#include "kelvane/bookinfo.h"
#include "support/book_files.h"
#include "unit/theme_support.h"

namespace {

namespace fs = std::filesystem;

class FileTypes : public testing::Test {
  protected:
    const TempDir dir_;
};

std::string described(const char *path) {
    const kv_filetype *row = FileType(path);
    return row ? row->description : "(null)";
}

int row_number(const char *path) {
    const kv_filetype *row = FileType(path);
    return row ? static_cast<int>(row - GetSupportedFileTypes()) : -1;
}

TEST_F(FileTypes, AreTheRowsOfFiveFieldsBehindThoseOfFolders) {
    write_file("system/config/extensions.cfg", "\n# a remark\nfew:fields:1:only\n"
                                               "fb2:FB2 book:2:reader.app:ICON_FB2 \t\r\n"
                                               "big:Big:99999999999:x:\nlast:Last:x7:a:b:c");
    const kv_filetype *rows = GetSupportedFileTypes();
    EXPECT_STREQ(rows[0].extension, "");
    EXPECT_EQ(rows[0].type, 255);
    EXPECT_EQ(rows[1].type, 255);
    EXPECT_STREQ(rows[2].extension, "fb2");
    EXPECT_STREQ(rows[2].description, "FB2 book");
    EXPECT_EQ(rows[2].type, 2);
    EXPECT_STREQ(rows[2].program, "reader.app");
    EXPECT_EQ(rows[3].type, INT_MAX);
    EXPECT_STREQ(rows[4].description, "Last");
    EXPECT_EQ(rows[4].type, 0);
    EXPECT_EQ(rows[5].extension, nullptr);
    EXPECT_EQ(GetSupportedFileTypes(), rows);
}

TEST_F(FileTypes, AreTwoHundredAndFiftySixAtMost) {
    std::string table;
    for (int i = 0; i < 400; ++i) table += "e" + std::to_string(i) + ":d:1:p:i\n";
    write_file("system/config/extensions.cfg", table);
    const kv_filetype *rows = GetSupportedFileTypes();
    EXPECT_STREQ(rows[255].extension, "e253");
    EXPECT_EQ(rows[256].extension, nullptr);
}

TEST_F(FileTypes, HaveTheIconsOfTheTheme) {
    const TestTheme theme;
    TestTheme::add("ICON_PHOTO", 1, 1, 0);
    TestTheme::add("ICON_EPUB", 2, 1, 0);
    TestTheme::add("ICON_MOBI", 3, 1, 0);
    TestTheme::add("broken_image", 4, 1, 0);
    books::write_table();
    std::string widths;
    for (const kv_filetype *row = GetSupportedFileTypes(); row->extension; ++row)
        widths += std::to_string(row->icon ? row->icon->width : 0);
    // Folders, photos, txt, fb2, epub, mobi, prc and six that the theme does not know.
    EXPECT_EQ(widths, "0104233000000");
    write_file("a.epub", "");
    EXPECT_EQ(GetBookInfo("a.epub")->icon, FileType("a.epub")->icon);
}

TEST_F(FileTypes, AreTextAloneWithoutATable) {
    fs::create_directories("system/config/extensions.cfg"); // a folder in its place
    write_file("a.TXT", "");
    EXPECT_EQ(described("a.TXT"), "Text file");
    EXPECT_EQ(FileType("a.TXT")->type, 1);
    EXPECT_EQ(GetSupportedFileTypes()[3].extension, nullptr);
}

TEST_F(FileTypes, AreFoundByTheEndOfTheName) {
    books::write_table();
    for (const char *name : {"a.fb2", "b.x.FB2", "fb2", ".fb2", "a.fb2x", "afb2", "c.txt"})
        write_file(name, "");
    EXPECT_EQ(described("a.fb2"), "FB2 book");
    EXPECT_EQ(described("./b.x.FB2"), "FB2 book");
    EXPECT_EQ(described(".fb2"), "FB2 book");
    for (const char *none : {"fb2", "a.fb2x", "afb2", "missing.fb2", ""})
        EXPECT_EQ(FileType(none), nullptr) << none;
    EXPECT_EQ(FileType(nullptr), nullptr);
    struct stat st;
    write_file("a.fb2", "12345");
    ASSERT_NE(FileTypeExt("a.fb2", &st), nullptr);
    EXPECT_EQ(st.st_size, 5);
    EXPECT_EQ(FileTypeExt("missing.fb2", &st), nullptr);
    EXPECT_EQ(st.st_size, 0);
}

TEST_F(FileTypes, TellFoldersPhotosAndAnywhereApart) {
    books::write_table();
    fs::create_directories("./system/tmp/photo/2009");
    fs::create_directories("books.fb2");
    EXPECT_EQ(row_number("ANY:whatever.fb2"), 0);
    EXPECT_EQ(row_number("books.fb2"), 0);
    EXPECT_EQ(row_number("./system/tmp/photo"), 1);
    EXPECT_EQ(row_number("./system/tmp/photo/2009"), 1);
    EXPECT_EQ(row_number("./system/tmp"), 0);
}

TEST_F(FileTypes, FollowALinkOnce) {
    books::write_table();
    write_file("folder/book.fb2", "");
    fs::create_symlink("book.fb2", "folder/link");
    fs::create_symlink("ANY:search", "anywhere");
    fs::create_symlink("gone.fb2", "dangling.fb2");
    fs::create_directories("system/tmp/photo");
    fs::create_symlink("./system/tmp/photo", "pictures");
    EXPECT_EQ(described("folder/link"), "FB2 book");
    EXPECT_EQ(row_number("anywhere"), 0);
    EXPECT_EQ(row_number("pictures"), 1);
    EXPECT_EQ(FileType("dangling.fb2"), nullptr);
}

TEST_F(FileTypes, OfAnArchiveAreThoseOfItsFirstFile) {
    books::write_table();
    write_zip("a.zip", {{"folder/", ""}, {"folder/b.FB2", "x"}, {"c.html", "y"}});
    write_file("broken.fb2.ZIP", "no archive");
    EXPECT_EQ(described("a.zip"), "FB2 book");
    EXPECT_EQ(FileType("broken.fb2.ZIP"), nullptr);
}

} // namespace
