#!/usr/bin/env python3
"""Makes the picture files in pictures/. They are part of the repository, so tests run without this script.

Needs Pillow (with littlecms, libtiff, WebP and JPEG 2000) and png2icns. A file's pixels are defined twice: here, and in
the test that reads the file. tests/support/Fixtures.h has the same patterns as `color`, `alpha`, `grey`, `index` and
`palette`.
"""

import io
import os
import struct
import subprocess
import tempfile
import zlib

from PIL import Image, ImageCms

FOLDER = os.path.join(os.path.dirname(os.path.abspath(__file__)), "pictures")
WIDTH, HEIGHT = 11, 7


def save(name, data):
    with open(os.path.join(FOLDER, name), "wb") as file:
        file.write(data)


# The patterns of the pictures.

def color(x, y):
    return ((37 * x + 5 * y + 10) % 256, (11 * x + 53 * y + 100) % 256, (71 * x + 29 * y + 200) % 256)


def alpha(x, y):
    return (40 * x + 9 * y + 15) % 256


def grey(x, y):
    return (23 * x + 41 * y + 3) % 256


def index(x, y, count):
    return (5 * x + 3 * y) % count


def palette(count):
    return [((47 * i + 20) % 256, (91 * i + 60) % 256, (13 * i + 130) % 256) for i in range(count)]


def wide(value):
    """A 16-bit sample whose nearest byte is `value`."""
    return value * 257 + (100 if value < 128 else -100)


def color_image(width=WIDTH, height=HEIGHT, has_alpha=False):
    image = Image.new("RGBA" if has_alpha else "RGB", (width, height))
    for y in range(height):
        for x in range(width):
            image.putpixel((x, y), color(x, y) + ((alpha(x, y),) if has_alpha else ()))
    return image


BLOCKS = [(200, 40, 40), (40, 180, 60), (50, 60, 220), (230, 220, 60), (128, 128, 128), (20, 20, 20)]


