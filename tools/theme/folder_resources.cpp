// SPDX-License-Identifier: MIT
// The pictures and the fonts of a folder.
#include <algorithm>
#include <map>

#include "drawing.h"
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
        if (accept({file}, name, picture_name_fault(name)))
            add(file, name, read_picture(file, mistakes_), theme::largest_picture);
    }
    // Every picture of the descriptions, which must be without fault.
    void draw(const Drawings &drawings, int percent) {
        for (const Drawing &drawing : drawings.pictures())
            if (accept(drawing.place, drawing.name, picture_name_fault(drawing.name)))
                found_[drawing.name] = {drawing.name, pack(drawings.draw(drawing, percent)).bytes(),
                                        true};
    }
    void read_font_file(const fs::path &file) {
        const std::string face = file.stem().string();
        if (file.extension() != ".ttf")
            return mistakes_.add({file}, "is no font; save it in TrueType format as .ttf");
        if (!accept({file}, face, font_name_fault(face))) return;
        std::string bytes = read_whole(file);
        if (!is_truetype(bytes))
            return mistakes_.add({file}, "is not in TrueType format; convert it");
        add(file, face, std::move(bytes), theme::largest_resource);
    }
    std::vector<Resource> take() {
        std::vector<Resource> out;
        for (auto &[name, resource] : found_) out.push_back(std::move(resource));
        return out;
    }

  private:
    // Whether the name is right and new.
    bool accept(const Place &place, const std::string &name, const std::string &fault) {
        if (!fault.empty()) {
            mistakes_.add(place, fault);
            return false;
        }
        const auto [first, is_new] = files_.try_emplace(name, place.file);
        if (!is_new)
            mistakes_.add(place, "has the name of " + first->second.string() +
                                     ", as names are the same in any case; rename one of the two");
        return is_new;
    }
    void add(const fs::path &file, const std::string &name, std::string bytes, size_t most) {
        if (bytes.size() > most)
            return mistakes_.add({file}, "would take " + std::to_string(bytes.size() >> 20) +
                                             " MiB in a theme, and only " +
                                             std::to_string(most >> 20) +
                                             " are read; make it smaller");
        found_[name] = {name, std::move(bytes)};
    }

    Mistakes &mistakes_;
    std::map<std::string, fs::path, NameLess> files_;
    std::map<std::string, Resource, NameLess> found_;
};

// What is described; nothing when there is anything wrong with it.
Drawings read_drawings(const fs::path &folder, Mistakes &mistakes) {
    const size_t before = mistakes.count();
    Drawings drawings;
    for (const fs::path &file : files_of(folder / drawing_folder))
        drawings.read(file, read_whole(file), mistakes);
    drawings.check(mistakes);
    return mistakes.count() == before ? drawings : Drawings();
}

} // namespace

std::vector<Resource> read_resources(const fs::path &folder, int percent, Mistakes &mistakes) {
    ResourceReader reader(mistakes);
    reader.draw(read_drawings(folder, mistakes), percent);
    for (const fs::path &file : files_of(folder / picture_folder)) reader.read_picture_file(file);
    for (const fs::path &file : files_of(folder / font_folder)) reader.read_font_file(file);
    return reader.take();
}

} // namespace tool
