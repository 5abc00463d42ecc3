#!/usr/bin/env python3
"""Makes beep1.wav, the click of the metronome: a short knock on wood.

Three damped partials of a wooden block and 2 ms of noise for the strike; 60 ms, 48000 Hz, mono,
16 bit, behind the canonical header of 44 bytes. The noise comes from a fixed seed, so that the file
is the same, byte for byte, each time.

usage: make_beep.py [FILE]    (default: beep1.wav beside this script)
"""

import math
import pathlib
import random
import struct
import sys

RATE = 48000  # frames a second
LENGTH = RATE * 60 // 1000  # frames
PEAK = 26000  # of 32767
PARTIALS = ((1150.0, 1.0, 0.011), (2790.0, 0.45, 0.006), (4680.0, 0.2, 0.003))  # Hz, level, decay in s
STRIKE = 0.6, 0.0007  # level and decay in s of the noise
FADE = RATE * 5 // 1000  # the last 5 ms run out to exactly 0


def samples():
    noise = random.Random(1)
    level, decay = STRIKE
    values = []
    for i in range(LENGTH):
        t = i / RATE
        value = sum(a * math.exp(-t / d) * math.sin(2 * math.pi * f * t) for f, a, d in PARTIALS)
        value += level * math.exp(-t / decay) * noise.uniform(-1.0, 1.0)
        values.append(value * min(1.0, (LENGTH - 1 - i) / FADE))
    gain = PEAK / max(abs(v) for v in values)
    return [round(v * gain) for v in values]


def main():
    if len(sys.argv) > 2:
        sys.exit(__doc__)
    path = pathlib.Path(sys.argv[1]) if len(sys.argv) == 2 else pathlib.Path(__file__).with_name("beep1.wav")
    data = struct.pack("<%dh" % LENGTH, *samples())
    header = struct.pack("<4sI4s4sIHHIIHH4sI", b"RIFF", len(data) + 36, b"WAVE", b"fmt ", 16, 1, 1, RATE,
                         RATE * 2, 2, 16, b"data", len(data))
    path.write_bytes(header + data)


if __name__ == "__main__":
    main()
