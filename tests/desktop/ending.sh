#!/usr/bin/env bash
# The system asks the program to end in the middle of a recording: what was stored is whole, the detector is told to
# halt, and the process ends by that very signal.
. "$(dirname "$0")/screen.sh" "$1" "$2"
video_frames=$(readlink -f "$3")

stored() { find record -name '*_pic*.png' 2>/dev/null | wc -l; }
has_stored() { [ "$(stored)" -ge "$1" ]; }

record() {
    printf '[General]\nD2xxLibrary=virtual\nSavePath=%s\n' "$folder" >config.ini
    rm -rf Logs record
    start_program
    click 322 117
    wait_for log_has '串口连接配置成功'
    click 67 274 # the save page
    click 320 147
    xdotool type record
    click 330 110
    xdotool key ctrl+a
    xdotool type 1000
    click 200 221
    click 289 221
    click 379 221
    click 320 259
    wait_for log_has '开始保存'
    click -256 20
    wait_for has_stored 3
}

# How many frames the log says were stored.
told() { sed -n 's/.*保存中止.*已存 \([0-9]*\) \/ 1000 .*/\1/p' Logs/Log*.txt; }

for signal in TERM INT HUP; do
    step "records, and ends by SIG$signal"
    record
    kill -s "$signal" "$program_pid"
    status=0
    wait "$program_pid" || status=$?
    [ "$status" -eq $((128 + $(kill -l "$signal"))) ]
    log_has '串口销毁'
    log_has '日志线程结束'

    step "all that was stored before SIG$signal is whole"
    frames=$(told)
    [ "$frames" -ge 3 ]
    [ "$(stored)" -eq "$frames" ]
    [ "$("$video_frames" record/output_video.mp4)" -eq "$frames" ]
    [ -z "$(find record -name '*.part*')" ]
done
