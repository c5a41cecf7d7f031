// SPDX-License-Identifier: MIT
// The description word: its parser, its fields, and what replaces it in which order.
#include <gtest/gtest.h>
#include <string>

#include "hw.h"
#include "hw_linux/description.h"
#include "support/tempdir.h"

namespace {

class DeviceFile : public testing::Test {
  protected:
    // The file is read once a process, so each test writes it before the first look-up.
    void write(const char *text) { write_file("./system/config/device.cfg", text); }

    TempDir folder;
};

TEST(DescriptionWord, ParserReadsItsOwnDigits) {
    const std::string long_text = "0x" + std::string(100000, '8');
    const struct {
        const char *text;
        uint64_t value;
    } cases[] = {
        {nullptr, 0},
        {"", 0},
        {" \t\r\n\v\f", 0},
        {"0x10", 16},
        {"19", 10},
        {"0xff", 0},
        {"12345678", 12345678},
        {"90", 0},
        {"  0X1B", 0x1b},
        {"0xbcdeBCDE", 0xbcdebcde},
        {"0xaAfF9", 0},
        {"b1", 1},       // letters are no digits in base 10
        {"1 2\t3", 123}, // white space inside does not multiply
        {"-1z2", 102},   // every other character does
        {"10x1", 1001},  // a prefix counts only in front
        {"0x", 0},
        {"\xff\x80"
         "1",
         1},
        {"0x8888888888888888", 0x8888888888888888},
        {"0x12345678123456781", 0x2345678123456781}, // the low 64 bits stay
        {long_text.c_str(), 0x8888888888888888},
    };
    for (const auto &c : cases)
        EXPECT_EQ(fromStringToLongLong(c.text), static_cast<long long>(c.value))
            << (c.text ? c.text : "null");
}

TEST_F(DeviceFile, DefaultIsASixInchReader) {
    init_hwconfig();
    EXPECT_EQ(device_hwconfig(), hw::default_description);
    EXPECT_EQ(device_display_width(), 600);
    EXPECT_EQ(device_display_height(), 800);
    EXPECT_EQ(hw_depth(), 4);
    EXPECT_GT(device_touchpanel(), 2);
    for (int kind : {5, 11}) EXPECT_NE(device_keyboard(), kind);
    for (int number : {4, 9, 11, 12, 14, 16}) EXPECT_NE(device_platform(), number);
    for (auto *present : {device_has_frontlight, device_wifi, device_bluetooth, device_audio,
                          hw_touchpanel_ready, hw_captouch_ready, hw_gsensor_ready})
        EXPECT_EQ(present(), 1);
    // A default that its own parser could not read would be no example to follow.
    loadHwConfigEmulator("0x10111101013041");
    EXPECT_EQ(device_hwconfig(), hw::default_description);
}

TEST_F(DeviceFile, EveryFieldAnswersFromItsPlace) {
    loadHwConfigEmulator("0x000305221c172318");
    const struct {
        const char *name;
        int (*query)();
        int value;
    } cases[] = {
        {"sensor", hw_gsensor_ready, 0},
        {"gsm", device_gsm, 1},
        {"wifi", device_wifi, 0},
        {"bluetooth", device_bluetooth, 1},
        {"audio", device_audio, 2},
        {"frontlight", device_frontlight, 2},
        {"light", device_has_frontlight, 1},
        {"platform", device_platform, 0x1c},
        {"keyboard", device_keyboard, 0x17},
        {"touch", device_touchpanel, 2},
        {"captouch", hw_captouch_ready, 0},
        {"position", device_display_position, 3},
        {"depth", hw_depth, 1},
        {"hq depth", hw_depth_hq, 1},
        {"panel", device_display, 8},
        {"width", device_display_width, 1404},
        {"height", device_display_height, 1872},
        {"dpi", device_display_dpi, 300},
    };
    for (const auto &c : cases) EXPECT_EQ(c.query(), c.value) << c.name;

    loadHwConfigEmulator("0xe00000000000000e"); // unknown panel, depth 0, nothing else present
    EXPECT_EQ(device_display(), 14);
    EXPECT_EQ(device_display_width(), 600);
    EXPECT_EQ(hw_depth(), 4);
    EXPECT_EQ(device_has_frontlight() | device_audio() | hw_touchpanel_ready(), 0);
}

TEST_F(DeviceFile, DeviceFileThenThemeReplaceTheWord) {
    write("hwconfig= 0x1234\r\nModel=Paper  \nserial=S/N 7\nsafemode=0x1\n");
    init_hwconfig();
    EXPECT_EQ(device_hwconfig(), 0x1234u);
    for (const char *nothing : {static_cast<const char *>(nullptr), "", "0", "0xff"}) {
        loadHwConfigEmulator(nothing);
        EXPECT_EQ(device_hwconfig(), 0x1234u);
    }
    loadHwConfigEmulator("0x8000000000000001");
    EXPECT_EQ(device_hwconfig(), 0x8000000000000001u);
    setenv("KELVANE_DEVICE", "headless", 1);
    ASSERT_EQ(hw_init(), 1); // a newly opened device has no theme yet
    EXPECT_EQ(device_hwconfig(), 0x1234u);
    hw_close();

    EXPECT_STREQ(hw_getmodel(), "Paper  ");
    EXPECT_STREQ(hw_serialnumber(), "S/N 7");
    EXPECT_STREQ(hw_get_device_id(), "S/N 7");
    EXPECT_EQ(hw_safemode(), 1);
}

TEST_F(DeviceFile, WordThatMeansZeroLeavesTheDefault) {
    write("hwconfig=0xa0f9\nsafemode=0\n");
    loadHwConfigEmulator("0x4");
    init_hwconfig();
    EXPECT_EQ(device_hwconfig(), hw::default_description);
    EXPECT_EQ(hw_safemode(), 0);
}

} // namespace
