#!/usr/bin/env python3
"""Compiles a setup library's text file (see product/VokSetup/VokSetup.strings) into a
C++ table of {number, text} sorted by number. Usage: make_strings.py IN.strings OUT.inc"""
import re
import sys


def parse(path):
    texts = {}
    with open(path, encoding="utf-8") as f:
        for lineno, line in enumerate(f, 1):
            line = line.rstrip("\n")
            if not line.strip() or line.lstrip().startswith("#"):
                continue
            m = re.match(r"\s*(0[xX][0-9A-Fa-f]{1,4})[ \t]+(.*)$", line)
            if not m:
                sys.exit(f"{path}:{lineno}: expected a hexadecimal number and a text")
            number = int(m.group(1), 16)
            if number in texts:
                sys.exit(f"{path}:{lineno}: number {m.group(1)} appears twice")
            text = m.group(2).replace("\\\\", "\0").replace("\\n", "\n").replace("\0", "\\")
            texts[number] = text
    return texts


def c_literal(text):
    out = '"'
    for byte in text.encode("cp1252"):
        ch = chr(byte)
        if ch in '"\\':
            out += "\\" + ch
        elif ch == "\n":
            out += "\\n"
        elif 0x20 <= byte < 0x7F:
            out += ch
        else:
            out += '" "\\x%02X" "' % byte
    return out + '"'


def main():
    texts = parse(sys.argv[1])
    with open(sys.argv[2], "w", encoding="ascii") as f:
        f.write("// Generated from %s by make_strings.py; do not edit.\n" % sys.argv[1].split("/")[-1])
        for number in sorted(texts):
            f.write("{0x%04X, %s},\n" % (number, c_literal(texts[number])))


if __name__ == "__main__":
    main()
