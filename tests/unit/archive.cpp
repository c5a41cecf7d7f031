// SPDX-License-Identifier: MIT
// Archives as users download them: names in any case, limits, and entries that lie.
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <sys/stat.h>

#include "file/archive.h"
#include "support/tempdir.h"
#include "support/zip_file.h"

namespace {

constexpr size_t plenty = 1 << 20;

std::string text(const std::optional<file::MemberBytes> &bytes) {
    return bytes ? std::string(bytes->begin(), bytes->end()) : "(none)";
}

std::unique_ptr<file::Archive> open_zip(const ZipMembers &members) {
    write_zip("a.zip", members);
    return file::Archive::open("a.zip");
}

// Changes a number of four bytes in the index of a.zip, `at` bytes into its first entry.
void lie_in_index(size_t at, uint32_t value) {
    std::string bytes = read_file("a.zip");
    for (size_t i = 0; i < 4; ++i)
        bytes[bytes.find("PK\1\2") + at + i] = static_cast<char>(value >> 8 * i);
    write_file("a.zip", bytes);
}

class Archives : public testing::Test {
    const TempDir dir_;
};

TEST_F(Archives, FindNamesWhateverTheirCaseAndTheFirstOfEqualOnes) {
    const auto zip = open_zip({{"Dir/One.TXT", "1"}, {"empty", ""}, {"dir/one.txt", "2"}});
    ASSERT_TRUE(zip);
    ASSERT_EQ(zip->members().size(), 3u);
    EXPECT_EQ(zip->members()[2].name, "dir/one.txt");
    EXPECT_EQ(text(zip->read("DIR/one.txt", plenty)), "1");
    EXPECT_EQ(text(zip->read("empty", plenty)), "");
    EXPECT_EQ(text(zip->read("one.txt", plenty)), "(none)");
    EXPECT_EQ(file::Archive::open("none.zip"), nullptr);
    ASSERT_EQ(mkfifo("pipe.zip", 0600), 0);
    EXPECT_EQ(file::Archive::open("pipe.zip"), nullptr);
}

TEST_F(Archives, GiveTheStartOfAMemberOrAllOfItWithinALimit) {
    const std::string bytes(100'000, 'x');
    const auto zip = open_zip({{"a", "short"}, {"b", bytes}});
    ASSERT_TRUE(zip);
    EXPECT_EQ(text(zip->read_start("b", 3)), "xxx");
    EXPECT_EQ(text(zip->read_start("a", 100)), "short");
    EXPECT_EQ(text(zip->read("b", bytes.size())), bytes);
    EXPECT_EQ(text(zip->read("b", bytes.size() - 1)), "(none)");
}

TEST_F(Archives, AreReadWhereverTheirPartsLie) {
    std::string bytes(50'000, '\0');
    std::minstd_rand random;
    for (char &c : bytes) c = static_cast<char>(random() >> 8);
    open_zip({{"a", bytes}, {"b", "short"}});
    const std::string archive = read_file("a.zip");
    for (const size_t before : {0, 1, 15'000, 16'000, 16'300, 16'384, 20'000})
        for (const std::string comment : {"", "comment"}) {
            std::string file = std::string(before, 'x') + archive + comment;
            file[before + archive.size() - 2] = static_cast<char>(comment.size());
            write_file("moved.zip", file);
            const auto zip = file::Archive::open("moved.zip");
            ASSERT_TRUE(zip) << before;
            EXPECT_EQ(text(zip->read("a", plenty)), bytes) << before;
            EXPECT_EQ(text(zip->read("b", plenty)), "short") << before;
        }
}

TEST_F(Archives, RefuseMembersThatPromiseWhatTheyCannotHold) {
    const size_t size_field = 24;
    for (const uint32_t size : {4u, 6u, 1u << 16, ~0u}) {
        open_zip({{"a", "short"}, {"b", "whole"}});
        lie_in_index(size_field, size);
        const auto zip = file::Archive::open("a.zip");
        ASSERT_TRUE(zip);
        EXPECT_EQ(text(zip->read("a", size_t{1} << 32)), "(none)") << size;
        EXPECT_EQ(text(zip->read("b", plenty)), "whole") << size;
    }
}

TEST_F(Archives, EndWhereAnIndexIsUnreasonablyLong) {
    ZipMembers many;
    for (size_t i = 0; i <= file::most_members; ++i) many.push_back({std::to_string(i), ""});
    many[0].first = std::string(file::longest_member_name + 1, 'n');
    many[1].second = "near";
    many[file::most_members - 1].second = "far";
    const auto zip = open_zip(many);
    ASSERT_TRUE(zip);
    EXPECT_EQ(zip->members().size(), file::most_members);
    EXPECT_EQ(text(zip->read("1", plenty)), "near");
    EXPECT_EQ(text(zip->read(std::to_string(file::most_members - 1), plenty)), "far");
    many.resize(10'000);
    const std::string padding(1000, 'n');
    for (auto &[name, bytes] : many) name = padding + name.substr(0, 20);
    EXPECT_LT(open_zip(many)->members().size(), many.size());
}

} // namespace
