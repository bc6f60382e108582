#!/usr/bin/env bash
# Makes the packages for Debian and for RPM and looks at what they hold and what they need.
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

version=$(sed -n 's/^set(CPACK_PACKAGE_VERSION "\(.*\)")$/\1/p' "$build/CPackConfig.cmake")
for generator in DEB RPM; do
    (cd "$work" && cpack --config "$build/CPackConfig.cmake" -G "$generator" -B "$work") \
        >"$work/log" 2>&1 || fail "$(cat "$work/log")"
done

# Contents, as paths from the root; directories do not matter.
contents() {
    case "$1" in
        *.deb) dpkg-deb -c "$1" | awk '{print substr($6, 2)}' | grep -v '/$' ;;
        *.rpm) rpm -qp --nosignature --dbpath "$work/db" --qf '[%{FILEMODES:perms} %{FILENAMES}\n]' "$1" |
            awk '$1 !~ /^d/ {print $2}' ;;
    esac | sort
}

needs() {
    case "$1" in
        *.deb) dpkg-deb -f "$1" Depends | sed 's/, /\n/g' ;;
        *.rpm) rpm -qp --nosignature --dbpath "$work/db" --requires "$1" ;;
    esac
}

holds() {
    local package=$1 pattern
    shift
    for pattern in "$@"; do
        contents "$package" | grep -Eqx "$pattern" || fail "$package lacks $pattern"
    done
}

demands() {
    local package=$1 need
    shift
    for need in "$@"; do
        needs "$package" | grep -Fq -- "$need" || fail "$package does not need $need"
    done
}

for format in deb rpm; do
    for package in "$work"/*."$format"; do
        holds "$package" '/usr/share/doc/[a-z0-9-]*/copyright'
    done
    library=$(echo "$work"/libpkgvet1[-_]"$version"*."$format")
    development=$(echo "$work"/libpkgvet-dev*[-_]"$version"*."$format")
    program=$(echo "$work"/pkgvet[-_]"$version"*."$format")

    holds "$library" '/usr/lib[^/]*/libpkgvet\.so\.1' "/usr/lib[^/]*/libpkgvet\.so\.$version"
    [ "$(contents "$library" | grep -vc 'build-id')" -eq 3 ] || fail "$library holds more"
    demands "$library" rpm2cpio cpio

    holds "$development" '/usr/lib[^/]*/libpkgvet\.so' '/usr/lib[^/]*/pkgconfig/pkgvet\.pc' \
        '/usr/lib[^/]*/cmake/pkgvet/pkgvet-config\.cmake' '/usr/include/pkgvet/report/logger\.h'
    contents "$development" | grep -q '/bin/\|\.so\.' && fail "$development holds more"

    holds "$program" /usr/bin/pkgvet '/usr/lib.*/pkgvet/cpio' /usr/share/man/man1/pkgvet.1 \
        /usr/share/man/man5/pkgvet-rules.5 /usr/share/bash-completion/completions/pkgvet \
        /usr/share/fish/vendor_completions.d/pkgvet.fish '/usr/share/zsh/[a-z-]*/_pkgvet' \
        /usr/share/pkgvet/rules/pkgvet.json /usr/share/pkgvet/rules/market/requires.json
    contents "$program" | grep -q '/include/\|\.so\|pkgvet-completions' && fail "$program holds more"
done

for package in "$work"/*.rpm; do
    [ "$(rpm -qp --nosignature --dbpath "$work/db" --qf '%{LICENSE}' "$package")" = MIT ] ||
        fail "$package does not name its licence"
done

demands "$work"/libpkgvet-dev_*.deb "libpkgvet1 (= $version)" libglib2.0-dev
demands "$work"/pkgvet_*.deb "libpkgvet1 (= $version)" librpm
demands "$work"/libpkgvet-devel-*.rpm "libpkgvet1 = $version" 'pkgconfig(glib-2.0)'
demands "$work"/pkgvet-[0-9]*.rpm "libpkgvet1 = $version" 'libpkgvet.so.1()' librpm

# What was packed names neither this machine's directories nor those of the packing.
dpkg-deb -x "$work"/pkgvet_*.deb "$work/root"
dpkg-deb -x "$work"/libpkgvet-dev_*.deb "$work/root"
dpkg-deb -x "$work"/libpkgvet1_*.deb "$work/root"
grep -rlI "$build\|$source\|$work" "$work/root" && fail "a path of the build tree was packed"
grep -q '"/usr/share/pkgvet/rules/regular/paths.json"' "$work/root/usr/share/pkgvet/rules/pkgvet.json" ||
    fail "the rule tree does not lead to /usr"
LD_LIBRARY_PATH=$(dirname "$(find "$work/root" -name libpkgvet.so.1)") \
    "$work/root/usr/bin/pkgvet" --version | grep -qx "pkgvet $version" || fail "the program does not run"
