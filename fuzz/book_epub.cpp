// SPDX-License-Identifier: MIT
// Any bytes as the package of an EPUB that has a page and a picture.
#include <minizip/zip.h>
#include <string_view>

#include "book_file.h"

namespace {

void add(zipFile zip, const char *name, std::string_view bytes) {
    zipOpenNewFileInZip(zip, name, nullptr, nullptr, 0, nullptr, 0, nullptr, 0, 0);
    zipWriteInFileInZip(zip, bytes.data(), static_cast<unsigned>(bytes.size()));
    zipCloseFileInZip(zip);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static const fuzz::BookFile file("epub");
    zipFile zip = zipOpen((file.folder().path() / file.name()).c_str(), APPEND_STATUS_CREATE);
    if (!zip) std::abort();
    add(zip, "META-INF/container.xml",
        "<rootfile media-type='application/oebps' full-path='o/p.opf'/>");
    add(zip, "o/p.opf", {reinterpret_cast<const char *>(data), size});
    add(zip, "o/page.xhtml", "<img src='c.png'/>");
    add(zip, "o/c.png", "\x89PNG\r\n\x1A\n");
    zipClose(zip, nullptr);
    file.ask();
    return 0;
}
