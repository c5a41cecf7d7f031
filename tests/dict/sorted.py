# SPDX-License-Identifier: MIT
"""Sorts the words of a dictionary in its own way, and lists the prefixes of a sample.

    sorted.py WORDS.TXT INDEX OUT-WORDS OUT-PREFIXES [OWN-LETTERS]

WORDS.TXT is what kelvane-dict unpacked, INDEX the index of dictd that it was made from, each word of
which must be there.
"""
import bisect
import random
import sys
import unicodedata

PLAIN = dict(zip("øłđħŧıς", "oldhtiσ"))
MARKS = [(0x300, 0x36F), (0x483, 0x487), (0x591, 0x5C7), (0x610, 0x61A), (0x64B, 0x65F),
         (0x670, 0x670), (0x6D6, 0x6ED), (0x1AB0, 0x1AFF), (0x1DC0, 0x1DFF), (0x20D0, 0x20FF),
         (0xFE20, 0xFE2F)]


def is_mark(c):
    return unicodedata.category(c) == "Mn" and any(a <= ord(c) <= b for a, b in MARKS)


def collate(text, own):
    out = []
    for c in text:
        if 0xFF01 <= ord(c) <= 0xFF5E:
            c = chr(ord(c) - 0xFEE0)
        kind = unicodedata.category(c)
        if kind == "Zs" or c in "\t\n":
            out.append(" ")
            continue
        if kind[0] == "P" or kind in ("Sk", "Cf", "Cc") or is_mark(c) or 0x2B0 <= ord(c) <= 0x2FF:
            continue
        c = c.lower()[0]
        while c not in own:
            parts = unicodedata.decomposition(c).split()
            if len(parts) != 2 or parts[0][0] == "<" or not is_mark(chr(int(parts[1], 16))):
                break
            c = chr(int(parts[0], 16))
        out.append(c if c in own else PLAIN.get(c, c))
    return "".join(out)


def indexed(text):
    """A word as an index of dictd has it."""
    kept = "".join(c.lower() for c in text
                   if c.isalnum() or c.isspace() or unicodedata.category(c)[0] == "M")
    return " ".join(kept.split())


def unescaped(text):
    return text.replace("\\\\", "\0").replace("\\n", "\n").replace("\\t", "\t").replace("\0", "\\")


def main():
    words_path, index_path, out_words, out_prefixes = sys.argv[1:5]
    own = sys.argv[5] if len(sys.argv) > 5 else ""
    with open(words_path, encoding="utf-8", newline="\n") as file:
        words = [unescaped(line.split("\t")[0]) for line in file]
    keys = [collate(word, own) for word in words]
    faults = [words[i] for i in range(1, len(keys)) if keys[i - 1] > keys[i]]
    with open(index_path, encoding="utf-8", newline="\n") as file:
        wanted = {indexed(line.split("\t")[0]) for line in file if not line.startswith("00")}
    missing = wanted - {indexed(word) for word in words} - {""}
    missing = [word for word in missing if all(ord(c) < 0x10000 for c in word)]
    random.seed(1)
    prefixes = {word[:n] for word in random.sample(words, min(300, len(words)))
                for n in range(1, len(word) + 1)}
    with open(out_prefixes, "w", encoding="utf-8", newline="\n") as file:
        for prefix in sorted(prefixes):
            key = collate(prefix, own)
            if key and not any(c in prefix for c in "\t\n"):
                begin = bisect.bisect_left(keys, key)
                end = bisect.bisect_left(keys, key + "\U0010FFFF")
                file.write(f"{prefix}\t{begin}\t{end - begin}\n")
    with open(out_words, "w", encoding="utf-8", newline="\n") as file:
        file.writelines(word + "\n" for word in words)
    print(f"{len(words)} words, {len(faults)} out of order, {len(missing)} missing",
          *faults[:5], *missing[:5])
    return 1 if faults or len(missing) > len(wanted) // 1000 else 0


sys.exit(main())
