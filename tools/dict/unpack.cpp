// SPDX-License-Identifier: MIT
// kelvane-dict unpack: what a dictionary was made from.
#include <cstdio>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>

#include "commands.h"
#include "contents.h"
#include "sides.h"

namespace dict {
namespace {

namespace fs = std::filesystem;
using namespace dictionary;

std::string escaped(std::string_view text) {
    std::string out;
    for (const char c : text)
        if (c == '\n')
            out += "\\n";
        else if (c == '\t')
            out += "\\t";
        else if (c == '\\')
            out += "\\\\";
        else
            out += c;
    return out;
}

void save(const fs::path &path, std::string_view text) {
    std::ofstream out(path, std::ios::binary);
    out.write(text.data(), static_cast<std::streamsize>(text.size()));
    out.close();
    if (!out) throw std::runtime_error(path.string() + ": cannot be written");
}

std::u16string as_text(ByteView bytes) {
    std::u16string text;
    for (; bytes.size() >= 2; bytes = bytes.subspan(2))
        text += static_cast<char16_t>(read_u16(bytes.data()));
    return text;
}

std::string words_text(Contents &contents) {
    std::string text;
    contents.each_container([&](size_t number, Container *c) {
        if (!c) throw std::runtime_error("container " + std::to_string(number) + " is damaged");
        for (size_t i = 0; i < c->size(); ++i) {
            const auto [headword, translation] = c->entry(i);
            text += escaped(headword) + "\t" + escaped(translation);
            if (text.ends_with('\r')) text += '\r'; // the last one belongs to the end of the line
            text += '\n';
        }
    });
    return text;
}

Letters letters_of(ByteView pairs) {
    Letters letters;
    for (; pairs.size() >= 4; pairs = pairs.subspan(4))
        letters[read_u16(pairs.data())] = read_u16(&pairs[2]);
    return letters;
}

} // namespace

int unpack_to(const fs::path &path, const fs::path &folder) {
    const auto contents = read_contents(path);
    if (!contents) return STATUS_FAILED;
    fs::create_directories(folder);
    save(folder / "words.txt", words_text(*contents));
    save(folder / "collation.txt", letters_text(letters_of(contents->pairs)));
    if (!contents->rules.empty())
        save(folder / "morphology.txt", rules_text(as_text(contents->rules)));
    const ByteView keyboard = contents->keyboard;
    if (!keyboard.empty())
        save(folder / "keyboard.kbd",
             {reinterpret_cast<const char *>(keyboard.data()), keyboard.size()});
    return STATUS_FINE;
}

} // namespace dict
