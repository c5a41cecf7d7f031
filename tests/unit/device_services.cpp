// SPDX-License-Identifier: MIT
// The emulated services: monitor requests, demonstration lists, remembered state, bad arguments.
#include <climits>
#include <cstring>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <vector>

#include "hw.h"
#include "hw_linux/device.h"
#include "hw_linux/services/state.h"
#include "support/tempdir.h"

namespace {

enum : int { ENCIPHER = 260, DECIPHER = 261 };

// Sends a request with a heap buffer of exactly `room` bytes, so that a step too far is caught.
struct Reply {
    int result;
    std::string bytes;
};
Reply request(int cmd, const std::string &data, int in, int out, int room) {
    auto buffer = std::make_unique<char[]>(static_cast<size_t>(room));
    std::memcpy(buffer.get(), data.data(), data.size());
    int result = hw_ipcrequest(cmd, 0, buffer.get(), in, out, 0);
    return {result, std::string(buffer.get(), static_cast<size_t>(room))};
}

TEST(MonitorRequest, SecretsGoThereAndBack) {
    for (int size : {0, 1, 11, 12, 13, 65, 148}) {
        std::string secret(static_cast<size_t>(size), '\0');
        for (int i = 0; i < size; ++i) secret[static_cast<size_t>(i)] = static_cast<char>(i * 37);
        Reply hidden = request(ENCIPHER, secret, size, 160, 160);
        EXPECT_EQ(hidden.result, size + 12);
        EXPECT_EQ(hidden.bytes.substr(0, static_cast<size_t>(size) + 12), "(encrypted):" + secret);
        // The count may be the secret's own or that of the whole text; both bring it back.
        for (int in : {size, size + 12}) {
            Reply shown = request(DECIPHER, hidden.bytes, in, 160, 160);
            EXPECT_EQ(shown.bytes.substr(0, static_cast<size_t>(size)), secret) << in;
        }
    }
}

TEST(MonitorRequest, StaysInsideTheBuffer) {
    const struct {
        int cmd, in, out, room, result;
        const char *before, *after;
    } cases[] = {
        {ENCIPHER, 4, 16, 16, 16, "abcd", "(encrypted):abcd"},
        {ENCIPHER, 4, 15, 15, 0, "abcd", "abcd"},
        {ENCIPHER, 4, 0, 4, 0, "abcd", "abcd"},
        {ENCIPHER, 4, INT_MIN, 4, 0, "abcd", "abcd"},
        {ENCIPHER, -1, 16, 16, 0, "abcd", "abcd"},
        {ENCIPHER, INT_MIN, INT_MAX, 16, 0, "abcd", "abcd"},
        {ENCIPHER, INT_MAX, INT_MAX, 4, 0, "abcd", "abcd"},
        {DECIPHER, 16, 16, 16, 4, "(encrypted):abcd", "abcdrypted):abcd"},
        {DECIPHER, 16, 0, 16, 4, "(encrypted):abcd", "abcdrypted):abcd"},
        {DECIPHER, 12, 12, 12, 0, "(encrypted):", "(encrypted):"},
        {DECIPHER, 3, 0, 3, 0, "abc", "abc"},
        {DECIPHER, INT_MIN, 16, 16, 0, "abc", "abc"},
        {1300, 4, 16, 16, 0, "abcd", "abcd"},
        {270, 4, 16, 16, 0, "abcd", "abcd"},
    };
    for (const auto &c : cases) {
        Reply reply = request(c.cmd, c.before, c.in, c.out, c.room);
        std::string expected = c.after;
        expected.resize(static_cast<size_t>(c.room));
        EXPECT_EQ(reply.result, c.result) << c.cmd << " " << c.in << " " << c.out;
        EXPECT_EQ(reply.bytes, expected) << c.cmd << " " << c.in << " " << c.out;
    }
}

TEST(MonitorRequest, IsLogged) {
    setenv("KELVANE_LOG", "4", 1);
    testing::internal::CaptureStderr();
    hw_ipcrequest(1300, -7, nullptr, 4, 8);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "IPC request: 1300 param=-7 in=4 out=8\n");
}

