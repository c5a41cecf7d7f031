// SPDX-License-Identifier: MIT
// The articles of a language, and what the user has done with them: places, bookmarks, settings.
#ifndef MAGAZINE_ISSUE_H
#define MAGAZINE_ISSUE_H

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include <kelvane.hpp>

inline std::filesystem::path
    folder; // of the articles, their pictures, and the texts of the magazine

struct Article {
    std::string name; // "en/2-bread", by which settings and bookmarks know it
    std::string title, author, picture;
    std::string text;
    int top = 0, read = 0; // bytes: where its page begins, and how far it was read
    kelvane::Bitmap cover;

    int percent(int byte) const { return int(100LL * byte / std::max(1LL, 0LL + size())); }
    int size() const { return int(text.size()); }
};

// A paragraph is a line. Its first line is indented; headings are bold and stay with their text.
inline void add_paragraph(std::string &text, const std::string &line) {
    const bool is_heading = line.compare(0, 2, "# ") == 0;
    if (is_heading)
        text += "\n\017\016\001" + line.substr(2); // TEXT_HEADING, TEXT_HOLD, font 1
    else
        text += text.empty() ? line : "\u2003" + line;
    text += '\n';
}

// A file has the title, the author and the picture, or nothing, in its first three lines.
inline Article read_article(const std::filesystem::path &path) {
    std::ifstream file(path);
    Article article;
    article.name = path.parent_path().filename() / path.stem();
    std::getline(file, article.title);
    std::getline(file, article.author);
    std::getline(file, article.picture);
    for (std::string line; std::getline(file, line);) add_paragraph(article.text, line);
    return article;
}

inline std::vector<Article> read_articles(const std::filesystem::path &language) {
    std::vector<std::filesystem::path> paths;
    std::error_code error; // a folder that cannot be read has no articles
    for (const auto &entry : std::filesystem::directory_iterator(language, error))
        paths.push_back(entry.path());
    std::sort(paths.begin(), paths.end());
    std::vector<Article> articles;
    for (const std::filesystem::path &path : paths) articles.push_back(read_article(path));
    return articles;
}

inline kelvane::Config bookmarks_file() {
    char path[1024];
    return kelvane::Config(AppDataPath("magazine", "bookmarks.cfg", path, sizeof path) ? path : "");
}

// The articles of a language, with what the user has done with them.
class Issue {
  public:
    std::vector<Article> articles;
    kelvane::Config settings{"./system/config/magazine.cfg"};
    std::set<std::pair<std::string, int>> marks; // name and byte

    // In the language that is loaded, or in English.
    void load() {
        if (language_ == GetLanguage()) return;
        language_ = GetLanguage();
        articles = read_articles(folder / language_);
        if (articles.empty()) articles = read_articles(folder / "en");
        marks.clear();
        for (Article &a : articles) {
            a.top = std::clamp(settings.read((a.name + ".top").c_str(), 0), 0, a.size());
            a.read = std::clamp(settings.read((a.name + ".read").c_str(), 0), 0, a.size());
            for (const auto &[name, byte] : bookmarks_.values())
                if (name.compare(0, a.name.size() + 1, a.name + "@") == 0)
                    marks.emplace(a.name, std::clamp(std::atoi(byte.c_str()), 0, a.size()));
        }
    }

    // Saved when the settings are closed.
    void remember(Article &a, int top, int read) {
        a.top = top;
        a.read = read;
        settings.write((a.name + ".top").c_str(), top);
        settings.write((a.name + ".read").c_str(), read);
    }

    void toggle_mark(const std::string &name, int byte) {
        const std::string key = name + "@" + std::to_string(byte);
        if (marks.erase({name, byte}) != 0) {
            bookmarks_.erase(key.c_str());
        } else {
            marks.emplace(name, byte);
            bookmarks_.write(key.c_str(), byte);
        }
    }

  private:
    kelvane::Config bookmarks_ = bookmarks_file();
    std::string language_;
};

#endif
