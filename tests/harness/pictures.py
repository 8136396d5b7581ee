"""Pictures of a screen, read pixel by pixel."""

import subprocess

# Two layers of it, of at most one step each way.
DITHERING = 4


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
        ppm = subprocess.run(
            ["/usr/bin/convert", path, "-depth", "8", "ppm:-"], check=True, stdout=subprocess.PIPE
        ).stdout
        return Picture(ppm, scale)

    def _pixel(self, column, row):
        start = (row * self._width + column) * 3
        return tuple(self._pixels[start : start + 3])

    def colour(self, x, y):
        """(red, green, blue), 0 to 255, at a point."""
        return self._pixel(
            int(self._origin[0] + x * self._scale), int(self._origin[1] + y * self._scale)
        )

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
