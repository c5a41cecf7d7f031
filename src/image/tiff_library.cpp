// SPDX-License-Identifier: MIT
// Opens libtiff by name and finds its functions.
#include "image/tiff_library.h"

#include <dlfcn.h>
#include <mutex>
#include <optional>

namespace image {
namespace {

// Stays open when it is whole: an application that loads one TIFF file loads others.
class Loader {
  public:
    explicit Loader(const char *name) : handle_(dlopen(name, RTLD_NOW | RTLD_LOCAL)) {}
    Loader(const Loader &) = delete;
    Loader &operator=(const Loader &) = delete;
    ~Loader() {
        if (handle_ && !is_whole_) dlclose(handle_);
    }
    template <class Function>
    void find(Function *&function, const char *name) {
        function = handle_ ? reinterpret_cast<Function *>(dlsym(handle_, name)) : nullptr;
        is_whole_ = is_whole_ && function;
    }
    bool is_whole() const { return is_whole_; }

  private:
    void *handle_;
    bool is_whole_ = true;
};

std::optional<TiffLibrary> load() {
    TiffLibrary tiff{};
    Loader loader(KELVANE_LIBTIFF);
    loader.find(tiff.TIFFClose, "TIFFClose");
    loader.find(tiff.TIFFFdOpenExt, "TIFFFdOpenExt");
    loader.find(tiff.TIFFGetField, "TIFFGetField");
    loader.find(tiff.TIFFGetFieldDefaulted, "TIFFGetFieldDefaulted");
    loader.find(tiff.TIFFGetStrileByteCount, "TIFFGetStrileByteCount");
    loader.find(tiff.TIFFIsTiled, "TIFFIsTiled");
    loader.find(tiff.TIFFNumberOfStrips, "TIFFNumberOfStrips");
    loader.find(tiff.TIFFOpenOptionsAlloc, "TIFFOpenOptionsAlloc");
    loader.find(tiff.TIFFOpenOptionsFree, "TIFFOpenOptionsFree");
    loader.find(tiff.TIFFOpenOptionsSetErrorHandlerExtR, "TIFFOpenOptionsSetErrorHandlerExtR");
    loader.find(tiff.TIFFOpenOptionsSetMaxSingleMemAlloc, "TIFFOpenOptionsSetMaxSingleMemAlloc");
    loader.find(tiff.TIFFOpenOptionsSetWarningHandlerExtR, "TIFFOpenOptionsSetWarningHandlerExtR");
    loader.find(tiff.TIFFRGBAImageBegin, "TIFFRGBAImageBegin");
    loader.find(tiff.TIFFRGBAImageEnd, "TIFFRGBAImageEnd");
    loader.find(tiff.TIFFRGBAImageGet, "TIFFRGBAImageGet");
    loader.find(tiff.TIFFReadRawStrip, "TIFFReadRawStrip");
    loader.find(tiff.TIFFReadScanline, "TIFFReadScanline");
    loader.find(tiff.TIFFScanlineSize, "TIFFScanlineSize");
    return loader.is_whole() ? std::optional(tiff) : std::nullopt;
}

} // namespace

const TiffLibrary *tiff_library() {
    static std::mutex loading;
    static std::optional<TiffLibrary> tiff;
    const std::lock_guard lock(loading);
    if (!tiff) tiff = load();
    return tiff ? &*tiff : nullptr;
}

} // namespace image
