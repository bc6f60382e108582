#!/usr/bin/env bash
# Judging packages against bare unpacking, side by side: rpm2cpio | cpio into an empty directory, its
# removal included, and pkgvet check. Each row gives milliseconds for a package and the ratio.
#
# Behind that, bare unpacking into memory with and without the guard in front of cpio, in turns, the
# best of all of them.
#
# usage: judging_bench.sh PROGRAM [RUNS]
set -euo pipefail
readonly program=$(realpath "$1")
readonly guard=${program%/bin/*}/libexec/pkgvet/cpio
runs=${2-5}
work=$(mktemp -d)
memory=$(mktemp -d -p /dev/shm 2>/dev/null || mktemp -d)
trap 'rm -rf "$work" "$memory"' EXIT
export LC_ALL=C

# make NAME FILES BYTES-OF-EACH COMPRESSION: a package with files of random bytes, half of which repeat.
make() {
    local name=org.example.$1 files=$2 bytes=$3 payload=$4
    cat >"$work/$1.spec" <<SPEC
Name: $name
Version: 1
Release: 1
Summary: A package for measuring
License: MIT
BuildArch: noarch
%description
A package for measuring.
%install
mkdir -p %{buildroot}/usr/share/$name
head -c $bytes /dev/urandom >$work/noise
for i in \$(seq $files); do
    { echo \$i; head -c $((bytes / 2)) $work/noise; head -c $((bytes / 2)) /dev/zero; } \\
        >%{buildroot}/usr/share/$name/\$i
done
%files
/usr/share/$name
SPEC
    rpmbuild -bb --quiet --define "_topdir $work/build" --define "_dbpath $work/db" \
        --define "_binary_payload $payload" --define "_build_name_fmt $1.rpm" "$work/$1.spec" \
        >"$work/log" 2>&1 || { cat "$work/log" >&2; exit 1; }
    mv "$work/build/RPMS/$1.rpm" "$work/$1.rpm"
    rm -rf "$work/build"
}

unpack() { # DIRECTORY PACKAGE
    mkdir "$1/tree"
    (cd "$1/tree" && rpm2cpio "$2" | cpio -idm --quiet 2>/dev/null)
    rm -rf "$1/tree"
}

# Milliseconds that the command takes on average.
average() {
    local begin end i
    "$@" >/dev/null 2>&1 || true
    begin=$(date +%s%N)
    for ((i = 0; i < runs; ++i)); do
        "$@" >/dev/null 2>&1 || true
    done
    end=$(date +%s%N)
    echo $(((end - begin) / runs / 10000)) # in hundredths
}

row() { # NAME PACKAGES MEMORY DISK CHECK
    awk -v name="$1" -v n="$2" -v memory="$3" -v disk="$4" -v check="$5" 'BEGIN {
        printf "%-28s %10.2f %10.2f %10.2f %8.2f\n", name, memory / 100 / n, disk / 100 / n,
               check / 100 / n, check / memory }'
}

measure() { # NAME
    local package=$work/$1.rpm
    row "$1" 1 "$(average unpack "$memory" "$package")" "$(average unpack "$work" "$package")" \
        "$(average "$program" check -q "$package")"
}

printf '%-28s %10s %10s %10s %8s\n' "ms for a package" "in memory" "on disk" "judged" "ratio"
for compression in gzip:w9.gzdio xz:w6.xzdio zstd:w19.zstdio; do
    kind=${compression%%:*}
    make "tiny-$kind" 20 15000 "${compression#*:}"
    measure "tiny-$kind"
    make "medium-$kind" 500 40000 "${compression#*:}"
    measure "medium-$kind"
done
make many-gzip 10000 100 w9.gzdio
measure many-gzip
make big-zstd 4 100000000 w3.zstdio
measure big-zstd

mkdir "$work/batch"
for ((i = 0; i < 300; ++i)); do
    ln "$work/tiny-gzip.rpm" "$work/batch/$i.rpm"
done
unpack_all() {
    local package
    for package in "$work"/batch/*.rpm; do
        unpack "$1" "$package"
    done
}
readonly in_memory=$(average unpack_all "$memory")
readonly on_disk=$(average unpack_all "$work")
for jobs in 1 2; do
    row "300 tiny, --jobs $jobs" 300 "$in_memory" "$on_disk" \
        "$(average "$program" check -q --jobs "$jobs" "$work/batch")"
done
if command -v rpmlint >/dev/null; then
    row "tiny-gzip with rpmlint" 1 "$(average unpack "$memory" "$work/tiny-gzip.rpm")" 0 \
        "$(average rpmlint "$work/tiny-gzip.rpm")"
fi

# Hundredths of a millisecond that unpacking takes with CPIO, the word for the program.
unpack_with() { # CPIO PACKAGE
    local begin end
    mkdir "$memory/tree"
    begin=$(date +%s%N)
    (cd "$memory/tree" && /usr/bin/rpm2cpio "$2" | "$1" -idm --quiet 2>/dev/null)
    end=$(date +%s%N)
    rm -rf "$memory/tree" "$memory/note"
    echo $(((end - begin) / 10000))
}

compare() { # NAME
    local plain=1000000000 guarded=1000000000 took i
    for ((i = 0; i < 3 * runs; ++i)); do
        took=$(unpack_with /usr/bin/cpio "$work/$1.rpm")
        plain=$((took < plain ? took : plain))
        took=$(unpack_with "$guard" "$work/$1.rpm")
        guarded=$((took < guarded ? took : guarded))
    done
    awk -v name="$1" -v plain="$plain" -v guarded="$guarded" 'BEGIN {
        printf "%-28s %10.2f %10.2f %21.2f\n", name, plain / 100, guarded / 100, guarded / plain }'
}

export PKGVET_GUARD_ORDERS=$memory/orders PKGVET_GUARD_NOTE=$memory/note
echo "18446744073709551615 18446744073709551615" >"$PKGVET_GUARD_ORDERS"
printf '%-28s %10s %10s %21s\n' "ms for a package" "cpio" "guarded" "ratio"
for package in tiny-gzip medium-gzip many-gzip big-zstd; do
    compare "$package"
done
