"""Checks a family that was stored element by element from bitmaps of known bytes: check_store.py FILE

A bitmap of S × S pixels has the bytes (37 i + i ÷ 64 + S) modulo 256, for each i: R, G, B, A, straight. The expected
elements are worked out here from the bitmaps alone."""

import pathlib
import sys

from icns_format import parse

COLOURS = {"ic04": 16, "ic05": 32, "ic06": 48, "ic07": 128, "ic08": 256, "ic09": 512, "ic10": 512, "ic11": 32,
           "ic12": 64, "ic13": 256, "ic14": 512, "is32": 16, "il32": 32, "ih32": 48, "it32": 128}
ALPHA = {"s8mk": 16, "l8mk": 32, "h8mk": 48, "t8mk": 128, "ics8": 16, "icl8": 32, "ich8": 48}
BITS = {"ics#": 16, "ICN#": 32, "ich#": 48}


def bitmap(side):
    return bytes((i * 37 + i // 64 + side) % 256 for i in range(4 * side * side))


def expected(code):
    if code in COLOURS:
        pixels = bitmap(COLOURS[code])
        return b"".join(pixels[i + 3:i + 4] + pixels[i:i + 3] for i in range(0, len(pixels), 4))
    if code in ALPHA:
        return bitmap(ALPHA[code])[3::4]
    first = bitmap(BITS[code])[::4]
    bits = bytes(sum(128 >> k for k in range(8) if first[i + k]) for i in range(0, len(first), 8))
    return bits + bits


elements = parse(pathlib.Path(sys.argv[1]).read_bytes())
assert [code for code, _ in elements] == list(COLOURS) + list(ALPHA) + list(BITS), [code for code, _ in elements]
for code, data in elements:
    assert data == expected(code), code
print(len(elements), "elements")
