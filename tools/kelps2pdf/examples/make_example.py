#!/usr/bin/env python3
"""Writes example.ps, the job that kelps2pdf converts when given no file: three
pages in the manner of the Windows PostScript driver (a procset of short
aliases, page set-up under save, 600 dpi device units): paths, arcs, clips and
colours; an inline image and a large image that two pages share; a tiling
pattern. The image data are noise from a fixed seed, so the bytes never change.

    tools/kelps2pdf/examples/make_example.py [-o example.ps]
"""

import argparse
import random

HEAD = """\
%!PS-Adobe-3.0
%%Title: kelps2pdf example
%%Creator: kelumpd64 tools/kelps2pdf/examples/make_example.py
%%LanguageLevel: 2
%%Pages: 3
%%DocumentMedia: Letter 612 792 0 () ()
%%BoundingBox: 0 0 612 792
%%EndComments
%%BeginProlog
%%BeginResource: procset Example_Basic 1.0 0
/bd {bind def} bind def /ld {load def} bd
/: /gsave ld /; /grestore ld /N /newpath ld /tr /translate ld /LH /showpage ld
/m {moveto} bd /l {lineto} bd /c {curveto} bd /h {closepath} bd
/A {arc} bd /An {arcn} bd /f {fill} bd /f* {eofill} bd /K {stroke} bd
/W {clip N} bd /W* {eoclip N} bd /g {setgray} bd /rg {setrgbcolor} bd
/k {setcmykcolor} bd /w {setlinewidth} bd /sd {setdash} bd /R {rotate} bd
/Sc {scale} bd /rf {rectfill} bd /rs {rectstroke} bd
/SS {/pagesave save def} bd /RS {pagesave restore} bd
/featurebegin {countdictstack mark} bd
/featurecleanup {stopped {cleartomark} {cleartomark} ifelse pop} bd
%%EndResource
%%EndProlog
%%BeginSetup
featurebegin{
%%BeginFeature: *PageSize Letter
2 dict dup /PageSize [612 792] put dup /ImagingBBox null put setpagedevice
%%EndFeature
}featurecleanup
%%EndSetup
"""

# Letter in 600 dpi device units, y downward, as the driver sets up a page.
PAGE_SETUP = "SS 0 792 tr 0.12 -0.12 Sc 1 setlinecap 1 setlinejoin\n"


def hex_lines(rng, count):
    data = "".join("%02x" % rng.randrange(256) for _ in range(count))
    return "\n".join(data[i : i + 78] for i in range(0, len(data), 78)) + "\n"


def colour_image(rng, x, y, size, pixels):
    """A colorimage read by readhexstring from the job, as the driver writes it."""
    return (
        f": {x} {y} tr {size} {size} Sc\n"
        f"/buf {pixels * 3} string def\n"
        f"{pixels} {pixels} 8 [{pixels} 0 0 -{pixels} 0 {pixels}] "
        "{currentfile buf readhexstring pop} false 3 colorimage\n"
        + hex_lines(rng, pixels * pixels * 3)
        + ";\n"
    )


def page_paths():
    parts = []
    for i in range(12):
        x, y = 400 + (i % 4) * 1100, 600 + (i // 4) * 1500
        r, g, b = (i * 37 % 100) / 100, (i * 59 % 100) / 100, (i * 83 % 100) / 100
        parts.append(f"{r:.2f} {g:.2f} {b:.2f} rg N {x} {y} m {x + 800} {y} l "
                     f"{x + 400} {y + 1000} l h f\n")
    parts.append("0 0 0 1 k 12 w N 300 5000 m 1500 4200 2500 5800 4800 5000 c K\n")
    parts.append("[60 30] 0 sd 0.2 0 0.8 rg 8 w N 2500 3400 900 0 360 A h K [] 0 sd\n")
    parts.append("0.9 0.5 0.1 rg N 2500 3400 m 2500 3400 600 30 300 A h f\n")
    parts.append(": N 600 5600 m 4500 5600 l 2550 6400 l h W\n")
    for i in range(8):
        parts.append(f"{i / 8:.3f} g N {500 + i * 500} 5500 700 0 360 A f\n")
    parts.append(";\n0.1 0.6 0.3 rg 20 w 4300 3800 500 700 rs\n")
    parts.append(": 4550 4150 tr 30 R 0.8 0.1 0.1 rg -150 -150 300 300 rf ;\n")
    return "".join(parts)


PATTERN = """\
/cell 8 dict def cell begin
/PatternType 1 def /PaintType 1 def /TilingType 1 def
/BBox [0 0 1 1] def /XStep 1 def /YStep 1 def
/PaintProc {pop 0.95 0.8 0.2 rg 0 0 1 1 rf 0.1 0.3 0.7 rg N 0.5 0.5 0.3 0 360 A f} def
end
: matrix defaultmatrix setmatrix cell [24 0 0 24 0 0] makepattern setpattern
N 72 72 m 540 72 l 540 360 l 72 360 l h f ;
"""


def generate(path):
    rng = random.Random(12)
    shared = random.Random(34)
    shared_image = colour_image(shared, 2600, 300, 2000, 100)
    pages = [
        page_paths(),
        colour_image(rng, 500, 300, 1200, 10) + shared_image
        + "0.2 0.2 0.2 rg 6 w 300 3300 4500 3000 rs\n"
        + "0 0.5 1 rg N 2550 4800 1200 0 180 An h f\n",
        shared_image + PATTERN,
    ]
    with open(path, "w", newline="\n") as out:
        out.write(HEAD)
        for number, body in enumerate(pages, 1):
            out.write(f"%%Page: {number} {number}\n%%BeginPageSetup\n{PAGE_SETUP}"
                      f"%%EndPageSetup\n{body}RS LH\n%%PageTrailer\n")
        out.write("%%Trailer\n%%EOF\n")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("-o", "--output", default="example.ps")
    generate(parser.parse_args().output)


if __name__ == "__main__":
    main()
