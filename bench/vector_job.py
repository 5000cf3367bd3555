#!/usr/bin/env python3
"""A vector-heavy print job in the style of a Windows PostScript driver.

Writes a DSC-commented job: a short prolog of one- and two-letter procedure
aliases (`/m {moveto} bd`) and a few operator aliases (`/: /gsave ld`), then
pages of thousands of paths in 600 dpi device units with two decimals:
polygons, polylines, Bezier shapes, arcs, circles and pies (arc, arcn),
ellipses under translate and scale, rectfill, rectstroke, rectclip, clips by
path (clip, eoclip, the driver's "path gsave clip"), groups nested up to three
deep under gsave with translate, rotate and scale, colours in gray, RGB and
CMYK, line widths, caps, joins, miter limits and dashes, fill, eofill and
stroke. Each page opens with "%%Page: n n" at the start of a line, which is
where `ps_feed --pages` starts a page, and stands inside save and restore.

Only operators that the library implements stand in the job (the language
table and the graphics table of postscript/lib), and the job is valid
PostScript for Ghostscript: no text, no images, every gsave balanced, every
path begun by newpath. The same seed, size and page count give the same bytes
with any Python 3.

    bench/vector_job.py -o job.ps [--seed 1] [--mb 32] [--pages 40]

vector_bench.py generates it the same way; nothing here needs more than the
standard library.
"""

import argparse
import random
import sys
import time

# The interpreter reads a lone "+" or "-" as the number 0, as it reads "E"
# as 0.0: translate goes by the name tr here.
PROLOG = """\
%%BeginProlog
%%BeginResource: procset VBench_Basic 1.0 0
/bd {bind def} bind def /ld {load def} bd
/: /gsave ld /; /grestore ld /N /newpath ld /tr /translate ld /LH /showpage ld
/m {moveto} bd /l {lineto} bd /c {curveto} bd /h {closepath} bd
/rm {rmoveto} bd /rl {rlineto} bd /rc {rcurveto} bd
/A {arc} bd /An {arcn} bd
/f {fill} bd /f* {eofill} bd /S {stroke} bd
/W {clip N} bd /W* {eoclip N} bd
/g {setgray} bd /rg {setrgbcolor} bd /k {setcmykcolor} bd
/w {setlinewidth} bd /J {setlinecap} bd /j {setlinejoin} bd
/ML {setmiterlimit} bd /sd {setdash} bd /solid {[] 0 sd} bd
/R {rotate} bd /Sc {scale} bd
/rf {rectfill} bd /rs {rectstroke} bd /rC {rectclip} bd
/rp {4 2 roll m 1 index 0 rl 0 exch rl neg 0 rl h} bd
/el {: N 4 2 roll tr Sc 0 0 1 0 360 A h} bd
/SS {/pagesave save def} bd /RS {pagesave restore} bd
%%EndResource
%%EndProlog
"""

# Page size in 600 dpi device units (US Letter), and the page set-up that maps
# them onto the PostScript default space, y downward as the driver has it.
WIDTH, HEIGHT = 5100, 6600
PAGE_SETUP = "SS 0 792 tr 0.12 -0.12 Sc 1 J 1 j 10 ML solid\n"


