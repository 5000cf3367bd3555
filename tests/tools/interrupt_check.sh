#!/usr/bin/env bash
# An interrupted run leaves no partial PDF and leaves an existing file as it
# was: kelps2pdf waits on a pipe mid-job, is interrupted, and the folder must
# hold what it held before.
#   interrupt_check.sh KELPS2PDF
set -euo pipefail
program="$1"
work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
printf 'old' > "$work/out.pdf"
for signal in INT TERM; do
    fifo="$work/job.fifo"
    mkfifo "$fifo"
    "$program" -q - "$work/out.pdf" < "$fifo" &
    pid=$!
    exec 3> "$fifo"
    printf '%%!PS-Adobe-3.0\n%%%%Page: 1 1\n0 0 moveto 9 9 lineto stroke\n' >&3
    # Until the temporary file is there, the program has not begun its output.
    for _ in $(seq 100); do
        ls "$work" | grep -q '\.part-' && break
        sleep 0.05
    done
    ls "$work" | grep -q '\.part-' || { echo "no temporary file appeared"; exit 1; }
    kill -"$signal" "$pid"
    # The end of the input: a program that did not stop now completes its PDF.
    exec 3>&-
    status=0
    wait "$pid" || status=$?
    rm -f "$fifo"
    [ "$status" -ne 0 ] || { echo "SIG$signal: exit status 0"; exit 1; }
    left="$(ls "$work")"
    [ "$left" = "out.pdf" ] || { echo "SIG$signal left: $left"; exit 1; }
    [ "$(cat "$work/out.pdf")" = "old" ] || { echo "SIG$signal changed out.pdf"; exit 1; }
    echo "SIG$signal: exit $status, nothing left behind"
done
