#!/usr/bin/env python3
"""Writes the pixel art of the library's bitmaps and of the sample resource module as 24-bit BMP
files. The outputs are committed; run this again only to change a picture."""
import os
import struct

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
GREY = (192, 192, 192)      # light grey 0xC0C0C0: the transparent background of the pictures
BLACK = (0, 0, 0)
WHITE = (255, 255, 255)
DARK = (128, 128, 128)
RED = (200, 30, 30)
BLUE = (30, 60, 170)


def write_bmp(path, pixels):
    """pixels: rows top to bottom of (r, g, b). Written with 8 bits per pixel and a colour table,
    so that loading with LR_LOADTRANSPARENT and LR_LOADMAP3DCOLORS can remap the greys."""
    height, width = len(pixels), len(pixels[0])
    palette = []
    for row in pixels:
        for colour in row:
            if colour not in palette:
                palette.append(colour)
    assert len(palette) <= 256, path
    stride = (width + 3) & ~3
    data = bytearray()
    for row in reversed(pixels):
        line = bytearray(palette.index(colour) for colour in row)
        line += b"\0" * (stride - len(line))
        data += line
    table = b"".join(bytes((b, g, r, 0)) for r, g, b in palette)
    offset = 14 + 40 + len(table)
    header = struct.pack("<2sIHHI", b"BM", offset + len(data), 0, 0, offset)
    info = struct.pack("<IiiHHIIiiII", 40, width, height, 1, 8, 0, len(data), 2835, 2835,
                       len(palette), 0)
    with open(path, "wb") as f:
        f.write(header + info + table + data)


def canvas(width, height, colour=GREY):
    return [[colour] * width for _ in range(height)]


def triangle(size, direction, colour=BLACK):
    """A solid arrow head in a size x size square on grey, pointing up/down/left/right."""
    pixels = canvas(size, size)
    half = size // 2
    for step in range(half):
        lo, hi = half - step, half + step
        for k in range(lo, hi + 1):
            line = size // 4 + step
            if 0 <= k < size and 0 <= line < size:
                if direction == "up":
                    pixels[line][k] = colour
                elif direction == "down":
                    pixels[size - 1 - line][k] = colour
                elif direction == "left":
                    pixels[k][line] = colour
                else:
                    pixels[k][size - 1 - line] = colour
    return pixels


def sort_arrow(up):
    """Header sort arrow: a 7 x 4 triangle in shadow grey with a 2-pixel margin, on grey."""
    pixels = canvas(11, 8)
    for step in range(4):
        y = 2 + (3 - step if up else step)
        for x in range(2 + step, 9 - step):
            pixels[y][x] = DARK
    return pixels


def calendar_glyph():
    pixels = canvas(16, 16)
    for y in range(2, 15):
        for x in range(1, 15):
            pixels[y][x] = WHITE
    for x in range(1, 15):
        for y in (2, 3, 4):
            pixels[y][x] = RED
        pixels[14][x] = BLACK
    for y in range(2, 15):
        pixels[y][1] = BLACK
        pixels[y][14] = BLACK
    for x in (4, 11):  # rings
        pixels[1][x] = DARK
        pixels[2][x] = DARK
    for y in (7, 10, 12):
        for x in range(3, 13, 3):
            pixels[y][x] = BLUE
            pixels[y][x + 1] = BLUE
    return pixels


def size_grip():
    """13 x 13 grip: three diagonal ridges in the lower right corner."""
    pixels = canvas(13, 13)
    for offset in (0, 4, 8):
        for i in range(13 - offset):
            x, y = offset + i, 12 - i
            if 0 <= x < 13 and 0 <= y < 13:
                pixels[y][x] = WHITE
                if x + 1 < 13:
                    pixels[y][x + 1] = DARK
                if x + 2 < 13:
                    pixels[y][x + 2] = DARK
    return pixels


def anchor_marker():
    """5 x 9 marker drawn in a list box's right strip."""
    pixels = canvas(5, 9)
    for y in range(9):
        for x in range(5):
            if abs(y - 4) <= x:
                pixels[y][x] = BLUE
    return pixels


def delete_format():
    """16 x 16 eraser cross for the delete-format button."""
    pixels = canvas(16, 16)
    for i in range(3, 13):
        for d in (0, 1):
            pixels[i][i + d - 1 if i + d - 1 < 16 else 15] = RED
            pixels[i][16 - i - d] = RED
    return pixels


