# What every target of this project shares: warnings as errors and include paths written from src/.
add_library(axlink2_options INTERFACE)
target_include_directories(axlink2_options INTERFACE ${CMAKE_SOURCE_DIR}/src)
# Boost.Thread without its interruption points is header-only.
target_compile_definitions(axlink2_options INTERFACE BOOST_THREAD_DONT_PROVIDE_INTERRUPTIONS)
target_compile_options(axlink2_options INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # g++ 12 takes joined std::strings for overlapping copies.
    target_compile_options(axlink2_options INTERFACE -Wno-restrict)
elseif(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    # COM's own structures are made this way; and g++ has warnings that clang doesn't know.
    target_compile_options(axlink2_options INTERFACE -Wno-nested-anon-types
                                                     -Wno-unknown-warning-option)
endif()

if(WIN32)
    enable_language(RC)
    set(CMAKE_SHARED_LIBRARY_PREFIX "")
    include(windows/runtime_libraries)
    # A prefix of the build's own; a crash ends at once, and Wine keeps its remarks to itself.
    set(AXLINK2_WINE_ENVIRONMENT
        WINEPREFIX=${CMAKE_BINARY_DIR}/wine WINEDEBUG=-all LC_ALL=C.UTF-8
        WINEDLLOVERRIDES=winedbg.exe,mscoree,mshtml=d)
endif()

option(AXLINK2_SANITIZE "Build with AddressSanitizer and UndefinedBehaviorSanitizer" OFF)
if(AXLINK2_SANITIZE)
    target_compile_options(
        axlink2_options INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=undefined
                                  -fno-omit-frame-pointer)
    target_link_options(axlink2_options INTERFACE -fsanitize=address,undefined)
endif()

option(AXLINK2_FUZZ "Build the fuzzers of tests/fuzz, with clang" OFF)
if(AXLINK2_FUZZ)
    target_compile_options(axlink2_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

option(AXLINK2_COVERAGE "Count the lines and branches that the tests reach, with g++" OFF)
if(AXLINK2_COVERAGE)
    target_compile_options(axlink2_options INTERFACE --coverage -fprofile-update=atomic)
    target_link_options(axlink2_options INTERFACE --coverage)
endif()

# axlink2_room(NAME SOURCES... [LINK targets...]): one room of the module, compiled once.
function(axlink2_room name)
    cmake_parse_arguments(ROOM "" "" "SOURCES;LINK" ${ARGN})
    add_library(${name} OBJECT ${ROOM_SOURCES})
    target_link_libraries(${name} PUBLIC axlink2_options Boost::headers ${ROOM_LINK})
    set_target_properties(${name} PROPERTIES CXX_VISIBILITY_PRESET hidden
                                             VISIBILITY_INLINES_HIDDEN ON)
endfunction()

# axlink2_under_wine(TESTS...): where Windows programs run under Wine, the environment that they need.
function(axlink2_under_wine)
    if(CMAKE_CROSSCOMPILING AND WIN32)
        set_tests_properties(
            ${ARGN}
            PROPERTIES ENVIRONMENT "${AXLINK2_WINE_ENVIRONMENT}" FIXTURES_REQUIRED wine TIMEOUT 300)
    endif()
endfunction()

# axlink2_test(NAME SOURCES... [LINK targets...]): one executable and one ctest entry per room.
function(axlink2_test name)
    cmake_parse_arguments(TEST "" "" "SOURCES;LINK" ${ARGN})
    add_executable(${name} ${TEST_SOURCES})
    target_include_directories(${name} PRIVATE ${CMAKE_SOURCE_DIR} ${CMAKE_SOURCE_DIR}/tests)
    target_link_libraries(${name} PRIVATE axlink2_options GTest::gtest GTest::gtest_main
                                          ${TEST_LINK})
    set(arguments)
    if(WIN32)
        # What doesn't hold there is listed, with its reason.
        set(list ${CMAKE_SOURCE_DIR}/tests/windows/differences.txt)
        set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${list})
        file(STRINGS ${list} differences REGEX "^${name} ")
        list(TRANSFORM differences REPLACE "^[^ ]+ ([^ ]+) .*" "\\1")
        list(JOIN differences ":" differences)
        set(arguments --gtest_filter=-${differences})
    endif()
    add_test(NAME ${name} COMMAND ${name} ${arguments})
    axlink2_under_wine(${name})
endfunction()

# axlink2_script_test(NAME SCRIPT EXPECTED [OPTIONS...]): velsh with these options must print for the
# script what the file EXPECTED holds.
function(axlink2_script_test name script expected)
    set(emulator)
    if(CMAKE_CROSSCOMPILING)
        set(emulator ${CMAKE_CROSSCOMPILING_EMULATOR})
    endif()
    add_test(
        NAME ${name}
        COMMAND
            ${CMAKE_COMMAND} "-DCOMMAND=${emulator};$<TARGET_FILE:velsh>;${ARGN}"
            "-DSCRIPT=${script}" -DEXPECTED=${expected} -P
            ${CMAKE_SOURCE_DIR}/tests/script_test.cmake)
    axlink2_under_wine(${name})
endfunction()
