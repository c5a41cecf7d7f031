// SPDX-License-Identifier: MIT
// Reads parts of a book, never more than is asked for.
#include "bookinfo/source.h"

#include <algorithm>

#include "kelvane/files.h"

namespace book {
namespace {

constexpr uint64_t most_unpacked = 1 << 20;

std::string text_of(const std::optional<file::MemberBytes> &bytes) {
    return bytes ? std::string(bytes->begin(), bytes->end()) : std::string();
}

} // namespace

Source::Source(const Location &location) : location_(location) {}

// What is asked for is read at once, and nothing else.
bool Source::open() {
    if (file_) return true;
    file_ = file::open_plain(path().c_str());
    return file_ && std::setvbuf(file_.get(), nullptr, _IONBF, 0) == 0;
}

std::string Source::read_at(uint64_t place, size_t count) {
    if (is_in_archive()) {
        if (place >= most_unpacked) return {};
        const auto most = static_cast<size_t>(std::min<uint64_t>(count, most_unpacked - place));
        const auto skipped = static_cast<size_t>(place);
        const auto start = location_.archive->read_start(name(), skipped + most);
        return start && start->size() > skipped ? text_of(start).substr(skipped) : std::string();
    }
    const auto size = static_cast<uint64_t>(location_.st.st_size);
    if (place >= size || !open()) return {};
    if (place != place_ && kv_fseek(file_.get(), static_cast<long>(place), SEEK_SET) != 0)
        return {};
    std::string bytes(static_cast<size_t>(std::min<uint64_t>(count, size - place)), '\0');
    bytes.resize(kv_fread(bytes.data(), 1, bytes.size(), file_.get()));
    place_ = place + bytes.size();
    return bytes;
}

std::string Source::end(size_t count) {
    const auto size = static_cast<uint64_t>(location_.st.st_size);
    return is_in_archive() ? std::string() : read_at(size - std::min<uint64_t>(size, count), count);
}

std::string Source::whole(size_t limit) {
    if (is_in_archive()) return text_of(location_.archive->read(name(), limit));
    const auto size = static_cast<uint64_t>(location_.st.st_size);
    return size <= limit ? read_at(0, static_cast<size_t>(size)) : std::string();
}

} // namespace book
