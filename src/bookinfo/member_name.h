// SPDX-License-Identifier: MIT
// Names inside an archive, as its manifests write them.
#pragma once

#include <string>
#include <string_view>

namespace book {

// The member that a reference in another member names: without its fragment, its "%20" decoded,
// from the folder of the other one on. Empty for a reference that leaves the archive.
std::string resolve_member(std::string_view from, std::string_view reference);

} // namespace book
