# A virtual screen with a window manager and the program on it, in an empty working folder. Sourced by the flows:
#   . screen.sh <program> <folder for screenshots>

set -euo pipefail
program=$(readlink -f "$1")
mkdir -p "$2"
shots=$(readlink -f "$2")
rm -f "$shots"/*.png
folder=$(mktemp -d)
cd "$folder"

pids=()
tidy() {
    local status=$?
    [ "$status" -eq 0 ] || { echo "failed: ${step:-start}"; import -window root "$shots/failed.png" || true; tail -n 40 ./*.log; }
    kill "${pids[@]}" 2>/dev/null || true
    wait 2>/dev/null || true
    rm -rf "$folder"
    exit "$status"
}
trap tidy EXIT

# Says what is being tried; a failure names it.
step() { step=$1; echo "- $1"; }

# Repeats a condition until it holds, 60 s at most.
wait_for() {
    local end=$((SECONDS + 60))
    until "$@"; do
        [ $SECONDS -lt $end ] || { echo "never came true: $*"; return 1; }
        sleep 0.1
    done
}

unset WAYLAND_DISPLAY QT_STYLE_OVERRIDE
export QT_QPA_PLATFORM=xcb XDG_RUNTIME_DIR=$folder
# Without -noreset the server starts anew when its last client leaves, and a window manager just coming would be lost.
Xvfb -displayfd 3 -screen 0 1600x1000x24 -nolisten tcp -noreset 3>display >xvfb.log 2>&1 &
pids+=($!)
wait_for test -s display
DISPLAY=:$(cat display)
export DISPLAY
openbox >openbox.log 2>&1 &
pids+=($!)
has_manager() { xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null | grep -q 'window id'; }
wait_for has_manager

start_program() {
    # A shell has what it starts in the background ignore SIGINT, and the program heeds that.
    env --default-signal "$program" >program.log 2>&1 &
    program_pid=$!
    pids+=("$program_pid")
    wait_for is_shown
    window=$(xdotool search --onlyvisible --name '^mainwindow$' | head -n 1)
    wait_for is_drawn
}
is_shown() { xdotool search --onlyvisible --name '^mainwindow$' >/dev/null 2>&1; }
# The title bar has its colour.
is_drawn() { [ "$(pixel 400 20)" = '#896827' ]; }

# Places are told in pixels of the window; negative ones count from its right edge.
geometry() { eval "$(xdotool getwindowgeometry --shell "$window")"; }
place() { geometry; px=$((X + $1 + ($1 < 0 ? WIDTH : 0))); py=$((Y + $2)); }
point() { place "$1" "$2"; xdotool mousemove --sync "$px" "$py"; }
click() { point "$1" "$2"; xdotool click 1; }
drag() { # from x y by dx dy
    point "$1" "$2"
    xdotool mousedown 1 mousemove_relative --sync -- "$(($3 / 2))" "$(($4 / 2))" \
        mousemove_relative --sync -- "$(($3 - $3 / 2))" "$(($4 - $4 / 2))" mouseup 1
}
pixel() {
    place "$1" "$2"
    import -window root -crop "1x1+$px+$py" -depth 8 txt:- 2>/dev/null | grep -oE '#[0-9A-F]{6}' | head -n 1
}
shot() { import -window root "$shots/$1.png"; }
log_has() { grep -q "$1" Logs/Log*.txt 2>/dev/null; }

# How much the grey levels of the image view differ: close to 0 while it is empty.
spread() {
    place 560 120
    import -window root -crop "600x600+$px+$py" -colorspace Gray -format '%[fx:int(1000*standard_deviation)]' info:-
}
shows_picture() { [ "$(spread)" -gt 100 ]; }
# The box below the picture that tells the current of the clicked pixel, as a picture itself.
readout() { place -270 770; import -window root -crop "250x40+$px+$py" "$1"; }
readout_differs_from() { readout now.png; [ "$(compare -metric AE "$1" now.png null: 2>&1)" != 0 ]; }
