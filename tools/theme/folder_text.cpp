// SPDX-License-Identifier: MIT
// parameters.txt and the translations, with all that can be wrong in them.
#include <algorithm>
#include <map>

#include "folder.h"
#include "values.h"

namespace tool {
namespace fs = std::filesystem;
namespace {

constexpr const char *bom = "\xEF\xBB\xBF";

class TextReader {
  public:
    explicit TextReader(Mistakes &mistakes) : mistakes_(mistakes) {}

    void read_parameters(const fs::path &file) {
        read(file, [this](const Place &at, Entry entry) {
            Translation translation;
            if (split(entry, translation))
                add(at, std::move(translation));
            else
                add(at, std::move(entry));
        });
    }
    void read_translations(const fs::path &file) {
        const std::string name = file.stem().string();
        const bool any = name == any_language;
        if (file.extension() != ".txt" || (!any && !is_language(name))) {
            mistakes_.add({file}, "is not named after a language; name it such as de.txt, or "
                                  "any-language.txt for the texts of all languages");
            return;
        }
        read(file, [this, language = any ? "*" : name](const Place &at, Entry entry) {
            add(at, Translation{language, std::move(entry.name), std::move(entry.value)});
        });
    }
    ThemeText take() { return std::move(text_); }

  private:
    template <typename Use>
    void read(const fs::path &file, Use use) {
        const std::string bytes = read_whole(file);
        std::string_view text = bytes;
        if (text.starts_with(bom)) text.remove_prefix(3);
        for (const Line &line : lines_of(text)) {
            const Place at{file, line.number};
            Entry entry;
            if (line.text.find('\0') != line.text.npos)
                mistakes_.add(at, "a NUL byte ends the line; remove it");
            else if (!split(line.text, entry))
                mistakes_.add(at, "no \"=\"; write NAME=VALUE, or # before a comment");
            else if (entry.name.empty())
                mistakes_.add(at, "no name before \"=\"; write NAME=VALUE");
            else if (entry.name.ends_with(' ') || entry.name.ends_with('\t'))
                mistakes_.add(at, "the name ends with a blank, which would count; remove it");
            else
                use(at, std::move(entry));
        }
    }

    void add(const Place &at, Entry entry) {
        if (const std::string fault = value_fault(entry.name, entry.value); !fault.empty())
            mistakes_.add(at, entry.name + ": " + fault);
        if (const std::string meant = probably_meant(entry.name); !meant.empty())
            mistakes_.warn(at, entry.name + " is no parameter of the library; did you mean " +
                                   meant + "?");
        if (is_first(at, entry.name, entry.name)) text_.parameters.push_back(std::move(entry));
    }
    void add(const Place &at, Translation translation) {
        std::string language = translation.language;
        if (language != "*" && !is_language(language))
            return mistakes_.add(at, "\"" + language +
                                         "\" before the colon is no language; write "
                                         "one such as de, or * for all");
        if (translation.key.empty())
            return mistakes_.add(at,
                                 "no key behind \"" + language + ":\"; write LANGUAGE:KEY=TEXT");
        for (char &c : language)
            if (c >= 'A' && c <= 'Z') c = static_cast<char>(c | 0x20);
        if (is_first(at, language + ":" + translation.key, translation.key))
            text_.translations.push_back(std::move(translation));
    }
    bool is_first(const Place &at, const std::string &name, const std::string &shown) {
        const auto [first, is_new] = places_.try_emplace(name, at);
        if (!is_new)
            mistakes_.add(at, shown + " is there already, at " + first->second.file.string() + ":" +
                                  std::to_string(first->second.line) + "; remove one of the two");
        return is_new;
    }

    Mistakes &mistakes_;
    ThemeText text_;
    std::map<std::string, Place> places_;
};

} // namespace

bool is_language(std::string_view code) {
    return !code.empty() && code != any_language && std::ranges::all_of(code, [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
               c == '_' || c == '-';
    });
}

ThemeText read_text(const fs::path &folder, Mistakes &mistakes) {
    TextReader reader(mistakes);
    if (const fs::path file = folder / parameter_file; fs::exists(file))
        reader.read_parameters(file);
    for (const fs::path &file : files_of(folder / translation_folder))
        reader.read_translations(file);
    return reader.take();
}

} // namespace tool
