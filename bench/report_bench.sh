#!/usr/bin/env bash
# Time and memory of reports on many packages: the report side of 'pkgvet check', and 'pkgvet merge',
# 'report' and 'compare' on what it wrote. The reports are made up, with ten findings a package.
#
# usage: report_bench.sh PROGRAM REPORT-MEMORY [PACKAGES [FORMAT...]]
set -euo pipefail
program=$(realpath "$1")
writer=$(realpath "$2")
packages=${3-100000}
shift $(($# < 3 ? $# : 3))
[ "$#" -gt 0 ] || set -- text concise json jsonl junit sarif html gitlab \
    github markdown in-toto
readonly program writer packages shards=8 findings=10
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export LC_ALL=C

row() { # NAME SECONDS KIB FILE
    awk -v name="$1" -v s="$2" -v kib="$3" -v bytes="$(stat -c %s "$4")" 'BEGIN {
        printf "%-34s %8.1f s %8.0f MiB %10.0f MB\n", name, s, kib / 1024, bytes / 1e6 }'
}

# Runs the program and looks at its memory until it ends: the most of it never becomes less.
measured() { # NAME FILE ARGUMENT...
    local name=$1 file=$2 begin=$EPOCHREALTIME memory=0 now pid status=0
    shift 2
    "$program" "$@" >"$file" &
    pid=$!
    while now=$(awk '/VmHWM/ { print $2 }' "/proc/$pid/status" 2>/dev/null) && [ -n "$now" ]; do
        memory=$now
        sleep 0.05
    done
    wait "$pid" || status=$?
    [ "$status" -le 1 ] || exit "$status"
    row "$name" "$(awk -v a="$begin" -v b="$EPOCHREALTIME" 'BEGIN { print b - a }')" "$memory" "$file"
}

written() { # NAME FILE ARGUMENT...
    local name=$1 file=$2 figures
    shift 2
    # What SARIF leaves out is told ahead of the figures.
    read -ra figures <<<"$("$writer" "$@" 2>&1 >"$file" | tail -n 1)"
    row "$name" "${figures[@]}" "$file"
}

echo "$packages packages with $findings findings each: time, most memory, size"
for format in "$@"; do
    written "check's side, $format" "$work/whole.$format" "$format" "$packages" "$findings"
done
for ((number = 1; number <= shards; number++)); do
    "$writer" jsonl "$packages" "$findings" "$number/$shards" >"$work/shard-$number" 2>/dev/null
done
for format in "$@"; do
    measured "merge of $shards shards, $format" "$work/merged" merge --format "$format" "$work"/shard-*
    cmp "$work/merged" "$work/whole.$format"
done
[ -e "$work/whole.jsonl" ] || exit 0
for format in "$@"; do
    measured "report from jsonl, $format" "$work/again" report --format "$format" "$work/whole.jsonl"
    cmp "$work/again" "$work/whole.$format"
done
measured "compare" "$work/effect" compare "$work/whole.jsonl" "$work/whole.jsonl"
