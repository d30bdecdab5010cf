import io
import struct

from case import BLACK, ORIENTED, QUARTERS, RED, WHITE, Image, middles, oriented_xmp, quarters, refused, shown

DAMAGED = "the JPEG picture is truncated or damaged"


def jpeg(image=None, **options):
    stream = io.BytesIO()
    (image or quarters()).save(stream, "JPEG", quality=95, subsampling=0, **options)
    return stream.getvalue()


def segments(data):
    """[(marker, data)] up to the first scan, and all bytes from that scan on."""
    at, found = 2, []
    while data[at + 1] != 0xda:
        length = struct.unpack(">H", data[at + 2:at + 4])[0]
        found.append((data[at + 1], data[at + 4:at + 2 + length]))
        at += 2 + length
    return found, data[at:]


def joined(parts, scan):
    return b"\xff\xd8" + b"".join(b"\xff" + bytes([marker]) + struct.pack(">H", len(data) + 2) + data
                                  for marker, data in parts) + scan


def of_size(width, height):
    parts, scan = segments(jpeg())
    return joined([(marker, data[:1] + struct.pack(">HH", height, width) + data[5:] if marker == 0xc0 else data)
                   for marker, data in parts], scan)


def with_segment(marker, data, image=None):
    parts, scan = segments(jpeg(image))
    return joined([(marker, data)] + parts, scan)


