#!/usr/bin/env bash
# The page of a large run in a browser: its size, and how long it takes to open and to filter.
# Arguments: the build tree, whose browser test has fetched what drives the browser; how often.
set -euo pipefail
readonly build=$(realpath "$1")
runs=${2-5}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
browser=$(command -v chromium || command -v chromium-browser) || { echo "there is no Chromium"; exit 0; }
ctest --test-dir "$build" -R '^page$' >"$work/log" 2>&1 || { cat "$work/log"; exit 1; }
[ -d "$build/page-test/node_modules" ] || { echo "playwright-core could not be fetched"; exit 0; }
begin=$(date +%s%N)
"$build/bin/page-sample-run" large "$work/page.html" "$work/page.json"
echo "10,000 packages with 100,000 findings, made and written as page and JSON in $((($(date +%s%N) - begin) / 1000000)) ms"
HOME=$work TMPDIR=$work node "$(dirname "$0")/page_bench.mjs" "$work/page.html" "$build/page-test" "$browser" "$runs"
