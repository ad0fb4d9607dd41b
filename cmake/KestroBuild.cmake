# SPDX-License-Identifier: GPL-3.0-or-later
# Language, warnings, hardening and the small functions with which every folder declares its targets.

option(KESTRO_BUILD_TESTS "Build the tests" ON)
option(KESTRO_FUZZ "Build the fuzz targets; needs clang" OFF)
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

# Generated sources depend on nothing of another target, so they can be made without compiling it.
set(CMAKE_AUTOGEN_ORIGIN_DEPENDS OFF)
find_package(Qt6 6.4 REQUIRED COMPONENTS Core DBus Gui Widgets Svg LinguistTools)
if(KESTRO_BUILD_TESTS)
    find_package(Qt6 6.4 REQUIRED COMPONENTS Test)
endif()

# Every target's generated sources, without compiling anything.
add_custom_target(kestro_generated)

# Flags of every target. The prefix map makes log lines read "./src/…" whatever the build folder is.
add_library(kestro_flags INTERFACE)
target_compile_options(kestro_flags INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion
    $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor>
    $<$<COMPILE_LANGUAGE:CXX>:-Woverloaded-virtual>
    # GCC 12 sees overlaps in the standard library's own strings once it optimises (its bug 105329).
    $<$<CONFIG:Release,None>:-Wno-restrict>
    -fstack-protector-strong
    "-fmacro-prefix-map=${CMAKE_SOURCE_DIR}=.")
target_link_options(kestro_flags INTERFACE -Wl,-z,relro -Wl,-z,now)
target_include_directories(kestro_flags INTERFACE "${CMAKE_SOURCE_DIR}/src")
if(KESTRO_WARNINGS_AS_ERRORS)
    target_compile_options(kestro_flags INTERFACE -Werror)
endif()
if(KESTRO_FUZZ)
    target_compile_options(kestro_flags INTERFACE -fsanitize=fuzzer-no-link)
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

# Parsing Qt's headers is most of the compile time, so they are parsed once for each set of libraries. A source still
# includes what it uses: dev/check compiles headers alone and lints without them (KESTRO_PCH=OFF).
option(KESTRO_PCH "Precompile the Qt headers" ON)
if(KESTRO_CCACHE AND KESTRO_PCH)
    # ccache(1), "Precompiled headers"
    set(launcher "${CMAKE_COMMAND}" -E env CCACHE_SLOPPINESS=pch_defines,time_macros "${KESTRO_CCACHE}")
    set(CMAKE_CXX_COMPILER_LAUNCHER "${launcher}")
    add_compile_options($<$<COMPILE_LANGUAGE:CXX>:-fpch-preprocess>)
endif()

function(kestro_precompiled name)
    cmake_parse_arguments(ARG "" "" "HEADERS;LIBS" ${ARGN})
    file(WRITE "${CMAKE_BINARY_DIR}/pch/${name}.cpp" "")
    add_library(${name} STATIC EXCLUDE_FROM_ALL "${CMAKE_BINARY_DIR}/pch/${name}.cpp")
    target_link_libraries(${name} PRIVATE kestro_qt_flags ${ARG_LIBS})
    target_precompile_headers(${name} PRIVATE ${ARG_HEADERS})
endfunction()

set(core_headers <QCoreApplication> <QDebug> <QDir> <QFile> <QJsonDocument> <QJsonObject> <QProcess>
    <QRegularExpression> <QStringList> <QTimer> <QVariantMap>)
set(widget_headers <QApplication> <QLabel> <QPainter> <QPushButton> <QVBoxLayout>)
if(KESTRO_PCH)
    kestro_precompiled(kestro_pch_core HEADERS ${core_headers})
    kestro_precompiled(kestro_pch_widgets HEADERS ${core_headers} ${widget_headers} LIBS Qt6::Widgets)
endif()

# Lets a target use the precompiled headers that fit the libraries it names. Qt Test's headers are not among them: they
# depend on a definition that differs from target to target.
function(kestro_use_precompiled name libs)
    if(NOT KESTRO_PCH)
        return()
    endif()
    set(pch kestro_pch_core)
    if("Qt6::Widgets" IN_LIST libs OR "kestro_velk" IN_LIST libs OR "kestro_pages" IN_LIST libs)
        set(pch kestro_pch_widgets)
    endif()
    target_precompile_headers(${name} REUSE_FROM ${pch})
endfunction()

# AUTOMOC with its target among those of kestro_generated.
function(kestro_generate_moc name)
    set_target_properties(${name} PROPERTIES AUTOMOC ON AUTORCC ON)
    cmake_language(EVAL CODE "cmake_language(DEFER DIRECTORY \"${CMAKE_SOURCE_DIR}\" CALL add_dependencies kestro_generated ${name}_autogen)")
endfunction()