def truncations():
    for name, whole in {"baseline": jpeg(), "progressive": jpeg(progressive=True)}.items():
        for cut in range(3, len(whole) - 2, max(1, len(whole) // 25)):
            yield refused(f"cut-{name}-{cut:04}.jpg", whole[:cut], DAMAGED)
        yield refused(f"cut-{name}-end.jpg", whole[:-2], DAMAGED)
        yield refused(f"hole-{name}.jpg", whole[:len(whole) * 2 // 3] + b"\xff\xd9", DAMAGED)


def sizes():
    for width, height in ((0, 64), (64, 0), (0, 0)):
        yield refused(f"size-{width}x{height}.jpg", of_size(width, height), "JPEG picture")
    for width, height in ((65535, 65535), (65501, 1), (65500, 65500), (16385, 16384)):
        yield refused(f"size-{width}x{height}.jpg", of_size(width, height), f"{width} × {height} pixels; the limit")
    for name, image in {"colours": quarters(), "inks": quarters().convert("CMYK")}.items():
        parts, scan = segments(jpeg(image, progressive=True))
        large = [(m, d[:1] + struct.pack(">HH", 16000, 16000) + d[5:] if m == 0xc2 else d) for m, d in parts]
        assert large != parts
        yield refused(f"progressive-{name}-of-16000.jpg", joined(large, scan),
                      "a JPEG picture in several scans of 16000 × 16000 pixels takes")
    yield refused("size-without-data.jpg", of_size(16384, 16383), DAMAGED)


def inks():
    def cmyk(*values):
        return jpeg(Image.new("CMYK", (64, 64), values))
    yield shown("cmyk-white.jpg", cmyk(0, 0, 0, 0), WHITE, tolerance=2)
    yield shown("cmyk-black.jpg", cmyk(255, 255, 255, 255), BLACK, tolerance=2)
    red = middles(Image.open(io.BytesIO(cmyk(0, 255, 255, 0))))
    # Without a profile each reader shows inks in its own colours; all show this one in some red.
    yield shown("cmyk-red.jpg", cmyk(0, 255, 255, 0), red, tolerance=60)
    parts, scan = segments(cmyk(255, 127, 127, 0))
    # No ink, stored as luminance and chrominance.
    white = [(marker, data[:-1] + b"\2" if marker == 0xee else data) for marker, data in parts]
    assert white != parts
    yield shown("ycck-white.jpg", joined(white, scan), WHITE, tolerance=6)
    parts, scan = segments(cmyk(0, 127, 127, 255))
    yield shown("ycck-black.jpg", joined([(marker, data[:-1] + b"\2" if marker == 0xee else data)
                                          for marker, data in parts], scan), BLACK, tolerance=6)
    yield shown("grey.jpg", jpeg(Image.new("L", (64, 64), 255)), WHITE, tolerance=1)


def markers():
    for orientation in range(10):
        exif = b"Exif\0\0MM\0\x2a\0\0\0\x08\0\1\1\x12\0\3\0\0\0\1" + struct.pack(">H", orientation) + bytes(6)
        data = with_segment(0xe1, exif)
        yield shown(f"orientation-{orientation}.jpg", data, middles(Image.open(io.BytesIO(data))), tolerance=3)
    for orientation in range(1, 9):
        packet = (0xe1, b"http://ns.adobe.com/xap/1.0/\0" + oriented_xmp(orientation))
        yield shown(f"xmp-{orientation}.jpg", with_segment(*packet), tuple(QUARTERS[i] for i in ORIENTED[orientation]),
                    tolerance=3)
        parts, scan = segments(jpeg())
        upright = (0xe1, b"Exif\0\0MM\0\x2a\0\0\0\x08\0\1\1\x12\0\3\0\0\0\1\0\1" + bytes(6))
        yield shown(f"xmp-{orientation}-beside-exif.jpg", joined([packet, upright] + parts, scan), QUARTERS, tolerance=3)
    for name, exif in {"empty": b"", "far": b"II\x2a\0\xff\xff\xff\xff", "many": b"II\x2a\0\x08\0\0\0\xff\xff",
                       "text": b"MM\0\x2a\0\0\0\x08\0\1\1\x12\0\2\0\0\0\1\0\6\0\0\0\0\0\0"}.items():
        yield shown(f"exif-{name}.jpg", with_segment(0xe1, b"Exif\0\0" + exif), QUARTERS, tolerance=3)
    icc = b"ICC_PROFILE\0"
    for name, data in {"noise": b"\1\1" + bytes(range(200)), "empty": b"\1\1", "none": b"", "second-of-one": b"\2\1" + bytes(99),
                       "one-of-255": b"\1\xff" + bytes(99), "zeroth": b"\0\0" + bytes(99)}.items():
        yield shown(f"profile-{name}.jpg", with_segment(0xe2, icc + data), QUARTERS, tolerance=3)
    parts, scan = segments(jpeg())
    many = [(0xe2, icc + bytes([i, 255]) + bytes(65000)) for i in range(1, 256)]
    yield shown("profile-of-16-megabytes.jpg", joined(many + parts, scan), QUARTERS, tolerance=3)
    yield shown("comments.jpg", joined([(0xfe, bytes(65000))] * 200 + parts, scan), QUARTERS, tolerance=3)
    yield shown("followed.jpg", jpeg() + b"more" * 1000, QUARTERS, tolerance=3)
    yield refused("no-tables.jpg", joined([p for p in parts if p[0] not in (0xdb, 0xc4)], scan), DAMAGED)
    yield refused("tables-broken.jpg", joined([(m, b"\xff" * len(d) if m == 0xc4 else d) for m, d in parts], scan), DAMAGED)
    yield refused("segment-of-0.jpg", b"\xff\xd8\xff\xe0\0\0" + bytes(100), DAMAGED)
    yield refused("frame-twice.jpg", joined(parts + [p for p in parts if p[0] == 0xc0], scan), DAMAGED)
    yield refused("lossless.jpg", joined([(0xc3 if m == 0xc0 else m, d) for m, d in parts], scan), DAMAGED)
    yield refused("components-0.jpg", joined([(m, d[:5] + b"\0" if m == 0xc0 else d) for m, d in parts], scan), DAMAGED)
    yield refused("components-255.jpg", joined([(m, d[:5] + b"\xff" + d[6:] if m == 0xc0 else d) for m, d in parts], scan),
                  DAMAGED)
    yield refused("sampling-15.jpg", joined([(m, d[:7] + b"\xff" + d[8:] if m == 0xc0 else d) for m, d in parts], scan), DAMAGED)


def bombs():
    """Thousands of scans: each takes as long as the whole picture."""
    image = Image.new("RGB", (2000, 2000), RED[:3])
    parts, scan = segments(jpeg(image, progressive=True))
    end = scan.index(b"\xff\xc4") if b"\xff\xc4" in scan else scan.index(b"\xff\xda", 2)
    yield refused("many-scans.jpg", joined(parts, scan[:end] * 2000 + b"\xff\xd9"), DAMAGED)
    # Of a large picture fewer take as long. These are all in order: each has a bit of one coefficient of all blocks.
    side = 6000
    parts, scan = segments(jpeg(Image.new("L", (side, side), 255), progressive=True))
    first = scan[:scan.index(b"\xff\xc4")]
    table = b"\xff\xc4\0\x14\x10\1" + bytes(15) + b"\xe0"  # one code, of a run of blocks without coefficients
    runs = 1 + (side // 8) ** 2 // 0x7fff
    bits = int("0" + "1" * 14, 2)
    padding = -15 * runs % 8
    data = (sum(bits << 15 * i for i in range(runs)) << padding).to_bytes((15 * runs + padding) // 8, "big")
    data = data.replace(b"\xff", b"\xff\0")
    blank = b"".join(b"\xff\xda\0\x08\1\1\0" + bytes([k, k, (low + 1 << 4 if low < 7 else 0) | low]) + data
                     for low in range(7, -1, -1) for k in range(1, 64))
    yield refused("many-scans-of-6000.jpg", joined(parts, first + table + blank + b"\xff\xd9"), "it has too many scans")


def cases():
    for group in (truncations, sizes, inks, markers, bombs):
        yield from group()
