#!/usr/bin/env python3
"""Vector translation: the library beside Ghostscript on a driver-style job.

Generates a vector-heavy job with vector_job.py (32 MB, 40 pages of thousands
of paths, deterministic by seed), or takes one by --job, and runs it, in
turns, several times:

  library      bench/ps_feed --pages --stats: PSOpen, PSStartPage at each
               "%%Page:", PSConvertToPdf in 64 KiB pieces
  gs pdfwrite  gs -q -dNOPAUSE -dBATCH -sDEVICE=pdfwrite -sOutputFile=/dev/null
  gs nullpage  gs -q -dNOPAUSE -dBATCH -sDEVICE=nullpage

Each side's best run by CPU time (user and system) of its whole process, start-
up included, gives its MB/s of PostScript; the ratios are library MB/s over
gs MB/s, so above 1 the library is faster. Peak resident memory: the
library's is what the feeder reads of itself (VmHWM); gs's is the child's
ru_maxrss by wait4, which also counts this script's memory at the fork, so a
figure at that floor (printed) only bounds gs's own. For the library it also
prints what the feeder measured of the feeding alone, and the bytes of page
content that the calls returned. Every run must be clean: gs prints nothing and exits 0, the feeder does not
fail. Should the library fail, its reason is printed, Ghostscript is measured
all the same, and the exit status is 1.

--check-content writes the content of one library run, wraps each page into a
PDF (a page of 612 x 792 points, no resources) and has Ghostscript read it,
printing whatever gs complains of (gs 10 reads content leniently: it says
nothing of an unknown operator). It renders each page at 30 dpi beside gs's
rendering of the job and prints the share of pixels that differ by more than
TOLERANCE, and the same for gs's own pdfwrite translation of the job as the
yardstick (seed 1: mean 0.8%, worst 1.1%, from edges and colour rounding;
the library's content: mean 0.06%). A
check of the translation to look at, not a test: the translator follows its
own rules, not Ghostscript's.

Ghostscript is only the yardstick; nothing of the library uses it.

    bench/vector_bench.py --feed build/default/ps_feed [--runs 3] [--seed 1]
        [--mb 32] [--pages 40] [--job FILE] [--keep DIR] [--check-content]
"""

import argparse
import os
import shutil
import sys
import tempfile
import time

from compare_gs import measure, require_tools
import vector_job

GS = ["gs", "-q", "-dNOPAUSE", "-dBATCH"]
SIDES = {
    "gs pdfwrite": GS + ["-sDEVICE=pdfwrite", "-sOutputFile=/dev/null"],
    "gs nullpage": GS + ["-sDEVICE=nullpage"],
}


def text_of(done):
    return (done.stdout + done.stderr).decode(errors="replace").strip()


def parse_stats(done):
    """The feeder's --stats line as a dict, or None when the run failed."""
    if done.returncode != 0 or done.stderr:
        return None
    try:
        return {k: float(v) for k, v in (f.split("=") for f in done.stdout.decode().split())}
    except ValueError:
        return None


def run_library(feed, job, piece, extra=()):
    done = measure([feed, "--pages", "--stats", *extra, job, str(piece)])
    return done, parse_stats(done)


def content_pdf(content_path, pdf_path):
    """Wraps the content, cut into pages at the offsets the feeder wrote, into
    a PDF of uncompressed streams; returns the number of pages."""
    data = open(content_path, "rb").read()
    offsets = [int(line) for line in open(content_path + ".pages")] + [len(data)]
    pages = len(offsets) - 1
    objects = [b"<< /Type /Catalog /Pages 2 0 R >>"]
    kids = " ".join(f"{3 + 2 * i} 0 R" for i in range(pages))
    objects.append(f"<< /Type /Pages /Count {pages} /Kids [{kids}] >>".encode())
    for i in range(pages):
        stream = data[offsets[i] : offsets[i + 1]]
        objects.append(
            f"<< /Type /Page /Parent 2 0 R /MediaBox [0 0 612 792] "
            f"/Resources << >> /Contents {4 + 2 * i} 0 R >>".encode()
        )
        objects.append(
            f"<< /Length {len(stream)} >>\nstream\n".encode() + stream + b"\nendstream"
        )
    with open(pdf_path, "wb") as out:
        out.write(b"%PDF-1.4\n")
        where = []
        for number, body in enumerate(objects, 1):
            where.append(out.tell())
            out.write(f"{number} 0 obj\n".encode() + body + b"\nendobj\n")
        xref = out.tell()
        out.write(f"xref\n0 {len(objects) + 1}\n0000000000 65535 f \n".encode())
        out.write(b"".join(f"{w:010d} 00000 n \n".encode() for w in where))
        out.write(
            f"trailer\n<< /Size {len(objects) + 1} /Root 1 0 R >>\n"
            f"startxref\n{xref}\n%%EOF\n".encode()
        )
    return pages


