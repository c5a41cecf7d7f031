// SPDX-License-Identifier: MIT
// Any bytes as what dictionaries are made from: every word that is not left out is found.
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "dict/sides.h"
#include "dict/sources.h"
#include "dict/writer.h"
#include "dictionary_answers.h"

using namespace fuzz;

namespace {

// Takes the part before a byte that texts seldom have.
std::string_view take_part(std::string_view &bytes) {
    const size_t end = bytes.find('\x1D');
    const std::string_view part = bytes.substr(0, end);
    bytes.remove_prefix(end == bytes.npos ? bytes.size() : end + 1);
    return part;
}

void put_parts(std::string_view bytes, const std::vector<const char *> &names) {
    for (const char *name : names) put_file(name, take_part(bytes));
}

// Enough of the usual letters: to copy all of them takes longer than to compile.
dict::Letters latin_letters() {
    dict::Letters letters = dict::default_letters("sv");
    letters.erase(letters.lower_bound(0x250), letters.end());
    return letters;
}

// The files of a source of one of the kinds.
const char *put_source(char kind, std::string_view bytes) {
    switch (kind) {
    case 'd':
        put_parts(bytes, {"s.index", "s.dict"});
        return "s.index";
    case 's':
        put_parts(bytes, {"s.ifo", "s.idx", "s.dict", "s.syn"});
        return "s.ifo";
    case 'z': // as gzip has it
        put_file("z.index", "pony\tA\tD\n");
        put_file("z.dict.dz", bytes);
        return "z.index";
    default:
        put_file("s.txt", bytes);
        return "s.txt";
    }
}

// Headwords that are spelt the same may have several articles.
void look_all_up(const dict::Source &source, const dict::Written &written) {
    size_t left_out = written.left_out.size();
    for (const dict::Entry &e : source.entries) {
        char *headword = nullptr;
        const std::string word(e.word);
        if (LookupWordExact(word.c_str(), &headword, nullptr) == DICT_EXACT && word == headword)
            continue;
        require(left_out-- > 0);
    }
}

} // namespace

// A letter for the kind; rules, letters and the source behind it.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    static const DeviceFolder folder;
    const Visit visit(folder);
    const QuietErrors quiet;
    if (size == 0) return 0;
    std::string_view bytes(reinterpret_cast<const char *>(data) + 1, size - 1);
    static const dict::Letters usual = latin_letters();
    dict::Mistakes mistakes;
    dict::Letters letters = usual;
    dict::Sides sides;
    sides.morphology = dict::read_rules(take_part(bytes), "rules", mistakes);
    dict::read_letters(take_part(bytes), "letters", letters, mistakes);
    sides.collation = dict::pairs_of(letters);
    try {
        const dict::Source source = dict::read_source(put_source(static_cast<char>(*data), bytes));
        const dict::Written written =
            dict::write(source.entries, sides, {.container_bytes = 64, .threads = 1});
        require(written.words + written.left_out.size() == source.entries.size());
        if (written.bytes.empty()) return 0;
        put_dictionary(written.bytes);
        require(OpenDictionary("d") == 1);
        look_all_up(source, written);
        CloseDictionary();
    } catch (const std::runtime_error &) { // a source that cannot be read
    }
    return 0;
}
