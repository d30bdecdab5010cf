"""Helpers for the lists of hostile pictures."""

import dataclasses
import struct
import zlib

from PIL import Image, ImageOps

RED, GREEN, BLUE, WHITE = (255, 0, 0, 255), (0, 255, 0, 255), (0, 0, 255, 255), (255, 255, 255, 255)
BLACK, CLEAR = (0, 0, 0, 255), (0, 0, 0, 0)
# Top left, top right, bottom left, bottom right.
QUARTERS = (RED, GREEN, BLUE, WHITE)

# For each orientation: the stored quarter that comes to each place when the picture is turned upright.
ORIENTED = {1: (0, 1, 2, 3), 2: (1, 0, 3, 2), 3: (3, 2, 1, 0), 4: (2, 3, 0, 1), 5: (0, 2, 1, 3), 6: (2, 0, 3, 1),
            7: (3, 1, 2, 0), 8: (1, 3, 0, 2)}


@dataclasses.dataclass
class Case:
    name: str  # of the file
    data: object  # the file's bytes, or a function that makes the file at a path
    colors: tuple = ()  # in the middle of each quarter; empty where the file is refused
    sentence: str = ""  # a part of the error's sentence
    pixels: int = 0  # of the picture that is read
    tolerance: int = 0
    may_be_shown: bool = False  # a file that is refused may also be shown, in any colours


def refused(name, data, sentence):
    return Case(name, data, (), sentence)


def ended(name, data):
    """Shown, or refused with a sentence: the library's version and the machine's speed decide. It comes to an end soon."""
    return Case(name, data, may_be_shown=True)


def shown(name, data, colors, pixels=64 * 64, tolerance=0):
    """`colors` is one colour for all quarters, or one for each."""
    return Case(name, data, colors if isinstance(colors[0], tuple) else (colors,) * 4, "", pixels, tolerance)


def xmp(inside, attributes=""):
    """A packet that describes its picture."""
    return (b'<?xpacket begin="" id="W5M0MpCehiHzreSzNTczkc9d"?><x:xmpmeta xmlns:x="adobe:ns:meta/">'
            b'<rdf:RDF xmlns:rdf="http://www.w3.org/1999/02/22-rdf-syntax-ns#"><rdf:Description rdf:about="" '
            b'xmlns:tiff="http://ns.adobe.com/tiff/1.0/" ' + attributes.encode() + b'>' + inside.encode() +
            b'</rdf:Description></rdf:RDF></x:xmpmeta><?xpacket end="w"?>')


def oriented_xmp(orientation):
    return xmp(f"<tiff:Orientation>{orientation}</tiff:Orientation>")


def quarters(side=64):
    image = Image.new("RGB", (side, side))
    half = side // 2
    for i, color in enumerate(QUARTERS):
        image.paste(color[:3], (i % 2 * half, i // 2 * half, (i % 2 + 1) * half, (i // 2 + 1) * half))
    return image


def middles(image):
    """The colours in the middle of the quarters, of a picture that Pillow reads and turns upright."""
    image = ImageOps.exif_transpose(image).convert("RGBA")
    width, height = image.size
    return tuple(image.getpixel((width * x // 4, height * y // 4)) for y in (1, 3) for x in (1, 3))


def chunk(kind, data, crc=None, length=None):
    crc = zlib.crc32(kind + data) if crc is None else crc
    return struct.pack(">I", len(data) if length is None else length) + kind + data + struct.pack(">I", crc)


def packed_zeros(count):
    """`count` zeros, compressed. They are never all in memory."""
    compressor = zlib.compressobj(9)
    block = bytes(1 << 20)
    parts = [compressor.compress(block[:min(len(block), count - at)]) for at in range(0, count, len(block))]
    return b"".join(parts) + compressor.flush()


SIGNATURE = b"\x89PNG\r\n\x1a\n"


def header(width, height, depth=8, kind=6, compression=0, filtering=0, interlace=0):
    return chunk(b"IHDR", struct.pack(">IIBBBBB", width, height, depth, kind, compression, filtering, interlace))


def rows(image):
    data = image.tobytes()
    stride = len(data) // image.height
    return zlib.compress(b"".join(b"\0" + data[at:at + stride] for at in range(0, len(data), stride)), 9)


def png(*before, image=None, between=b"", after=b""):
    """A PNG file of the quarters with more chunks before, between and after its data."""
    image = image or quarters()
    data = rows(image)
    half = len(data) // 2
    kind = {"RGB": 2, "RGBA": 6, "L": 0, "P": 3}[image.mode]
    return SIGNATURE + header(*image.size, 8, kind) + b"".join(before) + chunk(b"IDAT", data[:half]) + between + \
        chunk(b"IDAT", data[half:]) + after + chunk(b"IEND", b"")
