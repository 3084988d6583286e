# What programs and libraries of Windows import. Sourced by package and check-imports.
# shellcheck shell=bash disable=SC2154  # here and host come from places.sh

# The names of the libraries that a file imports, in small letters: Windows does not tell a from A.
imports_of() { "$host-objdump" -p "$1" | sed -n 's/^\s*DLL Name: //p' | tr '[:upper:]' '[:lower:]'; }

# The list has a name a line, and a line of its own for what it says of itself.
is_of_windows() { grep -v '^#' "$here/windows-libraries.txt" | grep -qixF "$1"; }

# Every program and library below a folder, as paths relative to it.
binaries_in() { (cd "$1" && find . -iname '*.exe' -o -iname '*.dll') | sed 's,^\./,,' | LC_ALL=C sort; }

# is_loaded_by_name FILE: by a path relative to the package; nothing imports these.
is_loaded_by_name() {
    case $1 in
    d2xx_virtual.dll | platforms/qwindows.dll | styles/qwindowsvistastyle.dll | imageformats/qico.dll) return 0 ;;
    *) return 1 ;;
    esac
}
