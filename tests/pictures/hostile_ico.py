"""ICO files."""

import struct

from case import QUARTERS, RED, SIGNATURE, Image, chunk, header, png, quarters, refused, shown


def ico(*images, count=None):
    """An icon file of images, each a width, a height and data. The list may tell another `count`."""
    at = 6 + 16 * len(images)
    entries = b""
    for width, height, data in images:
        entries += struct.pack("<BBBBHHII", width % 256, height % 256, 0, 0, 1, 32, len(data), at)
        at += len(data)
    return struct.pack("<HHH", 0, 1, len(images) if count is None else count) + entries + b"".join(data for *_, data in images)


def bitmap(image=None, bits=24, width=None, height=None, colors=0, head=40, compression=0):
    image = (image or quarters()).convert("RGB")
    own_width, own_height = image.size
    data = image.transpose(Image.Transpose.FLIP_TOP_BOTTOM).tobytes("raw", "BGR")
    mask = bytes((own_width + 31) // 32 * 4 * own_height)
    return struct.pack("<IiiHHIIiiII", head, own_width if width is None else width, 2 * own_height if height is None else height,
                       1, bits, compression, 0, 0, 0, colors, 0) + data + mask


def flat(side):
    return png(image=Image.new("RGB", (side, side), RED[:3]))


def cases():
    damaged = "the ICO picture is truncated or damaged"
    yield shown("plain.ico", ico((64, 64, bitmap())), QUARTERS)
    yield shown("png.ico", ico((64, 64, png())), QUARTERS)
    yield shown("told-otherwise.ico", ico((1, 200, bitmap())), QUARTERS)
    yield shown("rows-of-the-mask-not-counted.ico", ico((64, 64, bitmap(height=64))), QUARTERS)
    yield refused("no-images.ico", ico(), damaged)
    yield refused("list-of-65535.ico", ico((64, 64, bitmap()), count=65535), damaged)
    whole = ico((64, 64, bitmap()))
    for name, length, at in (("outside", 100, 0xfffffff0), ("too-long", 0xffffffff, 22), ("empty", 0, 22), ("list", 22, 0)):
        yield refused(f"data-{name}.ico", whole[:14] + struct.pack("<II", length, at) + whole[22:], damaged)
    for bits in (0, 1, 2, 4, 8, 16, 32, 64, 65535):
        yield refused(f"bits-{bits}.ico", ico((64, 64, bitmap(bits=bits)[:200])), damaged)
    for side in (0, -1, 1 << 20, 0x7fffffff, -0x80000000):
        yield refused(f"width-{side}.ico", ico((64, 64, bitmap(width=side))), "" if side == 1 << 20 else damaged)
        yield refused(f"height-{side}.ico", ico((64, 64, bitmap(height=side))), "")
    for value in (0, 12, 41, 0xffffffff):
        yield refused(f"header-of-{value}.ico", ico((64, 64, bitmap(head=value))), damaged)
    for colors in (0xffffffff, 0x10000000):
        yield refused(f"colours-{colors}.ico", ico((64, 64, bitmap(bits=8, colors=colors)[:300])), damaged)
    yield refused("compressed.ico", ico((64, 64, bitmap(compression=3))), damaged)
    yield refused("png-of-16384.ico", ico((0, 0, SIGNATURE + header(16384, 16384) + chunk(b"IEND", b""))), "the limit")
    yield refused("png-cut.ico", ico((64, 64, png()[:-20])), "")
    # Many images: each size is read once, and no more than 32 sizes.
    yield shown("sizes.ico", ico(*((0, 0, flat(side)) for side in range(1024, 964, -1))), RED, pixels=32 << 20)
    one = flat(1024)
    many = struct.pack("<HHH", 0, 1, 65535) + struct.pack("<BBBBHHII", 0, 0, 0, 0, 1, 32, len(one), 6 + 16 * 65535) * 65535
    yield shown("one-image-65535-times.ico", many + one, RED, pixels=1 << 20)
