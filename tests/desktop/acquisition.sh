#!/usr/bin/env bash
# The main job by mouse: connect, play, see the picture, read a pixel, stop, disconnect, close.
. "$(dirname "$0")/screen.sh" "$@"

step "starts on the virtual detector"
printf '[General]\nD2xxLibrary=virtual\n' >config.ini
start_program
wait_for log_has '串口0 = QV1K'
[ "$(spread)" -lt 50 ]

step "connects"
click 322 117
wait_for log_has '串口连接配置成功'
wait_for log_has '串口接收数据 = 57' # battery level, 87 percent

step "plays, and the picture appears"
click -256 20
wait_for log_has '串口接收线程开启'
wait_for shows_picture
point 200 600 # off the button, which has another colour under the mouse
is_red() { [ "$(pixel -275 20)" = '#D03D4F' ]; }
wait_for is_red

step "reads the current of a clicked pixel"
readout before.png
click 873 409
wait_for readout_differs_from before.png
shot playing

step "stops"
click -256 20
wait_for log_has '下位机停止成功'
point 200 600
is_idle() { [ "$(pixel -275 20)" = '#896827' ]; }
wait_for is_idle

step "disconnects"
click 322 117
wait_for log_has '串口关闭'
shot disconnected

step "closes on Yes, with exit code 0"
has_box() { [ "$(xdotool getwindowfocus getwindowname 2>/dev/null)" = Warning ]; }
click -23 20
wait_for has_box
xdotool key alt+y
wait "$program_pid"
