// SPDX-License-Identifier: MIT
// The articles of a language, with the places and bookmarks that the user has in them.
#ifndef MAGAZINE_ISSUE_H
#define MAGAZINE_ISSUE_H

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include <kelvane.hpp>

namespace fs = std::filesystem;

struct Article {
    std::string name, title, author, text; // the name is "en/2-bread"
    std::string picture;                   // its path; empty for none
    int top = 0;                           // the byte at the top of the page that is read
    std::set<int> marks;                   // bytes with bookmarks
    kelvane::Bitmap cover;

    int size() const { return int(text.size()); }
    int percent(int byte) const { return int(100LL * byte / std::max(size(), 1)); }
    std::string stem() const { return name.substr(name.find('/')); } // the same in each language
};

// Without the carriage returns of other systems, and NULs, which would end a text of C.
inline bool read_line(std::istream &file, std::string &line) {
    const bool is_there = bool(std::getline(file, line));
    const auto is_unwanted = [](char c) { return c == '\r' || c == '\0'; };
    line.erase(std::remove_if(line.begin(), line.end(), is_unwanted), line.end());
    return is_there;
}

// The first three lines are title, author, and picture or nothing; each further one is a paragraph,
// or a heading behind "# ": bold, and on one page with what follows it.
inline Article read_article(const fs::path &path) {
    std::ifstream file(path);
    Article a;
    a.name = path.parent_path().filename() / path.stem();
    std::replace(a.name.begin(), a.name.end(), '=', '-'); // it names settings
    std::string line;
    read_line(file, a.title);
    read_line(file, a.author);
    if (read_line(file, line) && !line.empty()) a.picture = path.parent_path().parent_path() / line;
    while (read_line(file, line)) {
        if (line.compare(0, 2, "# ") == 0)
            a.text += "\n\017\016\001" + line.substr(2); // TEXT_HEADING, TEXT_HOLD, font 1
        else
            a.text += a.text.empty() ? line : "\u2003" + line;
        a.text += '\n';
    }
    return a;
}

inline std::vector<Article> read_articles(const fs::path &folder) {
    std::set<fs::path> paths;
    std::error_code error; // a folder that cannot be read has no articles
    for (const fs::directory_entry &entry : fs::directory_iterator(folder, error))
        if (entry.is_regular_file(error) && entry.path().extension() == ".txt")
            paths.insert(entry.path());
    std::vector<Article> articles;
    for (const fs::path &path : paths) articles.push_back(read_article(path));
    return articles;
}

class Issue {
  public:
    std::vector<Article> articles;

    // In the language that is loaded, or in English.
    void load(const fs::path &folder) {
        if (language_ == GetLanguage()) return;
        language_ = GetLanguage();
        articles = read_articles(folder / language_);
        is_english_ = articles.empty();
        if (is_english_) articles = read_articles(folder / "en");
        for (Article &a : articles) {
            a.top = std::clamp(places_.read(a.name.c_str(), 0), 0, a.size());
            std::istringstream marks(bookmarks_.read(a.name.c_str(), std::string()));
            for (int byte; marks >> byte;)
                if (byte >= 0 && byte <= a.size()) a.marks.insert(byte);
        }
    }

    // Whether lines begin on the right: not those of English articles in an Arabic interface.
    bool is_rtl() const { return IsRTL() && !is_english_; }

    Article *find(const std::string &stem) {
        for (Article &a : articles)
            if (a.stem() == stem) return &a;
        return nullptr;
    }

    void set_place(Article &a, int top) {
        a.top = top;
        places_.write(a.name.c_str(), top);
    }
    void save_places() { places_.save(); }

    void toggle_mark(Article &a, int byte) {
        if (a.marks.erase(byte) == 0) a.marks.insert(byte);
        std::string bytes;
        for (const int mark : a.marks) bytes += std::to_string(mark) + ' ';
        bookmarks_.write(a.name.c_str(), bytes);
        bookmarks_.save();
    }

  private:
    kelvane::Config places_ = kelvane::Config::of_application("magazine", "places.cfg");
    kelvane::Config bookmarks_ = kelvane::Config::of_application("magazine", "bookmarks.cfg");
    std::string language_;
    bool is_english_ = false; // for want of the language
};

#endif
