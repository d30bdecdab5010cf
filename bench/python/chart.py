"""Line charts on logarithmic axes as SVG, readable on light and on dark ground."""

import math
from xml.sax.saxutils import escape

PANEL = (400, 280)  # pixels
LEFT, RIGHT, TOP, BOTTOM = 62, 24, 34, 48
STYLE = """
text { font: 12px system-ui, sans-serif; fill: #6e7781 }
.title { font-weight: 600 }
.grid { stroke: #8c959f; stroke-opacity: .3 }
.measured { stroke: #0969da; stroke-width: 2; fill: none }
.point { fill: #0969da }
.guide { stroke: #bc4c00; stroke-width: 1.5; stroke-dasharray: 5 4; fill: none }
.guide-text { fill: #bc4c00 }
@media (prefers-color-scheme: dark) {
  text { fill: #9ea7b3 }
  .title { fill: #e6edf3 }
  .measured { stroke: #58a6ff }
  .point { fill: #58a6ff }
  .guide { stroke: #f0883e }
  .guide-text { fill: #f0883e }
}"""


class Axis:
    def __init__(self, values, ticks, start, length):
        low, high = min(values), max(values)
        # An axis reaches to the next tick where the values end between two ticks.
        self._low = math.log(max((tick for tick in ticks if tick <= low), default=low))
        self._high = math.log(min((tick for tick in ticks if tick >= high), default=high))
        self._start, self._length = start, length
        self.ticks = [tick for tick in ticks if self._low <= math.log(tick) + 1e-9 <= self._high + 2e-9]

    def __call__(self, value):
        return self._start + self._length * (math.log(value) - self._low) / (self._high - self._low)


def decades(values):
    """1, 2 and 5 times the powers of ten around some values; the powers alone where there are many of them."""
    low, high = math.floor(math.log10(min(values))), math.ceil(math.log10(max(values)))
    steps = (1,) if high - low > 3 else (1, 2, 5)
    return [step * 10**power for power in range(low, high + 1) for step in steps]


def _line(kind, points):
    return f'<polyline class="{kind}" points="{" ".join(f"{x:.1f},{y:.1f}" for x, y in points)}"/>'


def panel(title, x_name, x_ticks, measured, guide, guide_name):
    """One chart. `measured` and `guide` are lists of (x, y), both above 0."""
    width, height = PANEL
    levels = [y for _, y in measured + guide]
    x_axis = Axis([x for x, _ in measured], x_ticks, LEFT, width - LEFT - RIGHT)
    y_axis = Axis(levels, decades(levels), height - BOTTOM, TOP + BOTTOM - height)
    parts = [f'<text class="title" x="{LEFT}" y="18">{escape(title)}</text>',
             f'<text x="{(LEFT + width - RIGHT) / 2}" y="{height - 8}" text-anchor="middle">{escape(x_name)}</text>']
    for tick in y_axis.ticks:
        y = y_axis(tick)
        parts.append(f'<line class="grid" x1="{LEFT}" x2="{width - RIGHT}" y1="{y:.1f}" y2="{y:.1f}"/>')
        parts.append(f'<text x="{LEFT - 8}" y="{y + 4:.1f}" text-anchor="end">{tick:,.10g}</text>')
    for tick in x_axis.ticks:
        x = x_axis(tick)
        parts.append(f'<line class="grid" x1="{x:.1f}" x2="{x:.1f}" y1="{TOP}" y2="{height - BOTTOM}"/>')
        parts.append(f'<text x="{x:.1f}" y="{height - BOTTOM + 18}" text-anchor="middle">{tick:,}</text>')
    place = [(x_axis(x), y_axis(y)) for x, y in guide]
    parts.append(_line("guide", place))
    parts.append(f'<text class="guide-text" x="{LEFT + 8}" y="{TOP + 14}">{escape("– – " + guide_name)}</text>')
    place = [(x_axis(x), y_axis(y)) for x, y in measured]
    parts.append(_line("measured", place))
    parts += [f'<circle class="point" cx="{x:.1f}" cy="{y:.1f}" r="3.5"/>' for x, y in place]
    return "\n".join(parts)


def picture(description, panels):
    """The panels side by side, as an SVG document."""
    width, height = PANEL
    groups = "\n".join(f'<g transform="translate({i * width} 0)">\n{content}\n</g>' for i, content in enumerate(panels))
    return (f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width * len(panels)} {height}" '
            f'width="{width * len(panels)}" height="{height}" role="img" aria-label="{escape(description)}">\n'
            f"<title>{escape(description)}</title>\n<style>{STYLE}\n</style>\n{groups}\n</svg>\n")
