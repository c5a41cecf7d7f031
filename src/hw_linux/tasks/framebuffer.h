// SPDX-License-Identifier: MIT
// Framebuffers in memory that tasks share: a header that tells how the pixels lie, and the pixels.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>

#include "hw_linux/tasks/link.h"
#include "kelvane/canvas.h"

namespace hw::tasks {

struct FramebufferHeader {
    int32_t width, height, scanline, orientation;
    std::atomic<uint64_t> shown_in; // TaskRecord::used when it was shown last
    std::atomic<uint32_t> updates;  // how often it was shown
};

// This process's own. Its memory has no name and is readable by whom the descriptor is given to.
class OwnFramebuffer {
  public:
    // The pixels; null on failure. They are the holder's until the last copy of it goes.
    std::shared_ptr<uint8_t[]> make(size_t bytes);
    void close();
    FramebufferHeader *header() const { return header_; }
    const Descriptor &descriptor() const { return descriptor_; }

  private:
    Descriptor descriptor_;
    FramebufferHeader *header_ = nullptr;
};

// Another task's. What is drawn into it stays here; what the task draws shows where nothing was.
class ForeignFramebuffer {
  public:
    // Null for what is no framebuffer.
    static std::unique_ptr<ForeignFramebuffer> map(const Descriptor &descriptor);
    ForeignFramebuffer(const ForeignFramebuffer &) = delete;
    ForeignFramebuffer &operator=(const ForeignFramebuffer &) = delete;
    ~ForeignFramebuffer();

    icanvas canvas{};
    int orientation = 0; // 0 to 3
    const FramebufferHeader &header() const { return *static_cast<FramebufferHeader *>(memory_); }

  private:
    ForeignFramebuffer(void *memory, size_t size) : memory_(memory), size_(size) {}
    bool read_header();

    void *memory_;
    size_t size_;
};

} // namespace hw::tasks
