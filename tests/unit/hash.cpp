// SPDX-License-Identifier: MIT
// Hash tables: where keys land, what is owned, and the table beside std::unordered_map.
#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <string>
#include <unordered_map>
#include <vector>

#include "ground/hash_access.h"
#include "kelvane/hash.h"

namespace {

struct destroyer {
    void operator()(ihash h) const { hash_destroy(h); }
};
using table = std::unique_ptr<ihash_s, destroyer>;

int by_name(const char *a, void *, const char *b, void *) {
    return strcmp(a, b);
}

int note(const char *name, void *value, void *seen) {
    *static_cast<std::string *>(seen) +=
        std::string(name) + "=" + (value ? static_cast<char *>(value) : "(null)") + " ";
    return 0;
}

std::string listed(ihash h, kv_hashcmpproc order = by_name) {
    std::string seen;
    hash_enumerate(h, order, note, &seen);
    return seen;
}

table strings(int prime, std::initializer_list<std::pair<const char *, const char *>> items) {
    table h(hash_new(prime));
    for (auto [name, value] : items) hash_add(h.get(), name, value);
    return h;
}

TEST(Hash, BytesCountAsSigned) {
    EXPECT_EQ(hash_of(""), 0u);
    EXPECT_EQ(hash_of("ab"), 6209u);
    EXPECT_EQ(hash_of("abc"), 391266u);
    EXPECT_EQ(hash_of("\xC3"), 4294967296u - 61);
    const table h = strings(101, {{"\xC3", "x"}});
    EXPECT_STREQ(h->items[(4294967296u - 61) % 101]->name, "\xC3");
    // A long key against the definition, byte by byte.
    std::string key;
    uint32_t expected = 0;
    for (int i = 1; i < 600; i++) {
        const auto c = static_cast<signed char>(i % 255 + 1);
        key += static_cast<char>(c);
        expected = expected * 63 + static_cast<uint32_t>(int32_t{c});
        ASSERT_EQ(hash_of(key.c_str()), expected) << i;
    }
}

TEST(Hash, NewItemsComeFirstInTheirBucketAndReplacedOnesStay) {
    // "a" is 97 and "d" 100: with 3 buckets both lie in bucket 1, "b" in bucket 2.
    const table h = strings(3, {{"a", "1"}, {"b", "2"}, {"d", "3"}, {"a", "4"}});
    EXPECT_EQ(listed(h.get(), nullptr), "d=3 a=4 b=2 ");
    EXPECT_EQ(hash_count(h.get()), 3);
    EXPECT_EQ(listed(h.get()), "a=4 b=2 d=3 ");
    hash_delete(h.get(), "a");
    hash_delete(h.get(), "absent");
    EXPECT_EQ(listed(h.get(), nullptr), "d=3 b=2 ");
    hash_clear(h.get());
    EXPECT_EQ(hash_count(h.get()), 0);
    EXPECT_EQ(listed(h.get()), "");
}

TEST(Hash, NullIsIgnored) {
    const table h = strings(3, {{"a", nullptr}});
    EXPECT_EQ(listed(h.get()), "a=(null) ");
    hash_add(h.get(), nullptr, "x");
    hash_delete(h.get(), nullptr);
    EXPECT_EQ(hash_find(h.get(), nullptr), nullptr);
    EXPECT_EQ(hash_count(h.get()), 1);
    hash_add(nullptr, "a", "x");
    hash_delete(nullptr, "a");
    hash_clear(nullptr);
    hash_destroy(nullptr);
    hash_enumerate(nullptr, nullptr, note, nullptr);
    EXPECT_EQ(hash_find(nullptr, "a"), nullptr);
    EXPECT_EQ(hash_copy(nullptr), nullptr);
    EXPECT_EQ(hash_copy_to(nullptr, h.get()), -1);
    EXPECT_EQ(hash_merge_to(h.get(), nullptr, h.get()), -1);
    EXPECT_EQ(hash_merge(h.get(), nullptr), nullptr);
    EXPECT_EQ(hash_new(0), nullptr);
    EXPECT_EQ(hash_new(-7), nullptr);
}

std::string calls;
void *noted_add(void *value) {
    calls += std::string("add ") + static_cast<char *>(value) + ";";
    return value;
}
void noted_delete(void *value) {
    calls += std::string("drop ") + static_cast<char *>(value) + ";";
}

TEST(Hash, ValuesGoThroughTheProcedures) {
    char one[] = "1", two[] = "2";
    table h(vhash_new(7, noted_add, noted_delete));
    vhash_add(h.get(), "k", one);
    vhash_add(h.get(), "k", one); // the very pointer: nothing happens
    vhash_add(h.get(), "k", two);
    vhash_delete(h.get(), "k");
    vhash_add(h.get(), "k", one);
    h.reset();
    EXPECT_EQ(calls, "add 1;drop 1;add 2;drop 2;add 1;drop 1;");

    const table borrowed(vhash_new(7, nullptr, nullptr));
    vhash_add(borrowed.get(), "k", one);
    EXPECT_EQ(vhash_find(borrowed.get(), "k"), one);
}

TEST(Hash, AStringMayReplaceTheOneThatItLiesIn) {
    const std::string text(100, 'x');
    const table h = strings(3, {{"a", text.c_str()}});
    hash_add(h.get(), "a", static_cast<const char *>(hash_find(h.get(), "a")) + 1);
    HashFiller(h.get()).add("a", static_cast<const char *>(hash_find(h.get(), "a")) + 1);
    EXPECT_EQ(static_cast<const char *>(hash_find(h.get(), "a")), text.substr(2));
}

int stop_at_once(const char *, void *, void *calls_made) {
    return ++*static_cast<int *>(calls_made);
}

TEST(Hash, WalksEndWhenAskedAndAtTheCount) {
    const table h = strings(3, {{"a", "1"}, {"b", "2"}, {"d", "3"}});
    int calls_made = 0;
    hash_enumerate(h.get(), nullptr, stop_at_once, &calls_made);
    EXPECT_EQ(calls_made, 1);
    h->count = 1; // a corrupt count: no item beyond it is touched, each further bucket complains
    testing::internal::CaptureStderr();
    EXPECT_EQ(listed(h.get(), nullptr), "d=3 ");
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "hash_enumerate: n exceeds itemcount\nhash_enumerate: n exceeds itemcount\n");
    h->count = 3;
}

