// SPDX-License-Identifier: MIT
// Files and settings.
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

#include "failures/sessions.h"
#include "kelvane/config.h"
#include "kelvane/files.h"
#include "support/tempdir.h"

namespace failures {
namespace {

class Files : public Session {
  public:
    Files() {
        for (const char *name : {"book.txt", "notes.txt", "tree/a", "tree/sub/b", "folder/own"})
            write_file(name, text_), keep(name);
        std::free(GetAssociatedFile("book.txt", '0'));
        write_file("system/state/0/book.txt", text_);
    }

    bool run() override {
        bool all = copy_file("book.txt", "copy.txt") == 1;
        all = move_file("copy.txt", "moved.txt") == 1 && all;
        all = copy_file("notes.txt", "moved.txt") == 1 && all;
        all = copy_file_with_af("book.txt", "folder/again.txt") == 1 && all;
        all = has("moved.txt") && has("folder/again.txt") && all;
        all = unlink_file_with_af("folder/again.txt") == 1 && all;
        return read() && lists() && walks() && all;
    }
    // What is copied from elsewhere is there wholly or not at all.
    std::string loss() const override {
        for (const char *name : {"copy.txt", "moved.txt", "folder/again.txt"})
            if (const std::string is = read_file(name); !is.empty() && is != text_)
                return std::string(name) + " is half a copy";
        return Session::loss();
    }

  private:
    static bool has(const char *path) { return kv_access(path, R_OK) == 0; }
    static bool read() {
        char text[100];
        FILE *f = kv_fopen("book.txt", "r+");
        const bool first = kv_fgetc(f) == '0' && kv_fgets(text, sizeof text, f);
        const bool rest = kv_fseek(f, 0, SEEK_SET) == 0 && kv_fread(text, 1, 50, f) == 50;
        const bool closed = kv_fclose(f) == 0;
        kv_preload("book.txt", 0);
        Path2String("./system/mnt/ext1/x", text, sizeof text);
        return first && rest && closed;
    }
    static bool lists() {
        char **list = nullptr;
        kv_enum_files(&list, ".", "tree", "tree/sub", "txt", 1);
        const bool all = list && list[0] && std::strcmp(list[0], "book") == 0 && list[1];
        for (char **name = list; name && *name; ++name) std::free(*name);
        std::free(list);
        char *found = CheckAssociatedFile("book.txt", '0');
        std::free(found);
        return all && found;
    }
    static bool walks() {
        int entries = 0;
        recurse_action(
            "tree", [](const char *, int, void *count) { return ++*static_cast<int *>(count), 0; },
            &entries, 1, 1);
        return entries == 4;
    }

    TempDir dir_;
    std::string text_ = std::string(10'001, '0');
};

class Settings : public Session {
  public:
    Settings() { write_file("a.cfg", "kept=1\nchanged=0\n#" + std::string(5000, '-')); }

    bool run() override {
        turn_ = 1 + turn_ % 9;
        iconfig *c = OpenConfig("a.cfg", nullptr);
        const bool loaded = ReadInt(c, "kept", 0) == 1;
        WriteInt(c, "changed", turn_);
        WriteSecret(c, "secret", "word");
        WriteString(c, "gone", "x");
        DeleteString(c, "gone");
        const bool saved = SaveConfig(c) == 1;
        RefreshConfig(&c);
        const bool same = ReadInt(c, "changed", 0) == turn_;
        char *secret = ReadSecret(c, "secret", nullptr);
        const bool secret_kept = secret && std::strcmp(secret, "word") == 0;
        if (secret_kept) std::free(secret);
        CloseConfig(c);
        unlink("new.cfg");
        c = OpenConfig("new.cfg", nullptr);
        WriteString(c, "first", "1");
        const bool created = SaveConfig(c) == 1;
        CloseConfig(c);
        return loaded && saved && same && secret_kept && created;
    }
    std::string loss() const override {
        const std::string text = read_file("a.cfg"), created = read_file("new.cfg");
        if (text.find("kept=1\n") == text.npos) return "a setting is lost";
        if (text.find("changed=") == text.npos) return "a changed setting is lost";
        const bool is_whole = created.empty() || created == "first=1\n";
        return is_whole ? "" : "half a new file";
    }

  private:
    TempDir dir_;
    int turn_ = 0;
};

constexpr Area areas_here[] = {{"Files", make<Files>}, {"Settings", make<Settings>}};

} // namespace

constinit const std::span<const Area> files_areas = areas_here;

} // namespace failures
