// SPDX-License-Identifier: MIT
// What books of each format say about themselves.
#include <filesystem>
#include <gtest/gtest.h>
#include <malloc.h>
#include <string>
#include <utility>
#include <vector>

#include "kelvane/bookinfo.h"
#include "kelvane/languages.h"
#include "support/book_files.h"

namespace {

namespace fs = std::filesystem;

std::string text(const char *t) {
    return t ? t : "(null)";
}

std::string genres(const bookinfo &b) {
    std::string all;
    for (const char *genre : b.genre)
        if (genre) all += std::string(genre) + "|";
    return all;
}

class BookInfo : public testing::Test {
  protected:
    BookInfo() { books::write_table(); }

    // Each book has a name of its own: the record of the last path is kept.
    const bookinfo &ask(const std::string &extension, const std::string &bytes,
                        const char *separator = nullptr) {
        const std::string path = "book " + std::to_string(++count_) + "." + extension;
        write_file(path, bytes);
        return *GetBookInfoExt(path.c_str(), separator);
    }
    const bookinfo &ask_epub(const ZipMembers &members, const char *separator = nullptr) {
        const std::string path = "book " + std::to_string(++count_) + ".epub";
        write_zip(path, members);
        return *GetBookInfoExt(path.c_str(), separator);
    }
    // "(name)" for the title of the file's name.
    std::string title(const std::string &extension, const std::string &bytes) {
        const std::string found = ask(extension, bytes).title;
        return found == name() ? "(name)" : found;
    }
    std::string name() const { return "book " + std::to_string(count_); }

