#!/usr/bin/env bash
# A whole repository: a plain run over many packages, and one in eight shards that are merged, with
# time and memory of both. The packages are links to 300 different ones that are made on the spot.
#
# usage: repository_bench.sh PROGRAM [PACKAGES]
set -euo pipefail
program=$(realpath "$1")
readonly program packages=${2-10000} different=300 shards=8 jobs=2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export LC_ALL=C

# Of one file to forty, with a program in each third and a library that is not allowed in each fifth.
make() { # NUMBER
    local name=org.example.package$1
    cat >"$work/spec" <<SPEC
Name: $name
Version: 1.$1
Release: 1
Summary: A package for measuring
License: MIT
%description
A package for measuring.
%install
mkdir -p %{buildroot}/usr/share/$name %{buildroot}/usr/bin %{buildroot}/usr/lib
for i in \$(seq $(($1 % 40 + 1))); do
    { echo $1 \$i; head -c $(($1 * 37 % 60000)) /dev/urandom; } >%{buildroot}/usr/share/$name/\$i
done
[ $(($1 % 3)) != 0 ] || cp /bin/true %{buildroot}/usr/bin/$name
[ $(($1 % 5)) != 0 ] || cp /bin/true %{buildroot}/usr/lib/libother.so
%files
/usr
SPEC
    rpmbuild -bb --quiet --define "_topdir $work/build" --define "_dbpath $work/db" \
        --define "__os_install_post %{nil}" --define "_binary_payload w3.zstdio" \
        --define "_build_name_fmt $1.rpm" "$work/spec" >"$work/log" 2>&1 ||
        { cat "$work/log" >&2; exit 1; }
    mv "$work/build/RPMS/$1.rpm" "$work/$1.rpm"
    rm -rf "$work/build"
}

# In KiB, of the process and all that it started; what several of them share counts once.
memory() { # PID
    local child children
    awk '/^Pss:/ { print $2 }' "/proc/$1/smaps_rollup" 2>/dev/null || true
    children=$(cat "/proc/$1"/task/*/children 2>/dev/null) || true
    for child in $children; do
        memory "$child"
    done
}

most() { # PID
    local most=0 now
    while [ -e "/proc/$1/exe" ]; do
        now=$(memory "$1" | awk '{ sum += $1 } END { print sum + 0 }')
        most=$((now > most ? now : most))
        sleep 1
    done
    echo "$most"
}

measured() { # NAME ARGUMENT...
    local TIMEFORMAT='%R %U %S' name=$1 child="" memory pid status=0
    shift
    { time "$program" "$@" >/dev/null 2>"$work/errors"; } 2>"$work/times" &
    pid=$!
    while [ -z "$child" ]; do
        child=$(cat "/proc/$pid/task/$pid/children")
    done
    memory=$(most "${child% }")
    wait "$pid" || status=$?
    [ "$status" -le 1 ] || { cat "$work/errors" >&2; exit "$status"; }
    awk -v name="$name" -v kib="$memory" '{
        printf "%-28s %8.1f s %8.1f s of processors %8.0f MiB\n", name, $1, $2 + $3, kib / 1024
    }' "$work/times"
}

for ((i = 1; i <= different; i++)); do
    make "$i"
done
for ((i = 0; i < packages; i++)); do
    directory=$work/repository/$((i / 1000))
    [ $((i % 1000)) != 0 ] || mkdir -p "$directory"
    ln "$work/$((i % different + 1)).rpm" "$directory/$i.rpm"
    echo "$directory/$i.rpm"
done >"$work/list"

echo "$packages packages, $(du -ch "$work"/*.rpm | tail -n 1 | cut -f1) in $different different ones"
measured "check" check -q --jobs "$jobs" --files-from "$work/list" -o "jsonl:$work/whole"
for ((number = 1; number <= shards; number++)); do
    measured "check --shard $number/$shards" check -q --jobs "$jobs" --shard "$number/$shards" \
        --files-from "$work/list" -o "jsonl:$work/shard-$number"
done
measured "merge" merge -q -o "jsonl:$work/merged" "$work"/shard-*
cmp "$work/whole" "$work/merged"
echo "$(grep -c '"path"' "$work/whole") packages, $(stat -c %s "$work/whole") bytes of report," \
    "$(grep -o '"rule":' "$work/whole" | wc -l) findings"
