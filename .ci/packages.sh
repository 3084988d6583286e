# Debian packages and how they get installed. Sourced by ./run, ./test and .ci/tidy.

build_packages=(
    g++ cmake ninja-build pkg-config
    qt6-base-dev
    libopencv-core-dev libopencv-imgcodecs-dev libopencv-videoio-dev
    libtiff-dev zlib1g-dev
    libudev-dev libftdi1-dev libusb-1.0-0-dev
    libcli11-dev # the command line of qv1k-acquire
    libzmq3-dev cppzmq-dev # frames to other machines
    cmark-gfm # the manual's pages
    fonts-noto-cjk fonts-liberation # Chinese log lines and captions; Latin text
)
test_packages=(
    libgtest-dev libgmock-dev libbenchmark-dev clang-format doxygen
    libumockdev-dev umockdev # bridges that are not there
    python3-numpy # the manual's examples, and reads recorded arrays
    libtiff-tools # reads recorded TIFF files
    python3-zmq python3-tifffile # the examples
    xvfb xauth openbox xdotool x11-utils imagemagick
)
tidy_packages=(clang-tidy)
fuzz_packages=(clang libclang-rt-14-dev)
# For tests/tsan: Qt's generators, and what gets and unpacks its source.
tsan_packages=(qt6-base-dev-tools libglib2.0-dev dpkg-dev perl)
coverage_packages=(gcovr)
# For tests/mutation: reads the sources.
mutation_packages=(python3 python3-clang-14)
# For packaging/linux: what packs, what looks at the result, and a fresh system to use it on.
package_packages=(dpkg-dev file lintian appstream desktop-file-utils debootstrap)
# For packaging/windows: compiler, assembler, Qt's generators, sources, packing, and what runs the result.
windows_packages=(
    g++-mingw-w64-x86-64-posix libz-mingw-w64-dev nasm make
    g++ cmake ninja-build pkg-config perl python3 ca-certificates dpkg-dev
    qt6-base-dev qt6-base-dev-tools qt6-base-private-dev
    cmark-gfm libcli11-dev cppzmq-dev
    nsis zip unzip wine64
)
windows_test_packages=(ffmpeg) # reads the recorded video

as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        echo "Packages are missing (${missing[*]}) and neither root nor sudo is at hand to install them." >&2
        return 1
    fi
}

# Installs those of the given packages that are not there yet.
install_packages() {
    missing=()
    local package
    for package in "$@"; do
        [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null)" = installed ] || missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    echo "Installing ${#missing[@]} packages: ${missing[*]}"
    local log
    log=$(mktemp)
    if ! { as_root apt-get update &&
        as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "${missing[@]}"; } >"$log" 2>&1; then
        tail -n 20 "$log" >&2
        echo "The packages could not be installed; the whole log is $log." >&2
        return 1
    fi
    rm -f "$log"
}

# Configures and builds a preset, quietly unless something is wrong: build_preset <preset> <cmake options> -- <targets>
build_preset() {
    local preset=$1
    shift
    local options=()
    while [ "$1" != -- ]; do
        options+=("$1")
        shift
    done
    shift
    local log=build/$preset/build.log
    mkdir -p "build/$preset"
    if ! { cmake --preset "$preset" "${options[@]}" && cmake --build --preset "$preset" "$@"; } >"$log" 2>&1; then
        grep -E 'error|Error|FAILED' -A 5 "$log" | head -n 60 >&2 || tail -n 40 "$log" >&2
        echo "The build failed; the whole log is $log." >&2
        return 1
    fi
}