    const TempDir dir_;
    int count_ = 0;
};

TEST_F(BookInfo, NamesWhatItCannotRead) {
    EXPECT_EQ(GetBookInfo(nullptr), nullptr);
    const bookinfo &missing = *GetBookInfo("some/where/my.book.fb2");
    EXPECT_EQ(missing.type, 0);
    EXPECT_STREQ(missing.title, "my.book");
    EXPECT_STREQ(missing.filename, "my.book");
    EXPECT_STREQ(missing.path, "some/where/my.book.fb2");
    EXPECT_EQ(missing.typedesc, nullptr);
    EXPECT_EQ(missing.author, nullptr);
    EXPECT_STREQ(GetBookInfo("x/archive.fb2.ZIP")->title, "archive");
    EXPECT_STREQ(GetBookInfo(".hidden")->title, ".hidden");
    write_file("save.sav", "<book-title>no</book-title>");
    const bookinfo &no_book = *GetBookInfo("save.sav");
    EXPECT_EQ(no_book.type, 255);
    EXPECT_STREQ(no_book.typedesc, "No book");
    EXPECT_STREQ(no_book.title, "save");
}

TEST_F(BookInfo, OfAFolderIsItsTranslatedName) {
    fs::create_directories("library/@Books");
    AddTranslation("@Books", "Bücher");
    const bookinfo &folder = *GetBookInfo("library/@Books/");
    EXPECT_EQ(folder.type, 255);
    EXPECT_STREQ(folder.title, "Bücher");
    EXPECT_EQ(folder.size, 0);
    EXPECT_GT(folder.ctime, 0);
}

TEST_F(BookInfo, OfAnFb2HasEveryField) {
    const bookinfo &b = ask(
        "fb2",
        books::fb2("<genre>sf</genre><genre>SF</genre><genre>drama</genre>" +
                       books::author("Leo", "N.", "Tolstoy") + books::author("", "", "dumas") +
                       "<book-title>war &amp; <b>peace</b></book-title><annotation><p>A &lt; B</p>"
                       "</annotation><lang>ru</lang><sequence name=\" cycle \" number=\"2\"/>",
                   "<src-title-info><lang>fr</lang>" + books::author("x", "", "y") +
                       "<genre>z</genre><book-title>Other</book-title></src-title-info>"
                       "<document-info><author><nickname>n</nickname></author><id>ID-1</id>"
                       "<id>2</id></document-info><publish-info><publisher>House &amp; Co"
                       "</publisher><isbn>5-02-013850-9</isbn><sequence name=\"late\"/>"
                       "</publish-info>"));
    EXPECT_EQ(b.type, 2);
    EXPECT_STREQ(b.title, "War & peace");
    EXPECT_STREQ(b.author, "Tolstoy Leo N., dumas");
    EXPECT_STREQ(b.first_author, "Tolstoy");
    EXPECT_EQ(genres(b), "Sf|Drama|");
    EXPECT_STREQ(b.series, "cycle");
    EXPECT_EQ(b.numinseries, 2);
    EXPECT_STREQ(b.lang, "ru");
    EXPECT_STREQ(b.annotation, "<p>A < B</p>");
    EXPECT_STREQ(b.meta_id, "ID-1");
    EXPECT_STREQ(b.publisher, "House & Co");
    EXPECT_STREQ(b.isbn, "5-02-013850-9");
    EXPECT_EQ(b.drm, 0);
    EXPECT_EQ(b.size, static_cast<int64_t>(fs::file_size(name() + ".fb2")));
    EXPECT_STREQ(GetBookISBN((name() + ".fb2").c_str()), "5020138509");
}

TEST_F(BookInfo, OfFb2AuthorsJoinsWhatTheyHave) {
    EXPECT_STREQ(ask("fb2", books::fb2(books::author("", "", "Last"))).author, "Last");
    EXPECT_STREQ(ask("fb2", books::fb2(books::author("First", "", ""))).first_author, "First");
    EXPECT_STREQ(ask("fb2", books::fb2(books::author("", "Mid", ""))).author, "Mid");
    const std::string two = books::author("A", "", "B") + books::author("C", "", "D");
    EXPECT_STREQ(ask("fb2", books::fb2(two)).author, "B A, D C");
    EXPECT_STREQ(ask("fb2", books::fb2(two), " & ").author, "B A & D C");
    const std::string same = books::author("A", "", "B") + books::author("A", "", "B");
    EXPECT_STREQ(ask("fb2", books::fb2(same + "<author></author>")).author, "B A");
}

TEST_F(BookInfo, OfAnFb2IsReadAsItsEncodingSays) {
    const std::string declared = "<?xml version=\"1.0\" encoding=\"windows-1251\"?>";
    EXPECT_STREQ(
        ask("fb2", books::fb2("<book-title>\xE2\xEE\xE9\xED\xE0</book-title>", "", declared)).title,
        "Война");
    const std::string all_ascii = "<book-title>\x1B$B$\"\x1B(B</book-title>";
    EXPECT_EQ(title("fb2", books::fb2(all_ascii, "", "<?xml encoding='iso-2022-jp'?>")), "あ");
    const std::string latin = "<book-title>\374ber</book-title>";
    EXPECT_EQ(title("fb2", books::fb2(latin, "", "<?xml?>")), "(name)");
    EXPECT_EQ(title("fb2", books::fb2(latin, "", "<?xml encoding='nonsense'?>")), "(name)");
    EXPECT_STREQ(ask("fb2", books::fb2(latin)).title, "\xEF\xBF\xBD"
                                                      "ber");
    std::u16string wide;
    for (const char c : books::fb2("<book-title>wide \x01</book-title>"))
        wide += c == '\x01' ? u'\u0436' : static_cast<char16_t>(c);
    std::string bytes = "\xFF\xFE";
    for (const char16_t c : wide) bytes += {static_cast<char>(c & 0xFF), static_cast<char>(c >> 8)};
    EXPECT_STREQ(ask("fb2", bytes).title, "Wide ж");
    EXPECT_STREQ(ask("fb2", "\xEF\xBB\xBF" + books::fb2("<book-title>ёж</book-title>")).title,
                 "Ёж");
}

TEST_F(BookInfo, DecodesEntitiesAndDropsTags) {
    const auto title_of = [&](const std::string &inside) {
        return title("fb2", books::fb2("<book-title>" + inside + "</book-title>"));
    };
    EXPECT_EQ(title_of("&#1078;&#x436;&quot;&apos;&gt;&lt;i&gt;"), "Жж\"'><i>");
    EXPECT_EQ(title_of("A &nbsp; &amp &; &verylongname; &#xD800; &#0; &#99999999;"),
              "A &nbsp; &amp &; &verylongname; &#xD800; &#0; &#99999999;");
    EXPECT_EQ(title_of("a<i class='x'>b</i> c < d"), "Ab c < d");
    EXPECT_EQ(title_of("a < d > e"), "A  e");
    EXPECT_EQ(title_of("ɐ grows"), "Ɐ grows");
    EXPECT_EQ(title_of("ſ shrinks"), "S shrinks");
    EXPECT_EQ(title_of("<b/>  "), "(name)");
}

TEST_F(BookInfo, FindsIsbnsInTheTextOfAnFb2) {
    const auto isbn_of = [&](const std::string &inside, const std::string &behind = "") {
        return text(ask("fb2", books::fb2(inside) + behind).isbn);
    };
    EXPECT_EQ(isbn_of("ISBN 978-5-699-12014-7"), ";978-5-699-12014-7");
    EXPECT_EQ(isbn_of("ISBN 978-5-699-12014-8"), "(null)");
    EXPECT_EQ(isbn_of("0-306-40615-2.", std::string(20'000, ' ') + "978 0 306 40615 7"),
              ";0-306-40615-2,978 0 306 40615 7");
    EXPECT_EQ(isbn_of("978-5-699-12014-7 9785699120147"), ";978-5-699-12014-7");
    EXPECT_EQ(isbn_of("080442957X 080442957x1"), ";080442957X");
    EXPECT_EQ(isbn_of("19780306406157 a9780306406157 9780306406157z"), "(null)");
    write_zip("inside.fb2.zip",
              {{"b.fb2", books::fb2("") + std::string(20'000, ' ') + "9780306406157"}});
    EXPECT_EQ(text(GetBookInfo("inside.fb2.zip")->isbn), "(null)");
}

TEST_F(BookInfo, KeepsDigitsAndCommasOfAnIsbn) {
    const auto isbn_of = [&](const std::string &isbn) {
        ask("fb2", books::fb2("<isbn>" + isbn + "</isbn>"));
        return text(GetBookISBN((name() + ".fb2").c_str()));
    };
    EXPECT_EQ(isbn_of("978-5-699-12014-7"), "9785699120147");
    EXPECT_EQ(isbn_of("5-699,978-5"), "5699,9785");
    EXPECT_EQ(isbn_of("none"), "(null)");
    EXPECT_EQ(GetBookISBN(nullptr), nullptr);
    EXPECT_EQ(GetBookISBN("."), nullptr);
}

TEST_F(BookInfo, OfAnEpubHasEveryField) {
    const bookinfo &b = ask_epub(
        books::epub(
            books::package(
                "<dc:title id=\"t\">moby <i>Dick</i></dc:title><dc:title>Or, the Whale</dc:title>"
                "<dc:creator opf:role=\"aut\" opf:file-as=\"Melville, Herman\">Herman Melville"
                "</dc:creator><dcns:creator>Second</dcns:creator><dc:subject>sea</dc:subject>"
                "<dc:subject/><dcns:subject>Whales &amp; men</dcns:subject>"
                "<dc:identifier id=\"id\">uuid:7</dc:identifier>"
                "<dcns:identifier opf:scheme=\"isbn\">0-306-40615-2</dcns:identifier>"
                "<dc:identifier>URN:ISBN:9780306406157</dc:identifier>"
                "<dc:identifier>9785699120147</dc:identifier>"
                "<dc:identifier>9785699120148</dc:identifier>"
                "<dc:language>en</dc:language><dc:publisher>Harper</dc:publisher>"
                "<dc:description>&lt;p&gt;Call me&lt;/p&gt;</dc:description>"
                "<meta name=\"x:series\" content=\"oceans\"/>"
                "<meta name=\"x:series_index\" content=\"3.0\"/>"),
            {{"META-INF/rights.xml", "x"}}),
        "; ");
    EXPECT_EQ(b.type, 2);
    EXPECT_STREQ(b.title, "Moby Dick");
    EXPECT_STREQ(b.author, "Herman Melville; Second");
    EXPECT_STREQ(b.first_author, "Melville, Herman");
    EXPECT_EQ(genres(b), "Sea|Whales & men|");
    EXPECT_STREQ(b.isbn, "0-306-40615-2,9780306406157,9785699120147");
    EXPECT_STREQ(b.meta_id, "uuid:7");
    EXPECT_TRUE(text(b.identifiers)
                    .starts_with("<dc:identifier id=\"id\">uuid:7</dc:identifier>"
                                 "<dcns:identifier opf:scheme=\"isbn\">"));
    EXPECT_STREQ(b.lang, "en");
    EXPECT_STREQ(b.publisher, "Harper");
    EXPECT_STREQ(b.annotation, "<p>Call me</p>");
    EXPECT_STREQ(b.series, "oceans");
    EXPECT_EQ(b.numinseries, 3);
    EXPECT_EQ(b.drm, 1);
    EXPECT_STREQ(GetBookISBN((name() + ".epub").c_str()), "0306406152,9780306406157,9785699120147");
}

TEST_F(BookInfo, OfAnEpub3FollowsRefinements) {
    const bookinfo &b = ask_epub(books::epub(
        books::package("<dc:creator id=\"a\">Jo Nesbø</dc:creator><dc:creator>Other</dc:creator>"
                       "<meta refines=\"#a\" property=\"file-as\">Nesbø, Jo</meta>"
                       "<meta property=\"belongs-to-collection\" id=\"s\">A set</meta>"
                       "<meta refines=\"#s\" property=\"collection-type\">set</meta>"
                       "<meta property=\"belongs-to-collection\" id=\"c\">harry</meta>"
                       "<meta refines=\"#c\" property=\"collection-type\">series</meta>"
                       "<meta refines=\"#c\" property=\"group-position\">7</meta>")));
    EXPECT_STREQ(b.first_author, "Nesbø, Jo");
    EXPECT_STREQ(b.author, "Jo Nesbø, Other");
    EXPECT_STREQ(b.series, "harry");
    EXPECT_EQ(b.numinseries, 7);
}

TEST_F(BookInfo, OfAnEpubTakesWhatOtherWritersMean) {
    const bookinfo &b = ask_epub(books::epub(
        books::package("<dc:creator opf:file-as=\"Unknown\">Somebody</dc:creator>"
                       "<meta content='in front' name='x:series'/>"
                       "<meta content='4.0' name='x:series_index'/>"
                       "<dc:identifier opf:scheme=\"ISBN-10\">0-306-40615-2</dc:identifier>"
                       "<dc:identifier>isbn-13: 978-0-306-40615-7</dc:identifier>"
                       "<dc:identifier>urn:isbn:9780306406157</dc:identifier>")));
    EXPECT_STREQ(b.first_author, "Somebody");
    EXPECT_STREQ(b.series, "in front");
    EXPECT_EQ(b.numinseries, 4);
    EXPECT_STREQ(b.isbn, "0-306-40615-2,978-0-306-40615-7");
    EXPECT_EQ(b.drm, 0);
}

TEST_F(BookInfo, OfAMobiTakesTheBestTitleAndTheRecords) {
    books::Mobi mobi;
    mobi.exth = books::exth_record(100, "Ann Bee") + books::exth_record(100, "Cid") +
                books::exth_record(100, "Ann Bee") + books::exth_record(104, "978-0-306-40615-7") +
                books::exth_record(503, "exth title") + books::exth_record(101, "House") +
                books::exth_record(103, "about") + books::exth_record(105, "sea") +
                books::exth_record(524, "en");
    mobi.encryption = 2;
    const bookinfo &b = ask("mobi", mobi.bytes());
    EXPECT_STREQ(b.publisher, "House");
    EXPECT_STREQ(b.annotation, "about");
    EXPECT_EQ(genres(b), "Sea|");
    EXPECT_STREQ(b.lang, "en");
    EXPECT_EQ(b.drm, 1);
    EXPECT_STREQ(b.title, "Exth title");
    EXPECT_STREQ(b.author, "Ann Bee, Cid");
    EXPECT_STREQ(b.isbn, "978-0-306-40615-7");
    mobi.exth = books::exth_record(100, "A") + books::big_endian(503, 4) + books::big_endian(4, 4) +
                books::exth_record(503, "never");
    const bookinfo &stopped = ask("prc", mobi.bytes());
    EXPECT_STREQ(stopped.title, "Full name");
    EXPECT_STREQ(stopped.author, "A");
    const auto title_in_a_block_of = [&](size_t size) {
        mobi.exth =
            books::exth_record(1, std::string(size - 19, 'x')) + books::exth_record(503, "far");
        return title("mobi", mobi.bytes());
    };
    EXPECT_EQ(title_in_a_block_of(16'384), "Far");
    EXPECT_EQ(title_in_a_block_of(16'385), "Full name");
    mobi.exth = books::exth_record(503, "unflagged"), mobi.exth_flags = 0;
    EXPECT_STREQ(ask("mobi", mobi.bytes()).title, "Full name");
    mobi.full_name = "";
    EXPECT_STREQ(ask("mobi", mobi.bytes()).title, "Palm name");
    mobi.full_name = "caf\xE9", mobi.encoding = 1252;
    EXPECT_STREQ(ask("mobi", mobi.bytes()).title, "Café");
}

TEST_F(BookInfo, OfAMobiThatIsRefusedIsItsName) {
    const std::string good = books::Mobi().bytes();
    const auto changed = [&](size_t at, const std::string &bytes) {
        std::string bad = good;
        bad.replace(at, bytes.size(), bytes);
        return title("mobi", bad);
    };
    EXPECT_EQ(changed(0, "P"), "Full name");
    EXPECT_EQ(changed(60, "DATA"), "(name)");
    EXPECT_EQ(changed(64, "MOBY"), "(name)");
    EXPECT_EQ(changed(76, books::big_endian(0, 2)), "(name)");
    EXPECT_EQ(changed(78, books::big_endian(80, 4)), "(name)");
    EXPECT_EQ(changed(78, books::big_endian(85, 4)), "(name)");
    EXPECT_EQ(changed(78, books::big_endian(86, 4)), "Palm name");
    EXPECT_EQ(changed(78, books::big_endian(0xFFFFFFFF, 4)), "Palm name");
}

TEST_F(BookInfo, OfAPageIsItsTitleAndMetas) {
    const bookinfo &b = ask("html", "<HTML lang=\"ru\"><meta charset=\"windows-1251\">"
                                    "<META content=\xC8\xEC\xFF name=Author><meta name=\"author\" "
                                    "content=\"B\"><meta name='Description' "
                                    "content='about'><title>\xE4\xEE\xEC</title>");
    EXPECT_EQ(b.type, 3);
    EXPECT_STREQ(b.title, "Дом");
    EXPECT_STREQ(b.author, "Имя, B");
    EXPECT_STREQ(b.annotation, "about");
    EXPECT_STREQ(b.lang, "ru");
    EXPECT_STREQ(ask("htm", "<TITLE class=x>\n big\n</TITLE>").title, "Big");
    EXPECT_EQ(title("htm", "<titles>no</titles>"), "(name)");
    ask("html", "<p>ISBN 978-5-699-12014-7</p>");
    EXPECT_STREQ(GetBookISBN((name() + ".html").c_str()), "9785699120147");
}

TEST_F(BookInfo, OfTicketsAndLinksIsThatOfTheBook) {
    const bookinfo &ticket = ask("acsm", "<fulfillmentToken><metadata><dc:title>bought</dc:title>"
                                         "<dc:creator>Who</dc:creator></metadata>");
    EXPECT_STREQ(ticket.title, "Bought");
    EXPECT_STREQ(ticket.author, "Who");
    const bookinfo &link = ask("wlnk", "url=http://x/\ntitle = linked\nauthor=Who\n");
    EXPECT_STREQ(link.title, "Linked");
    EXPECT_STREQ(link.author, "Who");
    EXPECT_EQ(ask("lndrm", "").drm, 1);
}

TEST_F(BookInfo, IsInTheFirstBytesOfAText) {
    const std::string tag = "<book-title>far</book-title>";
    for (const size_t end : {9'999U, 10'000U}) {
        const std::string name = std::to_string(end), expected = end == 9'999 ? "Far" : name,
                          text = std::string(end - tag.size(), ' ') + tag;
        write_file(name + ".fb2", text);
        write_zip(name + ".fb2.zip", {{"in.fb2", text}});
        EXPECT_EQ(GetBookInfo((name + ".fb2").c_str())->title, expected);
        EXPECT_EQ(GetBookInfo((name + ".fb2.zip").c_str())->title, expected);
    }
}

TEST_F(BookInfo, ReadsTheFirstFileOfAnArchiveAndTheTargetOfALink) {
    write_zip("packed.FB2.zip", {{"in.fb2", books::fb2("<book-title>inside</book-title>")}});
    const bookinfo &packed = *GetBookInfo("packed.FB2.zip");
    EXPECT_STREQ(packed.title, "Inside");
    EXPECT_STREQ(packed.filename, "packed");
    EXPECT_EQ(packed.type, 2);
    EXPECT_EQ(packed.size, static_cast<int64_t>(fs::file_size("packed.FB2.zip")));
    write_zip("m.zip", {{"in.mobi", books::Mobi().bytes()}});
    EXPECT_STREQ(GetBookInfo("m.zip")->title, "Full name");
    fs::create_symlink("packed.FB2.zip", "link");
    EXPECT_STREQ(GetBookInfo("link")->title, "Inside");
}

TEST_F(BookInfo, KeepsTheRecordOfTheLastQuestion) {
    const std::string authors = books::author("A", "", "B") + books::author("C", "", "D");
    write_file("1.fb2", books::fb2("<book-title>One</book-title>" + authors));
    write_file("2.fb2", books::fb2("<book-title>Two</book-title>"));
    const bookinfo *first = GetBookInfo("1.fb2");
    write_file("1.fb2", books::fb2("<book-title>Changed</book-title>"));
    EXPECT_EQ(GetBookInfoExt("1.fb2", ", "), first);
    EXPECT_STREQ(first->title, "One");
    EXPECT_STREQ(GetBookInfo("2.fb2")->title, "Two");
    EXPECT_STREQ(GetBookInfo("1.fb2")->title, "Changed");
    EXPECT_EQ(GetBookInfo("1.fb2")->author, nullptr);
    // The path of the record may be what is asked for.
    EXPECT_STREQ(GetBookInfoExt(GetBookInfo("2.fb2")->path, "x")->title, "Two");
}

// Puts a book down in one of five formats and two encodings; returns its path.
std::string put_book(const std::string &title, int number) {
    const std::string isbn = "978-0-306-40615-7",
                      declaration = number % 2 == 0 ? "<?xml encoding='cp1251'?>" : "<?xml?>",
                      fb2 = books::fb2("<book-title>" + title + "</book-title>" +
                                           books::author("A", "", title),
                                       "<isbn>" + isbn + "</isbn>", declaration);
    books::Mobi mobi;
    mobi.exth = books::exth_record(503, title) + books::exth_record(100, title + " A") +
                books::exth_record(104, isbn);
    const std::string extensions[] = {".fb2", ".fb2.zip", ".epub", ".mobi", ".html"},
                      path = title + extensions[number % 5];
    switch (number % 5) {
    case 0:
        write_file(path, fb2);
        break;
    case 1:
        write_zip(path, {{"in.fb2", fb2}});
        break;
    case 2:
        write_zip(path, books::epub(books::package(
                            "<dc:title>" + title + "</dc:title><dc:creator>" + title +
                            " A</dc:creator><dc:identifier>" + isbn + "</dc:identifier>")));
        break;
    case 3:
        write_file(path, mobi.bytes());
        break;
    default:
        write_file(path, "<title>" + title + "</title><meta name=author content='" + title +
                             " A'>" + isbn);
    }
    return path;
}

TEST_F(BookInfo, OfFiftyBooksInTurnStaysRightAndDoesNotGrow) {
    std::vector<std::pair<std::string, std::string>> made; // title, path
    for (int i = 0; i < 50; ++i) {
        const std::string title = "Book " + std::to_string(i);
        made.emplace_back(title, put_book(title, i));
    }
    const auto ask_all = [&] {
        for (const auto &[title, path] : made) {
            const bookinfo &b = *GetBookInfo(path.c_str());
            ASSERT_EQ(b.title, title);
            ASSERT_EQ(text(b.author), title + " A");
            ASSERT_EQ(text(GetBookISBN(path.c_str())), "9780306406157");
        }
    };
    ASSERT_NO_FATAL_FAILURE(ask_all());
    const size_t before = mallinfo2().uordblks;
    for (int round = 0; round < 200; ++round) ASSERT_NO_FATAL_FAILURE(ask_all());
    EXPECT_LT(mallinfo2().uordblks, before + 16'384); // less than two bytes a call
}

} // namespace
