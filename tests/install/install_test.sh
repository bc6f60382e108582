#!/usr/bin/env bash
# Installs into an empty prefix and uses what lies there: the program with its rule tree, and the
# library through its CMake package and through pkg-config.
# Arguments: the build tree, the source tree.
set -euo pipefail
build=$1
source=$2
# rpmbuild cannot work below a path with a blank.
work=$(TMPDIR=/tmp mktemp -d)
trap 'rm -rf "$work"' EXIT

fail() {
    echo "FAILED: $*" >&2
    exit 1
}

prefix="$work/a prefix"
cmake --install "$build" --prefix "$prefix" >/dev/null

for sample in good bad; do
    rpmbuild -bb --quiet --define "_topdir $work/$sample" --define "_dbpath $work/db" \
        --define "_sourcedir $source/examples/$sample" \
        "$source/examples/$sample/"*.spec >/dev/null 2>"$work/log" || fail "$(cat "$work/log")"
done
good=$(echo "$work"/good/RPMS/*/*.rpm)
bad=$(echo "$work"/bad/RPMS/*/*.rpm)

"$prefix/bin/pkgvet" check --quiet "$good" || fail "the good sample was not accepted"
guard=$(find "$prefix" -path '*/pkgvet/cpio')
mv "$guard" "$guard.away"
answer=$("$prefix/bin/pkgvet" check --format concise "$good" 2>&1) && fail "a package was judged without the guard"
echo "$answer" | grep -Eq "the guard in the place of cpio cannot be run: (No such file or directory|Permission denied)" ||
    fail "without the guard it says: $answer"
mv "$guard.away" "$guard"
status=0
"$prefix/bin/pkgvet" check --quiet "$bad" || status=$?
[ "$status" -eq 1 ] || fail "the bad sample ended with status $status"

# The installation is found wherever it lies: moved, or staged below another directory, and the names
# that are written in its configuration file lead nowhere.
moved="$work/moved"
cp -a "$prefix" "$moved"
mv "$prefix" "$work/away"
DESTDIR="$work/stage" cmake --install "$build" --prefix /nowhere >/dev/null
for place in "$moved" "$work/stage/nowhere"; do
    "$place/bin/pkgvet" check --quiet "$good" >/dev/null ||
        fail "the good sample was not accepted in $place"
    "$place/bin/pkgvet" rules check | grep -qx "0 errors, 0 warnings" ||
        fail "the rule tree in $place has faults"
    "$place/bin/pkgvet" rules show >"$work/shown"
    grep -q "$place/share/pkgvet/rules/regular/" "$work/shown" ||
        fail "other rules than those in $place are shown"
done
sed -i '0,/"name": /s//"nam": "", &/' "$moved/share/pkgvet/rules/pkgvet.json"
("$moved/bin/pkgvet" rules check || true) |
    grep -q "^error: $moved/share/pkgvet/rules/pkgvet.json:[0-9]*:[0-9]*: .*nam\" is not" ||
    fail "a fault of the rule tree in $moved has no place there"
mv "$work/away" "$prefix"

libdir=$(dirname "$(find "$prefix" -name pkgvet.pc)")/..
for file in share/man/man1/pkgvet.1 share/man/man5/pkgvet-rules.5 \
    share/bash-completion/completions/pkgvet share/fish/vendor_completions.d/pkgvet.fish \
    share/zsh/site-functions/_pkgvet; do
    [ -s "$prefix/$file" ] || fail "$file was not installed"
done
"$prefix/bin/pkgvet" rules check | grep -qx "0 errors, 0 warnings" ||
    fail "the installed rule tree has faults"

grep -q "$source\|$build" -r "$prefix/share" "$libdir/pkgconfig" "$libdir/cmake" &&
    fail "a path of the build tree was installed"

PKG_CONFIG_PATH="$libdir/pkgconfig" cmake -S "$source/tests/install/consumer" -B "$work/consumer" -G Ninja \
    -DCMAKE_PREFIX_PATH="$prefix" >/dev/null
cmake --build "$work/consumer" >/dev/null
for program in by-package by-pkg-config; do
    answer=$(LD_LIBRARY_PATH="$libdir" "$work/consumer/$program" \
        "$prefix/share/pkgvet/rules/pkgvet.json" "$good")
    [ "$answer" = "org.example.pilot accepted" ] || fail "$program says: $answer"
done

"$source/tests/install/symbols_test.sh" "$libdir/libpkgvet.so" "$prefix/include" ||
    fail "the library does not export what its headers declare"
answer=$(LD_LIBRARY_PATH="$libdir" "$work/consumer/boundary" "$work/scratch" 2>/dev/null)
[ "$answer" = "1111" ] || fail "boundary says: $answer"
