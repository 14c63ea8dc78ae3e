#!/usr/bin/env python3
"""Writes the fuzz targets' seed inputs, fuzz/corpus/<family>/.

Each input is read by tests/support/differential.cpp: an entry index, width
and height (mode byte, two size bytes), row padding, zero strides, start
offset, then per stride a byte (0x41: no adjustment) and per option a kind
byte and a word (0x41...: a value inside the option's range), a target byte,
and the pixels.  Three seeds for each of 32 entry indexes reach every entry
of every family: a small odd size, a wide one, and the smallest accepted
size with zero strides at an odd start.
"""
import os
import random

FAMILIES = ["filters", "gradients", "ycbcr_to_rgb", "rgb_to_ycbcr", "scaling"]
NEUTRAL = bytes([0x41]) * 40  # strides, options and the target byte


def size(mode, value):
    return bytes([mode, value & 0xFF, value >> 8])


def seeds(index, rng):
    pixels = bytes(rng.randrange(256) for _ in range(256))
    small = bytes([index]) + size(2, 16 + index) + size(2, 8 + index % 5) + bytes([3, 1, 200])
    wide = bytes([index]) + size(7, 300 + 7 * index) + size(3, 12) + bytes([5, 2, 0])
    smallest = bytes([index]) + size(0, 0) + size(0, 0) + bytes([0, 0, 1])
    return {"small": small, "wide": wide, "smallest": smallest}, pixels


def main():
    root = os.path.join(os.path.dirname(os.path.abspath(__file__)), "corpus")
    rng = random.Random(1)
    for family in FAMILIES:
        folder = os.path.join(root, family)
        os.makedirs(folder, exist_ok=True)
        for index in range(32):
            headers, pixels = seeds(index, rng)
            for name, header in headers.items():
                with open(os.path.join(folder, "entry%02d-%s" % (index, name)), "wb") as out:
                    out.write(header + NEUTRAL + pixels)


if __name__ == "__main__":
    main()
