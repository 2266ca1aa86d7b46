#!/usr/bin/env python3
"""Compiles a setup library's text file (see product/VokSetup/VokSetup.strings) into a
C++ table of {number, text} sorted by number. A line names a text the launcher shows by its
name in the launcher's table of texts, or any text by its number. Every text the launcher
shows must be there.
Usage: make_strings.py IN.strings TEXTS.h OUT.inc"""
import re
import sys


def launcher_texts(header):
    """The launcher's texts, name -> number, from its table (X(name, number) entries)."""
    with open(header, encoding="utf-8") as f:
        return {m.group(1): int(m.group(2), 16)
                for m in re.finditer(r"X\((\w+), (0x[0-9A-Fa-f]{4})\)", f.read())}


def parse(path, names):
    texts = {}
    with open(path, encoding="utf-8") as f:
        for lineno, line in enumerate(f, 1):
            line = line.rstrip("\n")
            if not line.strip() or line.lstrip().startswith("#"):
                continue
            m = re.match(r"\s*(0[xX][0-9A-Fa-f]{1,4}|\w+)[ \t]+(.*)$", line)
            if not m:
                sys.exit(f"{path}:{lineno}: expected a name or a hexadecimal number, and a text")
            key = m.group(1)
            if key.lower().startswith("0x"):
                number = int(key, 16)
            elif key in names:
                number = names[key]
            else:
                sys.exit(f"{path}:{lineno}: {key} is not a text of the launcher's")
            if number in texts:
                sys.exit(f"{path}:{lineno}: {key} appears twice")
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
    names = launcher_texts(sys.argv[2])
    texts = parse(sys.argv[1], names)
    missing = [name for name, number in names.items() if number not in texts]
    if missing:
        sys.exit(f"{sys.argv[1]}: no text for {', '.join(missing)}")
    with open(sys.argv[3], "w", encoding="ascii") as f:
        f.write("// Generated from %s by make_strings.py; do not edit.\n" % sys.argv[1].split("/")[-1])
        for number in sorted(texts):
            f.write("{0x%04X, %s},\n" % (number, c_literal(texts[number])))


if __name__ == "__main__":
    main()
