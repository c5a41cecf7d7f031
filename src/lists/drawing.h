// SPDX-License-Identifier: MIT
// Callbacks that draw what is being drawn.
#pragma once

namespace lists {

// Says so while it lives; whoever draws looks first, so that such a callback changes nothing.
class Drawing {
  public:
    explicit Drawing(bool &is_drawing) : is_drawing_(is_drawing) { is_drawing_ = true; }
    ~Drawing() { is_drawing_ = false; }
    Drawing(const Drawing &) = delete;
    Drawing &operator=(const Drawing &) = delete;

  private:
    bool &is_drawing_;
};

} // namespace lists
