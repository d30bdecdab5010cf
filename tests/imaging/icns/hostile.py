"""Hostile icns files, each with its expected results.

cases() yields Case objects. As a program this writes all files into a folder, and a JSON file, expected.json. For each
file that states the status of `icns list`, the status of `icns extract`, the number of pictures that are extracted,
and whether the file is an icns file from its first to its last byte."""

import dataclasses
import json
import pathlib
import struct
import sys

from icns_format import COLORS, PICTURES, chunk, element, icns, literals, packed, png, png_of_size, runs


@dataclasses.dataclass
class Case:
    name: str
    data: bytes
    list_status: int  # 0 where the container is whole
    extract_status: int  # 0 where every picture in it is whole
    pictures: int  # the number that is extracted
    sentence: str = ""  # that the error of `extract` contains
    remark: str = ""  # that `list` prints

    @property
    def is_whole(self):
        return len(self.data) >= 8 and self.data[:4] == b"icns" and \
            8 <= struct.unpack(">I", self.data[4:8])[0] <= len(self.data)


def refused(name, data, sentence):
    return Case(name, data, 1, 1, 0, sentence)


def broken(name, data, sentence="", remark="", pictures=0):
    """A whole container with a broken picture."""
    return Case(name, data, 0, 1, pictures, sentence, remark)


def odd(name, data, pictures, remark=""):
    """An odd file. Its pictures are extracted all the same."""
    return Case(name, data, 0, 0, pictures, "", remark)


SMALL = icns(element("is32", packed(16, 10, 20, 30)), element("s8mk", bytes(range(256))))
NOT_ICNS = "not an icns file"
LENGTH = "length does not agree"


def containers():
    for size in range(len(SMALL)):
        yield refused(f"cut-off-at-{size:03}", SMALL[:size],
                      NOT_ICNS if size < 8 else LENGTH)
    for name, data in {"png": png(16, 16), "text": b"icons are nice\n", "lower": b"ICNS" + SMALL[4:],
                       "reversed": b"snci" + SMALL[4:], "zeros": bytes(300)}.items():
        yield refused(f"not-icns-{name}", data, NOT_ICNS)
    for total in range(8):
        yield refused(f"total-{total}", icns(element("is32", packed(16, 1, 2, 3)), total=total), LENGTH)
    for total in (len(SMALL) + 1, 0x7fffffff, 0x80000000, 0xffffffff):
        yield refused(f"total-{total:#x}", SMALL[:4] + struct.pack(">I", total) + SMALL[8:], LENGTH)
    # The file's length is too short. It ends within an element's header, within its data, or between two elements.
    for total in (9, 15, 16, 17, 27, 29, 35, 36, 100, 291):
        data = SMALL[:4] + struct.pack(">I", total) + SMALL[8:]
        yield refused(f"total-within-{total}", data, "breaks off" if total in (9, 15, 29, 35) else LENGTH)
    yield odd("total-between", SMALL[:4] + struct.pack(">I", 28) + SMALL[8:], 1, "bytes follow the icon family")
    yield broken("total-8", SMALL[:4] + struct.pack(">I", 8) + SMALL[8:], "no picture", "it has no elements")
    yield broken("no-elements", icns(), "no picture", "it has no elements")
    yield odd("followed", SMALL + b"more", 1, "4 bytes follow the icon family")
    for length in range(8):
        yield refused(f"element-length-{length}", icns(element("is32", packed(16, 1, 2, 3), length)), LENGTH)
        yield refused(f"second-element-length-{length}", icns(element("s8mk", b""), element("is32", b"", length)),
                      LENGTH)
    for code in ("is32", "ic07", "abcd"):
        for past in (1, 0x80000000, 0xffffffff - 12):
            yield refused(f"element-{code}-past-{past:#x}", icns(element(code, b"1234", 12 + past)), LENGTH)


