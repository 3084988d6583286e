#!/usr/bin/env bash
# That docs/check-api finds what it is there for.
set -euo pipefail
check=$(dirname "$(readlink -f "$0")")/../../docs/check-api
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
mkdir "$folder/headers"

header() { printf '#pragma once\n\n%s\n' "$1" >"$folder/headers/a.h"; }
accepts() { "$check" "$folder/headers" "$folder/pages" >"$folder/output" 2>&1; }
refuses() {
    if accepts; then
        echo "Nothing is said of: $1" >&2
        exit 1
    fi
    grep -q "$2" "$folder/output"
}

header $'/// What it is.\nstruct A { int a; };'
accepts
refused=$'/// What it is.\nstruct A { int a; };\n/// \\param b what\nvoid f(int a);'
header "$refused"
refuses "$refused" "argument 'b'"
refused='struct A { int a; };'
header "$refused"
refuses "$refused" 'Compound A is not documented'
