"""Themes whose pictures are squares of four shades of one colour, so that a picture of the screen says theme, size, hotspot
and which way up; the order of the shades says which of the theme's pointers it is."""
import os
import struct

#: Rows of the catalog.
RED = "bibata-modern-ice"
BLUE = "adwaita-cursors"
#: The user's own.
MINE = "Mine"
#: The channel that a theme's colour is in.
CHANNELS = {RED: 0, MINE: 1, BLUE: 2}
SHADES = (255, 215, 175, 135)
#: Pixels next to an edge that a drawing at another size may change.
SOFT = 4
ROLES = {"arrow": ("left_ptr", "default"), "text": ("xterm", "text"), "hand": ("pointer", "hand2")}


def shade(role, column, row, side):
    quarter = (2 * row >= side) * 2 + (2 * column >= side)
    return SHADES[(quarter + list(ROLES).index(role)) % len(SHADES)]


def hotspot(side):
    return side // 8


def colour(theme, value):
    pixel = [0, 0, 0]
    pixel[CHANNELS[theme]] = value
    return tuple(pixel)


def cursor_file(theme, role, sizes):
    head = struct.pack("<4sIII", b"Xcur", 16, 0x10000, len(sizes))
    position = 16 + 12 * len(sizes)
    table, chunks = b"", b""
    for side in sizes:
        table += struct.pack("<III", 0xFFFD0002, side, position + len(chunks))
        spot = hotspot(side)
        chunks += struct.pack("<IIIIIIIII", 36, 0xFFFD0002, side, 1, side, side, spot, spot, 0)
        for row in range(side):
            for column in range(side):
                red, green, blue = colour(theme, shade(role, column, row, side))
                chunks += struct.pack("<I", 255 << 24 | red << 16 | green << 8 | blue)
    return head + table + chunks


def write_theme(folder, theme, sizes):
    os.makedirs(folder)
    for role, names in ROLES.items():
        data = cursor_file(theme, role, sizes)
        for name in names:
            with open(os.path.join(folder, name), "wb") as file:
                file.write(data)


class Picture:
    """Of a part of the screen, in device pixels."""

    def __init__(self, width, height, pixels):
        self.width, self.height, self.pixels = width, height, pixels

    def at(self, column, row):
        start = (row * self.width + column) * 3
        return tuple(self.pixels[start:start + 3])

    def save(self, path):
        with open(path, "wb") as file:
            file.write(b"P6 %d %d 255\n" % (self.width, self.height) + self.pixels)

    def theme_at(self, column, row):
        """The theme whose colour is there; none when it is nobody's."""
        if not (0 <= column < self.width and 0 <= row < self.height):
            return None
        pixel = self.at(column, row)
        strong = [each for each, channel in CHANNELS.items() if pixel[channel] > 90 and sum(pixel) - pixel[channel] < 40]
        return strong[0] if strong else None

    def square(self, column, row):
        """(theme, left, top, width, height) of the square around a pixel; none where no theme's colour is."""
        theme = self.theme_at(column, row)
        if not theme:
            return None
        left, right, top, bottom = column, column, row, row
        while self.theme_at(left - 1, row) == theme:
            left -= 1
        while self.theme_at(right + 1, row) == theme:
            right += 1
        while self.theme_at(column, top - 1) == theme:
            top -= 1
        while self.theme_at(column, bottom + 1) == theme:
            bottom += 1
        return theme, left, top, right - left + 1, bottom - top + 1

    def fault(self, column, row, theme, role, side, drawn_anew=False):
        """Why this is not that pointer, `side` pixels large, with its hotspot at a pixel; empty when it is. `drawn_anew`:
        from pixels of another size, so that edges between two colours are soft."""
        seen = self.square(column, row)
        if not seen or seen[0] != theme:
            return f"expected {theme}, drawn {seen[0] if seen else self.at(column, row)}"
        soft = SOFT if drawn_anew else 0
        left, top, width, height = seen[1:]
        spot = side * hotspot(32) // 32
        # The compositor may round the place that it was given.
        if (max(abs(width - side), abs(height - side)) > soft or
                max(abs(column - spot - left), abs(row - spot - top)) > soft + 1):
            return f"expected {side}x{side} at {column - spot},{row - spot}, drawn {width}x{height} at {left},{top}"
        wrong, first = 0, None
        for y in range(height):
            for x in range(width):
                if min(x, y, width - 1 - x, height - 1 - y, abs(x - side / 2 + 0.5), abs(y - side / 2 + 0.5)) < soft:
                    continue
                expected, drawn = colour(theme, shade(role, x, y, side)), self.at(left + x, top + y)
                if any(abs(a - b) > (3 if soft else 0) for a, b in zip(expected, drawn)):
                    wrong, first = wrong + 1, first or f"{expected} at {x},{y}, drawn {drawn}"
        return f"{wrong} pixels differ, first {first}" if wrong else ""
