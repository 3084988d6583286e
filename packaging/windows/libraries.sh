# The recipes of the libraries: each a function build_NAME that installs into the prefix. What they take is Debian's
# source packages, and what its packages hold for every system; what they leave out is what the program does not use.
# shellcheck shell=bash

library_steps=(runtime png tiff zeromq cppzmq ffmpeg opencv googletest benchmark qt)

# cross_cmake SOURCE NAME OPTIONS...: configures, builds and installs into the prefix.
cross_cmake() {
    local source=$1 build=$work/build/$2
    shift 2
    rm -rf "$build"
    cmake -S "$source" -B "$build" -G Ninja --toolchain "$here/mingw.cmake" -DCMAKE_BUILD_TYPE=Release \
        -DCMAKE_INSTALL_PREFIX="$prefix" "$@"
    cmake --build "$build" --parallel "$jobs"
    cmake --install "$build" --strip
    rm -rf "$build"
}

# What every program built with this compiler needs beside it.
build_runtime() {
    mkdir -p "$prefix/bin"
    local dll version
    for dll in libstdc++-6.dll libgcc_s_seh-1.dll; do
        cp -L "$($host-g++-posix -print-file-name=$dll)" "$prefix/bin/"
    done
    cp "/usr/$host/lib/libwinpthread-1.dll" "$prefix/bin/"
    version=$(dpkg-query -W -f '${Version}' gcc-mingw-w64-x86-64-posix)
    keep_licence gcc-runtime "$version" /usr/share/doc/gcc-mingw-w64-base/copyright
    version=$(dpkg-query -W -f '${Version}' mingw-w64-x86-64-dev)
    keep_licence mingw-w64 "$version" /usr/share/doc/mingw-w64-x86-64-dev/copyright
    version=$(dpkg-query -W -f '${Version}' libz-mingw-w64-dev)
    keep_licence zlib "$version" /usr/share/doc/libz-mingw-w64-dev/copyright
}

zlib=(-DZLIB_LIBRARY=/usr/$host/lib/libz.a -DZLIB_INCLUDE_DIR=/usr/$host/include)

# Static: it goes into OpenCV's picture writer.
build_png() {
    local src
    unpack libpng1.6
    cross_cmake "$src" png -DPNG_TESTS=OFF -DPNG_SHARED=OFF "${zlib[@]}"
}

# Static: it goes into the programs, which write pages of floats that are not compressed, and nothing else.
build_tiff() {
    local src option off=()
    unpack tiff
    for option in zlib libdeflate pixarlog jpeg jpeg12 lerc lzma zstd webp jbig old-jpeg; do
        off+=("-D$option=OFF")
    done
    for option in tools tests contrib docs; do
        off+=("-Dtiff-$option=OFF")
    done
    cross_cmake "$src" tiff -DBUILD_SHARED_LIBS=OFF -Dcxx=OFF -Dtiff-opengl=OFF "${off[@]}"
}

# Static: it goes into the program that publishes. It encrypts by its own TweetNaCl, and waits by select(), which every
# Windows 10 has and Wine too; sockets in files are newer than the first of them. Which Windows it is for has to be told, or
# it asks for none.
build_zeromq() {
    local src
    unpack zeromq3
    cross_cmake "$src" zeromq -DBUILD_SHARED=OFF -DBUILD_TESTS=OFF -DWITH_DOCS=OFF -DWITH_LIBSODIUM=OFF \
        -DWITH_LIBBSD=OFF -DENABLE_CPACK=OFF -DPOLLER=select -DZMQ_HAVE_IPC=OFF -DZMQ_WIN32_WINNT=0x0A00 \
        -DZEROMQ_CMAKECONFIG_INSTALL_DIR=lib/cmake/ZeroMQ
    grep -q 'Using tweetnacl for CURVE security' "$work/log/zeromq.log"
}

# Headers only, which are the same for every system: Debian has them.
build_cppzmq() {
    mkdir -p "$prefix/include" "$prefix/share/cmake"
    cp -L /usr/include/zmq.hpp "$prefix/include/"
    cp -RL /usr/share/cmake/cppzmq "$prefix/share/cmake/"
    keep_licence cppzmq "$(dpkg-query -W -f '${Version}' cppzmq-dev)" /usr/share/doc/cppzmq-dev/copyright
}

# MPEG-4 Part 2 into and out of MP4, nothing else.
build_ffmpeg() {
    local src build=$work/build/ffmpeg
    unpack ffmpeg
    rm -rf "$build"
    mkdir -p "$build"
    cd "$build"
    "$src/configure" --prefix="$prefix" --cross-prefix=$host- --cc=$host-gcc-posix --arch=x86_64 \
        --target-os=mingw32 --enable-cross-compile --disable-everything --disable-programs --disable-doc \
        --disable-network --disable-autodetect --disable-debug --enable-shared --disable-static \
        --enable-encoder=mpeg4 --enable-decoder=mpeg4 --enable-muxer=mp4,mov --enable-demuxer=mov \
        --enable-protocol=file --enable-parser=mpeg4video --enable-swscale --disable-avdevice \
        --disable-avfilter --disable-postproc --enable-w32threads
    make -j"$jobs"
    make install
    rm -rf "$build"
}

