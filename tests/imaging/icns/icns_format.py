"""An icns reader, and small writers that make test files. They are for tests only, and share nothing with the program
that they check. All integers are big-endian."""

import struct
import zlib

PICTURES = {"ic10": 1024, "ic09": 512, "ic14": 512, "ic08": 256, "ic13": 256, "ic07": 128, "icp6": 64, "ic12": 64,
            "ic06": 48, "SB24": 48, "icsB": 36, "icp5": 32, "ic05": 32, "ic11": 32, "sb24": 24, "icsb": 18, "icp4": 16,
            "ic04": 16}
COLORS = {"it32": (128, "t8mk"), "ih32": (48, "h8mk"), "il32": (32, "l8mk"), "is32": (16, "s8mk")}


def element(code, data, length=None):
    code = code.encode("latin-1") if isinstance(code, str) else code
    return code + struct.pack(">I", len(data) + 8 if length is None else length) + data


def icns(*elements, total=None):
    return element("icns", b"".join(elements), total)


def parse(data):
    """The elements of an icns file as pairs of a code and data; ValueError where any length disagrees."""
    if len(data) < 8 or data[:4] != b"icns":
        raise ValueError("no icns header")
    (total,) = struct.unpack(">I", data[4:8])
    if total != len(data):
        raise ValueError("the total length is not the file's")
    elements = []
    at = 8
    while at < total:
        if total - at < 8:
            raise ValueError("an element header breaks off")
        code, length = struct.unpack(">4sI", data[at:at + 8])
        if length < 8 or length > total - at:
            raise ValueError("an element's length can't be")
        elements.append((code.decode("latin-1"), data[at + 8:at + length]))
        at += length
    return elements


def unpack(data, count):
    """`count` bytes from run-length coded data, and what follows."""
    out = bytearray()
    at = 0
    while len(out) < count:
        control = data[at]
        if control < 128:
            out += data[at + 1:at + 2 + control]
            at += 2 + control
        else:
            out += data[at + 1:at + 2] * (control - 125)
            at += 2
    if len(out) != count:
        raise ValueError("a run passes the end")
    return bytes(out), data[at:]


def runs(value, count):
    """`count` bytes of one value, run-length coded."""
    out = bytearray()
    while count > 0:
        length = min(count, 130)
        if 0 < count - length < 3:
            length -= 3
        out += bytes([length + 125, value])
        count -= length
    return bytes(out)


def literals(data):
    """Any bytes, run-length coded without a run."""
    return b"".join(bytes([len(data[i:i + 128]) - 1]) + data[i:i + 128] for i in range(0, len(data), 128))


def packed(side, *values):
    return b"".join(runs(value, side * side) for value in values)


def chunk(kind, data):
    return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))


def png(width, height, pixel=b"\x20\x40\x60\xff"):
    """An RGBA picture of one colour."""
    rows = (b"\0" + pixel * width) * height
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 6, 0, 0, 0)) +
            chunk(b"IDAT", zlib.compress(rows)) + chunk(b"IEND", b""))


def png_of_size(width, height):
    """A PNG file whose header states this size, but which has almost no pixels."""
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, 8, 6, 0, 0, 0)) +
            chunk(b"IDAT", zlib.compress(b"\0" * 100)) + chunk(b"IEND", b""))
