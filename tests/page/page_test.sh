#!/usr/bin/env bash
# Opens the page in a real browser and holds what it shows against JSON reports of the same runs.
# Ends with 77 where there is no browser, or no way to have what drives it.
# Arguments: the build tree, the source tree, the program, page-sample-run.
set -euo pipefail
readonly build=$1 source=$2 program=$3 samples=$4
readonly modules=$build/page-test
# rpmbuild cannot work below a path with a blank.
work=$(TMPDIR=/tmp mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/home" "$work/tmp" "$work/reports"

skip() {
    echo "SKIPPED: $*"
    exit 77
}

find_browser() {
    local name
    for name in chromium chromium-browser google-chrome; do
        command -v "$name" && return 0
    done
    return 1
}

# Fetched once for a build tree, by the versions and digests of the lock file.
install_modules() {
    mkdir -p "$modules"
    (
        flock 9
        if ! cmp -s "$source/tests/page/package-lock.json" "$modules/installed.json"; then
            cp "$source"/tests/page/package*.json "$modules"
            npm ci --prefix "$modules" --cache "$modules/cache" --ignore-scripts --no-audit --no-fund \
                >"$modules/log" 2>&1 &&
                cp "$modules/package-lock.json" "$modules/installed.json"
        fi
    ) 9>"$modules/lock"
}

build_sample() { # NAME
    rpmbuild -bb --quiet --define "_topdir $work/rpm" --define "_dbpath $work/db" \
        --define "_sourcedir $source/examples/$1" "$source/examples/$1/"*.spec >"$work/log" 2>&1 ||
        { cat "$work/log" >&2; exit 1; }
    mv "$work"/rpm/RPMS/*/*.rpm "$work/in/$1.rpm"
}

make_reports() {
    mkdir "$work/in"
    build_sample good
    build_sample bad
    cp "$work/in/bad.rpm" "$work/in/"'<img src=x onerror=alert(1)>.rpm'
    cp "$work/in/good.rpm" "$work/in/"$'two\nlines.rpm'
    echo "This is not a package." >"$work/in/text.rpm"
    local status=0
    (cd "$work" && "$program" check --isolated --profile all -q -o html:reports/all.html \
        -o json:reports/all.json in >/dev/null 2>&1) || status=$?
    [ "$status" -eq 3 ] || { echo "FAILED: the run ended with $status" >&2; exit 1; }
    "$samples" hostile "$work/reports/hostile.html" "$work/reports/hostile.json"
}

browser=$(find_browser) || skip "there is no Chromium"
command -v node >/dev/null && command -v npm >/dev/null || skip "there is no Node.js with npm"
install_modules || skip "playwright-core could not be fetched: $(tail -n 1 "$modules/log")"
make_reports
# Browsers keep files at home and below TMPDIR, and nothing of them is to stay.
export HOME=$work/home TMPDIR=$work/tmp
export PAGE_TEST_BROWSER=$browser PAGE_TEST_MODULES=$modules PAGE_TEST_REPORTS=$work/reports
node --test --test-concurrency=1 "$source/tests/page/"*.test.mjs