# Colour values a pixel may differ by and still count as the same: colour
# conversions of DeviceCMYK differ by a few units between the PostScript and
# the PDF paths of gs itself.
TOLERANCE = 32


def render(source, prefix):
    """Renders every page to prefix-NNN.ppm at 30 dpi; returns the gs run."""
    letter = ["-dDEVICEWIDTHPOINTS=612", "-dDEVICEHEIGHTPOINTS=792", "-dFIXEDMEDIA"]
    return measure(
        GS
        + letter
        + ["-sDEVICE=ppmraw", "-r30", f"-sOutputFile={prefix}-%03d.ppm", source]
    )


def pixels(path):
    """The RGB bytes of a binary PPM."""
    data = open(path, "rb").read()
    fields, at = [], 0
    while len(fields) < 4:
        while data[at : at + 1].isspace():
            at += 1
        if data[at : at + 1] == b"#":
            at = data.index(b"\n", at)
            continue
        end = at
        while not data[end : end + 1].isspace():
            end += 1
        fields.append(data[at:end])
        at = end
    return data[at + 1 :]


def differing(workdir, name, pages):
    """The share of pixels of each page of name-NNN.ppm that differ from
    gs-NNN.ppm by more than TOLERANCE; None when a page is missing or of
    another size."""
    shares = []
    for page in range(1, pages + 1):
        a = os.path.join(workdir, f"{name}-{page:03d}.ppm")
        b = os.path.join(workdir, f"gs-{page:03d}.ppm")
        if not (os.path.exists(a) and os.path.exists(b)):
            print(f"check: page {page} has no rendering from {name} or from the job")
            return None
        pa, pb = pixels(a), pixels(b)
        if len(pa) != len(pb):
            print(f"check: page {page}: renderings of different sizes")
            return None
        differ = sum(
            1
            for i in range(0, len(pa), 3)
            if pa[i : i + 3] != pb[i : i + 3]
            and max(abs(pa[i + k] - pb[i + k]) for k in range(3)) > TOLERANCE
        )
        shares.append(differ / (len(pa) // 3))
    return shares


def check_content(feed, job, piece, workdir):
    content = os.path.join(workdir, "content.txt")
    done, stats = run_library(feed, job, piece, ["--content", content])
    if stats is None:
        print(f"check: the library failed: {text_of(done)}")
        return False
    pdf = os.path.join(workdir, "content.pdf")
    pages = content_pdf(content, pdf)
    print(f"check: {stats['content_bytes'] / 1e6:.2f} MB of content in {pages} pages: {pdf}")
    # The yardstick of the comparison: gs's own translation of the job.
    reference = os.path.join(workdir, "pdfwrite.pdf")
    runs = [
        ("the job", render(job, os.path.join(workdir, "gs"))),
        ("the library's PDF", render(pdf, os.path.join(workdir, "lib"))),
        ("gs pdfwrite", measure(SIDES["gs pdfwrite"][:-1] + [f"-sOutputFile={reference}", job])),
        ("gs pdfwrite's PDF", render(reference, os.path.join(workdir, "ref"))),
    ]
    clean = True
    for label, done in runs:
        if done.returncode != 0 or done.stdout or done.stderr:
            clean = False
            print(f"check: gs on {label} (exit {done.returncode}):\n{text_of(done)[:2000]}")
    print(f"check: pixels that differ from gs's rendering of the job at 30 dpi, by {TOLERANCE}:")
    for name, label in (("lib", "the library's content"), ("ref", "gs pdfwrite's PDF")):
        shares = differing(workdir, name, pages)
        if not shares:
            clean = False
            continue
        worst = max(range(len(shares)), key=shares.__getitem__)
        print(
            f"  {label:<22} mean {100 * sum(shares) / len(shares):5.2f}%, "
            f"worst {100 * shares[worst]:5.2f}% (page {worst + 1}) of {len(shares)} pages"
        )
    return clean


def compare_sides(feed, job, runs, piece, sides):
    """Runs the library and each of sides (label: gs command without the job)
    on the job in turns, runs times, and prints the best of each and the
    ratios. Exits when a gs side does not run the job cleanly; returns True
    when the library failed."""
    failed = False
    megabytes = os.path.getsize(job) / 1e6

    # What a child's ru_maxrss shows of this script: the floor of gs's figures.
    floor_kib = measure(["true"]).peak_kib
    best = {}
    library_error = None
    for _ in range(runs):
        if library_error is None:
            done, stats = run_library(feed, job, piece)
            if stats is None:
                library_error = text_of(done) or f"exit {done.returncode}"
            elif "library" not in best or done.cpu_seconds < best["library"][0].cpu_seconds:
                best["library"] = (done, stats)
        for label, command in sides.items():
            done = measure(command + [job])
            if done.returncode != 0 or done.stdout or done.stderr:
                sys.exit(
                    f"{label} did not run the job cleanly (exit {done.returncode}):\n"
                    f"{text_of(done)[:2000]}"
                )
            if label not in best or done.cpu_seconds < best[label][0].cpu_seconds:
                best[label] = (done, None)

    print(f"best of {runs} by CPU time of the whole process:")
    print(f"{'':<12} {'CPU s':>8} {'MB/s':>8} {'peak RSS MiB':>13}")
    speed = {}
    for label in ["library", *sides]:
        if label not in best:
            print(f"{label:<12} failed: {library_error}")
            failed = True
            continue
        done, stats = best[label]
        speed[label] = megabytes / done.cpu_seconds
        if stats:
            peak = f"{stats['peak_rss_kib'] / 1024:13.1f}"
        elif done.peak_kib <= floor_kib * 1.05:
            peak = f"<= {done.peak_kib / 1024:10.1f}"
        else:
            peak = f"{done.peak_kib / 1024:13.1f}"
        print(f"{label:<12} {done.cpu_seconds:8.2f} {speed[label]:8.2f} {peak}")
    print(f"(gs's peak RSS counts this script's {floor_kib / 1024:.1f} MiB at the fork)")
    if "library" in best:
        stats = best["library"][1]
        print(
            f"library feeding alone: {stats['MB_per_s']:.2f} MB/s by CPU "
            f"({stats['cpu_s']:.2f} s CPU, {stats['wall_s']:.2f} s wall), "
            f"{int(stats['pages'])} pages, {int(stats['content_bytes'])} bytes of content "
            f"({stats['content_bytes'] / 1e6 / megabytes:.2f} per byte of PostScript), "
            f"peak RSS {stats['peak_rss_kib'] / 1024:.1f} MiB "
            f"({stats['open_rss_kib'] / 1024:.1f} MiB with the handle open)"
        )
        for label in sides:
            print(f"ratio library/{label}: {speed['library'] / speed[label]:.2f} (MB/s over MB/s)")
    return failed


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--feed", default="build/default/ps_feed")
    parser.add_argument("--runs", type=int, default=3)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--mb", type=float, default=32.0, help="size of the job in MB")
    parser.add_argument("--pages", type=int, default=40)
    parser.add_argument("--piece", type=int, default=64 << 10, help="bytes per PSConvertToPdf")
    parser.add_argument("--job", help="run this PostScript file instead of generating one")
    parser.add_argument("--keep", help="work in this directory and keep the job and outputs")
    parser.add_argument(
        "--check-content", action="store_true", help="have gs read the library's content"
    )
    args = parser.parse_args()
    require_tools(args.feed)

    workdir = args.keep or tempfile.mkdtemp(prefix="vector_bench_")
    os.makedirs(workdir, exist_ok=True)
    failed = False
    try:
        job = args.job
        if job:
            print(f"job: {job}, {os.path.getsize(job) / 1e6:.2f} MB")
        else:
            job = os.path.join(workdir, f"vector-{args.seed}.ps")
            start = time.perf_counter()
            cpu = time.process_time()
            with open(job, "w", newline="\n") as out:
                size, paths = vector_job.generate(out, args.seed, args.mb, args.pages)
            print(
                f"job: {job}, {size / 1e6:.2f} MB, {args.pages} pages, {paths} paths, "
                f"seed {args.seed}; generated in {time.perf_counter() - start:.1f} s "
                f"({time.process_time() - cpu:.1f} s CPU)"
            )
        failed = compare_sides(args.feed, job, args.runs, args.piece, SIDES)
        if args.check_content and not check_content(args.feed, job, args.piece, workdir):
            failed = True
    finally:
        if not args.keep:
            shutil.rmtree(workdir, ignore_errors=True)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