def nests():
    for code in ("slct", "tile", "open", "sbtp", b"\xfd\xd9\x2f\xa8", "icns"):
        name = code if isinstance(code, str) else "dark"
        yield broken(f"only-a-variant-{name}", icns(element(code, SMALL)), "no picture")
        yield odd(f"a-variant-{name}", icns(element(code, SMALL), element("is32", packed(16, 1, 2, 3))), 1)
        nested = b""
        for _ in range(2000):
            nested = element(code, nested)
        yield broken(f"nested-{name}", icns(nested), "no picture")
    yield broken("many-empty-unknown", icns(element("abcd", b"") * 300000), "no picture")
    yield broken("many-empty-pictures", icns(element("ic10", b"") * 300000), "holds a picture of an unknown kind")
    yield broken("many-empty-colours", icns(element("it32", b"") * 300000), "four zero bytes")
    yield broken("many-empty-masks", icns(element("t8mk", b"") * 300000), "no picture")
    yield odd("many-after-a-picture", icns(element("is32", packed(16, 1, 2, 3)), element("is32", b"") * 200000), 1)
    every = b"".join(element(code, b"") for code in PICTURES) + b"".join(element(code, b"") for code in COLORS)
    yield broken("every-type-empty", icns(every * 1000), "holds a picture of an unknown kind")
    small = element("is32", packed(16, 1, 2, 3))
    yield odd("duplicate", icns(small, small), 1, "more of the same type follow; only the first is used")
    yield broken("first-of-three-is-broken", icns(element("is32", b"\x05"), small, small), "break off",
                 "more of the same type follow; only the first is used")
    toc = struct.pack(">4sI", b"is32", len(small))
    yield odd("contents-right", icns(element("TOC ", toc), small), 1)
    for name, wrong in {"empty": b"", "short": toc[:5], "long": toc + toc, "other": b"il32" + toc[4:],
                        "length": toc[:4] + b"\xff\xff\xff\xff"}.items():
        yield odd(f"contents-{name}", icns(element("TOC ", wrong), small), 1, "does not agree with the elements")
    yield odd("control-characters", icns(element(b"\x1b[2J", b""), element(b"\n\r\0\x7f", b""), small), 1)


def pictures():
    for code in ("ic10", "ic08", "ic12", "sb24", "icp5", "ic04"):
        side = PICTURES[code]

        def one(data):
            return icns(element(code, data))
        plain = bytes([255, 1, 2, 3]) * (side * side)
        yield broken(f"{code}-empty", one(b""), "holds a picture of an unknown kind", "its picture is of an unknown kind")
        yield broken(f"{code}-noise", one(bytes(range(1, 100))), "holds a picture of an unknown kind", "its picture is of an unknown kind")
        yield broken(f"{code}-png-start", one(b"\x89PNG"), "holds a picture of an unknown kind", "its picture is of an unknown kind")
        yield broken(f"{code}-png-signature", one(b"\x89PNG\r\n\x1a\n"), "tells no size", "breaks off")
        # A chunk before the header: it looks like the header of a small picture.
        hidden = png_of_size(4096, 4096)
        hidden = hidden[:8] + chunk(b"prVt", struct.pack(">II", 16, 16)) + hidden[8:]
        yield broken(f"{code}-png-hidden-size", one(hidden), "tells no size", "breaks off")
        yield broken(f"{code}-png-cut", one(png(side, side)[:-20]), "damaged")
        yield broken(f"{code}-png-crc", one(png(side, side)[:-5] + b"xxxxx"), "damaged")
        for width, height in ((65535, 65535), (0x7fffffff, 0x7fffffff), (1025, 1), (1, 1025), (16384, 16384)):
            yield broken(f"{code}-png-{width}x{height}", one(png_of_size(width, height)), "damaged", "its type stands for")
        yield broken(f"{code}-png-0x0", one(png_of_size(0, 0)), "", "its type stands for")
        yield broken(f"{code}-png-huge", one(png_of_size(0xffffffff, 0xffffffff)), "", "breaks off")
        yield odd(f"{code}-png-7x5", one(png(7, 5)), 1, "it holds 7 × 5 pixels")
        yield broken(f"{code}-jp2-start", one(b"\0\0\0\x0cjP  \r\n\x87\n"), "damaged", "breaks off")
        yield broken(f"{code}-codestream-start", one(b"\xff\x4f\xff\x51"), "damaged", "breaks off")
        # Very many tiles, and very many components.
        tiles = b"\xff\x4f\xff\x51" + struct.pack(">HHIIIIIIIIH", 50, 0, 1020, 1020, 0, 0, 4, 4, 0, 0, 4)
        yield broken(f"{code}-codestream-tiles", one(tiles + b"\7\1\1" * 4 + bytes(100)), "tells no size", "breaks off")
        parts = b"\xff\x4f\xff\x51" + struct.pack(">HHIIIIIIIIH", 38 + 3 * 120, 0, side, side, 0, 0, side, side, 0, 0, 120)
        yield broken(f"{code}-codestream-components", one(parts + b"\7\1\1" * 120 + bytes(100)), "")
        box = b"\xff\x4f\xff\x51" + struct.pack(">HHIIIIIIIIH", 47, 0, 65535, 65535, 0, 0, 65535, 65535, 0, 0, 4)
        yield broken(f"{code}-codestream-65535", one(box + bytes(100)), "damaged", "its type stands for")
        jp2 = b"\0\0\0\x0cjP  \r\n\x87\n"
        yield broken(f"{code}-jp2-65535", one(jp2 + struct.pack(">I", 8 + len(box)) + b"jp2c" + box), "damaged", "its type stands for")
        yield broken(f"{code}-jp2-long-box", one(jp2 + b"\0\0\0\1jp2c" + struct.pack(">Q", 16 + len(box)) + box),
                     "damaged", "its type stands for")
        yield broken(f"{code}-jp2-endless-box", one(jp2 + b"\0\0\0\0jp2c" + box), "damaged", "its type stands for")
        yield broken(f"{code}-jp2-box-of-2", one(jp2 + b"\0\0\0\2free" * 50), "damaged", "breaks off")
        yield broken(f"{code}-argb-only", one(b"ARGB"), "break off", "break off")
        yield broken(f"{code}-argb-three-channels", one(b"ARGB" + packed(side, 255, 1, 2)), "break off", "break off")
        yield broken(f"{code}-argb-overrun", one(b"ARGB" + runs(1, side * side - 1) + runs(1, 4) + packed(side, 1, 2, 3)),
                     "break off", "break off")
        yield odd(f"{code}-argb", one(b"ARGB" + packed(side, 255, 1, 2, 3)), 1)
        yield odd(f"{code}-argb-followed", one(b"ARGB" + packed(side, 255, 1, 2, 3) + b"xy"), 1,
                  "2 bytes follow its samples")
        yield odd(f"{code}-plain", one(plain), 1, "plain samples")
        # Plain samples that begin like other data.
        for name, start in {"png": b"\x89PNG", "png-signature": b"\x89PNG\r\n\x1a\n", "codestream": b"\xff\x4f\xff\x51",
                            "argb": b"ARGB", "jp2": b"\0\0\0\x0cjP  "}.items():
            yield odd(f"{code}-plain-as-{name}", one((start * (side * side))[:4 * side * side]), 1, "plain samples")
        yield broken(f"{code}-plain-short", one(plain[:-1]), "holds a picture of an unknown kind", "its picture is of an unknown kind")
        yield broken(f"{code}-plain-long", one(plain + b"x"), "holds a picture of an unknown kind", "its picture is of an unknown kind")


