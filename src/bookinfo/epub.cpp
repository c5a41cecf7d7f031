// SPDX-License-Identifier: MIT
// EPUB: an archive whose container names a package, which describes the book and lists its files.
#include <algorithm>

#include "bookinfo/encoding.h"
#include "bookinfo/format.h"
#include "bookinfo/markup.h"
#include "bookinfo/member_name.h"
#include "bookinfo/package.h"
#include "bookinfo/scan.h"
#include "file/archive.h"
#include "ground/fold.h"

namespace book {
namespace {

constexpr size_t most_package_bytes = 4 << 20; // when its list of files is read
constexpr size_t most_page_bytes = 1 << 20;

std::string text_of(const std::optional<file::MemberBytes> &bytes, std::string &encoding) {
    return bytes ? without_mark(std::string(bytes->begin(), bytes->end()), encoding)
                 : std::string();
}

// The start of a member, up to an end tag.
std::string start_of(file::Archive &archive, std::string_view name, std::string_view end_tag,
                     std::string &encoding) {
    std::string text = text_of(archive.read_start(name, scanned_bytes), encoding);
    text.resize(std::min(text.find(end_tag), text.size()));
    return text;
}

// The first package that the container names; empty without one.
std::string package_name(file::Archive &archive) {
    constexpr std::string_view kind = "application/oebps";
    std::string ignored;
    const std::string text = start_of(archive, "META-INF/container.xml", "</container>", ignored);
    for (auto file = find_start_tag(text, "rootfile"); file;
         file = find_start_tag(text, "rootfile", file->after))
        if (ground::equal_folded(attribute(file->tag, "media-type").substr(0, kind.size()), kind))
            return decoded(attribute(file->tag, "full-path"));
    return {};
}

// An EPUB inside an archive would have to be unpacked first.
std::unique_ptr<file::Archive> open(const Source &source) {
    return source.is_in_archive() ? nullptr : file::Archive::open(source.path().c_str());
}

void read(Source &source, Book &book) {
    const auto archive = open(source);
    if (!archive) return;
    read_package(start_of(*archive, package_name(*archive), "</metadata>", book.encoding), book);
    book.is_protected = archive->contains("META-INF/rights.xml");
}

// The list of files in a package, and what is said of them.
class Manifest {
  public:
    Manifest(file::Archive &archive, std::string package)
        : archive_(archive), package_(std::move(package)) {
        std::string ignored;
        text_ = text_of(archive.read(package_, most_package_bytes), ignored);
    }

    Picture cover() {
        for (const std::string &name : {by_property(), by_meta(), by_guide()})
            if (auto picture = read_picture(name); !picture.empty()) return picture;
        return first_of_page(first_page());
    }

  private:
    // The value of an attribute of the first tag of a name for which something holds.
    template <class Condition>
    std::string find(std::string_view name, std::string_view wanted, Condition holds) const {
        for (auto tag = find_start_tag(text_, name); tag;
             tag = find_start_tag(text_, name, tag->after))
            if (holds(tag->tag)) return decoded(attribute(tag->tag, wanted));
        return {};
    }

    std::string member(std::string_view reference) const {
        return resolve_member(package_, reference);
    }
    std::string by_id(std::string_view id) const {
        if (id.empty()) return {};
        return member(
            find("item", "href", [&](std::string_view tag) { return attribute(tag, "id") == id; }));
    }
    // Properties are words with spaces between them.
    std::string by_property() const {
        return member(find("item", "href", [](std::string_view tag) {
            return attribute(tag, "properties").find("cover-image") != std::string_view::npos;
        }));
    }
    std::string by_meta() const {
        const std::string id = find("meta", "content", [](std::string_view tag) {
            return attribute(tag, "name") == "cover";
        });
        const std::string found = by_id(id);
        return found.empty() ? member(id) : found; // some name the file itself
    }
    std::string by_guide() const {
        return member(find("reference", "href",
                           [](std::string_view tag) { return attribute(tag, "type") == "cover"; }));
    }
    std::string first_page() const {
        return by_id(find("itemref", "idref", [](std::string_view) { return true; }));
    }

    // A picture, or the first one of a page.
    Picture read_picture(const std::string &name) {
        if (name.empty()) return {};
        const size_t dot = std::min(name.rfind('.'), name.size());
        const std::string extension = ground::folded(std::string_view(name).substr(dot));
        if (extension.find("htm") != extension.npos || extension == ".xml")
            return first_of_page(name);
        const auto bytes = archive_.read(name, most_picture_bytes);
        return bytes ? Picture(bytes->begin(), bytes->end()) : Picture();
    }

    Picture first_of_page(const std::string &page) {
        std::string ignored;
        const std::string text = text_of(archive_.read(page, most_page_bytes), ignored);
        const auto element = find_start_tag(text, "img");
        const auto drawn = find_start_tag(text, "image");
        std::string_view named = element ? attribute(element->tag, "src") : "";
        if (named.empty() && drawn) named = attribute(drawn->tag, "xlink:href");
        if (named.empty() && drawn) named = attribute(drawn->tag, "href");
        const auto bytes = archive_.read(resolve_member(page, decoded(named)), most_picture_bytes);
        return bytes ? Picture(bytes->begin(), bytes->end()) : Picture();
    }

    file::Archive &archive_;
    std::string package_, text_;
};

Picture cover(Source &source) {
    const auto archive = open(source);
    return archive ? Manifest(*archive, package_name(*archive)).cover() : Picture();
}

} // namespace

extern const Format epub{"epub", read, cover};

} // namespace book
