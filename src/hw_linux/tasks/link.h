// SPDX-License-Identifier: MIT
// Descriptors that close themselves, and connections that carry frames.
#pragma once

#include <memory>
#include <utility>

#include "hw_linux/tasks/wire.h"

namespace hw::tasks {

class Descriptor {
  public:
    Descriptor() = default;
    explicit Descriptor(int number) : number_(number) {}
    Descriptor(Descriptor &&other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor &operator=(Descriptor &&other) noexcept {
        reset();
        number_ = std::exchange(other.number_, -1);
        return *this;
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    ~Descriptor() { reset(); }

    void reset();
    int get() const { return number_; }
    explicit operator bool() const { return number_ >= 0; }

  private:
    int number_ = -1;
};

// A frame that arrived, with the descriptor that came along.
struct Arrival {
    Frame frame;
    Descriptor descriptor;
};

enum class Sent { yes, no_room, broken };
enum class Received { frame, nothing, foreign_version, broken };

// Neither of the two ever waits. What is malformed, or was cut, breaks a connection.
Sent send_frame(const Descriptor &link, const Frame &frame, int descriptor = -1);
Received receive_frame(const Descriptor &link, Arrival &arrival);

// The process at the other end when the connection was made; 0 when it is another user's.
int process_at(const Descriptor &link);
// Two ends of a connection; both are empty on failure.
std::pair<Descriptor, Descriptor> make_link();

} // namespace hw::tasks
