#!/usr/bin/env bash
# Judging packages against bare unpacking, side by side: rpm2cpio | cpio into an empty directory, its
# removal included, and pkgvet check. Each row gives milliseconds for a package and the ratio. The
# commands of a row take turns and the least of their times counts, so that what else goes on on the
# machine does not decide. Behind them comes the most memory that pkgvet's own processes took.
#
# A package that cannot be judged ends the benchmark.
#
# At the end, bare unpacking into memory by cpio and by the guard in its place, in turns, the
# best of all of them. Then a check against the impact of a change of the rules, in turns.
#
# usage: judging_bench.sh PROGRAM [RUNS]
set -euo pipefail
readonly program=$(realpath "$1")
readonly guard=${program%/bin/*}/libexec/pkgvet/cpio
runs=${2-5}
elf= # that packages hold beside their files
# rpmbuild cannot work below a path with a blank.
work=$(TMPDIR=/tmp mktemp -d)
memory=$(mktemp -d -p /dev/shm 2>/dev/null || mktemp -d)
trap 'rm -rf "$work" "$memory"' EXIT
export LC_ALL=C
exec 3>&2

# make NAME FILES BYTES-OF-EACH COMPRESSION: a package with files of random bytes, half of which repeat.
make() {
    local name=org.example.$1 files=$2 bytes=$3 payload=$4 installed= file=
    if [ -n "$elf" ]; then
        file=/usr/bin/$name
        installed="install -Dm755 $elf %{buildroot}$file"
    fi
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
$installed
%files
/usr/share/$name
$file
SPEC
    rpmbuild -bb --quiet --define "_topdir $work/build" --define "_dbpath $work/db" \
        --define "_binaries_in_noarch_packages_terminate_build 0" \
        --define "__os_install_post %{nil}" --define "__find_requires %{nil}" \
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

# Runs the program, whatever the verdict. What could not be judged would only look fast.
run() { # ARGUMENT...
    local status=0
    "$program" "$@" >"$work/log" 2>&1 || status=$?
    if [ "$status" -gt 1 ]; then
        cat "$work/log" >&3
        echo "judging_bench: nothing was judged, status $status: pkgvet $*" >&3
        exit 1
    fi
}

judge() { # ARGUMENT...
    run check -q "$@"
}

lesser() { # A B
    echo $(($1 < $2 ? $1 : $2))
}

# Lessens the variable to the hundredths of a millisecond that the command takes.
least() { # VARIABLE COMMAND...
    local -n best=$1
    local begin end
    shift
    begin=$(date +%s%N)
    "$@" >/dev/null 2>&1
    end=$(date +%s%N)
    best=$(lesser "$best" $(((end - begin) / 10000)))
}

row() { # NAME PACKAGES MEMORY DISK CHECK
    awk -v name="$1" -v n="$2" -v memory="$3" -v disk="$4" -v check="$5" 'BEGIN {
        printf "%-28s %10.2f %10.2f %10.2f %8.2f\n", name, memory / 100 / n, disk / 100 / n,
               check / 100 / n, check / memory }'
}

measure() { # NAME
    local package=$work/$1.rpm in_memory=999999999 on_disk=999999999 check=999999999 i
    for ((i = 0; i < runs; ++i)); do
        least in_memory unpack "$memory" "$package"
        least on_disk unpack "$work" "$package"
        least check judge "$package"
    done
    row "$1" 1 "$in_memory" "$on_disk" "$check"
}

# A shared object of SIZE bytes or more with SYMBOLS symbols.
make_elf() { # FILE SIZE SYMBOLS
    {
        printf '.data\n.zero %d\n' "$2"
        seq "$3" | sed 's/.*/.globl symbol_number_&\nsymbol_number_&:/'
    } | "${CC-cc}" -shared -nostdlib -x assembler -o "$1" -
}

