"""Pictures of a screen, read pixel by pixel."""

import collections
import subprocess

# Two layers of it, of at most one step each way.
DITHERING = 4
# What the desktop below a lock is painted with: nothing of it may be seen.
DESKTOP = b"\xff\x00\xff"


def has_colour(pixels, colour):
    """Whether any of the pixels, three bytes each, has exactly this colour."""
    start = pixels.find(colour)
    while start >= 0 and start % 3 != 0:
        start = pixels.find(colour, start + 1)
    return start >= 0


def brightness(picture):
    """The mean of all that a PPM has in it, from 0 to 255. A prompt makes the lock around it much darker."""
    return sum(picture) / len(picture)


def ppm(path):
    """A picture of any kind, as a PPM."""
    return subprocess.run(
        ["/usr/bin/convert", path, "-depth", "8", "ppm:-"], check=True, stdout=subprocess.PIPE
    ).stdout


class Picture:
    """Pixels of a PPM, asked for in points when the picture was taken at a scale."""

    def __init__(self, ppm, scale=1.0, origin=(0, 0)):
        header, self._width, self._height = ppm.split(b"\n", 3), 0, 0
        if header[0] != b"P6":
            raise ValueError("not a picture of this kind")
        self._width, self._height = map(int, header[1].split())
        self._pixels = header[3]
        self._scale = scale
        self._origin = origin

    @staticmethod
    def read(path, scale=1.0):
        return Picture(ppm(path), scale)

    @property
    def size(self):
        """Width and height in pixels."""
        return self._width, self._height

    def differs(self, other):
        """Whether any pixel is another than in a picture of the same size."""
        return self._pixels != other._pixels

    def _pixel(self, column, row):
        start = (row * self._width + column) * 3
        return tuple(self._pixels[start : start + 3])

    def colour(self, x, y):
        """(red, green, blue), 0 to 255, at a point."""
        return self._pixel(
            int(self._origin[0] + x * self._scale), int(self._origin[1] + y * self._scale)
        )

    def has(self, colour):
        """Whether any pixel has exactly this colour, as three bytes."""
        return has_colour(self._pixels, colour)

    def surface_colour(self, x, y, radius=2):
        """The colour at a point; where its surroundings are even but for dithering, theirs in the mean."""
        column, row = int(self._origin[0] + x * self._scale), int(self._origin[1] + y * self._scale)
        pixels = [
            self._pixel(column + right, row + down)
            for right in range(-radius, radius + 1)
            for down in range(-radius, radius + 1)
        ]
        channels = list(zip(*pixels))
        if max(max(channel) - min(channel) for channel in channels) > DITHERING:
            return self.colour(x, y)
        return tuple(sum(channel) / len(channel) for channel in channels)

    def ink(self, left, top, right, bottom, brightness):
        """The box in points around what is at least so bright (0 to 255) inside an area; None if nothing is."""
        columns, rows = [], []
        for row in range(int(self._origin[1] + top * self._scale), int(self._origin[1] + bottom * self._scale)):
            for column in range(
                int(self._origin[0] + left * self._scale), int(self._origin[0] + right * self._scale)
            ):
                if max(self._pixel(column, row)) >= brightness:
                    columns.append(column)
                    rows.append(row)
        if not rows:
            return None

        def points(value, axis):
            return (value - self._origin[axis]) / self._scale

        return (
            points(min(columns), 0), points(min(rows), 1),
            points(max(columns) + 1, 0), points(max(rows) + 1, 1),
        )

    def strongest(self, left, top, right, bottom):
        """The colour inside an area, in points, that differs most from the one in its upper left corner: that of a
        text or sign, where its strokes are wide enough for a pixel of their own."""
        ground = self.colour(left, top)
        pixels = {
            self._pixel(column, row)
            for row in range(int(self._origin[1] + top * self._scale), int(self._origin[1] + bottom * self._scale))
            for column in range(
                int(self._origin[0] + left * self._scale), int(self._origin[0] + right * self._scale)
            )
        }
        return max(pixels, key=lambda pixel: sum(abs(a - b) for a, b in zip(pixel, ground)))

    def texts(self, box, points):
        """The pieces of writing in a box of the screen's pixels: their boxes and how they stand out from what
        they are written on, as a contrast. `points` is how many pixels a point has. Signs that are as high as
        they are wide are no writing."""
        left, top, right, bottom = box
        rows = [[self._pixel(x, y) for x in range(left, right)] for y in range(top, bottom)]
        counts = collections.Counter(tuple(value // 8 for value in pixel) for row in rows for pixel in row)
        common = counts.most_common(1)[0][0]
        ground = tuple(value * 8 + 4 for value in common)
        ink = [[max(abs(a - b) for a, b in zip(pixel, ground)) > FAINTEST for pixel in row] for row in rows]
        whole = (0, 0, right - left, bottom - top)
        for column in _runs(ink, whole, 0, 6 * points):
            for line in _runs(ink, column, 1, points):
                for piece in _runs(ink, line, 0, (line[3] - line[1]) // 2):
                    width, height = piece[2] - piece[0], piece[3] - piece[1]
                    if width > 1.2 * height and height > 3 * points:
                        yield _moved(piece, left, top), _contrast(rows, ink, piece)


# How much less than this a channel differs from the ground is no ink: grounds are not quite even.
FAINTEST = 26


def _moved(box, right, down):
    return box[0] + right, box[1] + down, box[2] + right, box[3] + down


def _runs(ink, box, axis, gap):
    """The parts of a box between empty columns (axis 0) or lines (axis 1) that are at least so many, as boxes
    without an empty edge along that axis."""
    left, top, right, bottom = box
    if axis == 0:
        filled = [x for x in range(left, right) if any(ink[y][x] for y in range(top, bottom))]
    else:
        filled = [y for y in range(top, bottom) if any(ink[y][left:right])]
    start = 0
    for index in range(1, len(filled) + 1):
        if index == len(filled) or filled[index] - filled[index - 1] > max(gap, 1):
            first, last = filled[start], filled[index - 1] + 1
            yield (first, top, last, bottom) if axis == 0 else (left, first, right, last)
            start = index


def _contrast(rows, ink, box):
    """That of the writing's strongest pixel against the mean of the ground in its box."""
    left, top, right, bottom = box
    places = [(x, y) for y in range(top, bottom) for x in range(left, right)]
    ground = [rows[y][x] for x, y in places if not ink[y][x]] or [rows[top][left]]
    mean = tuple(sum(channel) / len(channel) for channel in zip(*ground))
    return max(contrast(rows[y][x], mean) for x, y in places if ink[y][x])


def contrast(first, second):
    """The contrast ratio of two colours as the Web Content Accessibility Guidelines reckon it, 1 to 21."""
    brighter, darker = sorted((_luminance(first), _luminance(second)), reverse=True)
    return (brighter + 0.05) / (darker + 0.05)


def _luminance(colour):
    parts = [value / 255 for value in colour]
    linear = [part / 12.92 if part <= 0.04045 else ((part + 0.055) / 1.055) ** 2.4 for part in parts]
    return 0.2126 * linear[0] + 0.7152 * linear[1] + 0.0722 * linear[2]
