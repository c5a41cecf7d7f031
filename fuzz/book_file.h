// SPDX-License-Identifier: MIT
// Bytes as a book of one kind: everything is asked of it, and every text must be UTF-8.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <string>

#include "bookinfo/encoding.h"
#include "device_folder.h"
#include "image/limits.h"
#include "kelvane/bookinfo.h"

namespace fuzz {

inline void require_utf8(const char *text) {
    if (text && !book::is_utf8(text)) std::abort();
}

class BookFile {
  public:
    explicit BookFile(const std::string &extension) : name_("book." + extension) {
        image::reduction = 100;
        std::filesystem::create_directories(folder_.path() / "system/config");
        std::ofstream(folder_.path() / "system/config/extensions.cfg")
            << extension << ":Book:2:reader.app:icon\n";
    }

    const std::string &name() const { return name_; }
    const DeviceFolder &folder() const { return folder_; }

    void put(const uint8_t *data, size_t size) const {
        std::ofstream(folder_.path() / name_, std::ios::binary)
            .write(reinterpret_cast<const char *>(data), static_cast<std::streamsize>(size));
    }
    void ask() const {
        const Visit visit(folder_);
        GetBookInfo("."), GetBookISBN("."); // so that nothing is kept
        const bookinfo *b = GetBookInfo(name_.c_str());
        if (!b || b->type != 2 || !b->title || !*b->title) std::abort();
        for (const char *text :
             {b->title, b->author, b->series, b->isbn, b->meta_id, b->first_author, b->annotation,
              b->lang, b->publisher, b->identifiers})
            require_utf8(text);
        for (const char *genre : b->genre) require_utf8(genre);
        const char *isbn = GetBookISBN(name_.c_str());
        if (isbn && std::string(isbn).find_first_not_of("0123456789,") != std::string::npos)
            std::abort();
        std::free(GetBookCover(name_.c_str(), 30, 40));
    }

  private:
    DeviceFolder folder_;
    std::string name_;
};

} // namespace fuzz
