#!/usr/bin/env python3
"""An image-heavy print job in the style of a Windows PostScript driver.

Each page holds a few RGB images of noise, read by colorimage from the job as
hexadecimal data (readhexstring into a row buffer, as the driver writes
them): incompressible data, so the job tests the image path and Flate at
their worst. The same seed, size and page count give the same bytes.

    bench/image_job.py -o job.ps [--seed 1] [--mb 32] [--pages 8]
"""

import argparse
import random

HEAD = """\
%!PS-Adobe-3.0
%%Title: image job
%%Creator: kelumpd64 bench/image_job.py
%%LanguageLevel: 2
%%BoundingBox: 0 0 612 792
%%EndComments
%%BeginProlog
/bd {bind def} bind def /: {gsave} bd /; {grestore} bd /tr {translate} bd /Sc {scale} bd
%%EndProlog
%%BeginSetup
%%EndSetup
"""

SIDE = 400  # pixels: 480,000 bytes of samples, 960,000 of hexadecimal a image


def image(rng, x, y, size):
    row = SIDE * 3
    data = rng.randbytes(SIDE * row)
    hexed = data.hex()
    lines = "\n".join(hexed[i : i + 80] for i in range(0, len(hexed), 80))
    return (
        f": {x} {y} tr {size} {size} Sc /buf {row} string def\n"
        f"{SIDE} {SIDE} 8 [{SIDE} 0 0 -{SIDE} 0 {SIDE}] "
        "{currentfile buf readhexstring pop} false 3 colorimage\n" + lines + "\n;\n"
    )


def generate(out, seed=1, megabytes=32.0, pages=8):
    rng = random.Random(seed)
    out.write(HEAD)
    written = len(HEAD)
    per_page = max(1, round(megabytes * 1e6 / (SIDE * SIDE * 6) / pages))
    for number in range(1, pages + 1):
        out.write(f"%%Page: {number} {number}\n")
        for i in range(per_page):
            text = image(rng, 36 + (i % 3) * 180, 36 + (i // 3 % 4) * 180, 170)
            out.write(text)
            written += len(text)
        out.write("showpage\n")
    out.write("%%Trailer\n%%EOF\n")
    return written


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("-o", "--output", required=True)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--mb", type=float, default=32.0)
    parser.add_argument("--pages", type=int, default=8)
    args = parser.parse_args()
    with open(args.output, "w", newline="\n") as out:
        generate(out, args.seed, args.mb, args.pages)


if __name__ == "__main__":
    main()
