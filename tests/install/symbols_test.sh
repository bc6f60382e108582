#!/usr/bin/env bash
# Compares what the shared library exports with what its public headers mark for export: nothing
# else is to be seen, and nothing may be missing.
# Arguments: the shared library, the directory of its headers.
set -euo pipefail
library=$1
headers=$2

# The names of classes and functions behind PKGVET_EXPORT.
marked=$(grep -rhE '^(class )?PKGVET_EXPORT ' --include='*.h' "$headers" |
    sed -E 's/^class PKGVET_EXPORT (\w+).*/\1/; s/^PKGVET_EXPORT [^(]*\b(\w+)\(.*/\1/' | sort)

# The namespaces that the platform gave to one class are not part of its name here.
exported=$(nm -DC --defined-only "$library" | sed -E 's/^[0-9a-f]+ . //' |
    sed 's/^ManagedConfiguration::Validator:://' |
    sed -E 's/^(\w+)(::|\(|\[abi:cxx11\]\().*/\1/' | sort -u)

if ! difference=$(diff <(echo "$marked") <(echo "$exported")); then
    echo "marked (<) and exported (>) symbols differ:"
    echo "$difference" | grep '^[<>]'
    exit 1
fi
