#!/usr/bin/env bash
# What bash completes of a command line of qv1k-acquire: completion_test.sh <the program that makes the completion>
set -euo pipefail
eval "$("$1" bash)"

# completed WORD...: what the last word can become
completed() {
    COMP_WORDS=(qv1k-acquire "$@")
    COMP_CWORD=$#
    _qv1k_acquire
    printf '%s\n' "${COMPREPLY[@]}" | sort | xargs
}
# expect WANTED WORD...
expect() {
    local wanted=$1 found
    shift
    found=$(completed "$@")
    [ "$found" = "$wanted" ] || {
        echo "\"$*\" is completed to \"$found\", not to \"$wanted\"" >&2
        exit 1
    }
}

folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
mkdir "$folder/records"
touch "$folder/reference.csv"
cd "$folder"

expect "calibrate" cal
expect "--frames" --fra
expect "--voff --von" set --vo
expect "" list --fra
expect "1 10 150 50" set --range ""
expect "1 2 3 4 5" acquire --pattern ""
expect "dark" calibrate d
expect "records" --output ""
expect "records reference.csv" calibrate dark --to re
expect "" --name ""
