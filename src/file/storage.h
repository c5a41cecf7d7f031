// SPDX-License-Identifier: MIT
// The second after a wake from sleep in which storage may be away.
#pragma once

// True within 1000 ms of the last wake: what fails now may work in a moment.
bool storage_may_be_settling();

// Pauses between two looks at storage that settles.
void pause_for_storage();

// Returns when the storage that holds `path` can be used, or has had its time to settle. Paths
// outside the storage mounts do not wait; null neither.
void safe_wait(const char *path);