# kestro_library(NAME SOURCES … [LIBS …] [PLAIN]): a static library; PLAIN means without Qt.
function(kestro_library name)
    cmake_parse_arguments(ARG "PLAIN" "" "SOURCES;LIBS" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    if(ARG_PLAIN)
        target_link_libraries(${name} PUBLIC kestro_flags ${ARG_LIBS})
    else()
        kestro_generate_moc(${name})
        target_link_libraries(${name} PUBLIC kestro_qt_flags ${ARG_LIBS})
        kestro_use_precompiled(${name} "${ARG_LIBS}")
    endif()
endfunction()

# kestro_program(NAME SOURCES … [LIBS …] [PLAIN]): an executable.
function(kestro_program name)
    cmake_parse_arguments(ARG "PLAIN" "" "SOURCES;LIBS" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    if(ARG_PLAIN)
        target_link_libraries(${name} PRIVATE kestro_flags ${ARG_LIBS})
    else()
        kestro_generate_moc(${name})
        target_link_libraries(${name} PRIVATE kestro_qt_flags ${ARG_LIBS})
        kestro_use_precompiled(${name} "${ARG_LIBS}")
    endif()
endfunction()

# Refuses CASES that are not the test functions in the sources, because a function that is not named never runs.
function(kestro_check_cases name sources cases)
    set(functions "")
    foreach(source IN LISTS sources)
        set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${source}")
        file(STRINGS "${source}" lines REGEX "Q_SLOTS:|^(public|protected|private):|^}|^ +void [A-Za-z0-9_]+\\(\\).$")
        set(in_slots FALSE)
        foreach(line IN LISTS lines)
            if(line MATCHES "^private Q_SLOTS:")
                set(in_slots TRUE)
            elseif(NOT line MATCHES "^ +void ([A-Za-z0-9_]+)")
                set(in_slots FALSE)
            elseif(in_slots)
                list(APPEND functions "${CMAKE_MATCH_1}")
            endif()
        endforeach()
    endforeach()
    list(FILTER functions EXCLUDE REGEX "_data$|^(init|cleanup|initTestCase|cleanupTestCase)$")
    list(SORT functions)
    list(SORT cases)
    if(NOT functions STREQUAL cases)
        message(FATAL_ERROR "The CASES of ${name} are not its test functions: ${cases} instead of ${functions}")
    endif()
endfunction()

# kestro_test(NAME SOURCES … [LIBS …] [LABELS …] [TIMEOUT seconds] [PLAIN] [CASES …]): a test program.
# Exit code 77 means "skipped, with the reason on standard output". With CASES each named test function
# becomes a ctest entry of its own, and so a process of its own; all of them must be named.
function(kestro_test name)
    cmake_parse_arguments(ARG "PLAIN" "TIMEOUT" "SOURCES;LIBS;LABELS;CASES" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_include_directories(${name} PRIVATE "${CMAKE_SOURCE_DIR}/tests")
    target_compile_definitions(${name} PRIVATE
        KESTRO_TEST_DATA="${CMAKE_CURRENT_SOURCE_DIR}/data" KESTRO_SOURCE_DIR="${CMAKE_SOURCE_DIR}")
    if(KESTRO_SANITIZE STREQUAL "thread")
        target_sources(${name} PRIVATE "${CMAKE_SOURCE_DIR}/tests/support/plainclone.cpp")
    endif()
    if(ARG_PLAIN)
        target_link_libraries(${name} PRIVATE kestro_flags ${ARG_LIBS})
    else()
        kestro_generate_moc(${name})
        target_link_libraries(${name} PRIVATE kestro_qt_flags Qt6::Test ${ARG_LIBS})
        kestro_use_precompiled(${name} "${ARG_LIBS}")
    endif()
    if(NOT ARG_TIMEOUT)
        set(ARG_TIMEOUT 120)
    endif()
    if(ARG_CASES)
        kestro_check_cases(${name} "${ARG_SOURCES}" "${ARG_CASES}")
        foreach(case IN LISTS ARG_CASES)
            add_test(NAME ${name}.${case} COMMAND ${name} ${case})
            kestro_test_properties(${name}.${case} ${ARG_TIMEOUT} "${ARG_LABELS}")
        endforeach()
    else()
        add_test(NAME ${name} COMMAND ${name})
        kestro_test_properties(${name} ${ARG_TIMEOUT} "${ARG_LABELS}")
    endif()
endfunction()

# Tests start child processes from processes with several threads.
set(KESTRO_TSAN_OPTIONS "suppressions=${CMAKE_SOURCE_DIR}/tests/tsan.supp:die_after_fork=0")
function(kestro_test_properties test timeout labels)
    set_tests_properties(${test} PROPERTIES
        SKIP_RETURN_CODE 77 TIMEOUT ${timeout} LABELS "${labels}"
        ENVIRONMENT "QT_QPA_PLATFORM=offscreen;LC_ALL=C.UTF-8;TSAN_OPTIONS=${KESTRO_TSAN_OPTIONS}")
endfunction()
