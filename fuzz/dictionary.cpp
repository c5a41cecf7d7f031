// SPDX-License-Identifier: MIT
// Any bytes as a dictionary: it is searched, stepped through and listed, in bounds.
#include <cstdint>
#include <string>

#include "dictionary/format.h"
#include "dictionary_answers.h"

using namespace fuzz;

namespace {

// The file with containers of 64 KiB at most: larger ones only take longer. A limit that is refused
// stays.
std::string quick_file(const uint8_t *data, size_t size) {
    using namespace dictionary;
    std::string bytes(reinterpret_cast<const char *>(data), size);
    if (size < header_bytes) return bytes;
    const uint32_t limit = read_u32(data + limit_field);
    if (limit > 0xFFFF && limit <= largest_container)
        bytes.replace(limit_field, 4, "\xFF\xFF\0\0", 4);
    return bytes;
}

// To the end and back again leads to the same words.
void walk() {
    constexpr int most_steps = 50;
    char *headword = nullptr, *translation = nullptr;
    int steps = 0;
    for (; steps < most_steps && LookupNext(&headword, &translation) == DICT_EXACT; ++steps)
        require(std::strlen(headword) + std::strlen(translation) < 0x10000);
    for (; steps > 0; --steps)
        if (LookupPrevious(nullptr, nullptr) != DICT_EXACT) break;
    LookupCurrent(&headword, &translation);
}

// What a list has is found, unless the file has it out of order.
void list(const char *prefix) {
    char **const words = GetWordListWithPrefix(prefix);
    for (int i = 0; words && words[i] && i < 20; ++i) look(words[i]);
    freeWordsWithPrefix(words);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static const DeviceFolder folder;
    const Visit visit(folder);
    const QuietErrors quiet;
    put_dictionary(quick_file(data, size));
    if (OpenDictionary("d") == 0) return 0;
    look(nullptr);
    walk();
    for (const char *word : {"dog", "ponies", "co-op", "\xFF", "", "zz"}) look(word);
    walk();
    LookupWordExact("cow", nullptr, nullptr);
    list("c");
    list("");
    CloseDictionary();
    return 0;
}
