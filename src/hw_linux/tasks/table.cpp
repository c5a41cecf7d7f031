// SPDX-License-Identifier: MIT
// Memory without a name that holds the table: it goes with the last process that knows it.
#include <utility>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include "hw_linux/tasks/manager.h"

namespace hw::tasks {
namespace {

Table *map_table(int descriptor, int protection) {
    void *memory = mmap(nullptr, sizeof(Table), protection, MAP_SHARED, descriptor, 0);
    return memory == MAP_FAILED ? nullptr : static_cast<Table *>(memory);
}

} // namespace

SharedTable::SharedTable(SharedTable &&other) noexcept {
    *this = std::move(other);
}

SharedTable &SharedTable::operator=(SharedTable &&other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    std::swap(table_, other.table_);
    return *this;
}

SharedTable::~SharedTable() {
    if (table_) munmap(table_, sizeof *table_);
}

SharedTable SharedTable::make() {
    SharedTable made;
    made.descriptor_ = Descriptor(memfd_create("kelvane-tasks", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    const int number = made.descriptor_.get();
    if (number < 0 || ftruncate(number, sizeof(Table)) != 0) return {};
    made.table_ = map_table(number, PROT_READ | PROT_WRITE);
    // Who maps it from now on can read it, and that it never shrinks is sure.
    fcntl(number, F_ADD_SEALS, F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_FUTURE_WRITE);
    return made;
}

SharedTable SharedTable::map(const Descriptor &descriptor) {
    struct stat status {};
    const int seals = fcntl(descriptor.get(), F_GET_SEALS);
    if (seals < 0 || (seals & F_SEAL_SHRINK) == 0 || fstat(descriptor.get(), &status) != 0 ||
        status.st_size != sizeof(Table))
        return {};
    SharedTable mapped;
    mapped.table_ = map_table(descriptor.get(), PROT_READ);
    return mapped;
}

} // namespace hw::tasks
