# A Windows of Wine's for one test, beside nothing of the tool chain: a program finds what lies beside it, and Windows'
# own. Sourced after tests/desktop/screen.sh, which gives screen, working folder and steps.
# shellcheck shell=bash disable=SC2154  # here and folder come from places.sh and screen.sh

# Sets c, home and documents to its drive, and to the user's folders.
new_system() {
    export WINEPREFIX=$folder/wine WINEPATH='' WINEQT_PLUGIN_PATH=''
    unset QT_QPA_PLATFORM
    trap end_system EXIT
    step "makes a system"
    run cmd.exe /c exit
    all_ended
    c=$WINEPREFIX/drive_c
    home=$c/users/$(id -un)
    documents=$(readlink -f "$home/Documents")
}
end_system() {
    local status=$?
    "$wine_server" --kill || true
    set +e
    (exit "$status")
    tidy
}

run() { "$here/wine" "$@"; }
all_ended() { timeout 120 "$wine_server" --wait; }
# Every file and folder of the system's drive and of the user's documents but temporary ones.
listing() { find "$c" "$documents" -path "$c/users/*/Temp/*" -prune -o -print | sort; }

window_appears() {
    wait_for is_shown
    window=$(xdotool search --onlyvisible --name '^mainwindow$' | head -n 1)
    wait_for is_drawn
}
has_box() { [ "$(xdotool getwindowfocus getwindowname 2>/dev/null)" = Warning ]; }
close_window() {
    click -23 20
    wait_for has_box
    xdotool key alt+y
}
