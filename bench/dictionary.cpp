// SPDX-License-Identifier: MIT
// Dictionaries of 460,000 words beside zlib, which they cannot do without, beside plain lists in
// memory, and beside sdcv, a program that looks words up in the files of StarDict.
#include <algorithm>
#include <benchmark/benchmark.h>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <functional>
#include <random>
#include <set>
#include <spawn.h>
#include <string>
#include <string_view>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>
#include <zlib.h>

#include "beside.h"
#include "dict/letters.h"
#include "dict/writer.h"
#include "dictionary/collation.h"
#include "dictionary/file.h"
#include "dictionary/index.h"
#include "kelvane/dictionary.h"

namespace {

namespace fs = std::filesystem;

constexpr size_t all_words = 460'000;

void check(bool holds) {
    if (!holds) std::abort();
}

// A device folder for as long as the program runs. What each look-up says goes nowhere.
class Folder {
  public:
    Folder() {
        fs::create_directories(path_ / "system/dictionaries");
        fs::create_directories(path_ / "star");
        fs::current_path(path_);
        check(std::freopen("/dev/null", "w", stderr));
    }
    ~Folder() { fs::remove_all(path_); }

  private:
    fs::path path_ = fs::temp_directory_path() / ("kelvane-bench-" + std::to_string(getpid()));
};

// Words and articles that are packed about as well as real ones: syllables, and phrases of the
// words.
class Sample {
  public:
    Sample() {
        std::set<std::string> distinct;
        while (distinct.size() < all_words) distinct.insert(made_word());
        words.assign(distinct.begin(), distinct.end());
        articles.reserve(words.size());
        for (size_t i = 0; i < words.size(); ++i) articles.push_back(made_article(words[i]));
        for (size_t i = 0; i < words.size(); ++i) entries.push_back({words[i], articles[i], i});
        sides.collation = dict::pairs_of(dict::default_letters(""));
    }

    std::vector<std::string> words, articles; // words in their order
    std::vector<dict::Entry> entries;
    dict::Sides sides;

  private:
    size_t any(size_t count) { return random_() % count; }
    std::string made_word() {
        constexpr std::string_view first = "bcdfghklmnprstvw", second = "aeiou";
        std::string word;
        for (size_t n = 2 + any(4); n > 0; --n) {
            word += first[std::min(any(16), any(16))];
            word += second[std::min(any(5), any(5))];
            if (any(3) == 0) word += first[any(16)];
        }
        return word;
    }
    std::string made_article(const std::string &word) {
        std::string text = word + " <n>\n";
        for (size_t n = 5 + any(25); n > 0; --n)
            text.append(words[std::min(any(words.size()), any(3000) * 150)]).append(" ");
        return text;
    }
    std::mt19937 random_{1};
};

// What of the file the peers need.
struct Parts {
    dictionary::File file;
    dictionary::Collation collation;
    dictionary::Index index;
    std::string packed_index;
    size_t index_size = 0;
    std::vector<std::string> containers; // packed
    std::string buffer;

    explicit Parts(const char *path) : file(file::open_plain(path)) {
        using namespace dictionary;
        check(file.read_header());
        collation.apply(*file.read_section(collation_field, File::Packing::none));
        const auto entries = file.read_section(index_field, File::Packing::zlib);
        index = Index(*entries, file.value(containers_field), collation);
        index_size = entries->size();
        const uint32_t start = file.value(index_field) + 4;
        packed_index = bytes(start, file.value(containers_field) - start);
        for (size_t i = 0; i < index.size(); ++i)
            containers.push_back(bytes(index.offset(i), index.packed_size(i)));
        buffer.resize(std::max<size_t>(file.value(limit_field), index_size));
    }
    std::string bytes(uint64_t offset, size_t size) {
        std::string all(size, '\0');
        check(file.read(offset, {reinterpret_cast<uint8_t *>(all.data()), size}));
        return all;
    }
    size_t inflate(const std::string &packed) {
        uLongf size = buffer.size();
        check(uncompress(reinterpret_cast<Bytef *>(buffer.data()), &size,
                         reinterpret_cast<const Bytef *>(packed.data()), packed.size()) == Z_OK);
        return size;
    }
    size_t container_of(const std::string &word) {
        return index.find(collation.collate(word.c_str()));
    }
};

void write_stardict(const Sample &s) {
    const auto number = [](size_t value) {
        std::string bytes;
        for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>(value >> shift);
        return bytes;
    };
    std::ofstream data("star/w.dict"), index("star/w.idx");
    size_t offset = 0, index_size = 0;
    for (size_t i = 0; i < s.words.size(); ++i) {
        const std::string entry = s.words[i] + '\0' + number(offset) + number(s.articles[i].size());
        index << entry;
        data << s.articles[i];
        offset += s.articles[i].size();
        index_size += entry.size();
    }
    std::ofstream("star/w.ifo") << "StarDict's dict ifo file\nversion=2.4.2\nwordcount="
                                << s.words.size() << "\nidxfilesize=" << index_size
                                << "\nbookname=w\nsametypesequence=m\n";
    check(std::system("dictzip star/w.dict") == 0);
}

struct World {
    Folder folder;
    Sample sample;

