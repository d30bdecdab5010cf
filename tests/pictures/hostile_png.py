import struct
import zlib

from case import (BLUE, CLEAR, GREEN, ORIENTED, QUARTERS, RED, SIGNATURE, WHITE, Image, chunk, header, oriented_xmp,
                  packed_zeros, png, quarters, refused, rows, shown, xmp)

DAMAGED = "the PNG picture is truncated or damaged"
MANY = 200 << 20


def of_size(width, height, depth=8, kind=6, data=None):
    return SIGNATURE + header(width, height, depth, kind) + \
        chunk(b"IDAT", zlib.compress(bytes(1000)) if data is None else data) + chunk(b"IEND", b"")


def sizes():
    for width, height in ((0, 0), (0, 64), (64, 0), (1 << 31, 1), (0xffffffff, 0xffffffff)):
        yield refused(f"size-{width}x{height}.png", of_size(width, height), DAMAGED)
    for width, height in ((65535, 65535), (0x7fffffff, 0x7fffffff), (0x7fffffff, 1), (1, 0x7fffffff),
                          (16385, 16384), (1000001, 1)):
        yield refused(f"size-{width}x{height}.png", of_size(width, height), f"{width} × {height} pixels; the limit")
    yield refused("size-10000x10000-without-data.png", of_size(10000, 10000), DAMAGED)
    yield refused("bomb-30000.png", of_size(30000, 30000, 1, 0, packed_zeros(30000 * 3751)),
                  "30000 × 30000 pixels; the limit")
    yield shown("one-bit-4096.png", of_size(4096, 4096, 1, 0, packed_zeros(4096 * 513)), (0, 0, 0, 255),
                pixels=4096 * 4096)
    yield shown("long-and-thin.png", of_size(1000000, 60, 1, 0, packed_zeros(60 * 125001)), (0, 0, 0, 255),
                pixels=1000000 * 60)
    yield shown("high-and-thin.png", of_size(60, 1000000, 1, 0, packed_zeros(1000000 * 9)), (0, 0, 0, 255),
                pixels=1000000 * 60)
    interlaced = SIGNATURE + header(16384, 16384, 8, 6, 0, 0, 1) + chunk(b"IDAT", packed_zeros(1000)) + chunk(b"IEND", b"")
    yield refused("interlaced-16384.png", interlaced, "an interlaced PNG picture of 16384 × 16384 pixels takes 1024 MiB")
    yield shown("one-row.png", of_size(1000000, 1, 1, 0, packed_zeros(125001)), (0, 0, 0, 255), pixels=1000000)


def truncations():
    parts = [SIGNATURE, header(64, 64, 8, 2), chunk(b"gAMA", struct.pack(">I", 45455)), chunk(b"tEXt", b"a\0b")]
    data = rows(quarters())
    parts += [chunk(b"IDAT", data[:50]), chunk(b"IDAT", data[50:]), chunk(b"IEND", b"")]
    whole = b"".join(parts)
    assert shown("", whole, QUARTERS)
    at = 0
    for i, part in enumerate(parts):
        for name, cut in {"before": at, "length": at + 2, "name": at + 6, "data": at + 9,
                          "crc": at + len(part) - 2}.items():
            if 0 < cut < len(whole):
                yield refused(f"cut-{i}-{name}.png", whole[:cut], "not a picture" if cut < 8 else DAMAGED)
        at += len(part)
    for kind in (b"IHDR", b"PLTE", b"IDAT", b"IEND"):
        bad = {b"IHDR": SIGNATURE + header(64, 64, 8, 2)[:-4] + b"crc!" + whole[33:],
               b"PLTE": SIGNATURE + header(64, 64, 8, 3) + chunk(b"PLTE", bytes(6), 1) + whole[33:],
               b"IDAT": whole.replace(chunk(b"IDAT", data[50:]), chunk(b"IDAT", data[50:], 1)),
               b"IEND": whole[:-4] + b"crc!"}[kind]
        yield refused(f"crc-{kind.decode()}.png", bad, DAMAGED)
    yield shown("crc-of-a-text.png", png(chunk(b"tEXt", b"a\0b", 1)), QUARTERS)