# MiB that the processes of a run share and have, tools apart, at the most.
most_memory() { # PACKAGE
    local most=0 sum process pids
    "$program" check -q "$1" >/dev/null 2>&1 &
    process=$!
    while kill -0 $process 2>/dev/null; do
        pids=$(pgrep -x pkgvet -P $process || true)
        sum=$(for pid in $process $pids; do
            awk '/^Pss:/ { print $2 }' "/proc/$pid/smaps_rollup" 2>/dev/null || true
        done | awk '{ sum += $1 } END { print int(sum / 1024) }')
        most=$((sum > most ? sum : most))
        sleep 0.01
    done
    wait $process || true
    echo "$most"
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
make_elf "$work/elf" 60000000 500000
elf=$work/elf
for compression in zstd:w3.zstdio gzip:w1.gzdio; do
    make "big-${compression%%:*}" 3 100000000 "${compression#*:}"
    measure "big-${compression%%:*}"
done

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
confined() { # COMMAND...
    (taskset -cp 0 $BASHPID && "$@")
}
lint() { # PACKAGE
    rpmlint "$1" || true
}
alone=999999999 in_memory=999999999 on_disk=999999999 one=999999999 two=999999999
for ((i = 0; i < 2; ++i)); do
    least in_memory unpack_all "$memory"
    least on_disk unpack_all "$work"
    least one judge --jobs 1 "$work/batch"
    least two judge --jobs 2 "$work/batch"
    least alone confined judge --jobs 1 "$work/batch"
done
row "300 tiny, --jobs 1" 300 "$in_memory" "$on_disk" "$one"
row "300 tiny, --jobs 2" 300 "$in_memory" "$on_disk" "$two"
row "300 tiny, one processor" 300 "$in_memory" "$on_disk" "$alone"
# One job uses more than one processor: its tools work side by side.
awk -v one="$one" -v two="$two" -v alone="$alone" 'BEGIN {
    printf "two jobs judge %.2f times as fast as one, and %.2f times as fast as one on one processor\n",
           one / two, alone / two }'
if command -v rpmlint >/dev/null; then
    in_memory=999999999 lint=999999999
    least in_memory unpack "$memory" "$work/tiny-gzip.rpm"
    least lint lint "$work/tiny-gzip.rpm"
    row "tiny-gzip with rpmlint" 1 "$in_memory" 0 "$lint"
fi
printf '%-28s %10s MiB\n' "memory, big-zstd" "$(most_memory "$work/big-zstd.rpm")"

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
    local plain=1000000000 guarded=1000000000 i
    for ((i = 0; i < 3 * runs; ++i)); do
        plain=$(lesser "$plain" "$(unpack_with /usr/bin/cpio "$work/$1.rpm")")
        guarded=$(lesser "$guarded" "$(unpack_with "$guard" "$work/$1.rpm")")
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

# What a second rule tree costs: one check against `pkgvet impact` with a library and a path less,
# first for single packages and then for a run over many.
readonly rules=${program%/bin/*}/share/pkgvet/rules/pkgvet.json
mkdir "$work/rules"
regular=$(dirname "$(sed -n 's/.*"paths_list": "\(.*regular.*\)".*/\1/p' "$rules" | head -1)")
sed '0,/"libc/s/"libc/"labc/' "$regular/libraries.json" >"$work/rules/libraries.json"
sed '0,/"\/usr/s/"\/usr/"\/opt/' "$regular/paths.json" >"$work/rules/paths.json"
sed "s|$regular/libraries.json|$work/rules/libraries.json|; s|$regular/paths.json|$work/rules/paths.json|" \
    "$rules" >"$work/rules/pkgvet.json"
against() { # NAME PACKAGES PATH
    local check=1000000000 impact=1000000000 i
    for ((i = 0; i < runs; ++i)); do
        least check judge "$3"
        least impact run impact --old "$rules" --new "$work/rules/pkgvet.json" "$3"
    done
    awk -v name="$1" -v n="$2" -v check="$check" -v impact="$impact" 'BEGIN {
        printf "%-28s %10.2f %10.2f %21.2f\n", name, check / 100 / n, impact / 100 / n,
               impact / check }'
}

printf '%-28s %10s %10s %21s\n' "ms for a package" "check" "impact" "ratio"
for package in tiny-gzip medium-gzip many-gzip big-zstd; do
    against "$package" 1 "$work/$package.rpm"
done
against "300 tiny" 300 "$work/batch"
