#!/usr/bin/env python3
"""Writes the launcher's sounds as short 16-bit mono 22050 Hz WAV files: soft sine
chimes with a quick attack and an exponential fade. Usage: make_sounds.py OUTPUT_FOLDER"""
import math
import os
import struct
import sys

RATE = 22050
# name: list of (frequency in Hz, start in s, length in s)
SOUNDS = {
    "OPEN": [(523.25, 0.0, 0.35), (659.25, 0.08, 0.35), (783.99, 0.16, 0.45)],
    "CLICK": [(1318.5, 0.0, 0.05)],
    "BACK": [(659.25, 0.0, 0.12), (523.25, 0.07, 0.18)],
    "START": [(392.0, 0.0, 0.3), (523.25, 0.1, 0.3), (659.25, 0.2, 0.3), (1046.5, 0.3, 0.5)],
    "HOVER": [(1760.0, 0.0, 0.03)],
}


def render(notes):
    length = max(start + dur for _, start, dur in notes)
    samples = [0.0] * int(length * RATE + 1)
    for freq, start, dur in notes:
        first = int(start * RATE)
        for i in range(int(dur * RATE)):
            t = i / RATE
            envelope = min(1.0, t / 0.004) * math.exp(-5.0 * t / dur)
            samples[first + i] += 0.3 * envelope * math.sin(2 * math.pi * freq * t)
    peak = max(1e-9, max(abs(s) for s in samples))
    scale = min(1.0, 0.9 / peak)
    return b"".join(struct.pack("<h", int(32767 * s * scale)) for s in samples)


def write_wav(path, data):
    header = b"RIFF" + struct.pack("<I", 36 + len(data)) + b"WAVE"
    header += b"fmt " + struct.pack("<IHHIIHH", 16, 1, 1, RATE, RATE * 2, 2, 16)
    header += b"data" + struct.pack("<I", len(data))
    with open(path, "wb") as f:
        f.write(header + data)


def main():
    os.makedirs(sys.argv[1], exist_ok=True)
    for name, notes in SOUNDS.items():
        write_wav(os.path.join(sys.argv[1], name + ".wav"), render(notes))


if __name__ == "__main__":
    main()
