# SPDX-License-Identifier: GPL-3.0-or-later
# Language, warnings, hardening and the small functions with which every folder declares its targets.

option(KESTRO_BUILD_TESTS "Build the tests" ON)
set(KESTRO_SANITIZE "" CACHE STRING "Sanitizers for every target, e.g. address,undefined")

if(NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE RelWithDebInfo CACHE STRING "" FORCE)
endif()
find_program(KESTRO_CCACHE ccache)
if(KESTRO_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_C_COMPILER_LAUNCHER "${KESTRO_CCACHE}")
    set(CMAKE_CXX_COMPILER_LAUNCHER "${KESTRO_CCACHE}")
endif()

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
include(CheckPIESupported)
check_pie_supported()

set(CMAKE_AUTOMOC OFF)
find_package(Qt6 6.4 REQUIRED COMPONENTS Core DBus Gui Widgets Svg LinguistTools)
if(KESTRO_BUILD_TESTS)
    find_package(Qt6 6.4 REQUIRED COMPONENTS Test)
endif()

# Flags of every target. The prefix map makes log lines read "./src/…" whatever the build folder is.
add_library(kestro_flags INTERFACE)
target_compile_options(kestro_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion
    $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor>
    $<$<COMPILE_LANGUAGE:CXX>:-Woverloaded-virtual>
    -fstack-protector-strong
    "-fmacro-prefix-map=${CMAKE_SOURCE_DIR}=.")
target_link_options(kestro_flags INTERFACE -Wl,-z,relro -Wl,-z,now)
target_include_directories(kestro_flags INTERFACE "${CMAKE_SOURCE_DIR}/src")
if(KESTRO_WARNINGS_AS_ERRORS)
    target_compile_options(kestro_flags INTERFACE -Werror)
endif()
if(KESTRO_SANITIZE)
    target_compile_options(kestro_flags INTERFACE
        "-fsanitize=${KESTRO_SANITIZE}" -fno-omit-frame-pointer -fno-sanitize-recover=all)
    target_link_options(kestro_flags INTERFACE "-fsanitize=${KESTRO_SANITIZE}")
else()
    # The sanitizers check more than fortified functions do, and the two do not mix.
    target_compile_definitions(kestro_flags INTERFACE $<$<NOT:$<CONFIG:Debug>>:_FORTIFY_SOURCE=2>)
endif()

# Without QT_MESSAGELOGCONTEXT every build type but Debug logs no file, function or line.
add_library(kestro_qt_flags INTERFACE)
target_link_libraries(kestro_qt_flags INTERFACE kestro_flags Qt6::Core)
target_compile_definitions(kestro_qt_flags INTERFACE
    QT_MESSAGELOGCONTEXT QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH)

# kestro_library(NAME SOURCES … [LIBS …] [PLAIN]): a static library; PLAIN means without Qt.
function(kestro_library name)
    cmake_parse_arguments(ARG "PLAIN" "" "SOURCES;LIBS" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    if(ARG_PLAIN)
        target_link_libraries(${name} PUBLIC kestro_flags ${ARG_LIBS})
    else()
        set_target_properties(${name} PROPERTIES AUTOMOC ON AUTORCC ON)
        target_link_libraries(${name} PUBLIC kestro_qt_flags ${ARG_LIBS})
    endif()
endfunction()

# kestro_program(NAME SOURCES … [LIBS …] [PLAIN]): an executable.
function(kestro_program name)
    cmake_parse_arguments(ARG "PLAIN" "" "SOURCES;LIBS" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    if(ARG_PLAIN)
        target_link_libraries(${name} PRIVATE kestro_flags ${ARG_LIBS})
    else()
        set_target_properties(${name} PROPERTIES AUTOMOC ON AUTORCC ON)
        target_link_libraries(${name} PRIVATE kestro_qt_flags ${ARG_LIBS})
    endif()
endfunction()

# kestro_test(NAME SOURCES … [LIBS …] [LABELS …] [TIMEOUT seconds] [PLAIN] [CASES …]): a test program.
# Exit code 77 means "skipped, with the reason on standard output". With CASES each named test function
# becomes a ctest entry of its own, and so a process of its own.
function(kestro_test name)
    cmake_parse_arguments(ARG "PLAIN" "TIMEOUT" "SOURCES;LIBS;LABELS;CASES" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_include_directories(${name} PRIVATE "${CMAKE_SOURCE_DIR}/tests")
    target_compile_definitions(${name} PRIVATE
        KESTRO_TEST_DATA="${CMAKE_CURRENT_SOURCE_DIR}/data" KESTRO_SOURCE_DIR="${CMAKE_SOURCE_DIR}")
    if(ARG_PLAIN)
        target_link_libraries(${name} PRIVATE kestro_flags ${ARG_LIBS})
    else()
        set_target_properties(${name} PROPERTIES AUTOMOC ON)
        target_link_libraries(${name} PRIVATE kestro_qt_flags Qt6::Test ${ARG_LIBS})
    endif()
    if(NOT ARG_TIMEOUT)
        set(ARG_TIMEOUT 120)
    endif()
    if(ARG_CASES)
        foreach(case IN LISTS ARG_CASES)
            add_test(NAME ${name}.${case} COMMAND ${name} ${case})
            kestro_test_properties(${name}.${case} ${ARG_TIMEOUT} "${ARG_LABELS}")
        endforeach()
    else()
        add_test(NAME ${name} COMMAND ${name})
        kestro_test_properties(${name} ${ARG_TIMEOUT} "${ARG_LABELS}")
    endif()
endfunction()

function(kestro_test_properties test timeout labels)
    set_tests_properties(${test} PROPERTIES
        SKIP_RETURN_CODE 77 TIMEOUT ${timeout} LABELS "${labels}"
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8")
endfunction()
