# The installer of a folder. Sourced by package and test-installer.
# shellcheck shell=bash disable=SC2154  # here and root come from places.sh

# make_installer FOLDER VERSION OUT
make_installer() {
    local work
    work=$(mktemp -d)
    installed_list "$1" >"$work/installed.txt"
    touch -d "@$SOURCE_DATE_EPOCH" "$work/installed.txt"
    install_instructions "$1" "$work/installed.txt" >"$work/files.nsh"
    makensis -V2 -WX -DVERSION="$2" -DFILES="$work/files.nsh" -DSIZE="$(du -sk --apparent-size "$1" | cut -f1)" \
        -DICON="$root/resources/logo.ico" -DOUT="$3" "$here/installer/installer.nsi"
    rm -r "$work"
}

# What the installer leaves for its next version and for the uninstaller (installer/common.nsh).
installed_list() {
    (cd "$1" && find . -type f -printf '%P\n' | sort && find . -mindepth 1 -depth -type d -printf '%P/\n' | sort -r) |
        sed 's,/,\\,g; s/$/\r/'
}

# Every file by its name, so that their order is always the same.
install_instructions() {
    local folder file
    (cd "$1" && find . -type d -printf '%P\n' | sort) | while read -r folder; do
        echo "SetOutPath \"\$INSTDIR${folder:+\\${folder//\//\\}}\""
        find "$1/$folder" -maxdepth 1 -type f | sort | while read -r file; do echo "File \"$file\""; done
    done
    echo 'SetOutPath "$INSTDIR"'
    echo "File \"$2\""
}