    World() {
        const dict::Written written = dict::write(sample.entries, sample.sides);
        std::ofstream("system/dictionaries/w.dic") << written.bytes;
        write_stardict(sample);
        check(OpenDictionary("w") == 1);
    }
};

World &world() {
    static World made;
    return made;
}

Parts &parts() {
    static Parts *const made = (world(), new Parts("system/dictionaries/w.dic"));
    return *made;
}

// Words that lie far apart, so that the container of each is one that is not kept.
std::vector<std::string> words_apart(size_t count) {
    std::mt19937 random(2);
    std::vector<std::string> words;
    for (size_t i = 0; i < count; ++i) words.push_back(world().sample.words[random() % all_words]);
    return words;
}

void look(const std::string &word) {
    char *headword, *translation;
    check(LookupWordExact(word.c_str(), &headword, &translation) == DICT_EXACT);
    benchmark::DoNotOptimize(translation);
}

void uncached_and_inflate(benchmark::State &state) {
    const auto words = words_apart(1000);
    std::vector<size_t> containers;
    for (const auto &word : words) containers.push_back(parts().container_of(word));
    size_t ours = 0, other = 0;
    beside(
        state, Against::limit, [&] { look(words[ours++ % words.size()]); },
        [&] { parts().inflate(parts().containers[containers[other++ % words.size()]]); });
}
BENCHMARK(uncached_and_inflate)->UseManualTime();

void cached_and_binary_search(benchmark::State &state) {
    const auto &all = world().sample.words;
    std::vector<std::string> words; // of four containers
    for (size_t at = 50'000; at < all.size(); at += 110'000) {
        const size_t container = parts().container_of(all[at]);
        for (size_t i = at; parts().container_of(all[i]) == container; ++i) words.push_back(all[i]);
    }
    std::shuffle(words.begin(), words.end(), std::mt19937(3));
    size_t ours = 0, other = 0;
    beside(
        state, Against::limit, [&] { look(words[ours++ % words.size()]); },
        [&] {
            const auto found =
                std::lower_bound(all.begin(), all.end(), words[other++ % words.size()]);
            benchmark::DoNotOptimize(found);
        });
}
BENCHMARK(cached_and_binary_search)->UseManualTime();

void open_and_index(benchmark::State &state) {
    world();
    dictionary::Word collated;
    beside(
        state, Against::limit, [] { check(OpenDictionary("w") == 1); },
        [&] {
            const size_t size = parts().inflate(parts().packed_index);
            collated.clear();
            for (size_t at = 2; at < size; at += std::strlen(&parts().buffer[at]) + 3)
                parts().collation.append(&parts().buffer[at], collated);
        });
}
BENCHMARK(open_and_index)->UseManualTime();

// A prefix that about a thousand words have.
std::string prefix_of_a_thousand() {
    const auto &all = world().sample.words;
    for (size_t i = 100'000; i + 1000 < all.size(); ++i) {
        size_t same = 0;
        while (all[i][same] == all[i + 1000][same]) ++same;
        const std::string prefix = all[i].substr(0, same);
        if (!all[i - 1].starts_with(prefix) && !all[i + 1100].starts_with(prefix)) return prefix;
    }
    std::abort();
}

void prefix_and_inflate(benchmark::State &state) {
    const std::string prefix = prefix_of_a_thousand();
    const auto &all = world().sample.words;
    const auto first = std::lower_bound(all.begin(), all.end(), prefix);
    const auto last = std::lower_bound(first, all.end(), prefix + '\x7F');
    const size_t begin = parts().container_of(*first), end = parts().container_of(*(last - 1));
    state.SetLabel(std::to_string(last - first) + " words in " + std::to_string(end - begin + 1) +
                   " containers");
    beside(
        state, Against::limit,
        [&] {
            char **const list = GetWordListWithPrefix(prefix.c_str());
            check(list[last - first - 1] && !list[last - first]);
            freeWordsWithPrefix(list);
        },
        [&] {
            for (size_t i = begin; i <= end; ++i) parts().inflate(parts().containers[i]);
        });
}
BENCHMARK(prefix_and_inflate)->UseManualTime();

double wall_seconds(const std::function<void()> &work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// Processor time of a program and of those that it starts. It is spawned: to copy the memory of
// this program, and to drop it again, would count as well.
double process_seconds(std::vector<std::string> command) {
    std::vector<char *> words;
    for (std::string &word : command) words.push_back(word.data());
    words.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t child = 0;
    check(posix_spawnp(&child, words[0], &actions, nullptr, words.data(), environ) == 0);
    posix_spawn_file_actions_destroy(&actions);
    int status = 0;
    rusage used{};
    check(wait4(child, &status, 0, &used) == child && WIFEXITED(status) &&
          WEXITSTATUS(status) == 0);
    const auto seconds = [](const timeval &t) {
        return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_usec) * 1e-6;
    };
    return seconds(used.ru_utime) + seconds(used.ru_stime);
}

void thousand_words_and_sdcv(benchmark::State &state) {
    world();
    std::vector<std::string> ours = {KELVANE_DICT_TOOL, "look", "-d", "w"};
    std::vector<std::string> other = {"sdcv", "-n", "-e", "-x", "-2", fs::absolute("star")};
    for (const std::string &word : words_apart(1000)) {
        ours.push_back(word);
        other.push_back(word);
    }
    setenv("HOME", fs::current_path().c_str(), 1); // where sdcv keeps what it learnt
    process_seconds(other);
    std::vector<double> our_times, other_times;
    for (auto _ : state) {
        other_times.push_back(process_seconds(other));
        our_times.push_back(process_seconds(ours));
        state.SetIterationTime(our_times.back());
    }
    state.counters["ours_us"] = median(our_times) * 1e6;
    count(state, Against::peer, median(our_times), median(other_times));
}
BENCHMARK(thousand_words_and_sdcv)->UseManualTime()->Iterations(15);

void compile_and_deflate(benchmark::State &state) {
    std::vector<std::string> unpacked;
    for (const std::string &packed : (world(), parts()).containers)
        unpacked.push_back(parts().buffer.substr(0, parts().inflate(packed)));
    std::string out(compressBound(parts().buffer.size()), '\0');
    Turns turns(state, Against::limit);
    for (auto _ : state) {
        turns.other([&] {
            for (const std::string &bytes : unpacked) {
                uLongf size = out.size();
                check(compress2(reinterpret_cast<Bytef *>(out.data()), &size,
                                reinterpret_cast<const Bytef *>(bytes.data()), bytes.size(),
                                Z_BEST_COMPRESSION) == Z_OK);
            }
        });
        turns.ours([&] {
            const Sample &s = world().sample;
            check(dict::write(s.entries, s.sides, {.threads = 1}).words == all_words);
        });
    }
}
BENCHMARK(compile_and_deflate)->UseManualTime()->Iterations(3);

// On the clock of the wall, with all processors and with one.
void compile_and_one_thread(benchmark::State &state) {
    const Sample &s = world().sample;
    const auto compile = [&](unsigned threads) {
        return wall_seconds([&] { dict::write(s.entries, s.sides, {.threads = threads}); });
    };
    state.SetLabel(std::to_string(std::thread::hardware_concurrency()) + " processors");
    std::vector<double> all, one;
    for (auto _ : state) {
        one.push_back(compile(1));
        all.push_back(compile(0));
        state.SetIterationTime(all.back());
    }
    count(state, Against::peer, median(all), median(one));
}
BENCHMARK(compile_and_one_thread)->UseManualTime()->Iterations(3);

} // namespace

BENCHMARK_MAIN();
