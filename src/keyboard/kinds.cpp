// SPDX-License-Identifier: MIT
// The table of kinds.
#include "keyboard/kinds.h"

#include "kelvane/keyboard.h"

namespace keyboard {
namespace {

constexpr const char *digits = "0123456789";
constexpr Field date_time[] = {{0, 1, 31}, {3, 1, 12}, {9, 0, 23}, {12, 0, 59}, {15, 0, 59}};
constexpr Field hours[] = {{0, 0, 23}};

constexpr Kind normal{nullptr, true, nullptr, {}};
constexpr Kind english{".entext", true, nullptr, {}}, url{".url", true, nullptr, {}};
constexpr Kind phone{".phone", false, nullptr, {}}, hex{".hex", false, nullptr, {}};
constexpr Kind number{".numeric", false, nullptr, {}}, address{".ipaddr", false, nullptr, {}};
constexpr Kind clock{".clock", false, digits, {}}, whole_clock{".clock", false, digits, date_time};
constexpr Kind hour_range{".numeric", true, digits, hours};

} // namespace

const Kind &kind_of(int flags) {
    switch (flags & KBD_KIND) {
    case KBD_ENTEXT:
        return english;
    case KBD_PHONE:
        return phone;
    case KBD_NUMERIC:
        return number;
    case KBD_IPADDR:
        return address;
    case KBD_URL:
        return url;
    case KBD_DATE:
    case KBD_TIME:
        return clock;
    case KBD_DATETIME:
        return whole_clock;
    case KBD_HEX:
        return hex;
    case KBD_HOURS:
        return hour_range;
    default:
        return normal;
    }
}

} // namespace keyboard
