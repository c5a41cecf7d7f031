// SPDX-License-Identifier: MIT
// Dictionary files made byte by byte, sound or not, without the library's own writer.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>
#include <zlib.h>

#include "support/tempdir.h"

namespace dictionaries {

inline std::string u16(unsigned value) {
    return {static_cast<char>(value & 0xFF), static_cast<char>(value >> 8 & 0xFF)};
}
inline std::string u32(uint32_t value) {
    return u16(value & 0xFFFF) + u16(value >> 16);
}

// A text of which no character is beyond ASCII, in characters of 16 bits.
inline std::string wide(std::string_view text) {
    std::string out;
    for (const char c : text) out += u16(static_cast<unsigned char>(c));
    return out;
}

inline std::string packed(const std::string &bytes) {
    uLongf size = compressBound(bytes.size());
    std::string out(size, '\0');
    compress2(reinterpret_cast<Bytef *>(out.data()), &size,
              reinterpret_cast<const Bytef *>(bytes.data()), bytes.size(), 6);
    return out.substr(0, size);
}

using Words = std::vector<std::pair<std::string, std::string>>; // headwords and translations

inline std::string record(const std::string &headword, const std::string &translation) {
    const std::string texts = headword + '\0' + translation + '\0';
    return u16(static_cast<unsigned>(texts.size() + 2)) + texts;
}

// Unpacked.
inline std::string container(const Words &words) {
    std::string bytes;
    for (const auto &[headword, translation] : words) bytes += record(headword, translation);
    return bytes + u16(0);
}

// Strings of morphology, each with its NUL, and the empty one behind them.
inline std::string rules(const std::vector<std::string> &strings) {
    std::string bytes;
    for (const std::string &s : strings) bytes += wide(s) + u16(0);
    return bytes + u16(0);
}

// A section of pairs of characters, from and to.
inline std::string collation(const std::vector<std::pair<unsigned, unsigned>> &pairs) {
    std::string bytes;
    for (const auto &[from, to] : pairs) bytes += u16(from) + u16(to);
    return bytes;
}

// Capitals as small letters, "-" and "'" dropped.
inline std::string usual_collation() {
    std::vector<std::pair<unsigned, unsigned>> pairs = {{'-', 0}, {'\'', 0}};
    for (unsigned c = 'A'; c <= 'Z'; ++c) pairs.emplace_back(c, c - 'A' + 'a');
    return collation(pairs);
}

// What a file is laid out from. Sections are as they stand in the file, empty for none.
struct File {
    std::map<unsigned, std::string> sections; // by offset in the header
    std::vector<std::string> containers;      // packed
    std::map<unsigned, uint32_t> fields;      // that are other than they should be
    uint32_t limit = 4096;

    static std::string raw(const std::string &data) { return u32(uint32_t(data.size())) + data; }
    static std::string zipped(const std::string &data) {
        return u32(static_cast<uint32_t>(data.size())) + packed(data);
    }

    std::string bytes() const {
        std::map<unsigned, uint32_t> header = {{4, 257}, {12, limit}};
        std::string body;
        for (const auto &[field, section] : sections) {
            header[field] = 128 + static_cast<uint32_t>(body.size());
            body += section;
        }
        header[60] = 128 + static_cast<uint32_t>(body.size());
        for (const std::string &c : containers) body += c;
        for (const auto &[field, value] : fields) header[field] = value;
        std::string out(128, '\0');
        out.replace(0, 4, "SDIC");
        for (const auto &[field, value] : header) out.replace(field, 4, u32(value));
        return out + body;
    }
};

// A sound dictionary of some containers.
inline File file_of(const std::vector<Words> &containers,
                    const std::vector<std::string> &morphology = {},
                    const std::string &keyboard = {}) {
    File f;
    std::string index;
    for (const Words &words : containers) {
        f.containers.push_back(packed(container(words)));
        index += u16(static_cast<unsigned>(f.containers.back().size())) + words[0].first + '\0';
    }
    f.sections[36] = File::raw(usual_collation());
    if (!morphology.empty()) f.sections[40] = File::zipped(rules(morphology));
    if (!keyboard.empty()) f.sections[44] = File::zipped(keyboard);
    f.sections[56] = File::zipped(index + u16(0));
    return f;
}

inline void install(const File &file, const std::string &name = "words",
                    const std::string &folder = "system/dictionaries") {
    write_file(folder + "/" + name + ".dic", file.bytes());
}

} // namespace dictionaries
