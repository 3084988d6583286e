# Where the Windows port keeps what it is built with. Sourced by the scripts beside it.
#   QV1K_WINDOWS_CACHE   a folder outside the tree, ~/.cache/qv1k-windows by default; it may be deleted at any time
# shellcheck shell=bash disable=SC2034  # used by who sources this

here=$(cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")" && pwd)
root=$(cd "$here/../.." && pwd)
[ -n "${HOME:-}" ] || HOME=$(getent passwd "$(id -u)" | cut -d: -f6)
export HOME
cache=${QV1K_WINDOWS_CACHE:-$HOME/.cache/qv1k-windows}
mkdir -p "$cache"
cache=$(readlink -f "$cache")
export QV1K_WINDOWS_CACHE=$cache

prefix=$cache/prefix # the libraries, their licences and versions
work=$cache/work     # sources, builds and logs of the libraries
host=x86_64-w64-mingw32
jobs=${JOBS:-$(nproc)}

port=$root/build/windows # the program itself, preset "windows"
packages=$port/package   # ZIP, installer, checksums
