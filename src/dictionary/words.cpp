// SPDX-License-Identifier: MIT
// Lists of words that start alike.
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <string_view>

#include "dictionary/opened.h"
#include "ground/guard.h"
#include "kelvane/dictionary.h"

namespace dictionary {
namespace {

constexpr size_t most_words = 1'000'000, most_text = 16 << 20;

// Words while a list grows: their texts, each with its NUL, in a block that becomes the list.
class Words {
  public:
    // False when the list is full.
    bool add(std::string_view word) {
        if (count_ == most_words || word.size() >= most_text - size_) return false;
        if (size_ + word.size() >= room_) resize(2 * room_ + word.size() + 1);
        word.copy(text_.get() + size_, word.size());
        size_ += word.size();
        text_.get()[size_++] = '\0';
        ++count_;
        return true;
    }

    // The pointers, and the texts behind them. They move in their block, as a list may be large.
    char **take_list() {
        const size_t pointers = (count_ + 1) * sizeof(char *);
        resize(pointers + size_);
        std::memmove(text_.get() + pointers, text_.get(), size_);
        char *text = text_.get() + pointers;
        auto **const list = reinterpret_cast<char **>(text_.release());
        for (size_t i = 0; i < count_; text += std::strlen(text) + 1) list[i++] = text;
        list[count_] = nullptr;
        return list;
    }

  private:
    struct Free {
        void operator()(char *block) const { std::free(block); }
    };

    void resize(size_t room) {
        auto *const block = static_cast<char *>(std::realloc(text_.get(), room));
        if (!block) throw std::bad_alloc();
        static_cast<void>(text_.release()); // it is this block now
        text_.reset(block);
        room_ = room;
    }

    std::unique_ptr<char, Free> text_;
    size_t size_ = 0, room_ = 0, count_ = 0;
};

} // namespace
} // namespace dictionary

char **GetWordListWithPrefix(const char *prefix) {
    using namespace dictionary;
    return ground::guarded(nullptr, [&] {
        Words words;
        if (prefix && opened())
            opened()->dictionary->each_word(std::string(prefix).c_str(),
                                            [&](const char *word) { return words.add(word); });
        return words.take_list();
    });
}

void freeWordsWithPrefix(char **words) {
    std::free(words);
}