def tool_glyph(kind):
    pixels = canvas(16, 16)
    if kind == "save":
        for y in range(2, 14):
            for x in range(2, 14):
                pixels[y][x] = BLUE
        for y in range(3, 7):
            for x in range(4, 12):
                pixels[y][x] = WHITE
    elif kind == "print":
        for y in range(6, 12):
            for x in range(1, 15):
                pixels[y][x] = DARK
        for y in range(2, 6):
            for x in range(4, 12):
                pixels[y][x] = WHITE
        for y in range(10, 15):
            for x in range(4, 12):
                pixels[y][x] = WHITE
    elif kind == "search":
        for y in range(16):
            for x in range(16):
                if 9 <= (x - 6) ** 2 + (y - 6) ** 2 <= 20:
                    pixels[y][x] = BLACK
        for i in range(9, 14):
            pixels[i][i] = BLACK
            pixels[i][i + 1 if i < 15 else 15] = BLACK
    else:  # "new": a sheet with a folded corner
        for y in range(1, 15):
            for x in range(3, 13):
                pixels[y][x] = WHITE
        for y in range(1, 15):
            pixels[y][3] = BLACK
            pixels[y][12] = BLACK
        for x in range(3, 13):
            pixels[1][x] = BLACK
            pixels[14][x] = BLACK
    return pixels


HAND = [
    "     XX         ",
    "    X..X        ",
    "    X..X        ",
    "    X..X        ",
    "    X..XXX      ",
    "    X..X..XXX   ",
    " XX X..X..X..XX ",
    "X..XX.........X.",
    "X...X.........X ",
    " X............X ",
    "  X...........X ",
    "  X..........X  ",
    "   X.........X  ",
    "    X.......X   ",
    "     X......X   ",
    "     XXXXXXXX   ",
]


def write_cursor(path, art, hotspot):
    """A 32 x 32 monochrome cursor: 'X' black, '.' white, blank transparent."""
    size = 32
    xor_rows, and_rows = [], []
    for y in range(size):
        line = art[y] if y < len(art) else ""
        xor_bits = and_bits = 0
        for x in range(size):
            c = line[x] if x < len(line) else " "
            xor_bits = (xor_bits << 1) | (1 if c == "." else 0)
            and_bits = (and_bits << 1) | (1 if c == " " else 0)
        xor_rows.append(struct.pack(">I", xor_bits))
        and_rows.append(struct.pack(">I", and_bits))
    info = struct.pack("<IiiHHIIiiII", 40, size, size * 2, 1, 1, 0, 0, 0, 0, 2, 0)
    palette = bytes((0, 0, 0, 0, 255, 255, 255, 0))
    image = info + palette + b"".join(reversed(xor_rows)) + b"".join(reversed(and_rows))
    directory = struct.pack("<HHH", 0, 2, 1)
    entry = struct.pack("<BBBBHHII", size, size, 0, 0, hotspot[0], hotspot[1], len(image), 6 + 16)
    with open(path, "wb") as f:
        f.write(directory + entry + image)


def main():
    res = os.path.join(ROOT, "res")
    # Blue rather than black, so that the grey copy drawn for a disabled arrow differs from it.
    for name, direction in (("btaob", "up"), ("btaun", "down"), ("btali", "left"), ("btare", "right")):
        write_bmp(os.path.join(res, name + ".bmp"), triangle(9, direction, BLUE))
    write_bmp(os.path.join(res, "sort_up.bmp"), sort_arrow(True))
    write_bmp(os.path.join(res, "sort_down.bmp"), sort_arrow(False))
    write_bmp(os.path.join(res, "calendar.bmp"), calendar_glyph())
    write_bmp(os.path.join(res, "grip.bmp"), size_grip())
    write_bmp(os.path.join(res, "anchor.bmp"), anchor_marker())
    for kind in ("new", "save", "print", "search"):
        write_bmp(os.path.join(res, "tool_%s.bmp" % kind), tool_glyph(kind))
    samples = os.path.join(ROOT, "samples", "resources")
    write_bmp(os.path.join(samples, "btndelfmt.bmp"), delete_format())
    write_cursor(os.path.join(samples, "hand.cur"), HAND, (5, 0))
    write_listbox_pictures()


# Multi-column list box: row pictures 101-107 (by the items' type letters) and the drag cursors.
GREEN = (40, 140, 60)
YELLOW = (230, 190, 40)
SKIN = (240, 200, 160)


def fill(pixels, left, top, right, bottom, colour):
    """Fills the pixels left <= x < right, top <= y < bottom."""
    for y in range(top, bottom):
        for x in range(left, right):
            pixels[y][x] = colour


def outline(pixels, left, top, right, bottom, colour=BLACK):
    for x in range(left, right):
        pixels[top][x] = pixels[bottom - 1][x] = colour
    for y in range(top, bottom):
        pixels[y][left] = pixels[y][right - 1] = colour