TEST(Hash, CopiesAndMerges) {
    const table a = strings(5, {{"x", "a"}, {"y", "a"}});
    const table b = strings(3, {{"y", "b"}, {"z", "b"}});
    const table small = strings(2, {{"keep", "1"}});
    EXPECT_EQ(hash_copy_to(a.get(), small.get()), -1);
    EXPECT_EQ(listed(small.get()), "keep=1 ");

    const table copy(hash_copy(a.get()));
    EXPECT_EQ(copy->prime, 5);
    EXPECT_EQ(listed(copy.get()), "x=a y=a ");
    EXPECT_NE(hash_find(copy.get(), "x"), hash_find(a.get(), "x")); // a string of its own

    const table merged(hash_merge(a.get(), b.get()));
    EXPECT_EQ(merged->prime, 8);
    EXPECT_EQ(listed(merged.get()), "x=a y=b z=b ");

    const table big = strings(7, {{"y", "old"}, {"q", "old"}});
    EXPECT_EQ(hash_merge_to(a.get(), b.get(), big.get()), 0);
    EXPECT_EQ(listed(big.get()), "q=old x=a y=b z=b ");
    EXPECT_EQ(hash_merge_to(b.get(), a.get(), b.get()), -1) << "a has more buckets than b";

    // One table in two roles.
    EXPECT_EQ(hash_copy_to(a.get(), a.get()), 0);
    EXPECT_EQ(hash_merge_to(a.get(), b.get(), a.get()), 0);
    EXPECT_EQ(listed(a.get()), "x=a y=b z=b ");
    EXPECT_EQ(hash_merge_to(copy.get(), a.get(), a.get()), 0);
    EXPECT_EQ(listed(a.get()), "x=a y=a z=b ");
    EXPECT_EQ(hash_merge_to(a.get(), a.get(), a.get()), 0);
    EXPECT_EQ(listed(a.get()), "x=a y=a z=b ");
    const table twice(hash_merge(a.get(), a.get()));
    EXPECT_EQ(listed(twice.get()), "x=a y=a z=b ");
}

