# Windows, 64 bit, with Debian's mingw-w64.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(tools x86_64-w64-mingw32)
set(CMAKE_C_COMPILER ${tools}-gcc-posix)
set(CMAKE_CXX_COMPILER ${tools}-g++-posix)
set(CMAKE_RC_COMPILER ${tools}-windres)

set(CMAKE_FIND_ROOT_PATH /usr/${tools})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

find_program(WINE wine)
if(WINE)
    set(CMAKE_CROSSCOMPILING_EMULATOR ${WINE})
endif()

# The libraries that come as headers or sources are found by modules of this project's own.
list(PREPEND CMAKE_MODULE_PATH ${CMAKE_CURRENT_LIST_DIR}/windows)
