// SPDX-License-Identifier: MIT
// Records of books as text: for people, or for programs.
#pragma once

#include <kelvane/bookinfo.h>

namespace report {

enum class Style {
    table, // a paragraph each
    json   // one array of objects
};

// Prints records to standard output; ends the array when it goes.
class Printer {
  public:
    explicit Printer(Style style);
    Printer(const Printer &) = delete;
    Printer &operator=(const Printer &) = delete;
    ~Printer();

    void operator()(const bookinfo &book);

  private:
    Style style_;
    bool is_first_ = true;
};

} // namespace report
