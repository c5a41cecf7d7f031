// SPDX-License-Identifier: MIT
// Makes framebuffers that others can map, and maps those of others.
#include "hw_linux/tasks/framebuffer.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace hw::tasks {
namespace {

constexpr size_t header_bytes = 4096;
constexpr int longest_side = 65535;

void *map_memory(int descriptor, size_t size, int how) {
    void *memory = mmap(nullptr, size, PROT_READ | PROT_WRITE, how, descriptor, 0);
    return memory == MAP_FAILED ? nullptr : memory;
}

// What can shrink could take the memory away from under a reader.
size_t fixed_size(int descriptor) {
    struct stat status {};
    const int seals = fcntl(descriptor, F_GET_SEALS);
    const bool is_fixed = seals >= 0 && (seals & F_SEAL_SHRINK) != 0;
    if (!is_fixed || fstat(descriptor, &status) != 0 || status.st_size < 0) return 0;
    return static_cast<size_t>(status.st_size);
}

} // namespace

std::shared_ptr<uint8_t[]> OwnFramebuffer::make(size_t bytes) {
    close();
    const size_t size = header_bytes + bytes;
    descriptor_ = Descriptor(memfd_create("kelvane-framebuffer", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    if (!descriptor_ || ftruncate(descriptor_.get(), static_cast<off_t>(size)) != 0) return {};
    void *memory = map_memory(descriptor_.get(), size, MAP_SHARED);
    if (!memory) return {};
    fcntl(descriptor_.get(), F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_FUTURE_WRITE);
    header_ = static_cast<FramebufferHeader *>(memory);
    return {static_cast<uint8_t *>(memory) + header_bytes,
            [memory, size](uint8_t *) { munmap(memory, size); }};
}

void OwnFramebuffer::close() {
    descriptor_.reset();
    header_ = nullptr;
}

std::unique_ptr<ForeignFramebuffer> ForeignFramebuffer::map(const Descriptor &descriptor) {
    const size_t size = fixed_size(descriptor.get());
    if (size <= header_bytes) return nullptr;
    void *memory = map_memory(descriptor.get(), size, MAP_PRIVATE);
    if (!memory) return nullptr;
    std::unique_ptr<ForeignFramebuffer> mapped(new ForeignFramebuffer(memory, size));
    return mapped->read_header() ? std::move(mapped) : nullptr;
}

ForeignFramebuffer::~ForeignFramebuffer() {
    munmap(memory_, size_);
}

// Copied first: the other task may write it again while it is checked.
bool ForeignFramebuffer::read_header() {
    const FramebufferHeader &shared = header();
    const int width = shared.width, height = shared.height, scanline = shared.scanline;
    orientation = shared.orientation;
    const auto is_side = [](int side) { return side > 0 && side <= longest_side; };
    if (!is_side(width) || !is_side(height) || !is_side(scanline) || scanline < width ||
        orientation < 0 || orientation > 3 ||
        static_cast<size_t>(scanline) * static_cast<size_t>(height) > size_ - header_bytes)
        return false;
    canvas = {.width = width,
              .height = height,
              .scanline = scanline,
              .depth = 8,
              .clipx1 = 0,
              .clipx2 = width - 1,
              .clipy1 = 0,
              .clipy2 = height - 1,
              .addr = static_cast<uint8_t *>(memory_) + header_bytes};
    return true;
}

} // namespace hw::tasks