def colors():
    for code, (side, mask) in COLORS.items():
        count = side * side
        zeros = b"\0\0\0\0" if code == "it32" else b""
        good = zeros + packed(side, 1, 2, 3)

        def one(data, *more):
            return icns(element(code, zeros + data), *more)
        yield broken(f"{code}-empty", icns(element(code, b"")), "four zero bytes" if zeros else "break off")
        yield broken(f"{code}-two-channels", one(packed(side, 1, 2)), "break off", "break off")
        yield broken(f"{code}-cut", one(packed(side, 1, 2, 3)[:-1]), "break off", "break off")
        yield broken(f"{code}-run-without-value", one(b"\xff"), "break off", "break off")
        yield broken(f"{code}-literal-cut", one(b"\x7f1234"), "break off", "break off")
        yield broken(f"{code}-run-past-the-channel", one(runs(1, count - 1) + b"\x80\x01" + packed(side, 2, 3)),
                     "break off", "break off")
        yield broken(f"{code}-literal-past-the-channel",
                     one(runs(1, count - 1) + b"\x01ab" + packed(side, 2, 3)), "break off", "break off")
        yield odd(f"{code}-literals", one(literals(bytes(i % 256 for i in range(count))) * 3), 1, "it is opaque")
        yield odd(f"{code}-followed", one(packed(side, 1, 2, 3) + b"xyz"), 1, "3 bytes follow its samples")
        yield odd(f"{code}-plain", icns(element(code, bytes([9, 1, 2, 3]) * count)), 1, "plain samples")
        yield odd(f"{code}-opaque", icns(element(code, good)), 1, "it is opaque")
        for short in (0, 1, count - 1):
            yield broken(f"{code}-mask-of-{short}", icns(element(code, good), element(mask, bytes(short))),
                         f"{mask} of the element {code} has {short} bytes", f"{short} bytes instead of {count}")
        yield odd(f"{code}-long-mask", icns(element(code, good), element(mask, bytes(count + 1))), 1,
                  f"{count + 1} bytes instead of {count}")
        yield broken(f"{mask}-alone", icns(element(mask, bytes(count))), "no picture", "it is the mask of")
    yield broken("it32-without-zeros", icns(element("it32", packed(128, 1, 2, 3))), "four zero bytes",
                 "do not begin with four zero bytes")
    yield broken("it32-other-bytes", icns(element("it32", b"\xfd\1" + packed(128, 1, 2, 3) + b"\xfd\0")), "four zero bytes",
                 "do not begin with four zero bytes")
    yield broken("it32-three-bytes", icns(element("it32", b"\0\0\0")), "four zero bytes")


GROUPS = {"containers": containers, "nests": nests, "pictures": pictures, "colors": colors}


def cases():
    for group in GROUPS.values():
        yield from group()


def main():
    folder = pathlib.Path(sys.argv[1])
    expected = {}
    for case in cases():
        assert case.name not in expected, case.name
        (folder / f"{case.name}.icns").write_bytes(case.data)
        expected[case.name] = {"list": case.list_status, "extract": case.extract_status, "pictures": case.pictures,
                               "isWhole": case.is_whole}
    (folder / "expected.json").write_text(json.dumps(expected, indent=1))


if __name__ == "__main__":
    main()
