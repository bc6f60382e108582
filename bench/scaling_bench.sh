#!/usr/bin/env bash
# What a repository costs: seconds of wall clock and of processors to judge packages, against their
# number, their files and their bytes, with one job and with two. Each figure is the least of RUNS.
#
# usage: scaling_bench.sh PROGRAM [RUNS]
set -euo pipefail
program=$(realpath "$1")
readonly program runs=${2-3}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export LC_ALL=C

make() { # NAME FILES BYTES-OF-EACH
    cat >"$work/$1.spec" <<SPEC
Name: org.example.$1
Version: 1
Release: 1
Summary: A package for measuring
License: MIT
BuildArch: noarch
%description
A package for measuring.
%install
mkdir -p %{buildroot}/usr/share/org.example.$1
head -c $3 /dev/urandom >$work/noise
for i in \$(seq $2); do
    { echo \$i; head -c $(($3 / 2)) $work/noise; head -c $(($3 / 2)) /dev/zero; } \\
        >%{buildroot}/usr/share/org.example.$1/\$i
done
%files
/usr/share/org.example.$1
SPEC
    rpmbuild -bb --quiet --define "_topdir $work/build" --define "_dbpath $work/db" \
        --define "__os_install_post %{nil}" --define "_binary_payload w3.zstdio" \
        --define "_build_name_fmt $1.rpm" "$work/$1.spec" >"$work/log" 2>&1 ||
        { cat "$work/log" >&2; exit 1; }
    mv "$work/build/RPMS/$1.rpm" "$work/$1.rpm"
    rm -rf "$work/build"
}

# Prints wall clock and processor seconds of a run over the list of copies.
once() { # JOBS
    local TIMEFORMAT='%R %U %S'
    { time "$program" check -q --jobs "$1" --files-from "$work/list" \
        -o "jsonl:$work/report" >/dev/null 2>&1 || true; } 2>&1 |
        awk '{ print $1, $2 + $3 }'
}

row() { # LABEL PACKAGE COPIES
    local i jobs wall processors best
    mkdir -p "$work/copies"
    for ((i = 0; i < $3; i++)); do
        ln -f "$work/$2.rpm" "$work/copies/$i.rpm"
        echo "$work/copies/$i.rpm"
    done >"$work/list"
    printf '%-30s' "$1"
    for jobs in 1 2; do
        best="999999 0"
        for ((i = 0; i < runs; i++)); do
            best=$(printf '%s\n%s\n' "$best" "$(once $jobs)" | sort -g | head -n 1)
        done
        read -r wall processors <<<"$best"
        printf ' %9.1f %9.1f' "$(awk "BEGIN { print 1000 * $wall / $3 }")" \
            "$(awk "BEGIN { print 1000 * $processors / $3 }")"
    done
    echo
    rm -rf "$work/copies"
}

make tiny 1 100
for files in 100 1000 10000; do
    make "files-$files" "$files" 1000
done
for megabytes in 1 10 100; do
    make "bytes-$megabytes" 10 $((megabytes * 100000))
done

echo "milliseconds for a package: wall clock and processors with --jobs 1, the same with --jobs 2"
for copies in 1 10 100 300 1000 3000; do
    row "$copies tiny packages" tiny "$copies"
done
for files in 100 1000 10000; do
    row "$files files of 1 kB" "files-$files" 4
done
for megabytes in 1 10 100; do
    row "$megabytes MB in 10 files" "bytes-$megabytes" 4
done
