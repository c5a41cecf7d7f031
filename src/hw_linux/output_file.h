// SPDX-License-Identifier: MIT
// A text file that an environment variable names.
#pragma once

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "file/stream.h"

namespace hw {

class OutputFile {
  public:
    // True when the variable is not set, or the file is open; otherwise says what is wrong. Each
    // line reaches the file at once, so that a crash loses none.
    bool open_from(const char *variable) {
        file_.reset();
        const char *name = std::getenv(variable);
        if (!name || !*name) return true;
        variable_ = variable;
        file_ = file::open_plain(name, file::Access::create);
        if (file_) std::setvbuf(file_.get(), nullptr, _IOLBF, BUFSIZ);
        if (!file_) std::fprintf(stderr, "%s=%s: %s\n", variable, name, std::strerror(errno));
        return file_ != nullptr;
    }
    // Says so when something could not be written.
    void close() {
        std::FILE *file = file_.release();
        if (!file) return;
        const bool failed = std::ferror(file) != 0;
        if (std::fclose(file) != 0 || failed)
            std::fprintf(stderr, "%s: not everything could be written\n", variable_);
    }
    std::FILE *stream() const { return file_.get(); }

  private:
    file::Stream file_;
    const char *variable_ = "";
};

} // namespace hw