def row_picture(kind):
    """16 x 16 pictures of the list box rows."""
    pixels = canvas(16, 16)
    if kind == "company":  # an office block with windows
        fill(pixels, 3, 1, 13, 15, BLUE)
        outline(pixels, 3, 1, 13, 15)
        for y in (3, 6, 9):
            for x in (5, 9):
                fill(pixels, x, y, x + 2, y + 2, YELLOW)
        fill(pixels, 7, 12, 9, 15, BLACK)
    elif kind == "person":  # head and shoulders
        fill(pixels, 6, 2, 10, 7, SKIN)
        outline(pixels, 6, 2, 10, 7)
        fill(pixels, 3, 8, 13, 15, GREEN)
        outline(pixels, 3, 8, 13, 15)
    elif kind == "branch":  # a small house
        for step in range(6):
            for x in range(7 - step, 9 + step):
                pixels[2 + step][x] = RED
        fill(pixels, 3, 8, 13, 15, WHITE)
        outline(pixels, 3, 8, 13, 15)
        fill(pixels, 7, 11, 9, 15, DARK)
    elif kind == "phone":  # a handset
        fill(pixels, 2, 3, 14, 6, BLACK)
        fill(pixels, 2, 6, 5, 9, BLACK)
        fill(pixels, 11, 6, 14, 9, BLACK)
        fill(pixels, 4, 9, 12, 14, DARK)
        outline(pixels, 4, 9, 12, 14)
        for x in (6, 8, 10):
            pixels[11][x] = WHITE
    elif kind == "document":  # a sheet with lines and a folded corner
        fill(pixels, 3, 1, 13, 15, WHITE)
        outline(pixels, 3, 1, 13, 15)
        for y in (5, 7, 9, 11):
            fill(pixels, 5, y, 11, y + 1, DARK)
        fill(pixels, 10, 1, 13, 4, GREY)
        pixels[1][10] = pixels[2][10] = pixels[3][10] = pixels[3][11] = pixels[3][12] = BLACK
    elif kind == "place":  # a location pin
        for y in range(1, 10):
            for x in range(3, 13):
                if (x - 7.5) ** 2 + (y - 5) ** 2 <= 20:
                    pixels[y][x] = RED
        fill(pixels, 6, 4, 10, 7, WHITE)
        for y in range(10, 15):
            half = (15 - y) // 2
            fill(pixels, 8 - half - 1, y, 8 + half + 1, y + 1, RED)
    else:  # "card": any other type
        fill(pixels, 1, 3, 15, 13, WHITE)
        outline(pixels, 1, 3, 15, 13)
        fill(pixels, 3, 5, 7, 10, DARK)
        for y in (6, 8):
            fill(pixels, 8, y, 13, y + 1, BLUE)
    return pixels


# Drag cursors of the list box: moving a row, no place to drop it, and moving a row between two
# others of a plain list box.
MOVE = [
    "X               ",
    "XX              ",
    "X.X             ",
    "X..X            ",
    "X...X           ",
    "X....X          ",
    "X.....X         ",
    "X......X        ",
    "X.......X       ",
    "X....XXXXX      ",
    "X..X..X         ",
    "X.X X..X        ",
    "XX  X..X        ",
    "     X..X XXXXXX",
    "     X..X X....X",
    "      XX  X....X",
    "          X....X",
    "          X....X",
    "          XXXXXX",
]

def nofeld_art():
    """A 20 x 20 ring crossed by a bar: white with black borders."""
    art = []
    for y in range(20):
        line = ""
        for x in range(20):
            d = ((x - 9.5) ** 2 + (y - 9.5) ** 2) ** 0.5
            bar = abs(x - y)
            if 7.2 <= d <= 8.8 or (d < 7.2 and bar <= 1):
                line += "."
            elif 6.2 <= d <= 9.8 or (d < 7.2 and bar == 2):
                line += "X"
            else:
                line += " "
        art.append(line)
    return art


NOFELD = nofeld_art()

MOVECUR = [
    "       X        ",
    "      X.X       ",
    "     X...X      ",
    "    X.....X     ",
    "    XXX.XXX     ",
    "      X.X       ",
    "XXXXXXX.XXXXXXX ",
    "X.............X ",
    "XXXXXXX.XXXXXXX ",
    "      X.X       ",
    "    XXX.XXX     ",
    "    X.....X     ",
    "     X...X      ",
    "      X.X       ",
    "       X        ",
]


def write_listbox_pictures():
    res = os.path.join(ROOT, "res")
    kinds = {101: "company", 102: "card", 103: "person", 104: "branch", 105: "phone",
             106: "document", 107: "place"}
    for number, kind in kinds.items():
        write_bmp(os.path.join(res, "lb%d_%s.bmp" % (number, kind)), row_picture(kind))
    write_cursor(os.path.join(res, "move.cur"), MOVE, (0, 0))
    write_cursor(os.path.join(res, "nofeld.cur"), NOFELD, (10, 10))
    write_cursor(os.path.join(res, "movecur.cur"), MOVECUR, (7, 7))



if __name__ == "__main__":
    main()
