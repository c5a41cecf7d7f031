// SPDX-License-Identifier: MIT
// Converts with iconv, and tells well-formed UTF-8 from the rest.
#include "bookinfo/encoding.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <iconv.h>
#include <utility>

#include "ground/fold.h"

namespace book {
namespace {

constexpr std::string_view replacement = "\xEF\xBF\xBD";

constexpr bool is_continuation(unsigned char c) {
    return (c & 0xC0) == 0x80;
}

// The length that a first byte tells, and the range of the second byte.
struct Form {
    size_t length;
    unsigned char low, high;
};

constexpr Form form_of(unsigned char first) {
    if (first < 0x80) return {1, 0, 0};
    if (first < 0xC2 || first > 0xF4) return {0, 0, 0};
    if (first < 0xE0) return {2, 0x80, 0xBF};
    if (first < 0xF0)
        return {3, static_cast<unsigned char>(first == 0xE0 ? 0xA0 : 0x80),
                static_cast<unsigned char>(first == 0xED ? 0x9F : 0xBF)};
    return {4, static_cast<unsigned char>(first == 0xF0 ? 0x90 : 0x80),
            static_cast<unsigned char>(first == 0xF4 ? 0x8F : 0xBF)};
}

struct Character {
    size_t size;
    bool is_valid;
};

Character next_character(std::string_view text) {
    const auto byte = [&](size_t i) { return static_cast<unsigned char>(text[i]); };
    const Form form = form_of(byte(0));
    if (form.length == 0) return {1, false};
    for (size_t i = 1; i < form.length; ++i) {
        if (i == text.size() || !is_continuation(byte(i))) return {i, false};
        if (i == 1 && (byte(1) < form.low || byte(1) > form.high)) return {1, false};
    }
    return {form.length, true};
}

std::string mended(std::string_view text) {
    if (is_utf8(text)) return std::string(text);
    std::string out;
    while (!text.empty()) {
        const Character c = next_character(text);
        out += c.is_valid ? text.substr(0, c.size) : replacement;
        text.remove_prefix(c.size);
    }
    return out;
}

// From an encoding to UTF-8; null when nobody knows it.
Iconv open_iconv(const char *encoding) {
    const iconv_t handle = iconv_open("UTF-8", encoding);
    return Iconv(handle != reinterpret_cast<iconv_t>(-1) ? handle : nullptr);
}

std::string converted(iconv_t handle, std::string_view text) {
    std::string out, copy(text); // iconv() does not promise to leave it
    char *in = copy.data();
    size_t left = copy.size();
    const auto step = [&](char **from) {
        std::array<char, 512> buffer;
        char *to = buffer.data();
        size_t room = buffer.size();
        const bool failed = iconv(handle, from, &left, &to, &room) == static_cast<size_t>(-1);
        const int error = failed ? errno : 0;
        out.append(buffer.data(), to);
        return error;
    };
    iconv(handle, nullptr, nullptr, nullptr, nullptr);
    while (left > 0) {
        const int error = step(&in);
        if (error != EILSEQ && error != EINVAL) continue;
        out += replacement;
        ++in, --left;
    }
    step(nullptr);
    return out;
}

// What is printed of ASCII. Control characters may switch to other characters.
constexpr bool is_printable(char c) {
    return c >= ' ' && c < 0x7F;
}

// False where a printable character is another one, or switches to others.
bool keeps_ascii(iconv_t handle) {
    std::string all;
    for (char c = ' '; is_printable(c); ++c) all += c;
    return converted(handle, all) == all;
}

// Null for an encoding that nobody knows, and for one in which tags would be other bytes: they were
// found, so that declaration is wrong.
Iconv open_for_tags(const char *encoding) {
    constexpr std::string_view letters = "<a>";
    Iconv opened = open_iconv(encoding);
    if (opened && converted(opened.get(), letters) != letters) {
        opened.reset();
        errno = EINVAL;
    }
    return opened;
}

} // namespace

bool is_utf8(std::string_view text) {
    while (!text.empty()) {
        const Character c = next_character(text);
        if (!c.is_valid) return false;
        text.remove_prefix(c.size);
    }
    return true;
}

size_t first_character(std::string_view text) {
    return text.empty() ? 0 : next_character(text).size;
}

void IconvCloser::operator()(void *handle) const {
    iconv_close(handle);
}

Converter::Converter(const std::string &encoding) {
    if (encoding.empty()) return;
    is_declared_ =
        ground::equal_folded(encoding, "utf-8") || ground::equal_folded(encoding, "utf8");
    if (is_declared_) return;
    // The converter of the last encoding is kept, as books come in shelves.
    static Kept &kept = *new Kept;
    if (kept.encoding != encoding) {
        Kept opened{encoding, open_for_tags(encoding.c_str())};
        if (!opened.handle && errno != EINVAL) return; // it may be known the next time
        opened.keeps_ascii = opened.handle && keeps_ascii(opened.handle.get());
        kept = std::move(opened);
    }
    kept_ = kept.handle ? &kept : nullptr;
    is_declared_ = kept_ != nullptr;
}

std::string Converter::operator()(std::string_view text) const {
    if (!kept_ || (kept_->keeps_ascii && std::all_of(text.begin(), text.end(), is_printable)))
        return mended(text);
    return mended(converted(kept_->handle.get(), text));
}

std::string without_mark(std::string text, std::string &encoding) {
    const std::string_view start = text;
    const char *utf16 = start.starts_with("\xFF\xFE")   ? "UTF-16LE"
                        : start.starts_with("\xFE\xFF") ? "UTF-16BE"
                                                        : nullptr;
    if (utf16) {
        encoding = "UTF-8";
        const Iconv handle = open_iconv(utf16);
        return handle ? mended(converted(handle.get(), start.substr(2))) : std::string();
    }
    if (!start.starts_with("\xEF\xBB\xBF")) return text;
    encoding = "UTF-8";
    return text.substr(3);
}

} // namespace book
