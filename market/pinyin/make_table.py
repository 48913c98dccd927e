#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Writes the first letters of the Mandarin readings of each Chinese character, from Unicode's Unihan table: every reading
of today's language; the readings of old texts only where there is no other.

    make_table.py Unihan_Readings.txt.bz2 OUTPUT.cpp
"""
import bz2
import re
import sys
import unicodedata

FIRST, LAST = 0x3400, 0x9FFF  # as in pinyin_table.h
# The fields of the table that give readings in pinyin; what stands before a colon is a place in a dictionary, what stands
# in brackets a count.
FIELDS = {"kMandarin", "kHanyuPinlu", "kTGHZ2013", "kXHC1983"}
OLD_FIELD = "kHanyuPinyin"


def letters(values):
    readings = re.split(r"[ ,]+", re.sub(r"\(\d+\)|[0-9.*,]+:", " ", values))
    return {unicodedata.normalize("NFD", reading)[0].upper() for reading in readings if reading}


def mask_of(character, field, values):
    mask = 0
    for letter in letters(values):
        if not "A" <= letter <= "Z":
            sys.exit(f"{character} {field}: {values}")
        mask |= 1 << (ord(letter) - ord("A"))
    return mask


def main():
    masks = [0] * (LAST - FIRST + 1)
    old = [0] * len(masks)
    with bz2.open(sys.argv[1], "rt", encoding="utf-8") as lines:
        for line in lines:
            if not line.startswith("U+"):
                continue
            character, field, values = line.rstrip("\n").split("\t", 2)
            place = int(character[2:], 16) - FIRST
            if not 0 <= place < len(masks):
                continue
            if field in FIELDS:
                masks[place] |= mask_of(character, field, values)
            elif field == OLD_FIELD:
                old[place] |= mask_of(character, field, values)
    with open(sys.argv[2], "w", encoding="ascii") as out:
        out.write('#include "pinyin_table.h"\n')
        out.write("const std::uint32_t holdwise::kPinyinTable[kPinyinTableSize] = {\n")
        for mask, old_mask in zip(masks, old):
            out.write(f"{mask or old_mask},\n")
        out.write("};\n")


if __name__ == "__main__":
    main()
