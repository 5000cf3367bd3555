#!/usr/bin/env python3
"""Image translation: the library beside Ghostscript on an image-heavy job.

Generates a job in the style of a Windows PostScript driver: pages that each
carry large RGB `colorimage`s of noise (nothing compresses), their samples in
hexadecimal lines read by the driver's data source
`{currentfile buf readhexstring pop}`, one row per round. Every image is
different, so each becomes an image record of the library's object list.
Then, in turns and several times, the same job through

  library      bench/ps_feed --pages --stats (PSConvertToPdf in 64 KiB pieces)
  gs pdfwrite  lossless: Flate for colour and gray images, no JPEG
               (otherwise it wins by throwing the samples away)

and the best MB/s of PostScript by CPU time of each whole process, their
ratio, and the peak resident memory, as vector_bench.py prints them. The
library keeps every image record until the print job face empties the list,
so its peak memory holds the job's images (half the size of their
hexadecimal text).

Ghostscript is only the yardstick; nothing of the library uses it.

    bench/image_bench.py --feed build/default/ps_feed [--runs 3] [--pages 12]
        [--images 2] [--width 600] [--height 800] [--seed 1] [--keep DIR]
"""

import argparse
import os
import random
import shutil
import sys
import tempfile
import time

from compare_gs import require_tools
from vector_bench import GS, compare_sides

SIDES = {
    "gs pdfwrite": GS
    + [
        "-sDEVICE=pdfwrite",
        "-dAutoFilterColorImages=false",
        "-dColorImageFilter=/FlateEncode",
        "-dAutoFilterGrayImages=false",
        "-dGrayImageFilter=/FlateEncode",
        "-sOutputFile=/dev/null",
    ],
}


def generate(out, seed, pages, images, width, height):
    """Writes the job; returns its size in bytes."""
    noise = random.Random(seed)
    row = width * 3
    size = out.write(
        f"%!PS-Adobe-3.0\n%%Pages: {pages}\n%%EndComments\n%%BeginProlog\n"
        f"/buf {row} string def\n%%EndProlog\n"
    )
    for page in range(1, pages + 1):
        size += out.write(f"%%Page: {page} {page}\nsave\n")
        for image in range(images):
            size += out.write(
                f"gsave {36 + image * 20} {36 + image * 30} translate 300 400 scale\n"
                f"{width} {height} 8 [{width} 0 0 -{height} 0 {height}] "
                f"{{currentfile buf readhexstring pop}} false 3 colorimage\n"
            )
            for _ in range(height):
                line = noise.randbytes(row).hex()
                size += out.write(
                    "\n".join(line[i : i + 96] for i in range(0, len(line), 96)) + "\n"
                )
            size += out.write("grestore\n")
        size += out.write("restore\nshowpage\n")
    size += out.write("%%Trailer\n%%EOF\n")
    return size


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--feed", default="build/default/ps_feed")
    parser.add_argument("--runs", type=int, default=3)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--pages", type=int, default=12)
    parser.add_argument("--images", type=int, default=2, help="images per page")
    parser.add_argument("--width", type=int, default=600)
    parser.add_argument("--height", type=int, default=800)
    parser.add_argument("--piece", type=int, default=64 << 10, help="bytes per PSConvertToPdf")
    parser.add_argument("--keep", help="work in this directory and keep the job")
    args = parser.parse_args()
    require_tools(args.feed)

    workdir = args.keep or tempfile.mkdtemp(prefix="image_bench_")
    os.makedirs(workdir, exist_ok=True)
    try:
        job = os.path.join(workdir, f"images-{args.seed}.ps")
        start = time.perf_counter()
        with open(job, "w", newline="\n") as out:
            size = generate(out, args.seed, args.pages, args.images, args.width, args.height)
        print(
            f"job: {job}, {size / 1e6:.2f} MB, {args.pages} pages of {args.images} RGB images "
            f"{args.width} x {args.height} in hexadecimal, seed {args.seed}; generated in "
            f"{time.perf_counter() - start:.1f} s"
        )
        failed = compare_sides(args.feed, job, args.runs, args.piece, SIDES)
    finally:
        if not args.keep:
            shutil.rmtree(workdir, ignore_errors=True)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
