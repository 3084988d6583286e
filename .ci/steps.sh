# Steps that are done once: step NAME runs the function build_NAME in a shell of its own and keeps its output in a log.
# A step is done again when its recipe has changed; one that was broken off starts anew.
# shellcheck shell=bash

say() { printf '%s  %s\n' "$(date +%H:%M:%S)" "$*"; }

# What a step's recipe is now.
recipe() { declare -f "build_$1" | sha256sum | cut -d' ' -f1; }

is_done() { [ "$(cat "$prefix/.done/$1" 2>/dev/null)" = "$(recipe "$1")" ]; }

step() {
    local name=$1 log=$work/log/$1.log start=$SECONDS
    is_done "$name" && return
    mkdir -p "$prefix/.done" "$work/log"
    rm -f "$prefix/.done/$name"
    say "$name ..."
    # In a shell of its own, where the first failure ends it (set -e is off inside conditions).
    set +e
    (set -euxo pipefail; cd "$work"; "build_$name") >"$log" 2>&1
    local result=$?
    set -e
    if [ $result -ne 0 ]; then
        tail -n 25 "$log" >&2
        say "$name failed; the whole log is $log" >&2
        return 1
    fi
    recipe "$name" >"$prefix/.done/$name"
    say "$name: $((SECONDS - start)) s"
}
