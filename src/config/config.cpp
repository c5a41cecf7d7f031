// SPDX-License-Identifier: MIT
// Configuration handles: three layers of values over one file that processes share.
#include "kelvane/config.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <optional>
#include <string_view>
#include <unistd.h>
#include <utility>

#include "config/defaults.h"
#include "config/deleted.h"
#include "config/format.h"
#include "config/handle.h"
#include "config/storage.h"
#include "ground/guard.h"
#include "ground/hash_access.h"
#include "ground/heap.h"
#include "ground/log.h"
#include "ground/number.h"
#include "internal.h"
#include "kelvane/files.h"

namespace config {

const char *find(iconfig *c, const char *name) {
    const uint32_t hash = hash_of(name);
    for (ihash layer : {c->vhash, c->modified_hash, c->hash}) {
        if (layer->count == 0) continue;
        if (auto *value = static_cast<const char *>(find_hashed(layer, name, hash))) return value;
    }
    return nullptr;
}

void write(iconfig *c, const char *name, const char *value) {
    const ground::HeapString copy(strdup(name)); // the caller's may be a value that is replaced
    if (!copy || !store_hashed(c->modified_hash, copy.get(), const_cast<char *>(value))) return;
    drop_deleted(static_cast<OpenedConfig *>(c), copy.get());
    c->changed = 1;
    hash_delete(c->vhash, copy.get());
}

} // namespace config

namespace {

using namespace config;

constexpr int buckets = 101;

// A save that a kill cuts may leave the settings of two texts, which must be read again.
constexpr int most_saved = most_settings / 2;

struct HandleCloser {
    void operator()(iconfig *c) const { CloseConfigNoSave(c); }
};
using handle = std::unique_ptr<OpenedConfig, HandleCloser>;

// An empty handle. Throws bad_alloc.
handle make_handle(const char *path) {
    handle c(new OpenedConfig{});
    c->filename = strdup(path);
    c->hash = hash_new(buckets);
    c->vhash = hash_new(buckets);
    c->modified_hash = hash_new(buckets);
    c->deleted_keys = static_cast<char **>(std::calloc(deleted_step, sizeof(char *)));
    if (!c->filename || !c->hash || !c->vhash || !c->modified_hash || !c->deleted_keys)
        throw std::bad_alloc();
    return c;
}

struct TableCloser {
    void operator()(ihash h) const { hash_destroy(h); }
};

// Puts a file's text in the place of `hash`. False, and `hash` stays, when memory ran out or it is
// too much.
bool take_over(OpenedConfig *c, const file::Contents &text) {
    if (c->known_text == text.view()) return true;
    const std::unique_ptr<ihash_s, TableCloser> fresh(hash_new(buckets));
    if (!fresh || !parse_settings(text.text(), fresh.get())) return false;
    c->known_text.reset();
    std::swap(*c->hash, *fresh);
    return true;
}

// Reads a file under a shared lock. Nothing when it cannot be read.
std::optional<file::Contents> read_file(const char *path) {
    kv_buildpath(path);
    const LockedStream f = open_locked(path, Access::read);
    return f ? read_settings(f.get()) : std::nullopt;
}

// The text of settings that a save may write; nothing when they are too many.
std::optional<SettingsText> savable_text(ihash values) {
    if (hash_count(values) > most_saved) return std::nullopt;
    SettingsText now = format_settings(values);
    if (now.text.size() > longest_text) return std::nullopt;
    return now;
}

// Forgets what a save has handled.
void settle(OpenedConfig *c, SettingsText now, bool saved) {
    clear_deleted(c);
    hash_clear(c->modified_hash);
    c->changed = 0;
    if (saved && now.exact) c->known_text = std::move(now.text);
}

// The save of a file that is not there yet.
Created save_new(OpenedConfig *c) {
    auto now = savable_text(c->modified_hash);
    const Created created = now ? create_settings(c->filename, now->text) : Created::failed;
    if (created != Created::done) return created;
    c->known_text.reset();
    std::swap(*c->hash, *c->modified_hash);
    settle(c, std::move(*now), true);
    return created;
}

// The locked read, merge and write. Nothing is forgotten before the new text is complete.
bool save_over(OpenedConfig *c, LockedStream f) {
    const auto old = read_settings(f.get());
    if (!old || !take_over(c, *old)) return false;
    const auto known = std::exchange(c->known_text, std::nullopt);
    if (hash_merge_to(c->hash, c->modified_hash, c->hash) != 0) return false;
    apply_deletions(c);
    auto now = savable_text(c->hash);
    if (!now) return false;
    const bool written = replace_text(f.get(), old->size, known, now->text);
    const bool saved = sync_and_close(std::move(f)) && written;
    settle(c, std::move(*now), saved);
    return saved;
}

int save(OpenedConfig *c) {
    kv_buildpath(c->filename);
    tq_print_log2(LOG_INFO_LEVEL, "[pid:%d]Save config %s", static_cast<int>(getpid()),
                  c->filename);
    LockedStream f = open_locked(c->filename, Access::rewrite);
    if (!f && errno == ENOENT) {
        const Created created = save_new(c);
        if (created != Created::exists) return created == Created::done;
        f = open_or_create(c->filename);
    }
    return f && save_over(c, std::move(f));
}

int refresh(OpenedConfig *c) {
    const auto text = read_file(c->filename);
    if (!text) return 0;
    tq_print_log2(LOG_INFO_LEVEL, "[pid:%d]marge changes in %s", static_cast<int>(getpid()),
                  c->filename);
    c->known_text.reset();
    if (!parse_settings(text->text(), c->hash)) return 0;
    apply_deletions(c);
    clear_deleted(c);
    return 1;
}

// The decimal text of an int.
struct IntText {
    char text[16];
    explicit IntText(int value) { std::snprintf(text, sizeof text, "%i", value); }
};

} // namespace

