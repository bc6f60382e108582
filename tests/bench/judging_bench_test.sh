#!/usr/bin/env bash
# The benchmark of judging tells when nothing was judged, as by a program without what belongs to it.
#
# usage: judging_bench_test.sh SOURCE-TREE PROGRAM
set -euo pipefail
readonly source=$1 program=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

mkdir "$work/bin"
cp "$program" "$work/bin"
ln -s "${program%/bin/*}/lib" "$work/lib"
if TMPDIR=$work "$source/bench/judging_bench.sh" "$work/bin/pkgvet" 1 >"$work/log" 2>&1; then
    echo "the benchmark measured a program that judges nothing"
    exit 1
fi
if ! grep -q "nothing was judged" "$work/log"; then
    cat "$work/log"
    exit 1
fi
