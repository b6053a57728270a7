# Builds for 32-bit ARM with Debian's cross compiler. What the tests link with comes from build/arm-sysroot
# (script/lib/arm-sysroot), what the language needs from the compiler's own folders; programs run under qemu.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR arm)
set(machine arm-linux-gnueabihf)
set(CMAKE_CXX_COMPILER ${machine}-g++)
set(CMAKE_LIBRARY_ARCHITECTURE ${machine})

set(sysroot ${CMAKE_CURRENT_LIST_DIR}/../build/arm-sysroot)
set(libraries ${sysroot}/usr/lib/${machine})
set(CMAKE_FIND_ROOT_PATH ${sysroot})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(run_path ${libraries}:${sysroot}/lib/${machine})
# Not a word on how arguments were passed before GCC 7.1.
set(CMAKE_CXX_FLAGS_INIT -Wno-psabi)
set(CMAKE_EXE_LINKER_FLAGS_INIT "-Wl,-rpath-link,${run_path}")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-Wl,-rpath-link,${run_path}")

set(CMAKE_CROSSCOMPILING_EMULATOR qemu-arm-static -L /usr/${machine} -E LD_LIBRARY_PATH=${run_path})
