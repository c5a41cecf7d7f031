// SPDX-License-Identifier: MIT
// Sorts the words of a dictionary and lays its file out.
#include "writer.h"

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <set>
#include <stdexcept>
#include <string_view>

#include "dictionary/collation.h"
#include "dictionary/format.h"
#include "pack.h"
#include "utf8_check.h"

namespace dict {
namespace {

using dictionary::Field;

std::string u16_bytes(uint16_t value) {
    return {static_cast<char>(value & 0xFF), static_cast<char>(value >> 8)};
}

std::string u32_bytes(size_t value) {
    return u16_bytes(static_cast<uint16_t>(value & 0xFFFF)) +
           u16_bytes(static_cast<uint16_t>(value >> 16));
}

std::string collation_bytes(const Sides &sides) {
    std::string bytes;
    for (const auto &[from, to] : sides.collation) bytes += u16_bytes(from) + u16_bytes(to);
    return bytes;
}

std::string morphology_bytes(const Sides &sides) {
    std::string bytes;
    for (const char16_t c : sides.morphology) bytes += u16_bytes(c);
    return bytes;
}

// What is wrong with an entry by itself.
std::optional<Reason> fault_of(const Entry &e) {
    if (e.word.find('\0') != e.word.npos || e.article.find('\0') != e.article.npos)
        return Reason::not_utf8;
    switch (check_utf8(e.word)) {
    case Utf8::broken:
        return Reason::not_utf8;
    case Utf8::beyond_16_bits:
        return Reason::beyond_16_bits;
    case Utf8::plain:
        break;
    }
    if (e.word.size() > longest_word) return Reason::word_too_long;
    if (record_size(e) > dictionary::largest_record) return Reason::too_large;
    return std::nullopt;
}

// All entries that can be looked up, with their keys, not sorted yet.
Words collate(const std::vector<Entry> &entries, const dictionary::Collation &collation,
              std::vector<LeftOut> &left_out) {
    Words words;
    words.sorted.reserve(entries.size());
    for (const Entry &e : entries) {
        const size_t start = words.keys.size();
        auto fault = fault_of(e);
        if (!fault) collation.append(std::string(e.word).c_str(), words.keys);
        const size_t size = words.keys.size() - start;
        if (!fault && size == 0) fault = Reason::collates_to_nothing;
        if (fault)
            left_out.push_back({&e, *fault});
        else
            words.sorted.push_back({&e, static_cast<uint32_t>(start), static_cast<uint32_t>(size)});
    }
    return words;
}

// Of equal words the order of the source stays.
void sort(Words &words) {
    std::ranges::stable_sort(words.sorted, [&](const Sorted &a, const Sorted &b) {
        return dictionary::is_before(words.key(a), words.key(b));
    });
}

// Drops entries that are there already, among those that collate alike.
void drop_repeated(Words &words, std::vector<LeftOut> &left_out) {
    std::set<std::pair<std::string_view, std::string_view>> seen;
    std::vector<Sorted> kept;
    kept.reserve(words.sorted.size());
    for (const Sorted &s : words.sorted) {
        if (!kept.empty() && !std::ranges::equal(words.key(kept.back()), words.key(s)))
            seen.clear();
        if (seen.emplace(s.entry->word, s.entry->article).second)
            kept.push_back(s);
        else
            left_out.push_back({s.entry, Reason::repeated});
    }
    words.sorted = std::move(kept);
}

const char *name_of(Field field) {
    switch (field) {
    case dictionary::morphology_field:
        return "the rules for forms of words";
    case dictionary::keyboard_field:
        return "the keyboard";
    default:
        return "the index of so many words, or such long ones";
    }
}

// Of a section that is read as a whole.
size_t most_bytes(Field field) {
    switch (field) {
    case dictionary::morphology_field:
        return dictionary::most_morphology_bytes;
    case dictionary::index_field:
        return dictionary::most_index_bytes;
    default:
        return dictionary::largest_section;
    }
}

// The header with the sections behind it, up to the first container.
class Layout {
  public:
    Layout() : header_(dictionary::header_bytes, '\0') {
        header_.replace(0, dictionary::magic.size(), dictionary::magic);
        set(dictionary::version_field, dictionary::version);
    }
    void set(Field field, size_t value) { header_.replace(field, 4, u32_bytes(value)); }
    // Nothing is added for a section that is empty.
    void add(Field field, size_t unpacked_size, const std::string &stored) {
        if (unpacked_size == 0) return;
        if (unpacked_size > most_bytes(field))
            throw std::runtime_error("too large to be opened: " + std::string(name_of(field)));
        set(field, size());
        sections_ += u32_bytes(unpacked_size) + stored;
    }
    size_t size() const { return header_.size() + sections_.size(); }
    std::string take() { return std::move(header_) + std::move(sections_); }

  private:
    std::string header_, sections_;
};

std::string index_of(const std::vector<PackedContainer> &containers) {
    std::string index;
    for (const PackedContainer &c : containers)
        index.append(u16_bytes(static_cast<uint16_t>(c.bytes.size())))
            .append(c.first->word)
            .push_back('\0');
    return index + u16_bytes(0);
}

std::string lay_out(const std::vector<PackedContainer> &containers, const Sides &sides) {
    Layout layout;
    size_t largest = 0, total = 0;
    for (const PackedContainer &c : containers) {
        largest = std::max(largest, c.unpacked);
        total += c.bytes.size();
    }
    layout.set(dictionary::limit_field, largest);
    const std::string pairs = collation_bytes(sides), rules = morphology_bytes(sides),
                      index = index_of(containers);
    layout.add(dictionary::collation_field, pairs.size(), pairs);
    layout.add(dictionary::morphology_field, rules.size(), deflated(rules));
    layout.add(dictionary::keyboard_field, sides.keyboard.size(), deflated(sides.keyboard));
    layout.add(dictionary::index_field, index.size(), deflated(index));
    layout.set(dictionary::containers_field, layout.size());
    if (total > UINT32_MAX - layout.size())
        throw std::runtime_error("too large to be opened: more than 4 GiB");
    std::string bytes = layout.take();
    bytes.reserve(bytes.size() + total);
    for (const PackedContainer &c : containers) bytes += c.bytes;
    return bytes;
}

} // namespace

Written write(const std::vector<Entry> &entries, const Sides &sides, const Plan &plan) {
    Written written;
    const std::string pairs = collation_bytes(sides);
    const auto collation = std::make_unique<dictionary::Collation>();
    collation->apply({reinterpret_cast<const uint8_t *>(pairs.data()), pairs.size()});
    Words words = collate(entries, *collation, written.left_out);
    sort(words);
    drop_repeated(words, written.left_out);
    std::vector<PackedContainer> containers = pack(words, plan);
    for (const PackedContainer &c : containers) {
        written.words += c.words;
        written.left_out.insert(written.left_out.end(), c.left_out.begin(), c.left_out.end());
    }
    std::erase_if(containers, [](const PackedContainer &c) { return !c.first; });
    written.containers = containers.size();
    if (!containers.empty()) written.bytes = lay_out(containers, sides);
    return written;
}

} // namespace dict
