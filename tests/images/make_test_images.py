#!/usr/bin/env python3
"""Writes the readers' test files: one test picture (picture.pam, the reference) and the
same picture written by ImageMagick's convert as BMP (8 and 24 bits) and TGA (raw and
run-length, 24 and 32 bits, each of the four origins).

ImageMagick writes BMP bottom-up only; the top-down BMP files are its bottom-up files
with the rows reversed and the height negated, nothing else changed.
ImageMagick's TGA writer (6.9) stores its raster top row first, left to right, whatever
-orient says, and only puts the orientation into the descriptor. Each TGA file therefore
gets the picture flipped (-flip, -flop) so that the origin it declares shows the picture.
Usage: make_test_images.py OUTPUT_FOLDER
"""
import os
import struct
import subprocess
import sys

W, H = 37, 23


def picture():
    """RGBA rows, top row first. At most 216 colours, so 8-bit files stay lossless; a
    band of one colour gives run-length packets; alpha covers 0 and 255."""
    rows = []
    for y in range(H):
        row = []
        for x in range(W):
            if 9 <= y <= 11:
                r, g, b = 51, 204, 102
            else:
                r = (x * 7 % 6) * 51
                g = ((y * 5 + x) % 6) * 51
                b = ((x + y) * 3 % 6) * 51
            a = (x * 29 + y * 13) % 256 if (x + y) % 5 else (0 if x % 2 else 255)
            row.append((r, g, b, a))
        rows.append(row)
    return rows


def write_pam(path, rows):
    with open(path, "wb") as f:
        f.write(b"P7\nWIDTH %d\nHEIGHT %d\nDEPTH 4\nMAXVAL 255\nTUPLTYPE RGB_ALPHA\nENDHDR\n" % (W, H))
        for row in rows:
            for px in row:
                f.write(bytes(px))


def top_down(src, dst):
    data = open(src, "rb").read()
    info = 14
    header_size, width, height = struct.unpack_from("<IiI", data, info)
    bits = struct.unpack_from("<H", data, info + 14)[0]
    off = struct.unpack_from("<I", data, 10)[0]
    row = (width * bits // 8 + 3) & ~3
    pixels = data[off:off + row * height]
    rows = [pixels[i * row:(i + 1) * row] for i in range(height)]
    out = bytearray(data[:off]) + b"".join(reversed(rows)) + data[off + row * height:]
    struct.pack_into("<i", out, info + 8, -height)
    open(dst, "wb").write(out)


def convert(*args):
    subprocess.run(["convert", *args], check=True)


def main():
    out = sys.argv[1]
    os.makedirs(out, exist_ok=True)
    pam = os.path.join(out, "picture.pam")
    write_pam(pam, picture())
    p = lambda name: os.path.join(out, name)
    convert(pam, "-alpha", "off", "-type", "TrueColor", "-compress", "None", "BMP3:" + p("bmp24.bmp"))
    convert(pam, "-alpha", "off", "-type", "Palette", "-compress", "None", "BMP3:" + p("bmp8.bmp"))
    top_down(p("bmp24.bmp"), p("bmp24_topdown.bmp"))
    top_down(p("bmp8.bmp"), p("bmp8_topdown.bmp"))
    for bits, kind in ((24, ["-alpha", "off", "-type", "TrueColor"]),
                       (32, ["-type", "TrueColorAlpha"])):
        for rle in (False, True):
            for orient, flips in (("TopLeft", []), ("TopRight", ["-flop"]),
                                  ("BottomLeft", ["-flip"]), ("BottomRight", ["-flip", "-flop"])):
                name = "tga%d_%s_%s.tga" % (bits, "rle" if rle else "raw", orient)
                convert(pam, *flips, *kind, *(["-compress", "RLE"] if rle else []),
                        "-orient", orient, "TGA:" + p(name))
    open(p("stamp"), "w").write("done\n")


if __name__ == "__main__":
    main()