class Page:
    """The text of one page, object by object, from one random stream."""

    def __init__(self, rng):
        self.r = rng.random
        self.out = []
        self.paths = 0
        self.cx = self.cy = 0.0

    # Numbers as a driver writes them: coordinates with two decimals, the
    # trailing zeros dropped, colours with three.

    def i(self, n):
        return int(self.r() * n)

    @staticmethod
    def fmt(value):
        text = "%.2f" % value
        return text.rstrip("0").rstrip(".") if text[-1] == "0" else text

    def num(self, lo, hi):
        return self.fmt(lo + (hi - lo) * self.r())

    def x(self):
        return self.num(0, WIDTH)

    def y(self):
        return self.num(0, HEIGHT)

    def d(self, span):
        return self.num(-span, span)

    def near(self, size):
        """A point of a shape: within size of a centre taken anywhere on the page."""
        x, y, r, fmt = self.cx, self.cy, self.r, self.fmt
        return f"{fmt(x + size * (2 * r() - 1))} {fmt(y + size * (2 * r() - 1))}"

    def centre(self):
        self.cx, self.cy = WIDTH * self.r(), HEIGHT * self.r()
        return 20 + 580 * self.r() if self.r() < 0.9 else 600 + 2400 * self.r()

    def unit(self):
        return "%.3f" % self.r()

    # Graphics parameters.

    def colour(self):
        pick = self.r()
        if pick < 0.45:
            return f"{self.unit()} {self.unit()} {self.unit()} rg "
        if pick < 0.75:
            return f"{self.unit()} g "
        return f"{self.unit()} {self.unit()} {self.unit()} {self.unit()} k "

    def line(self):
        text = self.num(0.5, 24) + " w "
        pick = self.r()
        if pick < 0.15:
            text += f"[{self.num(4, 40)} {self.num(2, 20)}] {self.num(0, 10)} sd "
        elif pick < 0.3:
            text += "solid "
        if self.r() < 0.1:
            text += f"{self.i(3)} J {self.i(3)} j "
        return text

    # Paths; each begins with N, so that no path outlives its painting.

    def polygon(self, close=True):
        size = self.centre()
        parts = ["N", self.near(size), "m"]
        relative = self.r() < 0.3
        for _ in range(3 + self.i(10)):
            if relative:
                parts += [self.d(size / 3), self.d(size / 3), "rl"]
            else:
                parts += [self.near(size), "l"]
        if close:
            parts.append("h")
        return " ".join(parts)

    def bezier(self):
        size = self.centre()
        parts = ["N", self.near(size), "m"]
        for _ in range(2 + self.i(4)):
            if self.r() < 0.25:
                parts += [self.d(size / 2) for _ in range(6)] + ["rc"]
            else:
                parts += [self.near(size), self.near(size), self.near(size), "c"]
        parts.append("h")
        return " ".join(parts)

    def arc(self):
        cx, cy, radius = self.x(), self.y(), self.num(10, 600)
        pick = self.r()
        if pick < 0.35:
            return f"N {cx} {cy} {radius} 0 360 A h", True
        a1, a2 = self.num(0, 360), self.num(0, 360)
        if pick < 0.7:
            return f"N {cx} {cy} m {cx} {cy} {radius} {a1} {a2} A h", True
        return f"N {cx} {cy} {radius} {a1} {a2} An", False

    # Objects: a painted path or rectangle, or a group of them.

    def painted(self):
        pick = self.r()
        self.paths += 1
        if pick < 0.26:
            return self.colour() + self.polygon() + (" f*\n" if self.r() < 0.2 else " f\n")
        if pick < 0.46:
            return self.colour() + self.line() + self.polygon(close=self.r() < 0.3) + " S\n"
        if pick < 0.60:
            paint = " S\n" if self.r() < 0.3 else " f\n"
            head = self.colour() + (self.line() if paint == " S\n" else "")
            return head + self.bezier() + paint
        if pick < 0.72:
            path, closed = self.arc()
            if closed and self.r() < 0.7:
                return self.colour() + path + " f\n"
            return self.colour() + self.line() + path + " S\n"
        if pick < 0.76:
            ellipse = f"{self.x()} {self.y()} {self.num(20, 500)} {self.num(20, 500)} el"
            return self.colour() + ellipse + (" f ;\n" if self.r() < 0.7 else " 0.03 w S ;\n")
        rect = f"{self.x()} {self.y()} {self.num(5, 900)} {self.num(5, 900)}"
        if pick < 0.88:
            return self.colour() + rect + " rf\n"
        if pick < 0.95:
            return self.colour() + self.line() + rect + " rs\n"
        return self.colour() + "N " + rect + " rp f\n"

    def group(self, depth):
        """gsave, a change of matrix, maybe a clip, some objects, grestore."""
        parts = []
        pick = self.r()
        if pick < 0.2:
            # The driver's order: the path first, then gsave and clip. The
            # translator writes such a clip in front of the inner gsave's "q",
            # so it would outlive the inner grestore: an outer gsave bounds it.
            self.paths += 1
            parts.append(": " + self.polygon(close=self.r() < 0.5) + " : W\n")
        else:
            parts.append(": ")
        if self.r() < 0.7:
            parts.append(f"{self.d(400)} {self.d(400)} tr ")
        if self.r() < 0.3:
            parts.append(f"{self.d(180)} R ")
        if self.r() < 0.3:
            parts.append(f"{self.num(0.5, 1.5)} {self.num(0.5, 1.5)} Sc ")
        if 0.2 <= pick < 0.45:
            parts.append(f"{self.x()} {self.y()} {self.num(200, 3000)} {self.num(200, 3000)} rC\n")
        elif 0.45 <= pick < 0.6:
            self.paths += 1
            parts.append(self.polygon() + (" W*\n" if self.r() < 0.3 else " W\n"))
        elif 0.6 <= pick < 0.65:
            self.paths += 1
            path, _ = self.arc()
            parts.append(path + " W\n")
        for _ in range(2 + self.i(7)):
            if depth < 3 and self.r() < 0.12:
                parts.append(self.group(depth + 1))
            else:
                parts.append(self.painted())
        parts.append("; ;\n" if pick < 0.2 else ";\n")
        return "".join(parts)

    def fill_to(self, target):
        size = 0
        while size < target:
            text = self.group(1) if self.r() < 0.1 else self.painted()
            self.out.append(text)
            size += len(text)
        return size