# OpenCV asks no pkg-config for this target: FFmpeg as the CMake package that it can be told to find.
ffmpeg_package() {
    local library
    mkdir -p "$work/ffmpeg-package"
    {
        echo 'set(FFMPEG_FOUND TRUE)'
        echo "set(FFMPEG_INCLUDE_DIRS $prefix/include)"
        echo 'set(FFMPEG_LIBRARIES)'
        for library in avformat avcodec swscale avutil; do
            echo "list(APPEND FFMPEG_LIBRARIES $prefix/lib/lib$library.dll.a)"
            echo "set(FFMPEG_lib${library}_VERSION $(sed -n 's/^Version: //p' "$prefix/lib/pkgconfig/lib$library.pc"))"
        done
    } >"$work/ffmpeg-package/FFMPEGConfig.cmake"
}

build_opencv() {
    local src option off=()
    unpack opencv
    ffmpeg_package
    for option in JPEG TIFF WEBP OPENJPEG JASPER OPENEXR MSMF DSHOW OBSENSOR OPENCL DIRECTX IPP ITT PROTOBUF \
        QUIRC ADE EIGEN LAPACK GSTREAMER WIN32UI 1394 VTK GTK; do
        off+=("-DWITH_$option=OFF")
    done
    for option in TESTS PERF_TESTS EXAMPLES JAVA ZLIB PNG opencv_apps opencv_python2 opencv_python3; do
        off+=("-DBUILD_$option=OFF")
    done
    # Without HAVE_PTHREAD it builds as well, but without workers (it looks for pthread.h on Unix only).
    PKG_CONFIG_LIBDIR=$prefix/lib/pkgconfig PKG_CONFIG_PATH='' cross_cmake "$src" opencv \
        -DBUILD_LIST=core,imgproc,imgcodecs,videoio -DBUILD_SHARED_LIBS=ON "${zlib[@]}" -DWITH_PNG=ON \
        -DPNG_PNG_INCLUDE_DIR="$prefix/include" -DPNG_LIBRARY="$prefix/lib/libpng16.a" -DWITH_FFMPEG=ON \
        -DOPENCV_FFMPEG_SKIP_DOWNLOAD=ON -DOPENCV_FFMPEG_USE_FIND_PACKAGE=FFMPEG \
        -DFFMPEG_DIR="$work/ffmpeg-package" -DCV_TRACE=OFF -DENABLE_PRECOMPILED_HEADERS=OFF \
        -DWITH_PTHREADS_PF=ON -DHAVE_PTHREAD=1 "${off[@]}"
    grep -q 'Parallel framework: *pthreads' "$work/log/opencv.log"
    $host-objdump -p "$prefix"/bin/libopencv_videoio*.dll | grep 'DLL Name: avformat'
}

# The tests' and the benchmarks' own libraries, static.
build_googletest() {
    local src
    unpack googletest
    cross_cmake "$src" googletest -DBUILD_SHARED_LIBS=OFF -DBUILD_GMOCK=ON
}

# Its feature checks run programs, and Debian's patch takes the version from outside: both are told.
build_benchmark() {
    local src
    unpack benchmark
    cross_cmake "$src" benchmark -DBUILD_SHARED_LIBS=OFF -DBENCHMARK_ENABLE_TESTING=OFF \
        -DBENCHMARK_ENABLE_WERROR=OFF -DBENCHMARK_INSTALL_DOCS=OFF -DHAVE_STD_REGEX=ON -DHAVE_STEADY_CLOCK=ON \
        -DGIT_VERSION="$(sed -n 's/^project (benchmark VERSION \([0-9.]*\).*/\1/p' "$src/CMakeLists.txt")"
}

# The stripped source lacks wintab.h (tabletevent); the rest is what the program does not use. Direct2D stays on:
# without it the platform plugin looks in vain for the DirectWrite font database.
build_qt() {
    local src option off=()
    unpack qt6-base
    for option in tabletevent sql network dbus xml printsupport concurrent vulkan icu \
        system_zlib system_png system_jpeg system_freetype system_harfbuzz system_pcre2; do
        off+=("-DFEATURE_$option=OFF")
    done
    cross_cmake "$src" qt -DQT_HOST_PATH=/usr -DQT_HOST_PATH_CMAKE_DIR=/usr/lib/x86_64-linux-gnu/cmake \
        -DBUILD_SHARED_LIBS=ON -DQT_BUILD_TESTS=OFF -DQT_BUILD_EXAMPLES=OFF -DINPUT_opengl=no "${off[@]}"
}
