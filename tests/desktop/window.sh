#!/usr/bin/env bash
# The frameless window behaves like a window: it moves, resizes, maximises, minimises and closes.
. "$(dirname "$0")/screen.sh" "$@"

at() { geometry; [ "$X,$Y" = "$1" ]; }
sized() { geometry; [ "${WIDTH}x$HEIGHT" = "$1" ]; }

step "starts in the middle of the screen without a frame of the window manager"
printf '[General]\nD2xxLibrary=virtual\n' >config.ini
start_program
shot started
geometry
x=$X y=$Y width=$WIDTH height=$HEIGHT
[ -z "$(xprop -id "$window" _NET_FRAME_EXTENTS | grep -E '[1-9]' || true)" ]

step "moves when its title bar is dragged"
drag 400 20 -60 30
wait_for at "$((x - 60)),$((y + 30))"

step "grows when its right edge is dragged"
drag -1 300 80 0
wait_for sized "$((width + 80))x$height"

step "grows when its bottom edge is dragged"
drag 300 $((height - 1)) 0 40
wait_for sized "$((width + 80))x$((height + 40))"

step "maximises and restores by its button"
click -73 20
wait_for sized 1600x1000
shot maximised
click -73 20
wait_for sized "$((width + 80))x$((height + 40))"

step "maximises and restores by a double click on the title bar"
point 400 20
xdotool click --repeat 2 --delay 60 1
wait_for sized 1600x1000
point 400 20
xdotool click --repeat 2 --delay 60 1
wait_for sized "$((width + 80))x$((height + 40))"

step "minimises and comes back"
is_hidden() { xprop -id "$window" WM_STATE | grep -q Iconic; }
click -123 20
wait_for is_hidden
xdotool windowactivate "$window"
wait_for is_shown

step "asks before it closes, and stays on the default No"
has_box() { xdotool search --onlyvisible --name '^Warning$' >/dev/null 2>&1; }
has_no_box() { ! has_box; }
box_has_focus() { [ "$(xdotool getwindowfocus getwindowname 2>/dev/null)" = Warning ]; }
click -23 20
wait_for has_box
wait_for box_has_focus
shot asks
xdotool key Return
wait_for has_no_box
kill -0 "$program_pid"

step "closes on Yes, with exit code 0"
click -23 20
wait_for has_box
wait_for box_has_focus
xdotool key alt+y
wait "$program_pid"

step "left a log that begins and ends as it should"
head -n 1 Logs/Log*.txt | grep -q '   >>   日志线程开启$'
tail -n 1 Logs/Log*.txt | grep -q '   >>   日志线程结束$'
