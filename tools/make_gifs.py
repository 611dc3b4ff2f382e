#!/usr/bin/env python3
"""Writes the GIF pictures of the sample resource module into the folder given as the only
argument. The build runs it, so the pictures are made the same way on every machine.

  still.gif      one frame, 24 x 16
  frames.gif     four frames of 32 x 24 in four colours, delays 20, 0, 40, 10 hundredths; its
                 loop extension asks for one repetition only
  busy.gif       a looping 16 x 16 "busy" indicator, eight frames of 10 hundredths
  slow.gif       two frames of 16 x 16 with delays 0 and 3000 hundredths (30 s)
  truncated.gif  frames.gif cut off in the middle of its first frame's picture data
  corrupt.gif    a valid header and colour table followed by a record type that does not exist
"""
import os
import struct
import sys

WHITE = (255, 255, 255)
BLACK = (0, 0, 0)


def lzw_codes(indices, min_size):
    """Yields (code, width) pairs of the GIF variant of LZW for a run of palette indices."""
    clear, end = 1 << min_size, (1 << min_size) + 1
    width = min_size + 1
    yield clear, width
    table = {(i,): i for i in range(clear)}
    next_code = end + 1
    prefix = ()
    for index in indices:
        candidate = prefix + (index,)
        if candidate in table:
            prefix = candidate
            continue
        yield table[prefix], width
        if next_code < 4095:
            table[candidate] = next_code
            next_code += 1
            # A decoder widens its codes once the next free code no longer fits.
            if next_code > (1 << width) and width < 12:
                width += 1
        else:
            yield clear, width
            table = {(i,): i for i in range(clear)}
            next_code = end + 1
            width = min_size + 1
        prefix = (index,)
    yield table[prefix], width
    # The decoder counts the last code as if it had added an entry before it reads the end code.
    if next_code + 1 > (1 << width) and width < 12:
        width += 1
    yield end, width


def lzw_data(indices, min_size):
    """The picture data of one frame: minimum code size, sub-blocks of at most 255 bytes, 0."""
    bits, count, packed = 0, 0, bytearray()
    for code, width in lzw_codes(indices, min_size):
        bits |= code << count
        count += width
        while count >= 8:
            packed.append(bits & 0xFF)
            bits >>= 8
            count -= 8
    if count:
        packed.append(bits & 0xFF)
    blocks = bytearray([min_size])
    for start in range(0, len(packed), 255):
        chunk = packed[start:start + 255]
        blocks += bytes([len(chunk)]) + chunk
    return bytes(blocks + b"\0")


def gif(width, height, frames, delays, loop=None):
    """frames: rows of (r, g, b) per frame; delays in hundredths of a second, one per frame.
    Returns the file bytes and the offset of the first frame's picture data."""
    palette = []
    for frame in frames:
        for row in frame:
            for colour in row:
                if colour not in palette:
                    palette.append(colour)
    depth = max(1, (len(palette) - 1).bit_length())
    assert depth <= 8, "at most 256 colours"
    palette += [BLACK] * ((1 << depth) - len(palette))
    out = bytearray(b"GIF89a")
    out += struct.pack("<HHBBB", width, height, 0x80 | (depth - 1) << 4 | (depth - 1), 0, 0)
    out += b"".join(bytes(colour) for colour in palette)
    if loop is not None:
        out += b"\x21\xff\x0bNETSCAPE2.0" + struct.pack("<BBHB", 3, 1, loop, 0)
    first_data = None
    for frame, delay in zip(frames, delays):
        out += b"\x21\xf9\x04" + struct.pack("<BHBB", 0, delay, 0, 0)
        out += b"\x2c" + struct.pack("<HHHHB", 0, 0, width, height, 0)
        if first_data is None:
            first_data = len(out)
        indices = [palette.index(colour) for row in frame for colour in row]
        out += lzw_data(indices, max(2, depth))
    out += b"\x3b"
    return bytes(out), first_data


def canvas(width, height, colour):
    return [[colour] * width for _ in range(height)]


def fill(pixels, left, top, right, bottom, colour):
    for y in range(top, bottom):
        for x in range(left, right):
            pixels[y][x] = colour


def still():
    """Yellow, with a blue square at (4, 4)-(12, 12) and a red band along the bottom."""
    pixels = canvas(24, 16, (255, 220, 0))
    fill(pixels, 4, 4, 12, 12, (30, 60, 170))
    fill(pixels, 0, 13, 24, 16, (200, 30, 30))
    return [pixels]


FRAME_COLOURS = [(220, 40, 40), (40, 170, 60), (40, 80, 220), (240, 150, 20)]


def four_frames():
    """Frame k is filled with its own colour and shows a white square that moves right with k."""
    frames = []
    for k, colour in enumerate(FRAME_COLOURS):
        pixels = canvas(32, 24, colour)
        fill(pixels, 2 + 7 * k, 9, 8 + 7 * k, 15, WHITE)
        frames.append(pixels)
    return frames


def busy():
    """Eight dots on a ring; the dark head moves clockwise one dot per frame, trailed by greys."""
    shades = [(40, 40, 40), (110, 110, 110), (170, 170, 170)]
    # Top left corners of the 2 x 2 dots, clockwise from the top.
    dots = [(7, 1), (11, 3), (13, 7), (11, 11), (7, 13), (3, 11), (1, 7), (3, 3)]
    frames = []
    for k in range(8):
        pixels = canvas(16, 16, WHITE)
        for dot, (x, y) in enumerate(dots):
            age = (k - dot) % 8
            colour = shades[age] if age < len(shades) else (220, 220, 220)
            fill(pixels, x, y, x + 2, y + 2, colour)
        frames.append(pixels)
    return frames


def slow():
    return [canvas(16, 16, (120, 40, 160)), canvas(16, 16, (20, 150, 150))]


def corrupt():
    header, _ = gif(8, 8, [canvas(8, 8, WHITE)], [0])
    # Signature, screen descriptor and the two-entry colour table, then an unknown record.
    return header[:13 + 6] + b"\x99\x00\x00\x00"


def main():
    folder = sys.argv[1]
    os.makedirs(folder, exist_ok=True)
    frames_gif, frames_data = gif(32, 24, four_frames(), [20, 0, 40, 10], loop=1)
    first_length = frames_gif[frames_data + 1]
    pictures = {
        "still.gif": gif(24, 16, still(), [0])[0],
        "frames.gif": frames_gif,
        "busy.gif": gif(16, 16, busy(), [10] * 8, loop=0)[0],
        "slow.gif": gif(16, 16, slow(), [0, 3000], loop=0)[0],
        "truncated.gif": frames_gif[:frames_data + 2 + first_length // 2],
        "corrupt.gif": corrupt(),
    }
    for name, data in pictures.items():
        with open(os.path.join(folder, name), "wb") as f:
            f.write(data)


if __name__ == "__main__":
    main()
