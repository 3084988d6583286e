# The folder that is shipped. Sourced by package.
# shellcheck shell=bash disable=SC2154  # what is not assigned here comes from places.sh and package

stage=$packages/stage
programs=(qv1k.exe qv1k-acquire.exe qv1k-start.exe d2xx_virtual.dll)
# Window system, Windows' own look, and the reader of the program's icon.
plugins=(platforms/qwindows.dll styles/qwindowsvistastyle.dll imageformats/qico.dll)

stage_programs() {
    local program plugin
    for program in "${programs[@]}"; do
        cp "$port/bin/$program" "$stage/"
    done
    for plugin in "${plugins[@]}"; do
        mkdir -p "$stage/$(dirname "$plugin")"
        cp "$prefix/plugins/$plugin" "$stage/$plugin"
    done
    cp -r "$port/share/qv1k/manual" "$stage/"
    # Plugins are looked for here, and nowhere else.
    printf '[Paths]\r\nPrefix=.\r\nPlugins=.\r\n' >"$stage/qt.conf"
}

# The libraries that these import, and those that the libraries import, until none is left.
stage_libraries() {
    local binary name added=1
    while [ "$added" -gt 0 ]; do
        added=0
        while read -r binary; do
            for name in $(imports_of "$stage/$binary"); do
                is_of_windows "$name" || is_staged "$name" || {
                    add_library "$name" "$binary"
                    added=1
                }
            done
        done < <(binaries_in "$stage")
    done
    (cd "$stage" && binaries_in . | xargs -d '\n' "$host-strip" --strip-unneeded)
}
is_staged() { [ -n "$(find "$stage" -maxdepth 1 -iname "$1")" ]; }
add_library() {
    local found
    found=$(find "$prefix/bin" -maxdepth 1 -iname "$1")
    [ -n "$found" ] || { echo "$2 imports $1, which is neither part of Windows nor in $prefix/bin" >&2; return 1; }
    cp "$found" "$stage/"
}

# The source package that a file of the package comes from.
origin_of() {
    case $1 in
    libstdc++-* | libgcc_s_*) echo gcc-runtime ;;
    libwinpthread-*) echo mingw-w64 ;;
    libopencv_*) echo opencv ;;
    avcodec-* | avformat-* | avutil-* | swscale-* | swresample-*) echo ffmpeg ;;
    Qt6*.dll | platforms/* | styles/* | imageformats/*) echo qt6-base ;;
    *) echo "Nobody has said where $1 comes from." >&2; return 1 ;;
    esac
}
# What is contained in other files: in OpenCV's the writer of PNG with its compression, in the programs that of TIFF, in one
# of them the reader of its command line and what publishes frames.
declare -A contained=([libpng1.6]=libopencv_imgcodecs [tiff]="the programs" [cli11]="qv1k-acquire.exe"
    [zeromq3]="qv1k-acquire.exe" [cppzmq]="qv1k-acquire.exe" [zlib]="libopencv_imgcodecs and the programs")

stage_texts() {
    mkdir -p "$stage/licences"
    # Headers only, and this machine's: no step of the tool chain makes it.
    keep_licence cli11 "$(dpkg-query -W -f '${Version}' libcli11-dev)" /usr/share/doc/libcli11-dev/copyright
    list_third_party | to_windows >"$stage/third-party.txt"
    sed "s/@VERSION@/$version/" "$here/readme.txt" | to_windows >"$stage/README.txt"
}
to_windows() { sed 's/$/\r/'; }

# What is not the program's own, with versions; copies the licences.
list_third_party() {
    local binary origin
    declare -A files=()
    while read -r binary; do
        [[ " ${programs[*]} " == *" $binary "* ]] && continue
        origin=$(origin_of "$binary")
        files[$origin]+="    $binary"$'\n'
    done < <(binaries_in "$stage")
    for origin in "${!contained[@]}"; do
        files[$origin]="    in ${contained[$origin]}"$'\n'
    done
    printf 'QV1K %s contains libraries of others, built without changes of ours from the source packages\n' "$version"
    printf 'of Debian 12 in these versions. Their licences are in the folder "licences".\n'
    for origin in $(printf '%s\n' "${!files[@]}" | sort); do
        keep_with_licence "$origin"
        printf '\n%s %s, licences/%s.txt\n' "$origin" "$(cat "$prefix/licences/$origin.version")" "$origin"
        printf '%s' "${files[$origin]}"
    done
}

# A licence with the general texts that it points to.
keep_with_licence() {
    local text
    to_windows <"$prefix/licences/$1.txt" >"$stage/licences/$1.txt"
    for text in $(grep -oE '/usr/share/common-licenses/[A-Za-z0-9.-]*[A-Za-z0-9]' "$prefix/licences/$1.txt" | sort -u); do
        [ -e "$text" ] && to_windows <"$text" >"$stage/licences/$(basename "$text").txt"
    done
}