def generate(out, seed=1, megabytes=32.0, pages=40):
    """Writes the job to the open text file out; returns (bytes, paths)."""
    rng = random.Random(seed)
    target = int(megabytes * 1e6)
    head = (
        "%!PS-Adobe-3.0\n"
        f"%%Title: vector job, seed {seed}, {megabytes:g} MB, {pages} pages\n"
        "%%Creator: kelumpd64 bench/vector_job.py\n"
        "%%LanguageLevel: 2\n"
        f"%%Pages: {pages}\n"
        "%%BoundingBox: 0 0 612 792\n"
        "%%EndComments\n" + PROLOG + "%%BeginSetup\n%%EndSetup\n"
    )
    out.write(head)
    written, paths = len(head), 0
    per_page = max(1, (target - written) // pages)
    for number in range(1, pages + 1):
        page = Page(rng)
        opening = f"%%Page: {number} {number}\n%%BeginPageSetup\n{PAGE_SETUP}%%EndPageSetup\n"
        closing = "RS LH\n%%PageTrailer\n"
        page.fill_to(per_page - len(opening) - len(closing))
        text = opening + "".join(page.out) + closing
        out.write(text)
        written += len(text)
        paths += page.paths
    tail = "%%Trailer\n%%EOF\n"
    out.write(tail)
    return written + len(tail), paths


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("-o", "--output", required=True, help="the job file to write")
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--mb", type=float, default=32.0, help="size in MB (10^6 bytes)")
    parser.add_argument("--pages", type=int, default=40)
    args = parser.parse_args()
    start = time.perf_counter()
    with open(args.output, "w", newline="\n") as out:
        size, paths = generate(out, args.seed, args.mb, args.pages)
    seconds = time.perf_counter() - start
    print(
        f"{args.output}: {size / 1e6:.2f} MB, {args.pages} pages, {paths} paths, "
        f"generated in {seconds:.1f} s",
        file=sys.stderr,
    )


if __name__ == "__main__":
    main()
