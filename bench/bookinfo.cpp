// peers: libxml-2.0 minizip
// SPDX-License-Identifier: MIT
// Records of books beside reading the same fields with libxml2, and beside the reading of the file
// that cannot be avoided.
#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <libxml/xmlreader.h>
#include <minizip/unzip.h>
#include <minizip/zip.h>
#include <string>
#include <unistd.h>
#include <vector>

#include "beside.h"
#include "kelvane/bitmaps.h"
#include "kelvane/bookinfo.h"
#include "kelvane/hash.h"
#include "kelvane/pictures.h"

namespace {

// A folder with a table of file types, for as long as the program runs.
class Folder {
  public:
    Folder() {
        std::filesystem::create_directories(path_ / "system/config");
        std::filesystem::current_path(path_);
        std::ofstream("system/config/extensions.cfg") << "fb2:b:2:p:\nepub:b:2:p:\nmobi:b:2:p:\n";
    }
    ~Folder() { std::filesystem::remove_all(path_); }

  private:
    std::filesystem::path path_ =
        std::filesystem::temp_directory_path() / ("kelvane-bench-" + std::to_string(getpid()));
};
const Folder folder;

void write(const char *path, const std::string &bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

// The record is kept for a path, so each call asks for the other of two names of a file.
struct Two {
    std::string a, b;
    const char *next() {
        std::swap(a, b);
        return a.c_str();
    }
};
Two two(const std::string &name, const std::string &extension) {
    const std::string a = name + "1." + extension, b = name + "2." + extension;
    for (const std::string &copy : {a, b})
        std::filesystem::copy_file(name + "." + extension, copy,
                                   std::filesystem::copy_options::overwrite_existing);
    return {a, b};
}

// Every text of a document up to an element, as a reader that looks for fields meets it.
size_t read_texts(xmlTextReaderPtr reader, const char *last) {
    size_t bytes = 0;
    while (xmlTextReaderRead(reader) == 1) {
        const auto *name = reinterpret_cast<const char *>(xmlTextReaderConstLocalName(reader));
        if (name && std::strcmp(name, last) == 0) break;
        if (const xmlChar *value = xmlTextReaderConstValue(reader))
            bytes += std::strlen(reinterpret_cast<const char *>(value));
    }
    xmlFreeTextReader(reader);
    return bytes;
}

void fb2_and_libxml2(benchmark::State &state) {
    std::string text =
        "<?xml version=\"1.0\" encoding=\"windows-1251\"?><FictionBook><description>"
        "<title-info><genre>sf</genre><author><first-name>A</first-name><last-name>B"
        "</last-name></author><book-title>\xE2\xEE\xE9\xED\xE0</book-title><annotation>"
        "<p>text</p></annotation><lang>ru</lang><sequence name=\"s\" number=\"1\"/>"
        "</title-info><publish-info><isbn>978-5-699-12014-7</isbn></publish-info>"
        "</description><body>";
    while (text.size() < 1 << 20) text += "<p>line of the book</p>\n";
    write("big.fb2", text + "</body></FictionBook>");
    Two names = two("big", "fb2");
    beside(
        state, Against::peer, [&] { benchmark::DoNotOptimize(GetBookInfo(names.next())); },
        [&] {
            benchmark::DoNotOptimize(read_texts(
                xmlReaderForFile("big.fb2", nullptr, XML_PARSE_NOERROR | XML_PARSE_NOWARNING),
                "body"));
        });
}
BENCHMARK(fb2_and_libxml2)->UseManualTime();

void add_member(zipFile zip, const std::string &name, const std::string &bytes) {
    zipOpenNewFileInZip(zip, name.c_str(), nullptr, nullptr, 0, nullptr, 0, nullptr, Z_DEFLATED, 6);
    zipWriteInFileInZip(zip, bytes.data(), static_cast<unsigned>(bytes.size()));
    zipCloseFileInZip(zip);
}

std::string read_member(unzFile zip, const char *name) {
    std::string bytes;
    if (unzLocateFile(zip, name, 1) != UNZ_OK || unzOpenCurrentFile(zip) != UNZ_OK) return bytes;
    char buffer[4096];
    for (int got; (got = unzReadCurrentFile(zip, buffer, sizeof buffer)) > 0;)
        bytes.append(buffer, static_cast<size_t>(got));
    unzCloseCurrentFile(zip);
    return bytes;
}

size_t read_member_texts(unzFile zip, const char *name, const char *last) {
    const std::string text = read_member(zip, name);
    return read_texts(xmlReaderForMemory(text.data(), static_cast<int>(text.size()), nullptr,
                                         nullptr, XML_PARSE_NOERROR | XML_PARSE_NOWARNING),
                      last);
}

// A book of 60 files with a cover.
void write_epub(const char *path, const std::string &cover) {
    zipFile zip = zipOpen(path, APPEND_STATUS_CREATE);
    add_member(zip, "mimetype", "application/epub+zip");
    add_member(zip, "META-INF/container.xml",
               "<container><rootfiles><rootfile full-path=\"OEBPS/c.opf\" "
               "media-type=\"application/oebps-package+xml\"/></rootfiles></container>");
    std::string package =
        "<package unique-identifier=\"u\" xmlns:dc=\"x\" xmlns:opf=\"y\"><metadata>"
        "<dc:title>Title</dc:title><dc:creator opf:file-as=\"B, A\">A B"
        "</dc:creator><dc:language>en</dc:language><dc:identifier id=\"u\">"
        "urn:isbn:9780306406157</dc:identifier></metadata><manifest>"
        "<item id=\"c\" href=\"c.jpg\" properties=\"cover-image\"/>";
    for (int i = 0; i < 60; ++i) {
        const std::string name = "chapter" + std::to_string(i) + ".xhtml";
        package += "<item id=\"i" + std::to_string(i) + "\" href=\"" + name + "\"/>";
        add_member(zip, "OEBPS/" + name, std::string(20'000, 'x'));
    }
    add_member(zip, "OEBPS/c.opf", package + "</manifest></package>");
    add_member(zip, "OEBPS/c.jpg", cover);
    zipClose(zip, nullptr);
}

void epub_and_libxml2(benchmark::State &state) {
    write_epub("b.epub", "");
    Two names = two("b", "epub");
    beside(
        state, Against::peer, [&] { benchmark::DoNotOptimize(GetBookInfo(names.next())); },
        [&] {
            unzFile zip = unzOpen("b.epub");
            size_t bytes = read_member_texts(zip, "META-INF/container.xml", "none");
            bytes += read_member_texts(zip, "OEBPS/c.opf", "manifest");
            bytes += static_cast<size_t>(unzLocateFile(zip, "META-INF/rights.xml", 1));
            unzClose(zip);
            benchmark::DoNotOptimize(bytes);
        });
}
BENCHMARK(epub_and_libxml2)->UseManualTime();

std::string big_endian(unsigned long value, int size) {
    std::string bytes(static_cast<size_t>(size), '\0');
    for (char &byte : bytes) byte = static_cast<char>(value >> 8 * --size & 0xFF);
    return bytes;
}

void mobi_and_reading(benchmark::State &state) {
    std::string file(60, '\0');
    file += "BOOKMOBI" + std::string(8, '\0') + big_endian(1, 2) + big_endian(88, 4) +
            std::string(6, '\0');
    const std::string exth = big_endian(100, 4) + big_endian(14, 4) + "Author" +
                             big_endian(503, 4) + big_endian(13, 4) + "Title";
    std::string header = "MOBI" + big_endian(232, 4) + big_endian(2, 4) + big_endian(65001, 4);
    header.resize(112, '\0');
    header += big_endian(0x40, 4);
    header.resize(232, '\0');
    file += std::string(16, '\0') + header + "EXTH" + big_endian(exth.size() + 12, 4) +
            big_endian(2, 4) + exth + std::string(1 << 20, 'x');
    write("m.mobi", file);
    Two names = two("m", "mobi");
    beside(
        state, Against::limit, [&] { benchmark::DoNotOptimize(GetBookInfo(names.next())); },
        [&] {
            char bytes[512];
            std::FILE *f = std::fopen("m.mobi", "rb");
            size_t got = std::fread(bytes, 1, 86, f);
            std::fseek(f, 88, SEEK_SET);
            got += std::fread(bytes, 1, 132, f);
            std::fseek(f, 88 + 16 + 232, SEEK_SET);
            got += std::fread(bytes, 1, 12, f);
            got += std::fread(bytes, 1, 27, f);
            std::fclose(f);
            benchmark::DoNotOptimize(got);
        });
}
BENCHMARK(mobi_and_reading)->UseManualTime();

void same_book_and_hash_find(benchmark::State &state) {
    const std::string path = "./system/mnt/ext1/Books/A long name of a book.fb2";
    ihash hash = hash_new(101);
    hash_add(hash, path.c_str(), "x");
    beside(
        state, Against::limit, [&] { benchmark::DoNotOptimize(GetBookInfo(path.c_str())); },
        [&] { benchmark::DoNotOptimize(hash_find(hash, path.c_str())); });
    hash_destroy(hash);
}
BENCHMARK(same_book_and_hash_find)->UseManualTime();

void cover_and_loader(benchmark::State &state) {
    ibitmap *picture = NewBitmap(600, 800);
    for (int i = 0; i < picture->scanline * picture->height; ++i)
        picture->data[i] = static_cast<unsigned char>(i * i >> 8);
    SaveJPEG("c.jpg", picture, 90);
    std::free(picture);
    std::ifstream in("c.jpg", std::ios::binary);
    write_epub("c.epub", {std::istreambuf_iterator<char>(in), {}});
    beside(
        state, Against::limit, [] { std::free(GetBookCover("c.epub", 150, 200)); },
        [] { std::free(LoadJPEG("c.jpg", 150, 200, 100, 100, 1)); });
}
BENCHMARK(cover_and_loader)->UseManualTime();

void tool_and_reading(benchmark::State &state) {
    std::vector<std::string> paths;
    for (int i = 0; i < 10'000; ++i) {
        const std::string shelf = "shelf/" + std::to_string(i / 100);
        std::filesystem::create_directories(shelf);
        paths.push_back(shelf + "/" + std::to_string(i) + ".fb2");
        write(paths.back().c_str(),
              "<?xml version=\"1.0\" encoding=\"utf-8\"?><FictionBook><description><title-info>"
              "<genre>sf</genre><author><first-name>A</first-name><last-name>B</last-name></author>"
              "<book-title>Title " +
                  std::to_string(i) +
                  "</book-title><annotation><p>text</p></annotation><lang>en</lang></title-info>"
                  "<publish-info><isbn>978-5-699-12014-7</isbn></publish-info></description>"
                  "<body>" +
                  std::string(12'000, 'x') + "</body></FictionBook>");
    }
    std::vector<double> ours, other;
    for (auto _ : state) {
        const auto read_all = [&] {
            char bytes[10'000];
            for (const std::string &path : paths) {
                const int fd = open(path.c_str(), O_RDONLY);
                benchmark::DoNotOptimize(read(fd, bytes, sizeof bytes));
                close(fd);
            }
        };
        other.push_back(seconds(read_all, 1));
        const double start = children_seconds();
        if (std::system(KELVANE_BOOK_TOOL " -r shelf >/dev/null") != 0)
            return state.SkipWithError("the tool failed");
        ours.push_back(children_seconds() - start);
        state.SetIterationTime(ours.back());
    }
    state.counters["ours_us"] = median(ours) * 1e6;
    count(state, Against::limit, median(ours), median(other));
}
BENCHMARK(tool_and_reading)->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
