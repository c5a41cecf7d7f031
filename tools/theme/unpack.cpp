// SPDX-License-Identifier: MIT
// kelvane-theme unpack: a file becomes a folder that packs to the same theme.
#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <map>
#include <sys/stat.h>
#include <system_error>

#include "commands.h"
#include "folder.h"
#include "packed.h"

namespace tool {
namespace fs = std::filesystem;
namespace {

void write_whole(const fs::path &file, std::string_view bytes) {
    fs::create_directories(file.parent_path());
    std::ofstream out(file, std::ios::binary);
    out << bytes;
    out.close();
    if (!out) throw std::system_error(errno, std::generic_category(), file.string());
}

// A new folder beside the one that is wanted; it takes its place in the end or disappears.
class NewFolder {
  public:
    explicit NewFolder(const fs::path &wanted) : wanted_(wanted) {
        if (fs::exists(wanted) && !(fs::is_directory(wanted) && fs::is_empty(wanted)))
            throw std::system_error(EEXIST, std::generic_category(), wanted.string());
        std::string name = wanted.string() + ".XXXXXX";
        if (!mkdtemp(name.data()))
            throw std::system_error(errno, std::generic_category(), wanted.string());
        path_ = name;
    }
    NewFolder(const NewFolder &) = delete;
    ~NewFolder() {
        std::error_code ignored;
        if (!path_.empty()) fs::remove_all(path_, ignored);
    }
    const fs::path &path() const { return path_; }
    void finish() {
        const mode_t mask = umask(0);
        umask(mask);
        fs::permissions(path_, static_cast<fs::perms>(0777 & ~mask));
        fs::rename(path_, wanted_);
        path_.clear();
    }

  private:
    fs::path wanted_, path_;
};

// Whether a translation can stand in a file of its language; the others stay parameters.
bool has_file(const Translation &t) {
    return (t.language == "*" || is_language(t.language)) && !t.key.empty() &&
           t.key.find_first_of("# \t") != 0;
}

void write_text(const ThemeText &text, const fs::path &folder) {
    ThemeText parameters{text.parameters, {}};
    std::map<std::string, std::string> files;
    for (const Translation &t : text.translations)
        if (has_file(t))
            files[t.language == "*" ? any_language : t.language] += t.key + "=" + t.text + "\n";
        else
            parameters.translations.push_back(t);
    write_whole(folder / parameter_file, parameters.packed());
    for (const auto &[language, lines] : files)
        write_whole(folder / translation_folder / (language + ".txt"), lines);
}

// What keeps a name from being one of a file; empty when nothing does.
std::string file_name_fault(const std::string &name) {
    if (name.find('/') != name.npos || name.starts_with('.') || printable(name) != name)
        return "has a name that no file should have";
    return {};
}

// Writes a resource; what keeps it from being written otherwise.
std::string write_resource(const Unpacked &resource, const std::string &name,
                           const fs::path &folder) {
    if (resource.kind == Kind::damaged) return "is damaged";
    if (resource.kind == Kind::unknown) return "is neither a picture nor a font";
    const bool is_picture = resource.kind == Kind::picture;
    for (const std::string &fault :
         {is_picture ? picture_name_fault(name) : font_name_fault(name), file_name_fault(name)})
        if (!fault.empty()) return fault;
    if (!is_picture) {
        write_whole(folder / font_folder / (name + ".ttf"), resource.bytes());
        return {};
    }
    fs::create_directories(folder / picture_folder);
    write_png(folder / picture_folder / (name + ".png"), *resource.picture);
    return {};
}

} // namespace

int unpack(const fs::path &file, const fs::path &folder) {
    Mistakes mistakes;
    if (const auto container = open_theme(file, mistakes)) {
        NewFolder made(folder.has_filename() ? folder : folder.parent_path());
        write_text(read_text(file, *container, mistakes), made.path());
        for (const std::string &name : container->names()) {
            const std::string fault =
                write_resource(read_resource(*container, name), name, made.path());
            if (!fault.empty())
                mistakes.add({file},
                             std::string("left out ").append(name).append(": ").append(fault));
        }
        made.finish();
    }
    mistakes.print();
    return mistakes.any() ? EXIT_FAILURE : EXIT_SUCCESS;
}

} // namespace tool