def block_image(side=8):
    """3 × 2 blocks of one colour each. Lossy codecs keep these colours."""
    image = Image.new("RGB", (3 * side, 2 * side))
    for i, block in enumerate(BLOCKS):
        image.paste(block, (i % 3 * side, i // 3 * side, (i % 3 + 1) * side, (i // 3 + 1) * side))
    return image


STORED_FOR = {
    1: None, 2: Image.FLIP_LEFT_RIGHT, 3: Image.ROTATE_180, 4: Image.FLIP_TOP_BOTTOM, 5: Image.TRANSPOSE,
    6: Image.ROTATE_90, 7: Image.TRANSVERSE, 8: Image.ROTATE_270,
}


def stored(image, orientation):
    """`image` as a file with `orientation` stores it. The orientation turns it upright again."""
    method = STORED_FOR[orientation]
    return image if method is None else image.transpose(method)


def exif(orientation, order="<"):
    mark = b"II" if order == "<" else b"MM"
    return struct.pack(order + "2sHIHHHIHHI", mark, 42, 8, 1, 0x0112, 3, 1, orientation, 0, 0)


# ICC profiles.

def icc(device_class, space, connection, tags, version=0x02400000):
    """A profile with `tags`."""
    table = struct.pack(">I", len(tags))
    at = 128 + 4 + 12 * len(tags)
    contents = b""
    for name, content in tags:
        content += b"\0" * (-len(content) % 4)
        table += struct.pack(">4sII", name, at + len(contents), len(content))
        contents += content
    size = at + len(contents)
    header = struct.pack(">I4sI4s4s4s6H4s4sI4s4sQI3I4s", size, b"\0\0\0\0", version, device_class, space, connection,
                         2020, 1, 1, 0, 0, 0, b"acsp", b"\0\0\0\0", 0, b"none", b"\0\0\0\0", 0, 0,
                         0xF6D6, 0x10000, 0xD32D, b"\0\0\0\0")
    return header.ljust(128, b"\0") + table + contents


def fixed(value):
    return round(value * 65536)


def xyz(*values):
    return b"XYZ \0\0\0\0" + struct.pack(">3i", *map(fixed, values))


def description(text):
    data = text.encode() + b"\0"
    return b"desc\0\0\0\0" + struct.pack(">I", len(data)) + data + b"\0" * 78


def unicode_text(text):
    data = text.encode("utf-16-be")
    return b"mluc\0\0\0\0" + struct.pack(">II2s2sII", 1, 12, b"en", b"US", len(data), 28) + data


SRGB_CURVE = b"para\0\0\0\0" + struct.pack(">HH5i", 3, 0, fixed(2.4), fixed(1 / 1.055), fixed(0.055 / 1.055),
                                           fixed(1 / 12.92), fixed(0.04045))
LINEAR_CURVE = b"curv\0\0\0\0" + struct.pack(">I", 0)
WHITE = xyz(0.9642, 1, 0.8249)


def display_p3():
    return icc(b"mntr", b"RGB ", b"XYZ ", [
        (b"desc", unicode_text("Display P3")), (b"cprt", unicode_text("none")), (b"wtpt", WHITE),
        (b"rXYZ", xyz(0.51512, 0.24120, -0.00105)), (b"gXYZ", xyz(0.29198, 0.69225, 0.04189)),
        (b"bXYZ", xyz(0.15710, 0.06657, 0.78407)),
        (b"rTRC", SRGB_CURVE), (b"gTRC", SRGB_CURVE), (b"bTRC", SRGB_CURVE)], 0x04000000)


def linear_grey():
    return icc(b"mntr", b"GRAY", b"XYZ ", [(b"desc", description("Linear grey")), (b"cprt", b"text\0\0\0\0none\0"),
                                           (b"wtpt", WHITE), (b"kTRC", LINEAR_CURVE)])


def grey_ink_cmyk():
    """The profile of a printer whose inks are all grey: lightness 100 × (1 - K) × (1 - (C + M + Y) ÷ 3)."""
    nodes = b""
    for node in range(16):
        c, m, y, k = (node >> 3 & 1, node >> 2 & 1, node >> 1 & 1, node & 1)
        nodes += struct.pack(">3H", round(0xFF00 * (1 - k) * (1 - (c + m + y) / 3)), 0x8000, 0x8000)
    line = struct.pack(">HH", 0, 0xFFFF)
    table = (b"mft2\0\0\0\0" + struct.pack(">4B9i2H", 4, 3, 2, 0, *[fixed(i % 4 == 0) for i in range(9)], 2, 2)
             + 4 * line + nodes + 3 * line)
    return icc(b"prtr", b"CMYK", b"Lab ", [(b"desc", description("Grey ink")), (b"cprt", b"text\0\0\0\0none\0"),
                                           (b"wtpt", WHITE), (b"A2B0", table)])


def srgb():
    profile = ImageCms.ImageCmsProfile(ImageCms.createProfile("sRGB")).tobytes()
    # A fixed time of creation, so that each run makes the same file.
    return profile[:24] + struct.pack(">6H", 2020, 1, 1, 0, 0, 0) + profile[36:]


# PNG, written without a library.

GREY, RGB, INDEXED, GREY_ALPHA, RGB_ALPHA = 0, 2, 3, 4, 6
ADAM7 = [(0, 0, 8, 8), (4, 0, 8, 8), (0, 4, 4, 8), (2, 0, 4, 4), (0, 2, 2, 4), (1, 0, 2, 2), (0, 1, 1, 2)]


def chunk(kind, data):
    return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))


def packed(samples, depth):
    if depth == 16:
        return struct.pack(">%dH" % len(samples), *samples)
    if depth == 8:
        return bytes(samples)
    bits = "".join(format(sample, "0%db" % depth) for sample in samples)
    bits += "0" * (-len(bits) % 8)
    return bytes(int(bits[i:i + 8], 2) for i in range(0, len(bits), 8))


def png(kind, depth, pixel, chunks=(), width=WIDTH, height=HEIGHT, interlaced=False, trailing=()):
    """`pixel(x, y)` is a tuple of samples; `chunks` come before the pixels, `trailing` ones after them."""
    rows = b""
    for left, top, step_x, step_y in ADAM7 if interlaced else [(0, 0, 1, 1)]:
        for y in range(top, height, step_y):
            samples = [sample for x in range(left, width, step_x) for sample in pixel(x, y)]
            if samples:
                rows += b"\0" + packed(samples, depth)
    header = struct.pack(">IIBBBBB", width, height, depth, kind, 0, 0, int(interlaced))
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + b"".join(chunk(*c) for c in chunks)
            + chunk(b"IDAT", zlib.compress(rows, 9)) + b"".join(chunk(*c) for c in trailing) + chunk(b"IEND", b""))


def icc_chunk(profile):
    return (b"iCCP", b"icc\0\0" + zlib.compress(profile, 9))


def palette_chunk(count):
    return (b"PLTE", bytes(sample for entry in palette(count) for sample in entry))


