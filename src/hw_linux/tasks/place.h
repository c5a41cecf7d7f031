// SPDX-License-Identifier: MIT
// The directory in which tasks and their manager meet: a socket, and a lock around each change of
// who serves it.
#pragma once

#include "hw_linux/tasks/link.h"

namespace hw::tasks {

class Place {
  public:
    Place() = default;
    // Makes the directory when there is none. False after saying on standard error what is wrong.
    bool open(const char *directory);

    // Held from the moment a manager is looked for until the connection stands, and while a manager
    // makes sure that nobody needs it. Released when it goes.
    Descriptor lock() const;
    Descriptor try_lock() const;

    // Both under the lock; neither waits. Empty on failure, of which errno tells: connect() fails
    // with ECONNREFUSED or ENOENT when nobody serves.
    Descriptor connect() const;
    Descriptor listen() const;
    // Removes socket and lock.
    void clear() const;

    // The number of the next task, which a manager leaves to the one after it; from 1.
    int next_task() const;
    void set_next_task(int task) const;

    int descriptor() const { return directory_.get(); }

  private:
    Descriptor take_lock(int how) const;

    Descriptor directory_;
};

} // namespace hw::tasks
