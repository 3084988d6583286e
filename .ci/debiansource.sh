# Debian's source packages, from where this machine gets its packages. The machine's own lists are left alone:
# they are read as deb-src into a private apt configuration.
# shellcheck shell=bash

debian_sources_ready() {
    local apt=$work/apt list
    [ -e "$apt/ready" ] && return
    mkdir -p "$apt/lists/partial" "$apt/sources"
    for list in /etc/apt/sources.list.d/*.sources; do
        [ -e "$list" ] && sed 's/^Types:.*/Types: deb-src/' "$list" >"$apt/sources/$(basename "$list")"
    done
    for list in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
        [ -e "$list" ] && sed -n 's/^deb /deb-src /p' "$list" >"$apt/sources/$(basename "$list" .list).list"
    done
    cat >"$apt/apt.conf" <<EOF
Dir::Etc::SourceList "/dev/null";
Dir::Etc::SourceParts "$apt/sources";
Dir::State::Lists "$apt/lists";
APT::Sandbox::User "";
EOF
    APT_CONFIG=$apt/apt.conf apt-get update
    touch "$apt/ready"
}

# unpack SOURCE_PACKAGE: fetches it, applies Debian's patches, sets $src to its folder; keeps its version and licence
# in the prefix. The newest version that can be had: an index may name one whose files are gone.
unpack() {
    local package=$1 folder=$work/src/$1 version
    if [ ! -e "$folder/.version" ]; then
        debian_sources_ready
        rm -rf "$folder"
        mkdir -p "$folder"
        while read -r version; do
            (cd "$folder" && APT_CONFIG=$work/apt/apt.conf apt-get source --only-source "$package=$version") &&
                echo "$version" >"$folder/.version" && break
            echo "$package $version is in the index and cannot be had; the next older one is taken"
            find "$folder" -mindepth 1 -delete
        done < <(APT_CONFIG=$work/apt/apt.conf apt-cache showsrc --only-source "$package" |
            sed -n 's/^Version: //p' | sort -rVu)
        [ -e "$folder/.version" ]
    fi
    src=$(find "$folder" -mindepth 1 -maxdepth 1 -type d)
    keep_licence "$package" "$(cat "$folder/.version")" "$src/debian/copyright"
}

# keep_licence NAME VERSION FILE
keep_licence() {
    mkdir -p "$prefix/licences"
    cp -L "$3" "$prefix/licences/$1.txt"
    echo "$2" >"$prefix/licences/$1.version"
}
