"""How well a program reduces pictures, in figures. Pictures of 1024 × 1024 pixels are reduced to 128 and 180.

Alias: the picture is the zone plate z(x, y) = 127.5 (1 + cos(π (x² + y²) / 1024)), with x and y in pixels from its
middle. At (x, y) it has the frequencies |x| / 1024 and |y| / 1024 cycles per pixel along the two axes: all that a
picture can hold. Where one of them lies above the target's Nyquist frequency, an ideally band-limited result is flat
except for the ripple at the border. The ideal result is known in full: cos(a + b) = cos a cos b − sin a sin b, so it is
enough to band-limit rows (their discrete cosine transform, cut after as many coefficients as the target has pixels).
The figure is the root mean square of the difference to the ideal result, in grey levels, over the pixels above the
Nyquist frequency.

Loss: the picture is a zone plate whose frequencies reach the target's Nyquist frequency only at the border. The figure
is the root mean square of the difference to the plate itself, in grey levels, over the pixels below half of that
frequency. It tells a filter that blurs from a good one: both have little alias.

Overshoot: the picture is an edge from level 64 to level 192. It leans by one pixel in eight rows, so it meets the
target's pixels at every phase. The figure is the most levels by which the result goes below 64 or above 192."""

import math

from PIL import Image

SIDE = 1024
TARGETS = (128, 180)
LOW, HIGH = 64, 192


def _phases(side, reach):
    """The phases of a row of a zone plate of `side` pixels. Frequencies go up to `reach` / 2 cycles over the row."""
    return [math.pi * reach * ((i + 0.5) / side - 0.5) ** 2 for i in range(side)]


def _plate(cosines, sines):
    """The levels of a zone plate, from the cosines and sines of its row's phases."""
    return [127.5 * (1 + cy * cx - sy * sx) for cy, sy in zip(cosines, sines) for cx, sx in zip(cosines, sines)]


def _levels(side, reach):
    phases = _phases(side, reach)
    return _plate([math.cos(p) for p in phases], [math.sin(p) for p in phases])


def zone_plate(reach=SIDE):
    """A zone plate of SIDE × SIDE pixels."""
    picture = Image.new("L", (SIDE, SIDE))
    picture.putdata([round(level) for level in _levels(SIDE, reach)])
    return picture.convert("RGB")


def edge():
    picture = Image.new("L", (SIDE, SIDE), LOW)
    picture.putdata([HIGH if x + 0.5 > SIDE / 2 + (y - SIDE / 2) / 8 else LOW for y in range(SIDE)
                     for x in range(SIDE)])
    return picture.convert("RGB")


def _band_limited(samples, target):
    """The row without the frequencies that a row of `target` samples can't hold, sampled at that row's places."""
    count = len(samples)
    turn = [math.cos(math.pi * i / (2 * count)) for i in range(4 * count)]
    coefficients = [2 / count * sum(sample * turn[(2 * i + 1) * k % (4 * count)] for i, sample in enumerate(samples))
                    for k in range(target)]
    coefficients[0] /= 2
    return [sum(coefficient * math.cos(math.pi * k * (j + 0.5) / target)
                for k, coefficient in enumerate(coefficients)) for j in range(target)]


def _difference(result, wanted, counts):
    """The root mean square of the difference. A pixel counts where `counts` is true for its distance from the middle.
    The distance is the larger one of the two axes; the border has distance 1."""
    levels = result.convert("RGB").getchannel("G").getdata()
    places = [abs(2 * (i + 0.5) / result.width - 1) for i in range(result.width)]
    distances = [max(x, y) for y in places for x in places]
    squares = [(level - best) ** 2 for level, best, distance in zip(levels, wanted, distances, strict=True)
               if counts(distance)]
    return math.sqrt(sum(squares) / len(squares))


def alias(result):
    """The figure of zone_plate()'s reduction, in grey levels."""
    phases = _phases(SIDE, SIDE)
    ideal = _plate(_band_limited([math.cos(p) for p in phases], result.width),
                   _band_limited([math.sin(p) for p in phases], result.width))
    nyquist = result.width / SIDE
    return _difference(result, ideal, lambda distance: distance > nyquist)


def loss(result):
    """The figure of the reduction of zone_plate(result.width), in grey levels."""
    return _difference(result, _levels(result.width, result.width), lambda distance: distance < 0.5)


def overshoot(result):
    """The figure of edge()'s reduction, in grey levels."""
    lowest, highest = result.convert("RGB").getchannel("G").getextrema()
    return max(LOW - lowest, highest - HIGH, 0)