iconfig *OpenConfig(const char *path, iconfigedit *defaults) {
    return ground::guarded(nullptr, [&]() -> iconfig * {
        handle c = make_handle(path ? path : "");
        add_defaults(defaults, c->hash);
        if (const auto text = read_file(c->filename)) take_over(c.get(), *text);
        return c.release();
    });
}

iconfig *GetGlobalConfig(void) {
    return kvstate.cfg;
}

int RefreshConfig(iconfig **handle) {
    return ground::guarded(0, [&]() -> int {
        return handle && *handle ? refresh(static_cast<OpenedConfig *>(*handle)) : 0;
    });
}

int SaveConfig(iconfig *c) {
    return ground::guarded(0, [&]() -> int {
        if (!c) return 0;
        return c->changed ? save(static_cast<OpenedConfig *>(c)) : 1;
    });
}

void CloseConfig(iconfig *c) {
    SaveConfig(c);
    CloseConfigNoSave(c);
}

void CloseConfigNoSave(iconfig *c) {
    if (!c) return;
    if (kvstate.cfg == c) kvstate.cfg = nullptr;
    hash_destroy(c->hash);
    hash_destroy(c->vhash);
    hash_destroy(c->modified_hash);
    auto *own = static_cast<OpenedConfig *>(c);
    if (c->deleted_keys) clear_deleted(own);
    std::free(c->deleted_keys);
    std::free(c->filename);
    delete own;
}

char *ReadString(iconfig *c, const char *name, const char *deflt) {
    const char *value = c && name ? find(c, name) : nullptr;
    return const_cast<char *>(value ? value : deflt);
}

int ReadInt(iconfig *c, const char *name, int deflt) {
    const char *value = c && name ? find(c, name) : nullptr;
    return value ? ground::parse_int(value) : deflt;
}

void WriteString(iconfig *c, const char *name, const char *value) {
    if (!c || !name || !value) return;
    if (const ground::HeapString copy{strdup(value)}) write(c, name, copy.get());
}

void WriteInt(iconfig *c, const char *name, int value) {
    if (c && name) write(c, name, IntText(value).text);
}

void WriteStringVolatile(iconfig *c, const char *name, const char *value) {
    if (!c || !name || !value) return;
    if (const ground::HeapString copy{strdup(value)}) hash_add(c->vhash, name, copy.get());
}

void WriteIntVolatile(iconfig *c, const char *name, int value) {
    if (c && name) hash_add(c->vhash, name, IntText(value).text);
}

void DeleteString(iconfig *c, const char *name) {
    // The name stays everywhere.
    ground::guarded([&] {
        if (!c || !name) return;
        const ground::HeapString copy(strdup(name));
        if (!copy) return;
        auto *own = static_cast<OpenedConfig *>(c);
        push_deleted(own, copy.get());
        for (ihash layer : {c->hash, c->vhash, c->modified_hash}) hash_delete(layer, copy.get());
        own->known_text.reset();
        c->changed = 1;
    });
}

void DeleteInt(iconfig *c, const char *name) {
    DeleteString(c, name);
}

void ClearConfig(iconfig *c) {
    if (!c) return;
    for (ihash layer : {c->hash, c->vhash, c->modified_hash}) hash_clear(layer);
    static_cast<OpenedConfig *>(c)->known_text.reset();
    c->changed = 1;
}
