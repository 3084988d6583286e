#!/usr/bin/env bash
# The detector's parameters by mouse and keyboard: a download from the settings page, the engineering dialog, and an
# EEPROM that outlives the program.
. "$(dirname "$0")/screen.sh" "$@"

focused() { [ "$(xdotool getwindowfocus getwindowname 2>/dev/null)" = "$1" ]; }
# How often the detector has answered with this so far.
answered() { [ "$(grep -c "串口接收数据 = $1" Logs/Log*.txt)" -ge "$2" ]; }
stored() { grep -qx "$1" config.ini; }

# Places in the dialog are told in its own pixels: the window manager gives it a frame.
open_dialog() {
    click -312 20
    wait_for focused Developer
    dialog=$(xdotool getwindowfocus)
}
press() { xdotool mousemove --sync --window "$dialog" "$1" "$2" click 1; }
close_dialog() {
    xdotool key Escape
    wait_for focused mainwindow
}
# Types over the field at this place and over those after it.
fill() {
    press "$1" "$2"
    shift 2
    for text in "$@"; do
        xdotool key ctrl+a type --delay 2 -- "$text"
        xdotool key Tab
    done
}
connect() {
    click 322 117
    wait_for answered 57 "$1" # battery level, 87 percent
}
quit_program() {
    click -23 20
    wait_for focused Warning
    xdotool key alt+y
    wait "$program_pid"
}

step "downloads the 1 nA range from the settings page"
printf '[General]\nD2xxLibrary=virtual\nDebugMode=true\n' >config.ini
start_program
connect 1
click 75 178
click 345 152
click 323 397
wait_for focused Info
wait_for answered FFBB01100DEB 1
wait_for answered FFBB01010DEB 1
wait_for answered FFBB01020DEB 1
shot downloaded
xdotool key Return
wait_for focused mainwindow

step "explains the voltages"
click 364 198
wait_for focused VoltageDetails
help=$(xdotool getwindowfocus)
is_table() { [ "$(import -window "$help" -crop 1x1+900+62 -depth 8 txt:- | grep -oE '#[0-9A-F]{6}' | head -n 1)" = '#DDDDDD' ]; }
wait_for is_table
shot voltages
xdotool key Escape
wait_for focused mainwindow

step "reads back what was downloaded"
open_dialog
press 111 543
wait_for answered 0102034500 1
press 111 577
wait_for answered 000180 1
shot read-back

step "sends every group of the dialog"
press 122 242 # QV 256
press 111 272
wait_for answered FFBB01000DEB 1
press 111 171
wait_for answered FFBB01010DEB 2
fill 338 46 1.25 2.5 3.75 5 6.25 7.5 8.75 10 -1.25 -2.5 -3.75 -5 -6.25 -7.5 -8.75 -10
press 308 577
wait_for answered FFBB01020DEB 2
fill 560 74 5000
press 463 577
press 564 577
wait_for answered FFBB01100DEB 2
words=()
for i in $(seq 32); do words+=($((i * 1000001))); done
fill 720 46 "${words[@]}"
press 849 543
wait_for answered FFBB01EE0DEB 1
press 688 577
wait_for answered FFBB03E00DEB 1
shot filled
close_dialog
wait_for stored lineEdit_1=1.25
wait_for stored lineEdit_16=-10
wait_for stored lineEdit_17=1740783600
wait_for stored lineEdit_35=1000001
wait_for stored lineEdit_66=32000032
wait_for stored mode=false

step "shows the fields as they were left, and reads back what was sent"
open_dialog
fill 338 46 9 9 9
press 111 577
wait_for answered 10018088009000 1
close_dialog
wait_for stored lineEdit_1=1.250
wait_for stored lineEdit_3=3.750
wait_for stored lineEdit_18=5000
quit_program

step "finds the EEPROM as it was written, after the program was started again"
start_program
connect 2
open_dialog
fill 720 46 7 7 7
press 711 543
wait_for answered 000F424100 1
shot restarted
close_dialog
wait_for stored lineEdit_35=1000001
wait_for stored lineEdit_36=2000002
wait_for stored lineEdit_66=32000032
wait_for stored lineEdit_1=1.250
quit_program
