// SPDX-License-Identifier: MIT
// kelvane-dict list and look: the library asked for words.
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <stdexcept>
#include <string>
#include <unistd.h>

#include <kelvane/dictionary.h>

#include "commands.h"
#include "printable.h"

namespace dict {
namespace {

namespace fs = std::filesystem;

// What the library tells of each look-up is for developers: while this lives, only complaints reach
// the user.
class QuietErrors {
  public:
    QuietErrors() : kept_(dup(STDERR_FILENO)) {
        const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
        dup2(nowhere, STDERR_FILENO);
        close(nowhere);
    }
    QuietErrors(const QuietErrors &) = delete;
    QuietErrors &operator=(const QuietErrors &) = delete;
    ~QuietErrors() {
        dup2(kept_, STDERR_FILENO);
        close(kept_);
    }
    void complain(const char *word, const char *why) const {
        std::fflush(stdout);
        dprintf(kept_, "kelvane-dict: %s: %s\n", word, why);
    }

  private:
    int kept_;
};

// A device folder to look words up in, with dictionaries that lie elsewhere: to open one changes
// the keyboard of its device, which may be in use.
class LentFolder {
  public:
    LentFolder() : before_(fs::current_path()) {
        std::string name = (fs::temp_directory_path() / "kelvane-dict-XXXXXX").string();
        if (!mkdtemp(name.data())) throw std::runtime_error(name + ": cannot be made");
        path_ = name;
        fs::create_directory(path_ / "system");
    }
    LentFolder(const LentFolder &) = delete;
    LentFolder &operator=(const LentFolder &) = delete;

    // Has one dictionary.
    void lend_file(const fs::path &file) {
        fs::create_directory(path_ / "system/dictionaries");
        fs::create_symlink(fs::absolute(file), path_ / "system/dictionaries/lent.dic");
        fs::current_path(path_);
    }
    // Has those of the device.
    void lend_device() {
        for (const char *folder : {"system/dictionaries", "system/mnt"})
            fs::create_symlink(before_ / folder, path_ / folder);
        fs::current_path(path_);
    }
    ~LentFolder() {
        std::error_code ignored;
        fs::current_path(before_, ignored);
        fs::remove_all(path_, ignored);
    }

  private:
    fs::path before_, path_;
};

// False when it is not there.
bool print_word(const char *word, const QuietErrors &quiet) {
    char *headword, *translation;
    const int result = LookupWord(word, &headword, &translation);
    if (result == DICT_NONE) quiet.complain(word, "not found");
    if (result == DICT_NEAREST) quiet.complain(word, "not found; the nearest word is");
    if (result != DICT_NONE)
        std::printf("%s\n%s\n\n", printable(headword).c_str(), printable(translation).c_str());
    return result == DICT_EXACT;
}

bool look_in(const char *name, const std::vector<std::string> &words) {
    if (!OpenDictionary(name)) return false;
    const QuietErrors quiet;
    bool all_found = true;
    for (const std::string &word : words) all_found = print_word(word.c_str(), quiet) && all_found;
    CloseDictionary();
    return all_found;
}

bool look_in_all(const std::vector<std::string> &words) {
    char **names = EnumDictionaries();
    if (!names || !*names)
        std::fputs("kelvane-dict: ./system/dictionaries: there is no dictionary\n", stderr);
    bool any_found = false;
    for (; names && *names; ++names) {
        std::printf("== %s\n", *names);
        any_found = look_in(*names, words) || any_found;
    }
    return any_found;
}

} // namespace

int list() {
    char **names = EnumDictionaries();
    for (; names && *names; ++names) std::puts(*names);
    return STATUS_FINE;
}

int look(const std::optional<std::string> &dictionary, const std::vector<std::string> &words) {
    const bool is_file = dictionary && fs::is_regular_file(*dictionary);
    LentFolder folder;
    if (is_file)
        folder.lend_file(*dictionary);
    else
        folder.lend_device();
    const bool is_found =
        !dictionary ? look_in_all(words) : look_in(is_file ? "lent" : dictionary->c_str(), words);
    return is_found ? STATUS_FINE : STATUS_FAILED;
}

} // namespace dict
