// SPDX-License-Identifier: MIT
// The pictures and the fonts of a folder.
#include <algorithm>
#include <map>

#include "folder.h"
#include "ground/fold.h"
#include "theme/container.h"

namespace tool {
namespace fs = std::filesystem;
namespace {

struct NameLess {
    bool operator()(const std::string &a, const std::string &b) const {
        return ground::compare_folded(a.c_str(), b.c_str()) < 0;
    }
};

class ResourceReader {
  public:
    explicit ResourceReader(Mistakes &mistakes) : mistakes_(mistakes) {}

    void read_picture_file(const fs::path &file) {
        if (!is_picture_file(file))
            return mistakes_.add({file}, "is no picture; save it as .png, .jpg, .bmp or .tif");
        const std::string name = file.stem().string();
        if (accept(file, name, picture_name_fault(name)))
            add(file, name, read_picture(file, mistakes_), theme::largest_picture);
    }
    void read_font_file(const fs::path &file) {
        const std::string face = file.stem().string();
        if (file.extension() != ".ttf")
            return mistakes_.add({file}, "is no font; save it in TrueType format as .ttf");
        if (!accept(file, face, font_name_fault(face))) return;
        std::string bytes = read_whole(file);
        if (!is_truetype(bytes))
            return mistakes_.add({file}, "is not in TrueType format; convert it");
        add(file, face, std::move(bytes), theme::largest_resource);
    }
    std::vector<Resource> take() {
        std::vector<Resource> out;
        for (auto &[name, bytes] : found_) out.push_back({name, std::move(bytes)});
        return out;
    }

  private:
    // Whether the name is right and new.
    bool accept(const fs::path &file, const std::string &name, const std::string &fault) {
        if (!fault.empty()) {
            mistakes_.add({file}, fault);
            return false;
        }
        const auto [first, is_new] = files_.try_emplace(name, file);
        if (!is_new)
            mistakes_.add({file}, "has the name of " + first->second.string() +
                                      ", as names are the same in any case; rename one of the two");
        return is_new;
    }
    void add(const fs::path &file, const std::string &name, std::string bytes, size_t most) {
        if (bytes.size() > most)
            return mistakes_.add({file}, "would take " + std::to_string(bytes.size() >> 20) +
                                             " MiB in a theme, and only " +
                                             std::to_string(most >> 20) +
                                             " are read; make it smaller");
        found_[name] = std::move(bytes);
    }

    Mistakes &mistakes_;
    std::map<std::string, fs::path, NameLess> files_;
    std::map<std::string, std::string, NameLess> found_;
};

} // namespace

std::vector<Resource> read_resources(const fs::path &folder, Mistakes &mistakes) {
    ResourceReader reader(mistakes);
    for (const fs::path &file : files_of(folder / picture_folder)) reader.read_picture_file(file);
    for (const fs::path &file : files_of(folder / font_folder)) reader.read_font_file(file);
    return reader.take();
}

} // namespace tool
