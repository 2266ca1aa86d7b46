#!/usr/bin/env python3
"""Draws the launcher's icon (a mountain lake at dusk) and writes it as a 32x32 and a
16x16 32-bit ICO file. Usage: make_icon.py OUTPUT.ico"""
import math
import struct
import sys


def pixel(x, y, n):
    """BGRA colour of pixel (x, y) of an n x n icon, y counted from the top."""
    u, v = (x + 0.5) / n, (y + 0.5) / n
    d = math.hypot(u - 0.5, v - 0.5)
    if d > 0.48:
        return (0, 0, 0, 0)
    alpha = 255 if d < 0.46 else int(255 * (0.48 - d) / 0.02)
    ridge = 0.55 - 0.25 * max(0.0, 1 - abs(u - 0.4) * 3.2) - 0.12 * max(0.0, 1 - abs(u - 0.75) * 5)
    if v < ridge:  # evening sky
        t = v / ridge
        r, g, b = int(250 - 80 * t), int(170 - 60 * t), int(90 + 90 * t)
    elif v < 0.62:  # mountains
        r, g, b = 60, 70, 95
    else:  # the lake, with a light stripe
        t = (v - 0.62) / 0.38
        r, g, b = int(40 + 20 * t), int(90 + 30 * t), int(150 + 40 * t)
        if abs(v - 0.72) < 0.025 and abs(u - 0.5) < 0.2:
            r, g, b = 230, 200, 150
    return (b, g, r, alpha)


def image(n):
    rows = []
    for y in reversed(range(n)):  # bottom-up rows
        rows.append(b"".join(bytes(pixel(x, y, n)) for x in range(n)))
    xor = b"".join(rows)
    mask_row = ((n + 31) // 32) * 4
    and_mask = bytes(mask_row * n)
    header = struct.pack("<IiiHHIIiiII", 40, n, 2 * n, 1, 32, 0, len(xor) + len(and_mask), 0, 0, 0, 0)
    return header + xor + and_mask


def main():
    sizes = [32, 16]
    images = [image(n) for n in sizes]
    out = struct.pack("<HHH", 0, 1, len(images))
    offset = 6 + 16 * len(images)
    for n, data in zip(sizes, images):
        out += struct.pack("<BBBBHHII", n, n, 0, 0, 1, 32, len(data), offset)
        offset += len(data)
    with open(sys.argv[1], "wb") as f:
        f.write(out + b"".join(images))


if __name__ == "__main__":
    main()