TEST(Services, DemonstrationNames) {
    auto names = [](const char *const *list) {
        std::vector<std::string> all;
        while (*list) all.emplace_back(*list++);
        return all;
    };
    using Names = std::vector<std::string>;
    EXPECT_EQ(names(hw_enum_wireless()),
              (Names{"HomeNet", "Open network", "DLink", "WLAN123", "wifi_free"}));
    EXPECT_EQ(names(hw_enum_btdevices()), (Names{"My BT device", "SE W810i"}));
    loadHwConfigEmulator("0x1"); // no radio
    EXPECT_EQ(names(hw_enum_wireless()), Names{});
    EXPECT_EQ(names(hw_enum_btdevices()), Names{});
    EXPECT_EQ(hw_wifi_activate(1) | hw_wifi_active() | hw_bt_activate(1) | hw_bt_active(), 0);
}

TEST(Services, ReportTheEmulatedState) {
    hw::EmulatedState &state = hw::emulated();
    for (auto [level, percent] : {std::pair{0, 0}, {1, 20}, {5, 100}, {INT_MAX, 100}, {-1, 0}}) {
        state.battery = level;
        EXPECT_EQ(hw_power(), percent);
    }
    for (auto [position, orientation] : {std::pair{-1, 0}, {0, 0}, {3, 3}}) {
        state.position = position;
        EXPECT_EQ(hw_read_gsensor(), orientation);
        EXPECT_EQ(hw_last_orientation(), orientation);
    }
    for (bool on : {true, false}) {
        state.charging = state.card_inserted = on;
        EXPECT_EQ(hw_ischarging(), on);
        EXPECT_EQ(hw_isusbconnected(), on);
        EXPECT_EQ(hw_issdinserted(), on);
        EXPECT_EQ(hw_sd_mounted(), on);
        EXPECT_EQ(*hw_external_card_serial_number() != '\0', on);
    }
}

TEST(Services, RememberUntilTheDeviceCloses) {
    EXPECT_EQ(hw_usbready(), 1);
    hw::set_storage_ready(false);
    hw_set_keylock(-5);
    hw_set_frontlight_state(1);
    hw_set_frontlight_value(INT_MAX);
    hw_mp_setvolume(INT_MIN);
    EXPECT_EQ(hw_gsensor_switch(0), 1);
    EXPECT_EQ(hw_mp_play(), 0);
    EXPECT_EQ(hw_mp_load("a.mp3"), 1);
    hw_mp_pause();
    EXPECT_EQ(hw_mp_state(), HW_MP_STOPPED);
    EXPECT_EQ(hw_mp_play(), 1);
    EXPECT_EQ(hw_is_player_playing(), 1);
    hw_mp_pause();
    EXPECT_EQ(hw_mp_state(), HW_MP_PAUSED);
    EXPECT_EQ(hw_wifi_activate(1) & hw_bt_activate(1), 1);
    EXPECT_EQ(hw_get_keylock(), 1);
    EXPECT_EQ(hw_get_frontlight_state(), 1);
    EXPECT_EQ(hw_get_frontlight_value(), 100);
    EXPECT_EQ(hw_mp_volume() | hw_usbready() | hw_gsensor_get_switch(), 0);
    EXPECT_EQ(hw_wifi_active() & hw_bt_active(), 1);

    hw_close();
    EXPECT_EQ(hw_get_keylock() | hw_mp_play() | hw_wifi_active() | hw_get_frontlight_state(), 0);
    EXPECT_EQ(hw_usbready() & hw_gsensor_get_switch(), 1);

    loadHwConfigEmulator("0x1"); // no front light
    hw_set_frontlight_state(1);
    hw_set_frontlight_value(7);
    EXPECT_EQ(hw_get_frontlight_state(), 0);
    EXPECT_NE(hw_get_frontlight_value(), 7);
}

TEST(Services, TasksAreNotSupported) {
    int task = 7, subtask = 7, w = 7, h = 7, depth = 7;
    EXPECT_EQ(hw_task_sendevent(0, 1, 2, 3), -1);
    EXPECT_EQ(hw_task_message(0, 1, "x", 1), -1);
    EXPECT_EQ(hw_task_sendrequest(0, 1, &task, 4, 4, 0, 1), 0);
    EXPECT_EQ(task, 7);
    EXPECT_EQ(hw_task_findbybook("b", &task, nullptr) | hw_task_previous(nullptr, &subtask), 0);
    EXPECT_EQ(task & subtask, -1);
    EXPECT_EQ(hw_gettaskfbinfo(0, &w, &h, &depth) | w | h | depth, 0);
}

