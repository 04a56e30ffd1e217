"""Draws growth as curves, both axes logarithmic, into an SVG file."""
import math

WIDTH, HEIGHT = 560, 340
LEFT, RIGHT, TOP, BOTTOM = 64, 28, 40, 52
COLOURS = ('#0b62a4', '#c2410c')
NAMED = {'&': '&amp;', '<': '&lt;', '>': '&gt;'}


def escaped(text):
    return ''.join(NAMED.get(c, c) for c in text)


def text(x, y, words, more=''):
    return f'<text x="{x:.1f}" y="{y:.1f}" {more}>{escaped(words)}</text>'


class Axis:
    """From values to places between `begin` and `end`."""

    def __init__(self, values, begin, end):
        self.low, self.high = math.log10(min(values)), math.log10(max(values))
        if self.high - self.low < 0.5:  # nearly flat: a wider range shows it so
            self.low, self.high = self.low - 0.5, self.high + 0.5
        self.begin, self.end = begin, end

    def place(self, value):
        share = (math.log10(value) - self.low) / (self.high - self.low)
        return self.begin + share * (self.end - self.begin)

    def ticks(self):
        """1, 2 and 5 of each power of ten; powers alone where there are many."""
        steps = (1, 2, 5) if self.high - self.low < 2.5 else (1,)
        powers = range(math.floor(self.low), math.ceil(self.high) + 1)
        ticks = [step * 10.0 ** power for power in powers for step in steps]
        return [tick for tick in ticks if self.low <= math.log10(tick) + 1e-9 <= self.high + 2e-9]


def grid(across, up):
    for tick in across.ticks():
        x = across.place(tick)
        yield f'<path class="grid" d="M{x:.1f} {TOP}V{HEIGHT - BOTTOM}"/>'
        yield text(x, HEIGHT - BOTTOM + 16, f'{tick:,.10g}', 'text-anchor="middle"')
    for tick in up.ticks():
        y = up.place(tick)
        yield f'<path class="grid" d="M{LEFT} {y:.1f}H{WIDTH - RIGHT}"/>'
        yield text(LEFT - 6, y + 4, f'{tick:,.10g}', 'text-anchor="end"')


def curve(index, label, points, across, up):
    colour = COLOURS[index % len(COLOURS)]
    placed = [(across.place(x), up.place(y)) for x, y in points]
    path = 'L'.join(f'{x:.1f} {y:.1f}' for x, y in placed)
    yield f'<path d="M{path}" fill="none" stroke="{colour}" stroke-width="2"/>'
    for x, y in placed:
        yield f'<circle cx="{x:.1f}" cy="{y:.1f}" r="3" fill="{colour}"/>'
    yield text(LEFT + 8, TOP + 16 + 16 * index, label, f'style="fill:{colour}"')


def chart(file, title, x_name, y_name, series):
    """`series`: label to points (x, y), all above 0."""
    points = [point for each in series.values() for point in each]
    across = Axis([x for x, _ in points], LEFT, WIDTH - RIGHT)
    up = Axis([y for _, y in points], HEIGHT - BOTTOM, TOP)
    parts = [f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {HEIGHT}">',
             '<style>text{font:12px sans-serif;fill:#333}.grid{stroke:#ddd}</style>',
             f'<rect width="{WIDTH}" height="{HEIGHT}" fill="#fff"/>',
             text(LEFT, 22, title, 'style="font-weight:bold"'),
             text(WIDTH - RIGHT, HEIGHT - 14, x_name, 'text-anchor="end"'),
             text(8, TOP - 6, y_name), *grid(across, up)]
    for index, (label, each) in enumerate(series.items()):
        parts += curve(index, label, each, across, up)
    file.write_text('\n'.join(parts) + '\n</svg>\n')