def make_pngs():
    for depth in (1, 2, 4):
        save("grey-%d.png" % depth, png(GREY, depth, lambda x, y: (index(x, y, 1 << depth),)))
    save("grey-8.png", png(GREY, 8, lambda x, y: (grey(x, y),)))
    save("grey-16.png", png(GREY, 16, lambda x, y: (wide(grey(x, y)),)))
    for depth in (1, 2, 4, 8):
        save("palette-%d.png" % depth,
             png(INDEXED, depth, lambda x, y: (index(x, y, 1 << depth),), [palette_chunk(1 << depth)]))
    # One grey or colour is transparent.
    save("grey-2-key.png", png(GREY, 2, lambda x, y: (index(x, y, 4),), [(b"tRNS", struct.pack(">H", 2))]))
    save("grey-8-key.png", png(GREY, 8, lambda x, y: (grey(x, y),), [(b"tRNS", struct.pack(">H", grey(4, 3)))]))
    save("grey-16-key.png",
         png(GREY, 16, lambda x, y: (wide(grey(x, y)),), [(b"tRNS", struct.pack(">H", wide(grey(4, 3))))]))
    save("rgb-8-key.png", png(RGB, 8, color, [(b"tRNS", struct.pack(">3H", *color(4, 3)))]))
    save("rgb-16-key.png", png(RGB, 16, lambda x, y: tuple(map(wide, color(x, y))),
                               [(b"tRNS", struct.pack(">3H", *map(wide, color(4, 3))))]))
    # The first half of the palette has alpha.
    for depth in (2, 8):
        count = 1 << depth
        save("palette-%d-alpha.png" % depth,
             png(INDEXED, depth, lambda x, y: (index(x, y, count),),
                 [palette_chunk(count), (b"tRNS", bytes(60 * i % 256 for i in range(count // 2)))]))
    save("grey-alpha-8.png", png(GREY_ALPHA, 8, lambda x, y: (grey(x, y), alpha(x, y))))
    save("grey-alpha-16.png", png(GREY_ALPHA, 16, lambda x, y: (257 * grey(x, y), 257 * alpha(x, y))))
    save("rgb-8.png", png(RGB, 8, color))
    save("rgb-16.png", png(RGB, 16, lambda x, y: tuple(map(wide, color(x, y)))))
    rgba = lambda x, y: color(x, y) + (alpha(x, y),)
    rgba16 = lambda x, y: tuple(257 * sample for sample in rgba(x, y))
    save("rgba-8.png", png(RGB_ALPHA, 8, rgba))
    save("rgba-16.png", png(RGB_ALPHA, 16, rgba16))
    for width, height in ((1, 1), (2, 3), (5, 9), (11, 7)):
        save("interlaced-rgb-8-%dx%d.png" % (width, height),
             png(RGB, 8, color, width=width, height=height, interlaced=True))
    save("interlaced-grey-1.png", png(GREY, 1, lambda x, y: (index(x, y, 2),), interlaced=True))
    save("interlaced-palette-4.png",
         png(INDEXED, 4, lambda x, y: (index(x, y, 16),), [palette_chunk(16)], interlaced=True))
    save("interlaced-rgba-16.png", png(RGB_ALPHA, 16, rgba16, interlaced=True))
    save("one-pixel.png", png(RGB_ALPHA, 8, lambda x, y: (255, 128, 0, 51), width=1, height=1))
    # Colours.
    probes = [(0, 0, 0), (255, 255, 255), (128, 128, 128), (200, 150, 100), (100, 150, 120), (255, 0, 0)]
    probe = lambda x, y: probes[x]
    wide_probe = lambda x, y: tuple(257 * sample for sample in probes[x]) + (65535,)
    save("display-p3.png", png(RGB, 8, probe, [icc_chunk(display_p3())], 6, 1))
    save("display-p3-rgba-16.png", png(RGB_ALPHA, 16, wide_probe, [icc_chunk(display_p3())], 6, 1))
    save("display-p3-alpha.png",
         png(RGB_ALPHA, 8, lambda x, y: (200, 150, 100, 128), [icc_chunk(display_p3())], 1, 1))
    save("grey-icc.png", png(GREY, 8, lambda x, y: (51 * x,), [icc_chunk(linear_grey())], 6, 1))
    save("grey-alpha-icc.png", png(GREY_ALPHA, 8, lambda x, y: (128, 51 * x), [icc_chunk(linear_grey())], 6, 1))
    save("srgb-icc.png", png(RGB, 8, color, [icc_chunk(srgb())]))
    save("srgb-icc-rgba-16.png", png(RGB_ALPHA, 16, rgba16, [icc_chunk(srgb())]))
    save("gamma-linear.png", png(RGB, 8, lambda x, y: (51 * x,) * 3, [(b"gAMA", struct.pack(">I", 100000))], 6, 1))
    save("gamma-linear-grey.png", png(GREY, 8, lambda x, y: (51 * x,), [(b"gAMA", struct.pack(">I", 100000))], 6, 1))
    save("gamma-srgb.png", png(RGB, 8, color, [(b"gAMA", struct.pack(">I", 45455))]))
    save("srgb-chunk-before-gamma.png",
         png(RGB, 8, color, [(b"sRGB", b"\0"), (b"gAMA", struct.pack(">I", 100000))]))
    save("broken-icc.png", png(RGB, 8, color, [icc_chunk(b"this is no profile" * 20)]))
    save("broken-icc-stream.png", png(RGB, 8, color, [(b"iCCP", b"icc\0\0this is not compressed")]))
    image = color_image()
    for orientation, order in ((6, "<"), (3, ">")):
        turned = stored(image, orientation)
        save("orientation-%d.png" % orientation,
             png(RGB, 8, lambda x, y: turned.getpixel((x, y)), [(b"eXIf", exif(orientation, order))],
                 turned.width, turned.height))
    # Two frames: the picture, and one in another colour.
    frame = lambda number: (b"fcTL", struct.pack(">5I2H2B", number, WIDTH, HEIGHT, 0, 0, 1, 10, 0, 0))
    second = zlib.compress((b"\0" + bytes((1, 2, 3)) * WIDTH) * HEIGHT, 9)
    save("animated.png", png(RGB, 8, color, [(b"acTL", struct.pack(">2I", 2, 0)), frame(0)],
                             trailing=[frame(1), (b"fdAT", struct.pack(">I", 2) + second)]))


# JPEG.

def jpeg(image, **options):
    out = io.BytesIO()
    image.save(out, "JPEG", quality=95, optimize=True, **options)
    return out.getvalue()


def without_segment(data, marker):
    at = 2
    while True:
        kind, length = data[at + 1], struct.unpack(">H", data[at + 2:at + 4])[0]
        if kind == marker:
            return data[:at] + data[at + 2 + length:]
        at += 2 + length


def make_jpegs():
    image = block_image()
    save("rgb.jpg", jpeg(image, subsampling=0))
    save("subsampled.jpg", jpeg(block_image(16), subsampling=2))
    save("progressive.jpg", jpeg(image, subsampling=0, progressive=True))
    greys = Image.new("L", (48, 8))
    for i in range(6):
        greys.paste(51 * i, (8 * i, 0, 8 * i + 8, 8))
    save("grey.jpg", jpeg(greys))
    save("grey-icc.jpg", jpeg(greys, icc_profile=linear_grey()))
    # Inks, with 255 for full ink: paper, C, M, Y, K, half of each.
    inks = [(0, 0, 0, 0), (255, 0, 0, 0), (0, 255, 0, 0), (0, 0, 255, 0), (0, 0, 0, 255), (128, 128, 128, 128)]
    cmyk = Image.new("CMYK", (48, 8))
    for i, ink in enumerate(inks):
        cmyk.paste(ink, (8 * i, 0, 8 * i + 8, 8))
    save("cmyk-adobe.jpg", jpeg(cmyk))
    # Only C and K lie between the profile's nodes, so every way to interpolate gives the same.
    profiled = cmyk.copy()
    profiled.paste((128, 0, 0, 128), (40, 0, 48, 8))
    save("cmyk-adobe-icc.jpg", jpeg(profiled, icc_profile=grey_ink_cmyk()))
    # With an Adobe marker stored inks are inverted; without the marker they are plain.
    inverted = Image.merge("CMYK", [plane.point(lambda v: 255 - v) for plane in cmyk.split()])
    save("cmyk-plain.jpg", without_segment(jpeg(inverted), 0xEE))
    for orientation in range(1, 9):
        save("orientation-%d.jpg" % orientation,
             jpeg(stored(image, orientation), subsampling=0,
                  exif=b"Exif\0\0" + exif(orientation, "<" if orientation % 2 else ">")))
    probes = Image.new("RGB", (32, 8))
    for i, probe in enumerate([(255, 255, 255), (128, 128, 128), (200, 150, 100), (100, 150, 120)]):
        probes.paste(probe, (8 * i, 0, 8 * i + 8, 8))
    save("display-p3.jpg", jpeg(probes, subsampling=0, icc_profile=display_p3()))
    save("broken-icc.jpg", jpeg(image, subsampling=0, icc_profile=b"this is no profile" * 10))


# TIFF, written without a library.

def tiff(tags, strips, order="<", tiled=False):
    """`tags`: number -> list of values. The places and lengths of strips or tiles are added."""
    tags = dict(tags)
    data_at = 8
    places = []
    contents = b""
    for strip in strips:
        places.append(data_at + len(contents))
        contents += strip + b"\0" * (len(strip) % 2)
    tags[324 if tiled else 273] = places
    tags[325 if tiled else 279] = [len(strip) for strip in strips]
    directory_at = data_at + len(contents)
    extra_at = directory_at + 2 + 12 * len(tags) + 4
    entries, extra = b"", b""
    for number, values in sorted(tags.items()):
        is_bytes = isinstance(values, bytes)
        is_short = not is_bytes and number not in (324, 325, 273, 279)
        kind = 7 if is_bytes else 3 if is_short else 4
        data = values if is_bytes else struct.pack(order + "%d%s" % (len(values), "H" if is_short else "I"), *values)
        entries += struct.pack(order + "HHI", number, kind, len(values))
        if len(data) <= 4:
            entries += data.ljust(4, b"\0")
        else:
            entries += struct.pack(order + "I", extra_at + len(extra))
            extra += data + b"\0" * (len(data) % 2)
    return (struct.pack(order + "2sHI", b"II" if order == "<" else b"MM", 42, directory_at) + contents
            + struct.pack(order + "H", len(tags)) + entries + b"\0\0\0\0" + extra)


def tiff_tags(photometric, depths, width=WIDTH, height=HEIGHT, compression=1, **more):
    tags = {256: [width], 257: [height], 258: depths, 259: [compression], 262: [photometric], 277: [len(depths)],
            278: [height], 284: [1]}
    tags.update({int(name[1:]): values for name, values in more.items()})
    return tags


def samples(pixel, width=WIDTH, height=HEIGHT):
    return bytes(sample for y in range(height) for x in range(width) for sample in pixel(x, y))


def rows(pixel, per_strip, width=WIDTH, height=HEIGHT):
    data = samples(pixel, width, height)
    length = per_strip * len(data) // height
    return [data[at:at + length] for at in range(0, len(data), length)]


def make_tiffs():
    save("grey-8.tif", tiff(tiff_tags(1, [8]), [samples(lambda x, y: (grey(x, y),))]))
    save("grey-8-white-is-zero.tif", tiff(tiff_tags(0, [8]), [samples(lambda x, y: (255 - grey(x, y),))]))
    words = [wide(grey(x, y)) for y in range(HEIGHT) for x in range(WIDTH)]
    for name, order in (("grey-16.tif", "<"), ("grey-16-big-endian.tif", ">")):
        save(name, tiff(tiff_tags(1, [16]), [struct.pack(order + "%dH" % len(words), *words)], order))
    save("rgb.tif", tiff(tiff_tags(2, [8] * 3, _278=[3]), rows(color, 3)))
    save("rgb-big-endian.tif", tiff(tiff_tags(2, [8] * 3), [samples(color)], ">"))
    save("rgb-deflate.tif", tiff(tiff_tags(2, [8] * 3, compression=8), [zlib.compress(samples(color), 9)]))
    straight = lambda x, y: color(x, y) + (alpha(x, y),)
    multiplied = lambda x, y: tuple((c * alpha(x, y) + 127) // 255 for c in color(x, y)) + (alpha(x, y),)
    save("rgba-unassociated.tif", tiff(tiff_tags(2, [8] * 4, _338=[2]), [samples(straight)]))
    save("rgba-associated.tif", tiff(tiff_tags(2, [8] * 4, _338=[1]), [samples(multiplied)]))
    save("grey-alpha-unassociated.tif",
         tiff(tiff_tags(1, [8] * 2, _338=[2]), [samples(lambda x, y: (grey(x, y), alpha(x, y)))]))
    colors = palette(256)
    save("palette-8.tif", tiff(tiff_tags(3, [8], _320=[257 * entry[n] for n in range(3) for entry in colors]),
                               [samples(lambda x, y: (index(x, y, 256),))]))
    bits = b"".join(packed([index(x, y, 2) for x in range(WIDTH)], 1) for y in range(HEIGHT))
    save("grey-1.tif", tiff(tiff_tags(1, [1]), [bits]))
    # 20 × 18 pixels on tiles of 16 × 16.
    tiles = [samples(lambda x, y: color(left + x, top + y), 16, 16) for top in (0, 16) for left in (0, 16)]
    tags = tiff_tags(2, [8] * 3, 20, 18, 8, _322=[16], _323=[16])
    del tags[278]
    save("rgb-tiled.tif", tiff(tags, [zlib.compress(tile, 9) for tile in tiles], tiled=True))
    planes = [samples(lambda x, y: (color(x, y)[n],)) for n in range(3)]
    save("rgb-planes.tif", tiff(tiff_tags(2, [8] * 3, _284=[2]), planes))
    inks = [(0, 0, 0, 0), (255, 0, 0, 0), (0, 255, 0, 0), (0, 0, 255, 0), (0, 0, 0, 255), (51, 102, 153, 51)]
    save("cmyk.tif", tiff(tiff_tags(5, [8] * 4, 6, 1, _332=[1]), [samples(lambda x, y: inks[x], 6, 1)]))
    # Only C and K lie between the profile's nodes, so every way to interpolate gives the same.
    profiled = inks[:5] + [(128, 0, 0, 128)]
    save("cmyk-icc.tif",
         tiff(tiff_tags(5, [8] * 4, 6, 1, _34675=grey_ink_cmyk()), [samples(lambda x, y: profiled[x], 6, 1)]))
    turned = stored(color_image(), 6)
    save("orientation-6.tif", tiff(tiff_tags(2, [8] * 3, turned.width, turned.height, _274=[6]), [turned.tobytes()]))
    probes = [(255, 255, 255), (128, 128, 128), (200, 150, 100), (100, 150, 120)]
    save("display-p3.tif",
         tiff(tiff_tags(2, [8] * 3, 4, 1, _34675=display_p3()), [samples(lambda x, y: probes[x], 4, 1)]))
    out = io.BytesIO()
    color_image().save(out, "TIFF", compression="tiff_lzw")
    save("rgb-lzw.tif", out.getvalue())


# GIF, written without a library. All codes have the same length: a clear code comes before the codes would grow.

def lzw(indices, bits):
    codes = []
    for i, value in enumerate(indices):
        if i % ((1 << bits) - 2) == 0:
            codes.append(1 << bits)
        codes.append(value)
    codes.append((1 << bits) + 1)
    word = sum(code << (i * (bits + 1)) for i, code in enumerate(codes))
    data = word.to_bytes((len(codes) * (bits + 1) + 7) // 8, "little")
    blocks = b"".join(bytes([len(data[i:i + 255])]) + data[i:i + 255] for i in range(0, len(data), 255))
    return bytes([bits]) + blocks + b"\0"


def gif_frame(left, top, width, height, pixel, interlaced=False, transparent=None, local=None):
    control = b"\x21\xf9\x04" + struct.pack("<BHBB", transparent is not None, 10, transparent or 0, 0)
    order = list(range(height))
    if interlaced:
        order = [y for first, step in ((0, 8), (4, 8), (2, 4), (1, 2)) for y in range(first, height, step)]
    flags = 0x40 * interlaced + (0x80 | 3 if local else 0)
    colors = bytes(sample for entry in local or [] for sample in entry)
    return (control + struct.pack("<BHHHHB", 0x2c, left, top, width, height, flags) + colors
            + lzw([pixel(x, y) for y in order for x in range(width)], 4))


def gif(frames, width=WIDTH, height=HEIGHT):
    colors = bytes(sample for entry in palette(16) for sample in entry)
    return b"GIF89a" + struct.pack("<HHBBB", width, height, 0xf3, 0, 0) + colors + b"".join(frames) + b";"


def make_gifs():
    pixel = lambda x, y: index(x, y, 16)
    save("plain.gif", gif([gif_frame(0, 0, WIDTH, HEIGHT, pixel)]))
    save("interlaced.gif", gif([gif_frame(0, 0, 11, 19, pixel, interlaced=True)], 11, 19))
    save("transparent.gif", gif([gif_frame(0, 0, WIDTH, HEIGHT, pixel, transparent=3)]))
    save("animated.gif", gif([gif_frame(0, 0, WIDTH, HEIGHT, pixel), gif_frame(0, 0, WIDTH, HEIGHT, lambda x, y: 7)]))
    save("small-frame.gif", gif([gif_frame(3, 2, 5, 4, pixel)]))
    save("local-colors.gif", gif([gif_frame(0, 0, WIDTH, HEIGHT, pixel, local=palette(16)[::-1])]))


# BMP, written without a library.

def bmp(depth, data, compression=0, colors=(), height=HEIGHT, masks=b""):
    table = masks + b"".join(bytes([b, g, r, 0]) for r, g, b in colors)
    at = 14 + 40 + len(table)
    return (struct.pack("<2sIII", b"BM", at + len(data), 0, at)
            + struct.pack("<IiiHHIIiiII", 40, WIDTH, height, 1, depth, compression, len(data), 2835, 2835,
                          len(colors), 0)
            + table + data)


def bmp_rows(row, order):
    return b"".join(data + b"\0" * (-len(data) % 4) for data in map(row, order))


def make_bmps():
    upwards = range(HEIGHT - 1, -1, -1)
    for depth in (1, 4, 8):
        count = 1 << depth
        row = lambda y: packed([index(x, y, count) for x in range(WIDTH)], depth)
        save("palette-%d.bmp" % depth, bmp(depth, bmp_rows(row, upwards), colors=palette(count)))
    bgr = lambda y: b"".join(bytes(color(x, y)[::-1]) for x in range(WIDTH))
    save("rgb-24.bmp", bmp(24, bmp_rows(bgr, upwards)))
    save("rgb-24-top-down.bmp", bmp(24, bmp_rows(bgr, range(HEIGHT)), height=-HEIGHT))
    bgrx = lambda y: b"".join(bytes(color(x, y)[::-1]) + b"\0" for x in range(WIDTH))
    save("rgb-32.bmp", bmp(32, bmp_rows(bgrx, upwards)))
    # Each row: a run of four, a literal of five (padded), a run of two, the end of the line.
    runs = b""
    for y in upwards:
        literal = bytes(index(x, y, 256) for x in range(4, 9))
        runs += bytes([4, y, 0, 5]) + literal + b"\0" + bytes([2, y + 20]) + b"\0\0"
    save("rle-8.bmp", bmp(8, runs[:-2] + b"\0\1", 1, palette(256)))


# WebP.

def make_webps():
    def webp(name, image, **options):
        out = io.BytesIO()
        image.save(out, "WEBP", **options)
        save(name, out.getvalue())

    webp("lossy.webp", block_image(16), quality=95)
    webp("lossless.webp", color_image(), lossless=True)
    webp("lossless-alpha.webp", color_image(has_alpha=True), lossless=True, exact=True)
    webp("orientation-6.webp", stored(color_image(), 6), lossless=True, exif=exif(6))
    probes = Image.new("RGB", (4, 1))
    for i, probe in enumerate([(255, 255, 255), (128, 128, 128), (200, 150, 100), (100, 150, 120)]):
        probes.putpixel((i, 0), probe)
    webp("display-p3.webp", probes, lossless=True, icc_profile=display_p3())
    webp("broken-icc.webp", color_image(), lossless=True, icc_profile=b"this is no profile")
    webp("animated.webp", color_image(), lossless=True, save_all=True, duration=100,
         append_images=[Image.new("RGB", (WIDTH, HEIGHT), (1, 2, 3))])


# ICO. Pillow writes only some of its kinds.

def ico(*images):
    """An icon file of (width, height, bits, data)."""
    at = 6 + 16 * len(images)
    entries = b""
    for width, height, bits, data in images:
        entries += struct.pack("<BBBBHHII", width % 256, height % 256, 0, 0, 1, bits, len(data), at)
        at += len(data)
    return struct.pack("<HHH", 0, 1, len(images)) + entries + b"".join(data for *_, data in images)


def icon_bitmap(bits, pixel, is_clear=lambda x, y: False, colors=(), width=WIDTH, height=HEIGHT):
    """A bitmap with its mask. `pixel` gives an index, or the bytes of a pixel."""
    rows = masks = b""
    for y in reversed(range(height)):
        if bits <= 8:
            line = "".join(f"{pixel(x, y):0{bits}b}" for x in range(width))
            row = int(line.ljust((len(line) + 7) // 8 * 8, "0"), 2).to_bytes((len(line) + 7) // 8, "big")
        else:
            row = b"".join(bytes(pixel(x, y)) for x in range(width))
        rows += row + bytes(-len(row) % 4)
        mask = "".join(str(int(is_clear(x, y))) for x in range(width)).ljust((width + 31) // 32 * 32, "0")
        masks += int(mask, 2).to_bytes(len(mask) // 8, "big")
    head = struct.pack("<IiiHHIIiiII", 40, width, 2 * height, 1, bits, 0, len(rows), 0, 0, len(colors), 0)
    return head + b"".join(bytes(entry[::-1]) + b"\0" for entry in colors) + rows + masks


def make_icos():
    bgr = lambda x, y: color(x, y)[::-1]
    corner = lambda x, y: x + y < 3
    for bits in (1, 4, 8):
        count = 2 ** bits
        data = icon_bitmap(bits, lambda x, y: index(x, y, count), corner, palette(count))
        save(f"icon-{bits}.ico", ico((WIDTH, HEIGHT, bits, data)))
    sample = lambda x, y: (y % 4 * 8) << 10 | (x % 4 * 8) << 5 | 31
    save("icon-16.ico", ico((WIDTH, HEIGHT, 16, icon_bitmap(16, lambda x, y: sample(x, y).to_bytes(2, "little"), corner))))
    save("icon-24.ico", ico((WIDTH, HEIGHT, 24, icon_bitmap(24, bgr, corner))))
    save("icon-32.ico", ico((WIDTH, HEIGHT, 32, icon_bitmap(32, lambda x, y: bgr(x, y) + (alpha(x, y),), corner))))
    save("icon-32-mask.ico", ico((WIDTH, HEIGHT, 32, icon_bitmap(32, lambda x, y: bgr(x, y) + (0,), corner))))
    save("icon-png.ico", ico((WIDTH, HEIGHT, 32, png(RGB_ALPHA, 8, lambda x, y: color(x, y) + (alpha(x, y),)))))
    large = png(RGB, 8, lambda x, y: (255, 0, 0), width=64, height=64)
    small = icon_bitmap(4, lambda x, y: 1, colors=[(0, 0, 0), (0, 0, 255)], width=16, height=16)
    better = icon_bitmap(24, lambda x, y: (0, 255, 0), width=16, height=16)
    save("icon-sizes.ico", ico((16, 16, 4, small), (64, 64, 32, large), (16, 16, 24, better)))


# Pictures that are large enough to have reduced copies, with sides that do not halve evenly.

def make_large():
    width, height = 203, 131
    step = lambda x, y: color(x // 7, y // 5)
    rgba = lambda x, y: step(x, y) + (alpha(x // 9, y // 6),)
    large = dict(width=width, height=height)
    save("large-rgba-8.png", png(RGB_ALPHA, 8, rgba, **large))
    save("large-rgba-16.png", png(RGB_ALPHA, 16, lambda x, y: tuple(257 * sample for sample in rgba(x, y)), **large))
    save("large-grey-8.png", png(GREY, 8, lambda x, y: (grey(x // 7, y // 5),), **large))
    save("large-grey-icc.png", png(GREY, 8, lambda x, y: (grey(x // 7, y // 5),), [icc_chunk(linear_grey())], **large))
    save("large-palette-4.png",
         png(INDEXED, 4, lambda x, y: (index(x // 7, y // 5, 16),), [palette_chunk(16)], **large))
    save("large-interlaced-rgba-8.png", png(RGB_ALPHA, 8, rgba, interlaced=True, **large))
    image = Image.new("RGB", (width, height))
    for y in range(height):
        for x in range(width):
            image.putpixel((x, y), step(x, y))
    turned = stored(image, 6)
    pixel = lambda x, y: turned.getpixel((x, y))
    orientation = [(b"eXIf", exif(6))]
    save("large-orientation-6.png", png(RGB, 8, pixel, orientation, turned.width, turned.height))
    save("large-orientation-6-behind.png",
         png(RGB, 8, pixel, (), turned.width, turned.height, trailing=orientation))
    save("large-rgb.jpg", jpeg(image, subsampling=2))
    save("large-progressive.jpg", jpeg(image, subsampling=0, progressive=True))
    save("large-cmyk.jpg", jpeg(image.convert("CMYK")))
    save("large-display-p3.jpg", jpeg(image, icc_profile=display_p3()))
    save("large-orientation-5.jpg", jpeg(stored(image, 5), exif=b"Exif\0\0" + exif(5)))
    out = io.BytesIO()
    image.save(out, "GIF")
    save("large.gif", out.getvalue())
    out = io.BytesIO()
    image.save(out, "WEBP", lossless=True)
    save("large.webp", out.getvalue())


# icns.

def icns_picture(side):
    """Sixteen blocks. Their alpha is 51 times 1 to 5."""
    image = Image.new("RGBA", (side, side))
    step = side // 4
    for row in range(4):
        for column in range(4):
            image.paste(color(column, row) + (51 * ((column + row) % 5 + 1),),
                        (column * step, row * step, (column + 1) * step, (row + 1) * step))
    return image


def icns(elements):
    body = b"".join(kind + struct.pack(">I", len(data) + 8) + data for kind, data in elements)
    return b"icns" + struct.pack(">I", len(body) + 8) + body


def make_icns():
    with tempfile.TemporaryDirectory() as folder:
        names = []
        for side in (16, 32, 48, 128):
            names.append(os.path.join(folder, "%d.png" % side))
            icns_picture(side).save(names[-1])
        path = os.path.join(folder, "all.icns")
        subprocess.run(["png2icns", path] + names, check=True, stdout=subprocess.DEVNULL)
        with open(path, "rb") as file:
            data = file.read()
    elements = []
    at = 8
    while at < len(data):
        kind, length = struct.unpack(">4sI", data[at:at + 8])
        # The largest mask is not packed, and would make this the largest file here.
        if kind != b"t8mk":
            elements.append((kind, data[at + 8:at + length]))
        at += length
    save("packed.icns", icns(elements))
    out = io.BytesIO()
    block_image(16).resize((128, 128), Image.NEAREST).save(out, "JPEG2000", irreversible=False)
    save("jpeg-2000.icns", icns([(b"ic07", out.getvalue())]))


if __name__ == "__main__":
    os.makedirs(FOLDER, exist_ok=True)
    make_pngs()
    make_jpegs()
    make_tiffs()
    make_gifs()
    make_bmps()
    make_webps()
    make_icos()
    make_large()
    make_icns()
