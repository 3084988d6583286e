#!/usr/bin/env bash
# Makes running.png again, by mouse on a virtual screen: the window plays the virtual detector, and one pixel is read.
#   docs/images/make_running.sh [program, build/release/bin/qv1k]
here=$(dirname "$(readlink -f "$0")")
picture=$here/running.png
set -- "${1:-$here/../../build/release/bin/qv1k}" "$(mktemp -d)"
. "$here/../../tests/desktop/screen.sh"

is_red() { [ "$(pixel -275 20)" = '#D03D4F' ]; }

step "connects"
printf '[General]\nD2xxLibrary=virtual\n' >config.ini
start_program
readout before.png
click 322 117
wait_for log_has '串口接收数据 = 57' # battery level

step "plays with the display page in front"
click 75 226
click -256 20
point 200 600 # off the button, which has another colour under the mouse
wait_for is_red

step "reads a pixel"
wait_for shows_picture
click 850 409
wait_for readout_differs_from before.png
point 200 600
sleep 3 # until the frame rate has settled

step "takes the picture"
import -window "$window" window.png
convert window.png -strip +dither -colors 256 -define png:compression-level=9 "PNG8:$picture"