def bombs():
    zeros = packed_zeros(MANY)
    yield shown("bomb-zTXt.png", png(chunk(b"zTXt", b"a\0\0" + zeros)), QUARTERS)
    yield shown("bomb-zTXt-after.png", png(after=chunk(b"zTXt", b"a\0\0" + zeros)), QUARTERS)
    yield shown("bomb-iTXt.png", png(chunk(b"iTXt", b"a\0\1\0\0\0" + zeros)), QUARTERS)
    yield shown("bomb-iCCP.png", png(chunk(b"iCCP", b"a\0\0" + zeros)), QUARTERS)
    large = struct.pack(">I", MANY) + b"lcms" + struct.pack(">I", 0x04300000) + b"mntrRGB XYZ " + bytes(12) + b"acsp"
    yield shown("bomb-iCCP-of-its-length.png", png(chunk(b"iCCP", b"a\0\0" + zlib.compress(large + bytes(MANY // 4), 9))),
                QUARTERS)
    yield shown("more-data-than-pixels.png",
                SIGNATURE + header(1, 1, 8, 2) + chunk(b"IDAT", zlib.compress(b"\0\xff\0\0" + bytes(MANY // 4), 9)) +
                chunk(b"IEND", b""), RED, pixels=1)
    yield shown("many-texts.png", png(chunk(b"tEXt", b"a\0b") * 20000), QUARTERS)
    yield shown("many-palettes.png", png(chunk(b"sPLT", b"a\0\10" + bytes(600)) * 500), QUARTERS)
    yield refused("many-empty-data.png", SIGNATURE + header(64, 64, 8, 2) + chunk(b"IDAT", b"") * 100000 +
                  chunk(b"IEND", b""), DAMAGED)


def chunks():
    for length in (0x7fffffff, 0x80000000, 0xffffffff):
        yield refused(f"text-length-{length:#x}.png", png(chunk(b"tEXt", b"a\0b", length=length)), DAMAGED)
        yield refused(f"data-length-{length:#x}.png",
                      SIGNATURE + header(64, 64, 8, 2) + chunk(b"IDAT", rows(quarters()), length=length), DAMAGED)
    for kind in (b"sPLT", b"pCAL", b"sCAL", b"eXIf", b"iCCP", b"tRNS"):
        yield refused(f"{kind.decode()}-of-a-gigabyte.png",
                      SIGNATURE + header(1, 1, 8, 2) + chunk(kind, b"a\0\10" + bytes(9), length=0x3fffffff), DAMAGED)
    yield refused("unknown-critical.png", png(chunk(b"ABCD", b"")), DAMAGED)
    yield shown("unknown.png", png(chunk(b"abCd", bytes(100))), QUARTERS)
    yield refused("header-missing.png", SIGNATURE + chunk(b"IDAT", rows(quarters())) + chunk(b"IEND", b""), DAMAGED)
    yield refused("header-twice.png", png(header(64, 64, 8, 2)), DAMAGED)
    yield refused("header-short.png", SIGNATURE + chunk(b"IHDR", bytes(12)), DAMAGED)
    yield refused("header-long.png", SIGNATURE + chunk(b"IHDR", bytes(14)), DAMAGED)
    for name, fields in {"depth-3": (64, 64, 3, 2), "depth-0": (64, 64, 0, 2), "kind-5": (64, 64, 8, 5),
                         "kind-255": (64, 64, 8, 255), "wide-palette": (64, 64, 16, 3),
                         "compression": (64, 64, 8, 2, 1), "filtering": (64, 64, 8, 2, 0, 9),
                         "interlace": (64, 64, 8, 2, 0, 0, 2)}.items():
        yield refused(f"header-{name}.png", SIGNATURE + header(*fields) + chunk(b"IDAT", rows(quarters())) +
                      chunk(b"IEND", b""), DAMAGED)
    yield refused("data-interrupted.png", png(between=chunk(b"tEXt", b"a\0b")), DAMAGED)
    yield refused("data-missing.png", SIGNATURE + header(64, 64, 8, 2) + chunk(b"IEND", b""), DAMAGED)
    yield refused("data-no-zlib.png", SIGNATURE + header(64, 64, 8, 2) + chunk(b"IDAT", bytes(100)) +
                  chunk(b"IEND", b""), DAMAGED)
    yield refused("data-filter-9.png", SIGNATURE + header(1, 1, 8, 2) + chunk(b"IDAT", zlib.compress(b"\x09\xff\0\0")) +
                  chunk(b"IEND", b""), DAMAGED)
    yield refused("data-short.png", SIGNATURE + header(64, 64, 8, 2) + chunk(b"IDAT", zlib.compress(bytes(64 * 100))) +
                  chunk(b"IEND", b""), DAMAGED)
    yield shown("followed.png", png() + b"more" * 1000, QUARTERS)
    yield shown("animation.png", png(chunk(b"acTL", struct.pack(">II", 0xffffffff, 0)),
                                     chunk(b"fcTL", bytes(26)), after=chunk(b"fdAT", bytes(1000))), QUARTERS)


def palettes():
    colors = bytes(RED[:3] + GREEN[:3] + BLUE[:3] + WHITE[:3])
    indices = Image.new("P", (64, 64))
    for i in range(4):
        indices.paste(i, (i % 2 * 32, i // 2 * 32, i % 2 * 32 + 32, i // 2 * 32 + 32))
    palette = chunk(b"PLTE", colors)

    def one(*before, image=indices):
        return png(*before, image=image)
    yield shown("palette.png", one(palette), QUARTERS)
    yield refused("palette-missing.png", one(), DAMAGED)
    yield refused("palette-empty.png", one(chunk(b"PLTE", b"")), DAMAGED)
    yield refused("palette-odd.png", one(chunk(b"PLTE", colors[:-1])), DAMAGED)
    yield refused("palette-257.png", one(chunk(b"PLTE", bytes(257 * 3))), DAMAGED)
    yield refused("palette-twice.png", one(palette, palette), DAMAGED)
    yield shown("palette-in-colour.png", png(palette), QUARTERS)
    # Indices beyond the palette are black, as the published advice for readers says.
    yield shown("palette-index-outside.png", one(chunk(b"PLTE", colors[:9])), (RED, GREEN, BLUE, (0, 0, 0, 255)))
    yield shown("alpha.png", one(palette, chunk(b"tRNS", b"\xff\0\xff")), (RED, CLEAR, BLUE, WHITE))
    yield shown("alpha-longer-than-palette.png", one(palette, chunk(b"tRNS", bytes(5))), QUARTERS)
    yield shown("alpha-of-256.png", one(palette, chunk(b"tRNS", bytes(257))), QUARTERS)
    yield shown("alpha-before-palette.png", one(chunk(b"tRNS", bytes(1)), palette), QUARTERS)
    yield shown("alpha-empty.png", one(palette, chunk(b"tRNS", b"")), QUARTERS)
    yield shown("alpha-twice.png", one(palette, chunk(b"tRNS", b"\xff\0"), chunk(b"tRNS", bytes(4))),
                (RED, CLEAR, BLUE, WHITE))
    yield shown("key.png", png(chunk(b"tRNS", struct.pack(">HHH", 0, 255, 0))), (RED, CLEAR, BLUE, WHITE))
    yield shown("key-short.png", png(chunk(b"tRNS", b"\0\xff")), QUARTERS)
    # Where a key has more bits than the samples, its lowest bits count.
    yield shown("key-out-of-range.png", png(chunk(b"tRNS", b"\xff" * 6)), (RED, GREEN, BLUE, CLEAR))
    yield shown("key-beside-alpha.png", png(chunk(b"tRNS", bytes(6)), image=quarters().convert("RGBA")), QUARTERS)
    grey = Image.new("L", (64, 64), 255)
    yield shown("key-of-grey.png", png(chunk(b"tRNS", b"\0\xff"), image=grey), CLEAR)


def colors():
    exif = {"empty": b"", "short": b"II", "no-entries": b"II\x2a\0\x08\0\0\0\0\0",
            "far": b"II\x2a\0\xff\xff\xff\xff", "many": b"MM\0\x2a\0\0\0\x08\xff\xff" + bytes(50),
            "orientation-9": b"MM\0\x2a\0\0\0\x08\0\1\1\x12\0\3\0\0\0\1\0\x09\0\0\0\0\0\0"}
    for name, data in exif.items():
        yield shown(f"exif-{name}.png", png(chunk(b"eXIf", data)), QUARTERS)
    for orientation in range(1, 10):
        packet = chunk(b"iTXt", b"XML:com.adobe.xmp\0\0\0en\0\0" + oriented_xmp(orientation))
        turned = tuple(QUARTERS[i] for i in ORIENTED.get(orientation, (0, 1, 2, 3)))
        yield shown(f"xmp-{orientation}.png", png(packet), turned)
        yield shown(f"xmp-behind-{orientation}.png", png(after=packet), turned)
    upright = chunk(b"eXIf", b"MM\0\x2a\0\0\0\x08\0\1\1\x12\0\3\0\0\0\1\0\1\0\0\0\0\0\0")
    packet = b"XML:com.adobe.xmp\0\0\0\0\0"
    yield shown("xmp-beside-exif.png", png(upright, chunk(b"iTXt", packet + oriented_xmp(6))), QUARTERS)
    for name, data in {"broken": b"<a", "cut": oriented_xmp(6)[:-200], "word": oriented_xmp("six"), "far": oriented_xmp(1 << 40),
                       "elsewhere": xmp("<tiff:Make>6</tiff:Make>"),
                       "deeper": xmp('<tiff:Make><tiff:Orientation>6</tiff:Orientation></tiff:Make>'),
                       "entities": b'<!DOCTYPE x [<!ENTITY a "6">]>' + oriented_xmp("&a;")}.items():
        yield shown(f"xmp-{name}.png", png(chunk(b"iTXt", packet + data)), QUARTERS)
    turned = tuple(QUARTERS[i] for i in ORIENTED[6])
    yield shown("xmp-attribute.png", png(chunk(b"iTXt", packet + xmp("", 'tiff:Orientation="6"'))), turned)
    profiles = {"empty": b"", "noise": bytes(range(256)), "header": struct.pack(">I", 128) + bytes(124),
                "tags": struct.pack(">I", 200) + b"lcms" + struct.pack(">I", 0x02100000) + b"mntrRGB XYZ " +
                bytes(12) + b"acsp" + bytes(88) + struct.pack(">I", 0x7fffffff) + bytes(68)}
    for name, data in profiles.items():
        yield shown(f"profile-{name}.png", png(chunk(b"iCCP", b"a\0\0" + zlib.compress(data))), QUARTERS)
    yield shown("profile-no-zlib.png", png(chunk(b"iCCP", b"a\0\0" + bytes(100))), QUARTERS)
    yield shown("profile-without-name.png", png(chunk(b"iCCP", b"\0\0")), QUARTERS)
    yield shown("profile-twice.png", png(chunk(b"iCCP", b"a\0\0" + bytes(9)) * 2), QUARTERS)
    for name, data in {"gAMA": bytes(4), "cHRM": bytes(32), "sRGB": b"\xff", "sBIT": b"\xff\xff\xff",
                       "bKGD": b"\0", "hIST": bytes(3), "pHYs": b"\xff" * 9, "sCAL": b"\1x\0y", "oFFs": b"\xff" * 9,
                       "pCAL": b"a\0" + b"\xff" * 20, "tIME": b"\xff" * 7, "CgBI": bytes(4)}.items():
        if name != "CgBI":  # a critical chunk that the format does not have
            yield shown(f"odd-{name}.png", png(chunk(name.encode(), data)), QUARTERS)
        else:
            yield refused(f"odd-{name}.png", png(chunk(name.encode(), data)), DAMAGED)


def cases():
    for group in (sizes, truncations, bombs, chunks, palettes, colors):
        yield from group()