TEST(Hash, CopiesTakeTheProceduresOfTheSourceAndMergesThoseOfTheFirst) {
    char value[] = "v";
    const table owned = strings(3, {{"s", "1"}});
    const table borrowed(vhash_new(3, nullptr, nullptr));
    vhash_add(borrowed.get(), "b", value);
    const table copy(hash_copy(borrowed.get()));
    EXPECT_EQ(vhash_find(copy.get(), "b"), value);
    EXPECT_EQ(copy->addproc, def_addproc);
    const table dst(vhash_new(3, nullptr, nullptr));
    EXPECT_EQ(hash_merge_to(borrowed.get(), owned.get(), dst.get()), 0);
    EXPECT_EQ(dst->addproc, def_addproc);
    EXPECT_EQ(dst->delproc, def_delproc);
    free(vhash_find(dst.get(), "s")); // a copy that the identity pair does not release
}

// Keys from a small set, so that they meet often; many with bytes of 0x80 and above.
std::string random_key(std::mt19937 &random) {
    std::string key;
    for (unsigned n = random() % 4; n > 0; n--) key += "abc\x7F\x80\xC3\xA9\xFF"[random() % 8];
    return key;
}

TEST(Hash, AgreesWithAnUnorderedMap) {
    std::mt19937 random(20260101);
    const table h(hash_new(101));
    std::unordered_map<std::string, std::string> model;
    for (int i = 0; i < 1000000; i++) {
        const std::string key = random_key(random);
        switch (random() % 4) {
        case 0:
            hash_delete(h.get(), key.c_str());
            model.erase(key);
            break;
        case 1: {
            const std::string value = std::to_string(i);
            hash_add(h.get(), key.c_str(), value.c_str());
            model[key] = value;
            break;
        }
        default: {
            const auto found = model.find(key);
            const auto *stored = static_cast<char *>(hash_find(h.get(), key.c_str()));
            ASSERT_EQ(stored != nullptr, found != model.end()) << i;
            if (stored) {
                ASSERT_EQ(found->second, stored) << i;
            }
        }
        }
        ASSERT_EQ(hash_count(h.get()), static_cast<int>(model.size())) << i;
    }
    const auto check = [](const char *name, void *value, void *m) {
        auto &left = *static_cast<decltype(model) *>(m);
        const auto found = left.find(name);
        const bool same = found != left.end() && found->second == static_cast<char *>(value);
        if (same) left.erase(found);
        return same ? 0 : 1;
    };
    hash_enumerate(h.get(), nullptr, check, &model);
    EXPECT_TRUE(model.empty());
}

TEST(Hash, FillerDoesWhatAddingOneByOneDoes) {
    std::mt19937 random(7);
    const table plain(hash_new(13)), filled(hash_new(13));
    for (int i = 0; i < 700; i++) { // the filler finds items that were there before
        const std::string key = std::to_string(i);
        for (ihash h : {plain.get(), filled.get()}) hash_add(h, key.c_str(), "before");
    }
    HashFiller filler(filled.get());
    for (int i = 0; i < 5000; i++) {
        const std::string key = random_key(random) + std::to_string(random() % 900);
        const std::string value = std::to_string(i);
        hash_add(plain.get(), key.c_str(), value.c_str());
        ASSERT_TRUE(filler.add(key.c_str(), value.c_str()));
    }
    EXPECT_GT(hash_count(plain.get()), 2000); // it has grown more than once
    EXPECT_EQ(listed(filled.get(), nullptr), listed(plain.get(), nullptr));

    const auto goes = [](const char *name) { return hash_of(name) % 3 == 0; };
    remove_items_if(filled.get(), goes);
    std::vector<std::string> names;
    for (int i = 0; i < plain->prime; i++)
        for (ihash_item item = plain->items[i]; item; item = item->next)
            if (goes(item->name)) names.emplace_back(item->name);
    for (const auto &name : names) hash_delete(plain.get(), name.c_str());
    EXPECT_EQ(listed(filled.get(), nullptr), listed(plain.get(), nullptr));
    EXPECT_EQ(hash_count(filled.get()), hash_count(plain.get()));
}

} // namespace
