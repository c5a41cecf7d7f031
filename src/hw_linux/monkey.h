// SPDX-License-Identifier: MIT
// Random input, the same for the same seed.
#pragma once

#include <cstdint>
#include <random>

#include "hw_linux/action.h"

namespace hw {

class Monkey {
  public:
    Monkey() = default;
    Monkey(uint32_t seed, int64_t count) : random_(seed), left_(count) {}

    // The next action; false when all have been given. Never the command that quits.
    bool next(Action &action);

  private:
    int below(int bound) { return static_cast<int>(random_() % static_cast<uint32_t>(bound)); }
    int delay_ms();
    int coordinate(int size);
    void aim(Action &action);
    Action key(), pointer(), touch(), raw(), command();

    std::mt19937 random_;
    int64_t left_ = 0;
};

} // namespace hw
