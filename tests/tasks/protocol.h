// SPDX-License-Identifier: MIT
// What the application of these tests is asked by requests.
#pragma once

namespace protocol {

enum Request : int {
    reverse = 1, // answers the bytes the other way round, and returns their number
    sleep = 2,   // answers after as many ms as the data says
    die = 3,     // ends at once
    report = 4,  // answers a Report
    flood = 5,   // sends as many numbered messages to who asks as the data says; returns those sent
    words = 6,   // answers its arguments, each ended by NUL
    shade = 7,   // fills the screen with the grey of the data
    listen = 8,  // listens for the request that the data is; below 0: no longer
    ask_back = 9,     // sends `reverse` to who asks, and returns the answer
    is_open = 10,     // whether a descriptor of this number is open
    is_set = 11,      // whether there is an environment variable of this name
    flood_large = 12, // sends numbered messages of 64 KiB to who asks, until one is refused or so
                      // many were taken as the data says
    last = flood_large
};

// What has arrived since the start.
struct Report {
    int events = 0;   // with type 500
    int messages = 0; // numbered ones
    int disorder = 0; // of either: numbers that did not follow the one before
    int foregrounds = 0, backgrounds = 0;
    int updates_checked = 0; // events of type 95
    int last_input = 0;      // key pressed last
    int large_taken = 0;     // large messages that were taken
};

inline constexpr int numbered_event = 500, numbered_message = 501;
// Sends a numbered event to the task of this number, and waits until it is handled.
inline constexpr int event_back = 502;
// A numbered event that takes 20 ms.
inline constexpr int slow_event = 503;

} // namespace protocol