TEST(Services, SmallFiles) {
    const TempDir folder;
    const char *path = "small";
    char text[8] = "unread";
    EXPECT_EQ(hw_read_file(path, text, sizeof text), -1);
    EXPECT_EQ(hw_read_file("/", text, sizeof text), -1);
    ASSERT_EQ(mkfifo("pipe", 0600), 0);
    EXPECT_EQ(hw_read_file("pipe", text, sizeof text), -1);
    EXPECT_EQ(hw_write_file("pipe", "x"), 0);
    EXPECT_STREQ(text, "unread");
    EXPECT_EQ(hw_write_file("/dev/full", "x"), 0);
    EXPECT_EQ(hw_write_file(path, "0123456789"), 1);
    EXPECT_EQ(hw_read_file(path, text, sizeof text), 7);
    EXPECT_STREQ(text, "0123456");
    EXPECT_EQ(hw_read_file(path, text, 1), 0);
    EXPECT_EQ(hw_read_file(path, text, 0), -1);
    EXPECT_EQ(hw_write_file(path, ""), 1);
    EXPECT_EQ(hw_read_file(path, text, sizeof text), 0);
}

TEST(Services, NullPointersAreHarmless) {
    const std::pair<int, std::function<int(int)>> calls[] = {
        {0, [](int n) { return hw_ipcrequest(ENCIPHER, n, nullptr, n, n); }},
        {0, [](int n) { return hw_ipcrequest_secure(DECIPHER, n, nullptr, n, n, n, n); }},
        {0, [](int n) { return hw_ipcread(nullptr, n); }},
        {0, [](int n) { return hw_ipcreply(nullptr, n); }},
        {0, [](int n) { return hw_winmessage(n, nullptr, nullptr, n); }},
        {0, [](int) { return hw_registerapp(nullptr); }},
        {-1, [](int n) { return hw_task_register(nullptr, nullptr, nullptr, n); }},
        {-1, [](int) { return hw_task_newsubtask(nullptr); }},
        {0, [](int n) { return hw_task_list(nullptr, n); }},
        {0, [](int) { return hw_task_findbybook(nullptr, nullptr, nullptr); }},
        {-1, [](int) { return hw_task_findbyappname(nullptr); }},
        {0, [](int n) { return hw_task_setparameters(n, nullptr, nullptr, nullptr, 0); }},
        {-1, [](int n) { return hw_task_message(n, n, nullptr, n); }},
        {0, [](int n) { return hw_task_sendrequest(n, n, nullptr, n, n, n, n); }},
        {0, [](int n) { return hw_task_setsubtaskinfo(n, n, nullptr, nullptr); }},
        {0, [](int) { return hw_task_previous(nullptr, nullptr); }},
        {0, [](int) { return hw_task_previous_instack(nullptr, nullptr); }},
        {0, [](int n) { return hw_gettaskfbinfo(n, nullptr, nullptr, nullptr); }},
        {0, [](int) { return hw_releasetaskfb(nullptr), hw_setextkbdlayout(nullptr), 0; }},
        {0, [](int) { return hw_mp_load(nullptr); }},
        {0, [](int) { return hw_net_connect(nullptr); }},
        {0, [](int n) { return hw_net_info(nullptr, nullptr, n); }},
        {0, [](int n) { return hw_get_network_interface_info(nullptr, n); }},
        {0, [](int n) { return hw_get_net_gateway_info(nullptr, n); }},
        {0, [](int n) { return hw_get_net_dns_info(nullptr, n); }},
        {-1, [](int n) { return hw_ussdquery(nullptr, nullptr, n); }},
        {-1, [](int n) { return hw_read_file(nullptr, nullptr, n); }},
        {0, [](int) { return hw_write_file(nullptr, nullptr); }},
    };
    for (int n : {INT_MIN, -1, 0, 1, INT_MAX})
        for (const auto &call : calls)
            EXPECT_EQ(call.second(n), call.first) << "row " << &call - calls << " with " << n;
}

} // namespace
