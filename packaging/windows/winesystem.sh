# A Windows of Wine's: made once, with the fonts of this machine in place of those that Windows has.
# shellcheck shell=bash

wine=/usr/lib/wine/wine64
wine_server=/usr/lib/wine/wineserver64
wine_recipe=$here/winesystem.reg

# A path of this machine as Wine shows it.
windows_path() { printf 'Z:%s' "${1//\//\\}"; }

# What every program of Wine's gets. Wine keeps QT_* of this machine away from its programs and hands on WINEQT_*,
# WINEPATH and the like in their place. Nothing is written to this user's home, no menu entries on this desktop,
# no questions about what Wine would like to download.
wine_environment() {
    local name
    for name in $(compgen -e QT_); do
        export "WINE$name=${!name}"
    done
    export WINEPREFIX=${WINEPREFIX:-$cache/wine}
    export HOME=$WINEPREFIX/home
    export WINEDEBUG=${WINEDEBUG:--all}
    export WINEDLLOVERRIDES='mscoree,mshtml=;winemenubuilder.exe=d'
    export LC_ALL=C.UTF-8
    export WINEPATH="${WINEPATH-$(windows_path "$port/bin");$(windows_path "$prefix/bin")}"
    export WINEQT_PLUGIN_PATH=${WINEQT_PLUGIN_PATH-$(windows_path "$prefix/plugins")}
    mkdir -p "$HOME/Documents"
}

# Makes the system, or its settings anew when they have changed; one at a time, and nobody starts before it is whole.
wine_system() {
    is_made && return
    (flock 9 && { is_made || make_system; }) 9>"$WINEPREFIX.lock" >"$WINEPREFIX.log" 2>&1 && return
    cat "$WINEPREFIX.log" >&2
    return 1
}
is_made() { cmp -s "$wine_recipe" "$WINEPREFIX/.made"; }
make_system() {
    # The settings are on the disk when the last process of this system has left.
    "$wine" wineboot.exe --init && "$wine" winecfg.exe /v win10 &&
        "$wine" reg.exe import "$(windows_path "$wine_recipe")" &&
        "$wine_server" --wait && cp "$wine_recipe" "$WINEPREFIX/.made"
}
