// SPDX-License-Identifier: MIT
// The directory in which tasks and their manager meet: a socket, and a lock around each change of
// who serves it. Both have names of their own, and what else has such a name is left as it is.
#pragma once

#include <string>

#include "hw_linux/tasks/link.h"

namespace hw::tasks {

class Place {
  public:
    Place() = default;
    // Makes the directory when there is none. False after saying on standard error what is wrong.
    bool open(const char *directory);

    // Held from the moment a manager is looked for until the connection stands, and while a manager
    // makes sure that nobody needs it. Released when it goes. Empty on failure, of which errno
    // tells: ETIMEDOUT when somebody holds it for two seconds, who may be stopped; with try_lock()
    // EWOULDBLOCK.
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
    // As it is called now, from the root. Throws when it cannot be told.
    std::string path() const;

  private:
    Descriptor directory_;
};

} // namespace hw::tasks
