# A toolchain: the phones' processor, from Debian on another. Needs crossbuild-essential-arm64, what
# packages.txt lists to build, as NAME:arm64, and qemu-user-static, which runs the programs:
#   cmake --preset suite -B build/arm64 -DCMAKE_TOOLCHAIN_FILE="$PWD/cmake/arm64.cmake"
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
set(CMAKE_LIBRARY_ARCHITECTURE aarch64-linux-gnu)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64-static)
set(ENV{PKG_CONFIG_LIBDIR} /usr/lib/${CMAKE_LIBRARY_ARCHITECTURE}/pkgconfig:/usr/share/pkgconfig)

# moc, rcc and lrelease are this machine's.
execute_process(COMMAND dpkg-architecture -qDEB_BUILD_MULTIARCH
    OUTPUT_VARIABLE buildArchitecture OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
set(QT_HOST_PATH /usr)
set(QT_HOST_PATH_CMAKE_DIR /usr/lib/${buildArchitecture}/cmake)
set(Qt6LinguistTools_DIR ${QT_HOST_PATH_CMAKE_DIR}/Qt6LinguistTools) # else looked for beside Qt itself
