// SPDX-License-Identifier: MIT
// Books made byte by byte, and the table by which the device knows their kinds.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "support/tempdir.h"
#include "support/zip_file.h"

namespace books {

// Rows of the table of file types for the tests; 1 text, 2 book, 3 web page.
inline constexpr std::string_view table = "txt:Text:1:reader.app:ICON_TXT\n"
                                          "fb2:FB2 book:2:reader.app:\n"
                                          "epub:EPUB book:2:reader.app:ICON_EPUB\n"
                                          "mobi:MOBI book:2:reader.app:ICON_MOBI \t\r\n"
                                          "prc:MOBI book:2:reader.app:ICON_MOBI\n"
                                          "html:Web page:3:browser.app:ICON_HTML\n"
                                          "htm:Web page:3:browser.app:ICON_HTML\n"
                                          "acsm:Ticket:4:shop.app:ICON_ACSM\n"
                                          "wlnk:Link:4:shop.app:ICON_LINK\n"
                                          "lndrm:Container:4:shop.app:ICON_LOCK\n"
                                          "sav:No book:255:none:ICON_SAV\n";

inline void write_table() {
    write_file("system/config/extensions.cfg", table);
}

inline std::string
fb2(const std::string &title_info, const std::string &rest = "",
    const std::string &declaration = "<?xml version=\"1.0\" encoding=\"utf-8\"?>") {
    return declaration + "\n<FictionBook><description><title-info>" + title_info + "</title-info>" +
           rest + "</description><body>text</body></FictionBook>";
}

inline std::string author(const std::string &first, const std::string &middle,
                          const std::string &last) {
    return "<author>" + (first.empty() ? "" : "<first-name>" + first + "</first-name>") +
           (middle.empty() ? "" : "<middle-name> " + middle + " </middle-name>") +
           (last.empty() ? "" : "<last-name>" + last + "</last-name>") + "</author>";
}

inline std::string container(const std::string &package) {
    return "<container><rootfiles><rootfile full-path=\"x.pdf\" media-type=\"application/pdf\"/>"
           "<rootfile full-path=\"" +
           package + "\" media-type=\"Application/OEBPS-package+xml\"/></rootfiles></container>";
}

inline std::string package(const std::string &metadata, const std::string &rest = "") {
    return "<?xml version=\"1.0\"?><package unique-identifier=\"id\"><metadata>" + metadata +
           "</metadata>" + rest + "</package>";
}

inline ZipMembers epub(const std::string &package_text, ZipMembers more = {}) {
    more.insert(more.begin(), {{"mimetype", "application/epub+zip"},
                               {"META-INF/container.xml", container("OEBPS/content.opf")},
                               {"OEBPS/content.opf", package_text}});
    return more;
}

inline std::string big_endian(uint64_t value, size_t size) {
    std::string bytes;
    while (size-- > 0) bytes += static_cast<char>(value >> 8 * size & 0xFF);
    return bytes;
}

inline std::string exth_record(uint32_t type, const std::string &data) {
    return big_endian(type, 4) + big_endian(data.size() + 8, 4) + data;
}

// A MOBI file and the fields that tests change.
struct Mobi {
    std::string database_name = "Palm_name", full_name = "Full name", exth;
    uint32_t encoding = 65001, header_length = 232, exth_flags = 0x40, first_picture = 1,
             encryption = 0;
    std::vector<std::string> pictures;

    std::string bytes() const {
        std::string block;
        if (!exth.empty())
            block = "EXTH" + big_endian(exth.size() + 12, 4) + big_endian(9, 4) + exth;
        std::string header =
            "MOBI" + big_endian(header_length, 4) + big_endian(2, 4) + big_endian(encoding, 4);
        header.resize(68, '\0');
        header +=
            big_endian(16 + header_length + block.size(), 4) + big_endian(full_name.size(), 4);
        header.resize(92, '\0');
        header += big_endian(first_picture, 4);
        header.resize(112, '\0');
        header += big_endian(exth_flags, 4);
        header.resize(header_length, '\0');
        const std::string record0 =
            std::string(12, '\0') + big_endian(encryption, 2) + "  " + header + block + full_name;
        return database({record0});
    }

    std::string database(std::vector<std::string> records) const {
        records.insert(records.end(), pictures.begin(), pictures.end());
        std::string file = database_name;
        file.resize(60, '\0');
        file += "BOOKMOBI";
        file.resize(76, '\0');
        file += big_endian(records.size(), 2);
        size_t at = 78 + 8 * records.size() + 2;
        for (const auto &record : records) {
            file += big_endian(at, 4) + big_endian(0, 4);
            at += record.size();
        }
        file += "..";
        for (const auto &record : records) file += record;
        return file;
    }
};

} // namespace books
