#!/usr/bin/env python3
"""End-to-end checks of kelps2pdf on one PostScript file, with the PDF tools
as judges. Run by CTest for each file of the corpus (our examples and
../shared/samples):

- the conversion ends with status 0 or 2 and writes a PDF;
- `qpdf --check` passes with no warning, and `pdftoppm` renders every page
  without a complaint;
- the PDF is byte for byte the same when fed in calls of 4 KiB, 64 KiB and
  whole pages. Only runs without failures are compared: a failure drops the
  rest of its call, so what it drops depends on where calls end by design.
  (Where a clip is placed may also depend on a call boundary in the
  translator; none of the files here has such a clip, so any difference in a
  clean run is a fault.)
- with --compare-gs (pages without text: text is not translated), the pages
  rendered from our PDF agree with Ghostscript's rendering of the PostScript.

Skips (exit 77, which CTest reports as skipped) when a tool is missing.

    kelps2pdf_check.py --program build/default/kelps2pdf [--compare-gs] FILE
"""

import argparse
import os
import re
import shutil
import subprocess
import sys
import tempfile

# The PPM reader of the rendering check of the vector benchmark.
sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "bench"))
from vector_bench import pixels  # noqa: E402

SKIP = 77

# Ghostscript and our PDF rendered by Ghostscript at 20 dpi, without
# anti-aliasing: a pixel counts as differing when a channel is off by more
# than 48 of 255 (gs's colour conversions of CMYK differ by a few units
# between its PostScript and PDF paths; rounding of path edges moves whole
# pixels at this resolution, which is why a page may differ in up to 3% of
# its pixels: the edges of thin lines and of pattern cells, no more).
RESOLUTION = 20
CHANNEL_TOLERANCE = 48
PIXEL_SHARE = 0.03

CHUNKS = ["4K", "64K", "1G"]


def run(command, **kwargs):
    return subprocess.run(command, capture_output=True, timeout=120, **kwargs)


def differing_share(a, b):
    pa, pb = pixels(a), pixels(b)
    if len(pa) != len(pb):
        return 1.0
    differ = 0
    for i in range(0, len(pa), 3):
        if pa[i : i + 3] != pb[i : i + 3]:
            if max(abs(pa[i + k] - pb[i + k]) for k in range(3)) > CHANNEL_TOLERANCE:
                differ += 1
    return differ / max(1, len(pa) // 3)


def media_box(pdf):
    """The first page's MediaBox, as kelps2pdf writes it (uncompressed, one line)."""
    match = re.search(rb"/MediaBox \[([-0-9. ]+)\]", open(pdf, "rb").read())
    return [float(v) for v in match.group(1).split()]


# pdftoppm's complaints about content that the translator writes by design
# (a closepath without a current point; the numbers of a singular matrix,
# written as they come out, "nan" and "inf"), as opposed to faults of the
# document's structure, which fail the check.
CONTENT_NOTES = re.compile(
    r"Syntax Error( \(\d+\))?: (No current point in closepath"
    r"|Unknown operator '-?(nan|inf)'|Too few \(\d\) args to '\w+' operator)"
)


# A failure that dropped a gsave leaves its grestore one "Q" too many.
AFTER_FAILURES = re.compile(r"Syntax Error( \(\d+\))?: Restoring state when no valid states to pop")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--program", required=True)
    parser.add_argument("--compare-gs", action="store_true")
    parser.add_argument("input")
    args = parser.parse_args()
    tools = ["qpdf", "pdftoppm"] + (["gs"] if args.compare_gs else [])
    missing = [tool for tool in tools if not shutil.which(tool)]
    if missing:
        print(f"skipped: {', '.join(missing)} not installed")
        return SKIP
    failures = []
    env = dict(os.environ, SOURCE_DATE_EPOCH="0")
    with tempfile.TemporaryDirectory() as work:
        outputs = {}
        for chunk in CHUNKS:
            pdf = os.path.join(work, f"out-{chunk}.pdf")
            done = run([args.program, "-q", "--chunk-size", chunk, args.input, pdf], env=env)
            if done.returncode not in (0, 2) or not os.path.exists(pdf):
                print(f"chunk {chunk}: exit {done.returncode}: {done.stderr.decode()[:500]}")
                return 1
            outputs[chunk] = (open(pdf, "rb").read(), done.returncode, done.stderr)
        pdf = os.path.join(work, "out-1G.pdf")
        clean = all(code == 0 and not err for _, code, err in outputs.values())
        if clean:
            for chunk in CHUNKS[:-1]:
                if outputs[chunk][0] != outputs["1G"][0]:
                    failures.append(f"calls of {chunk} give another PDF than whole pages")
        else:
            print("failures in the job: the chunk sizes are not compared")

        done = run(["qpdf", "--check", pdf])
        text = (done.stdout + done.stderr).decode(errors="replace")
        if done.returncode != 0 or "WARNING" in text.upper():
            failures.append(f"qpdf --check (exit {done.returncode}): {text[:800]}")
        done = run(["pdftoppm", "-r", str(RESOLUTION), pdf, os.path.join(work, "poppler")])
        rendered = [f for f in os.listdir(work) if f.startswith("poppler")]
        complaints = [line for line in done.stderr.decode(errors="replace").splitlines()
                      if not CONTENT_NOTES.fullmatch(line)
                      and not (not clean and AFTER_FAILURES.fullmatch(line))]
        if done.returncode != 0 or complaints or not rendered:
            failures.append(f"pdftoppm (exit {done.returncode}): {complaints[:10]}")

        if args.compare_gs and not failures:
            box = media_box(pdf)
            gs = ["gs", "-q", "-dSAFER", "-dBATCH", "-dNOPAUSE", "-sDEVICE=ppmraw",
                  f"-r{RESOLUTION}", "-dTextAlphaBits=1", "-dGraphicsAlphaBits=1",
                  f"-dDEVICEWIDTHPOINTS={box[2] - box[0]:g}",
                  f"-dDEVICEHEIGHTPOINTS={box[3] - box[1]:g}", "-dFIXEDMEDIA"]
            for name, source in (("ps", args.input), ("pdf", pdf)):
                done = run(gs + [f"-sOutputFile={work}/{name}-%03d.ppm", source])
                if done.returncode != 0:
                    failures.append(f"gs on the {name}: {done.stderr.decode()[:500]}")
            ours = sorted(f for f in os.listdir(work) if f.startswith("pdf-"))
            theirs = sorted(f for f in os.listdir(work) if f.startswith("ps-"))
            if len(ours) != len(theirs):
                failures.append(f"{len(ours)} pages against Ghostscript's {len(theirs)}")
            for number, (a, b) in enumerate(zip(ours, theirs), 1):
                share = differing_share(os.path.join(work, a), os.path.join(work, b))
                print(f"page {number}: {100 * share:.2f}% of pixels differ from Ghostscript's")
                if share > PIXEL_SHARE:
                    failures.append(f"page {number} differs from Ghostscript's rendering")
    for failure in failures:
        print(failure)
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
