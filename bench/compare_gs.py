#!/usr/bin/env python3
"""Speed of the library's interpreter beside Ghostscript's, in the same run.

Generates three programs (driver-style calls of short procedure aliases,
nested loops with arithmetic, comparisons and def, dictionary-heavy look-ups),
runs each through bench/ps_feed (the library, fed in pieces as a host does)
and through `gs -q -dNODISPLAY -dBATCH -dNOPAUSE`, alternating, several
times, and prints the best MB/s of each, by the CPU time of the whole process
(start-up included on both sides), and the ratio library / gs. Both must run
the programs cleanly: gs must print nothing, ps_feed must not fail.

Ghostscript is only the yardstick here; nothing of the library uses it.

    bench/compare_gs.py --feed build/default/ps_feed [--runs 5] [--scale 1]
"""

import argparse
import os
import shutil
import subprocess
import sys
import tempfile

GS = ["gs", "-q", "-dNODISPLAY", "-dBATCH", "-dNOPAUSE"]


def grow(head, target, line):
    """head, then line(0), line(1), ... until the text has target bytes."""
    out = [head]
    size = len(head)
    i = 0
    while size < target:
        out.append(line(i))
        size += len(out[-1])
        i += 1
    return "".join(out)


def driver_program(target):
    """Numbers and calls of one- and two-letter aliases, as a printer driver writes."""
    head = (
        "/cx 0 def /cy 0 def /lw 1 def\n"
        "/M {/cy exch def /cx exch def} bind def\n"
        "/L {2 copy cy sub exch cx sub add pop /cy exch def /cx exch def} bind def\n"
        "/C {/cy exch def /cx exch def pop pop pop pop} bind def\n"
        "/R {exch cx add exch cy add L} bind def\n"
        "/W {/lw exch def} bind def\n"
        "/S {lw pop} bind def\n"
    )

    def line(i):
        a, b, c = i % 4999, (i * 7) % 3989, (i * 13) % 997
        return (
            f"{a} {b} M {a + 12} {b - 5} L {c}.25 {a}.5 {b} {c} {a + 3} {b + 9} C "
            f"{c} -3 R 0.{c % 10}8 W {b} {a} L S\n"
        )

    return grow(head, target, line)


def loop_program(target):
    """Nested for loops with arithmetic, comparisons, if and def."""

    def block(k):
        return (
            f"0 1 {40 + k % 9} {{ /i exch def 0 2 {60 + k % 7} {{ dup i lt "
            f"{{ /n n 1 add def }} {{ /s s 3 mul 7 mod def }} ifelse "
            f"i 2 mul gt {{ /n n 1 sub def }} if }} for }} for\n"
        )

    return grow("/n 0 def /s 0 def /i 0 def\n", target, block)


def dictionary_program(target):
    """Definitions in several dictionaries, begin/end, get, put, known, where."""
    keys = 40
    head = "".join(
        f"/D{d} {keys + 10} dict def D{d} begin\n"
        + " ".join(f"/k{d}_{j} {j} def" for j in range(keys))
        + "\nend\n"
        for d in range(3)
    )

    def line(i):
        d, e = i % 3, (i + 1) % 3
        j1, j2, j3 = i % keys, (i * 7) % keys, (i * 11) % keys
        return (
            f"D{d} begin k{d}_{j1} k{d}_{j2} add 1000 mod /k{d}_{j3} exch def "
            f"D{e} begin k{e}_{j2} k{d}_{j1} lt {{ /k{e}_{j1} k{e}_{j3} def }} if end end "
            f"D{e} /k{e}_{j3} get D{d} /k{d}_{j2} 3 -1 roll put "
            f"D{d} /k{d}_{j1} known pop /k{d}_{j2} where {{ pop }} if "
            f"userdict /u{i % 64} {j1} put\n"
        )

    return grow(head, target, line)


PROGRAMS = [
    ("driver", driver_program, 30),
    ("loops", loop_program, 0.12),
    ("dicts", dictionary_program, 12),
]


def measure(command):
    """Runs command to its end; a CompletedProcess with, beside the usual
    fields, cpu_seconds (user and system) and peak_kib (peak resident memory)
    of that child alone. Output goes through files, so no pipe can stall."""
    with tempfile.TemporaryFile() as out, tempfile.TemporaryFile() as err:
        child = subprocess.Popen(command, stdout=out, stderr=err)
        _, status, usage = os.wait4(child.pid, 0)
        child.returncode = os.waitstatus_to_exitcode(status)
        out.seek(0)
        err.seek(0)
        done = subprocess.CompletedProcess(command, child.returncode, out.read(), err.read())
    done.cpu_seconds = usage.ru_utime + usage.ru_stime
    done.peak_kib = usage.ru_maxrss
    return done


def timed(command):
    """CPU seconds of the child (user and system): on a shared, loaded machine
    the wall clock mostly measures the wait for a core."""
    done = measure(command)
    return done.cpu_seconds, done


def check(name, label, done):
    if done.returncode != 0 or done.stdout or done.stderr:
        sys.exit(
            f"{name}: {label} did not run cleanly (exit {done.returncode}):\n"
            f"{done.stdout.decode(errors='replace')[:800]}"
            f"{done.stderr.decode(errors='replace')[:800]}"
        )


def require_tools(feed):
    """Ends the run unless gs and the feeder are there."""
    if not shutil.which("gs"):
        sys.exit("gs not found: it is the yardstick of this comparison")
    if not os.access(feed, os.X_OK):
        sys.exit(f"{feed}: no feeder; build the target ps_feed")


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--feed", default="build/default/ps_feed")
    parser.add_argument("--runs", type=int, default=5)
    parser.add_argument("--scale", type=float, default=1.0, help="multiplies the program sizes")
    parser.add_argument("--only", help="run only the program of this name")
    parser.add_argument("--keep", help="write the programs into this directory and keep them")
    args = parser.parse_args()
    require_tools(args.feed)

    workdir = args.keep or tempfile.mkdtemp(prefix="compare_gs_")
    os.makedirs(workdir, exist_ok=True)
    print(f"{'program':<8} {'MB':>7} {'library MB/s':>13} {'gs MB/s':>9} {'ratio':>6}")
    try:
        for name, generate, megabytes in PROGRAMS:
            if args.only and name != args.only:
                continue
            path = os.path.join(workdir, name + ".ps")
            with open(path, "w") as f:
                f.write(generate(int(megabytes * args.scale * 1e6)))
            size = os.path.getsize(path) / 1e6
            best = {"library": float("inf"), "gs": float("inf")}
            commands = {"library": [args.feed, path], "gs": GS + [path]}
            for _ in range(args.runs):
                for label, command in commands.items():
                    seconds, done = timed(command)
                    check(name, label, done)
                    best[label] = min(best[label], seconds)
            lib, gs = size / best["library"], size / best["gs"]
            print(f"{name:<8} {size:7.2f} {lib:13.2f} {gs:9.2f} {lib / gs:6.2f}", flush=True)
    finally:
        if not args.keep:
            shutil.rmtree(workdir, ignore_errors=True)


if __name__ == "__main__":
    main()
