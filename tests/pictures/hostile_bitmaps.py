"""TIFF, BMP, GIF and WebP files."""

import io
import struct
import zlib

from case import CLEAR, GREEN, ORIENTED, QUARTERS, RED, Image, middles, oriented_xmp, quarters, refused, shown, packed_zeros

SHORT, LONG = 3, 4


def saved(form, image=None, **options):
    stream = io.BytesIO()
    (image or quarters()).save(stream, form, **options)
    return stream.getvalue()


def tiff(changes=None, order="<", following=0, count=None, data=None, more=()):
    """A TIFF file of the quarters, without compression, with other values for some tags."""
    data = quarters().tobytes() if data is None else data
    tags = {256: (LONG, 64), 257: (LONG, 64), 258: (SHORT, 8), 259: (SHORT, 1), 262: (SHORT, 2), 273: (LONG, 8),
            277: (SHORT, 3), 278: (LONG, 64), 279: (LONG, len(data)), 284: (SHORT, 1)}
    tags.update({tag: (LONG, value) if isinstance(value, int) else value for tag, value in (changes or {}).items()})
    tags = {tag: value for tag, value in tags.items() if value is not None}
    at = 8 + len(data)
    entries = b""
    for tag, (kind, value) in sorted(tags.items()):
        held = struct.pack(order + ("HH" if kind == SHORT else "I"), *((value, 0) if kind == SHORT else (value,)))
        entries += struct.pack(order + "HHI", tag, kind, 1) + held
    entries += b"".join(more)
    head = (b"II" if order == "<" else b"MM") + struct.pack(order + "HI", 42, at)
    return head + data + struct.pack(order + "H", len(entries) // 12 if count is None else count) + entries + \
        struct.pack(order + "I", at if following == "itself" else following)


def first_lzw(data):
    """Packed as the first writers did: codes come with their least significant bit first. All have 9 bits here."""
    clear, end = 256, 257
    codes = [code for i, byte in enumerate(data) for code in ([clear] if i % 200 == 0 else []) + [byte]] + [end]
    bits = sum(code << 9 * i for i, code in enumerate(codes))
    return bits.to_bytes((9 * len(codes) + 7) // 8, "little")


def tiffs():
    damaged = "the TIFF picture is truncated or damaged"
    yield shown("plain.tif", tiff(), QUARTERS)
    yield shown("big-endian.tif", tiff(order=">"), QUARTERS)
    yield shown("directory-follows-itself.tif", tiff(following="itself"), QUARTERS)
    yield shown("next-directory-outside.tif", tiff(following=0xfffffff0), QUARTERS)
    yield refused("first-directory-outside.tif", b"II\x2a\0\xf0\xff\xff\xff", damaged)
    yield refused("first-directory-0.tif", b"II\x2a\0\0\0\0\0", damaged)
    yield refused("directory-empty.tif", b"II\x2a\0\x08\0\0\0\0\0\0\0\0\0", damaged)
    yield refused("directory-of-65535.tif", tiff(count=65535), damaged)
    yield refused("directory-huge.tif", b"II\x2a\0\x08\0\0\0\xff\xff" + b"\1\1\3\0\1\0\0\0\1\0\0\0" * 65535, damaged)
    yield refused("big-directory-huge.tif", b"II\x2b\0\x08\0\0\0\x10\0\0\0\0\0\0\0" + b"\xff" * 8, damaged)
    for width, height in ((65535, 65535), (16385, 16384)):
        yield refused(f"size-{width}x{height}.tif", tiff({256: width, 257: height}), "pixels; the limit")
    for side in (0x7fffffff, 0xffffffff):
        yield refused(f"size-{side}.tif", tiff({256: side, 257: side}), damaged)
    yield refused("size-0x0.tif", tiff({256: 0, 257: 0}), "")
    yield refused("size-without-data.tif", tiff({256: 16000, 257: 16000, 278: 16000}), damaged)
    for name, changes in {"strip-far": {273: 0xfffffff0}, "samples-65535": {277: (SHORT, 65535)},
                          "bits-65535": {258: (SHORT, 65535)}, "bits-0": {258: (SHORT, 0)},
                          "compression-unknown": {259: (SHORT, 9999)}, "lzw-of-noise": {259: (SHORT, 5)},
                          "deflate-of-noise": {259: (SHORT, 8)}, "jpeg-of-noise": {259: (SHORT, 7)},
                          "fax-of-noise": {259: (SHORT, 4), 258: (SHORT, 1), 277: (SHORT, 1), 262: (SHORT, 0), 256: 60000, 257: 4000},
                          "photometric-unknown": {262: (SHORT, 999)}, "tile-huge": {322: 0x7ffffff0, 323: 0x7ffffff0,
                                                                                     324: 8, 325: 100},
                          "tile-0": {322: 0, 323: 0, 324: 8, 325: 100}, "width-missing": {256: None},
                          "strip-missing": {273: None}}.items():
        yield refused(f"{name}.tif", tiff(changes), "TIFF picture")
    # The length of samples without compression follows from the picture's size.
    yield shown("strip-long.tif", tiff({279: 0xffffffff}), QUARTERS)
    yield shown("strip-empty.tif", tiff({279: 0}), QUARTERS)
    yield shown("rows-many.tif", tiff({278: 0xffffffff}), QUARTERS)
    # Odd, and all pixels are there.
    packed = first_lzw(quarters().tobytes())
    yield shown("first-lzw.tif", tiff({259: (SHORT, 5)}, data=packed), QUARTERS)
    for missing in (2, 100, len(packed) // 2):
        yield refused(f"first-lzw-without-{missing}.tif", tiff({259: (SHORT, 5)}, data=packed[:-missing]), damaged)
    tile = {322: 64, 323: 64, 324: 8, 273: None, 278: None, 279: None}
    for kind, data in {1: quarters().tobytes(), 5: packed, 8: zlib.compress(quarters().tobytes())}.items():
        for more in (1, 10000, 2000000):
            longer = data + bytes(more)
            yield shown(f"tile-of-kind-{kind}-longer-by-{more}.tif",
                        tiff(tile | {259: (SHORT, kind), 325: len(longer)}, data=longer), QUARTERS)
            yield shown(f"strip-of-kind-{kind}-longer-by-{more}.tif", tiff({259: (SHORT, kind)}, data=longer), QUARTERS)
    # A strip that unpacks to far more than the picture needs.
    yield shown("deflate-bomb.tif", tiff({259: (SHORT, 8)}, data=packed_zeros(200 << 20)), (0, 0, 0, 255))
    # libtiff turns these samples into pixels, and unpacks the whole strip or tile before.
    lab = {258: (SHORT, 8), 259: (SHORT, 8), 262: (SHORT, 8)}
    few = "a TIFF picture in few strips or tiles of 16384 × 10000 pixels takes 469 MiB"
    zeros = packed_zeros(1 << 20)
    yield refused("lab-in-one-strip.tif", tiff(lab | {256: 16384, 257: 10000, 278: 10000}, data=zeros), few)
    yield refused("lab-in-one-tile.tif",
                  tiff(lab | {256: 16384, 257: 10000} | tile | {322: 16384, 323: 10000, 325: len(zeros)}, data=zeros), few)
    yield refused("rgb-in-one-strip.tif", tiff({259: (SHORT, 8), 256: 16384, 257: 10000, 278: 10000}, data=zeros), few)
    for orientation in range(1, 9):
        data = tiff({274: (SHORT, orientation)})
        yield shown(f"orientation-{orientation}.tif", data, tuple(QUARTERS[i] for i in ORIENTED[orientation]))
        packet = oriented_xmp(orientation)
        with_packet = tiff(data=quarters().tobytes() + packet, changes={279: 64 * 64 * 3},
                           more=[struct.pack("<HHII", 700, 1, len(packet), 8 + 64 * 64 * 3)])
        yield shown(f"xmp-{orientation}.tif", with_packet, tuple(QUARTERS[i] for i in ORIENTED[orientation]))
    yield refused("orientation-9.tif", tiff({274: (SHORT, 9)}), damaged)
    yield shown("profile-noise.tif", tiff(more=[struct.pack("<HHII", 34675, 7, 500, 8)]), QUARTERS)
    yield refused("profile-far.tif", tiff(more=[struct.pack("<HHII", 34675, 7, 0x7fffffff, 8)]), damaged)
    yield shown("texts-huge.tif", tiff(more=[struct.pack("<HHII", 40000 + i, 2, 0xffffffff, 8) for i in range(1000)]), QUARTERS)


def bmp(width=64, height=64, planes=1, bits=24, compression=0, offset=54, header=40, colors=0, data=None):
    data = quarters().transpose(Image.FLIP_TOP_BOTTOM).tobytes("raw", "BGR") if data is None else data
    return b"BM" + struct.pack("<IHHI", 54 + len(data), 0, 0, offset) + \
        struct.pack("<IiiHHIIiiII", header, width, height, planes, bits, compression, len(data), 0, 0, colors, 0) + data


def bmps():
    top = quarters().tobytes("raw", "BGR")
    damaged = "BMP picture is truncated or damaged"
    yield shown("plain.bmp", bmp(), QUARTERS)
    yield shown("from-the-top.bmp", bmp(height=-64, data=top), QUARTERS)
    for width, height in ((-0x80000000, -0x80000000), (64, -0x80000000), (0x7fffffff, 0x7fffffff),
                          (0x7fffffff, -0x7fffffff), (65535, 65535), (65535, -65535)):
        yield refused(f"size-{width}x{height}.bmp", bmp(width, height), "pixels")
    for width, height in ((0, 64), (64, 0), (-64, 64), (-0x80000000, 64)):
        yield refused(f"size-{width}x{height}.bmp", bmp(width, height), "no pixels")
    yield refused("size-without-data.bmp", bmp(10000, 10000), damaged)
    yield refused("offset-far.bmp", bmp(offset=0x7fffffff), damaged)
    yield shown("offset-negative.bmp", bmp(offset=0xffffffff), QUARTERS)
    yield refused("bits-3.bmp", bmp(bits=3), damaged)
    yield refused("bits-0.bmp", bmp(bits=0), damaged)
    yield refused("bits-65535.bmp", bmp(bits=65535), damaged)
    yield refused("planes-7.bmp", bmp(planes=7), damaged)
    yield refused("compression-unknown.bmp", bmp(compression=99), damaged)
    yield refused("header-huge.bmp", bmp(header=0x7fffffff), damaged)
    yield refused("header-0.bmp", bmp(header=0), damaged)
    yield refused("palette-huge.bmp", bmp(bits=8, colors=0x7fffffff), damaged)
    yield refused("run-past-the-end.bmp", bmp(bits=8, compression=1, colors=1, data=bytes(4) + b"\xff\0" * 9), damaged)
    for cut in (2, 10, 14, 20, 30, 53, 54, 1000):
        yield refused(f"cut-{cut:04}.bmp", bmp()[:cut], "BMP picture")


def gif(width, height, frame=(0, 0, 64, 64), pictures=1, data=None):
    """A file with a global palette of red and green. Its first frame is red."""
    image = Image.new("P", (64, 64))
    image.putpalette([255, 0, 0, 0, 255, 0])
    one = saved("GIF", image)
    body = one[one.index(b",", 13) + 10:-1] if data is None else data
    shown_frame = b"," + struct.pack("<HHHH", *frame) + b"\0" + body
    return b"GIF89a" + struct.pack("<HH", width, height) + b"\x80\0\0\xff\0\0\0\xff\0" + shown_frame * pictures + b";"


def gifs():
    damaged = "GIF picture"
    frames = [Image.new("RGB", (64, 64), color[:3]) for color in (RED, GREEN)]
    yield shown("animation.gif", saved("GIF", frames[0], save_all=True, append_images=frames[1:]), RED)
    yield shown("plain.gif", gif(64, 64), RED)
    yield shown("10000-frames.gif", gif(64, 64, pictures=10000), RED)
    for side in (65535, 16385):
        yield refused(f"canvas-{side}.gif", gif(side, side), "pixels; the limit")
    # Its frame is 64 pixels wide: nothing of all the others needs to be kept.
    yield shown("canvas-12000.gif", gif(12000, 12000), CLEAR)
    yield refused("frame-12000.gif", gif(64, 64, (0, 0, 12000, 12000)), damaged)
    yield refused("frame-65535.gif", gif(64, 64, (0, 0, 65535, 65535)), "")
    yield refused("frame-0.gif", gif(64, 64, (0, 0, 0, 0)), "")
    yield refused("no-frames.gif", gif(64, 64, pictures=0), damaged)
    yield refused("data-noise.gif", gif(64, 64, data=b"\x02\xff" + bytes(range(255)) + b"\0"), damaged)
    yield refused("data-empty.gif", gif(64, 64, data=b"\x02\0"), damaged)
    yield refused("data-code-size-255.gif", gif(64, 64, data=b"\xff\1\0\0"), damaged)
    whole = gif(64, 64)
    for cut in (6, 10, 12, 16, 25, 29, len(whole) - 10):
        yield refused(f"cut-{cut:03}.gif", whole[:cut], damaged)


def riff(*chunks):
    body = b"WEBP" + b"".join(kind + struct.pack("<I", len(data)) + data + b"\0" * (len(data) % 2)
                              for kind, data in chunks)
    return b"RIFF" + struct.pack("<I", len(body)) + body


def canvas(width, height, flags=2):
    return b"VP8X", bytes([flags, 0, 0, 0]) + struct.pack("<I", width - 1)[:3] + struct.pack("<I", height - 1)[:3]


def webps():
    damaged = "WebP picture is truncated or damaged"
    frames = [Image.new("RGB", (64, 64), color[:3]) for color in (RED, GREEN)]
    yield shown("animation.webp", saved("WEBP", frames[0], save_all=True, append_images=frames[1:], lossless=True), RED)
    yield shown("lossless.webp", saved("WEBP", lossless=True), QUARTERS)
    for width, height in ((65535, 65535), (1 << 24, 1 << 24), (1 << 24, 1)):
        yield refused(f"canvas-{width}x{height}.webp", riff(canvas(width, height), (b"ANIM", bytes(6))), "pixels; the limit")
    sides = 15999 | 15999 << 14
    working = "a lossless, translucent or animated WebP picture of 16000 × 16000 pixels takes"
    yield refused("lossless-16000.webp", riff((b"VP8L", b"\x2f" + struct.pack("<I", sides) + bytes(20))), working)
    yield refused("translucent-16000.webp", riff(canvas(16000, 16000, 16), (b"ALPH", bytes(9)), (b"VP8 ", bytes(30))), working)
    yield refused("animated-16000.webp", riff(canvas(16000, 16000), (b"ANIM", bytes(6)), (b"ANMF", bytes(60))), working)
    yield refused("lossy-16000.webp", riff(canvas(16000, 16000, 0), (b"VP8 ", bytes(30))), damaged)
    for orientation in range(1, 9):
        yield shown(f"xmp-{orientation}.webp", saved("WEBP", lossless=True, xmp=oriented_xmp(orientation)),
                    tuple(QUARTERS[i] for i in ORIENTED[orientation]))
    yield refused("canvas-without-frames.webp", riff(canvas(10000, 10000), (b"ANIM", bytes(6))), damaged)
    yield refused("canvas-alone.webp", riff(canvas(64, 64, 0)), damaged)
    whole = saved("WEBP", lossless=True)
    yield refused("frame-of-another-size.webp", riff(canvas(32, 32, 0), (b"VP8L", whole[20:])), damaged)
    yield refused("length-short.webp", whole[:4] + struct.pack("<I", 10) + whole[8:], damaged)
    yield refused("chunk-length-huge.webp", whole[:16] + b"\xff\xff\xff\xff" + whole[20:], damaged)
    yield refused("no-chunks.webp", riff(), damaged)
    for cut in (12, 16, 20, 21, 25, len(whole) // 2, len(whole) - 2):
        yield refused(f"cut-{cut:03}.webp", whole[:cut], damaged)
    exif = b"MM\0\x2a\0\0\0\x08\0\1\1\x12\0\3\0\0\0\1\0\6\0\0\0\0\0\0"
    turned = saved("WEBP", lossless=True, exif=exif)
    yield shown("orientation-6.webp", turned, middles(Image.open(io.BytesIO(turned))))
    yield shown("profile-noise.webp", saved("WEBP", lossless=True, icc_profile=bytes(range(200))), QUARTERS)


def cases():
    for group in (tiffs, bmps, gifs, webps):
        yield from group()
