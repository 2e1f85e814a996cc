# SPDX-License-Identifier: GPL-3.0-or-later
# One interface target carries every flag, so that no target can forget one.
add_library(tavrin_flags INTERFACE)
target_compile_features(tavrin_flags INTERFACE cxx_std_20)
target_include_directories(tavrin_flags INTERFACE "${PROJECT_SOURCE_DIR}/src")
target_compile_options(
    tavrin_flags
    INTERFACE -Wall
              -Wextra
              -Wpedantic
              -Wshadow
              -Wconversion
              -Wold-style-cast
              -Wnon-virtual-dtor
              -Woverloaded-virtual
              $<$<BOOL:${TAVRIN_WERROR}>:-Werror>)
# GCC 12 with optimization sees overlapping copies inside std::basic_string where there are none.
target_compile_options(
    tavrin_flags INTERFACE $<$<AND:$<CXX_COMPILER_ID:GNU>,$<VERSION_LESS:$<CXX_COMPILER_VERSION>,13>>:-Wno-restrict>)
target_compile_definitions(
    tavrin_flags
    INTERFACE QT_NO_CAST_FROM_ASCII
              QT_NO_CAST_TO_ASCII
              QT_NO_CAST_FROM_BYTEARRAY
              QT_NO_URL_CAST_FROM_STRING
              QT_NO_KEYWORDS
              QT_NO_FOREACH
              QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
              QT_STRICT_ITERATORS
              QT_DISABLE_DEPRECATED_BEFORE=0x060400
              TAVRIN_VERSION="${PROJECT_VERSION}")
if(TAVRIN_SANITIZE)
    target_compile_options(tavrin_flags INTERFACE -fsanitize=${TAVRIN_SANITIZE} -fno-omit-frame-pointer
                                                  -fno-sanitize-recover=all)
    target_link_options(tavrin_flags INTERFACE -fsanitize=${TAVRIN_SANITIZE})
endif()

# Headers that nearly every source of a kind includes, compiled once; that halves the time of a build
# that starts from nothing. Release builds go without, and show includes that a source forgot.
set(TAVRIN_PCH_CORE
    <QByteArray> <QHash> <QString> <QStringList> <QVariantMap> <algorithm> <array> <atomic> <chrono>
    <condition_variable> <deque> <functional> <memory> <mutex> <optional> <span> <stop_token> <string>
    <thread> <vector>)
set(TAVRIN_PCH_WIDGETS ${TAVRIN_PCH_CORE} <QEvent> <QLabel> <QLayout> <QLineEdit> <QMimeData> <QPainter>
                       <QStyleOption> <QUndoStack> <QWidget>)
set(TAVRIN_PCH_TEST_CORE ${TAVRIN_PCH_CORE} <QTest>)
set(TAVRIN_PCH_TEST_GUI ${TAVRIN_PCH_TEST_CORE})
set(TAVRIN_PCH_TEST_WIDGETS ${TAVRIN_PCH_WIDGETS} <QTest>)

# What the headers of each kind see must be what its targets see, so these link the same of Qt. Qt
# tells each test its own folders, which no test here asks for.
add_library(tavrin_qttest INTERFACE)
target_link_libraries(tavrin_qttest INTERFACE Qt6::Test)
target_compile_options(tavrin_qttest INTERFACE -UQT_TESTCASE_BUILDDIR -UQT_TESTCASE_SOURCEDIR)
set(TAVRIN_QT_CORE Qt6::Core)
set(TAVRIN_QT_WIDGETS Qt6::Widgets)
set(TAVRIN_QT_TEST_CORE tavrin_qttest)
set(TAVRIN_QT_TEST_GUI Qt6::Gui tavrin_qttest)
set(TAVRIN_QT_TEST_WIDGETS Qt6::Widgets Qt6::Svg Qt6::Network tavrin_qttest)

# tavrin_precompiled(target CORE|WIDGETS|TEST_CORE|TEST_GUI|TEST_WIDGETS): the target uses the headers
# of that kind.
function(tavrin_precompiled target kind)
    if(NOT TAVRIN_PCH)
        return()
    endif()
    string(TOLOWER tavrin_pch_${kind} headers)
    if(NOT TARGET ${headers})
        set(empty "${PROJECT_BINARY_DIR}/${headers}.cpp")
        file(WRITE "${empty}" "")
        add_library(${headers} OBJECT "${empty}")
        set_target_properties(${headers} PROPERTIES CXX_EXTENSIONS OFF POSITION_INDEPENDENT_CODE ON)
        target_precompile_headers(${headers} PRIVATE ${TAVRIN_PCH_${kind}})
        target_link_libraries(${headers} PRIVATE tavrin_flags ${TAVRIN_QT_${kind}})
    endif()
    target_precompile_headers(${target} REUSE_FROM ${headers})
endfunction()

# tavrin_library(name SOURCES... ) with the flags every library of the project has.
function(tavrin_library name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    target_link_libraries(${name} PUBLIC tavrin_flags ${ARG_LINK})
    set_target_properties(${name} PROPERTIES CXX_EXTENSIONS OFF POSITION_INDEPENDENT_CODE ON)
    tavrin_precompiled(${name} CORE)
endfunction()

# tavrin_test(name SOURCES... LINK... [ON_DISPLAY]): one Qt Test program, run by ctest in a fixed
# locale and zone. TAVRIN_TEST_QT is the part of Qt that the tests of a folder use: CORE, GUI or
# WIDGETS. Windows are offscreen, which carries no drags; those ON_DISPLAY have a virtual
# X display of their own, and are left out where there is none. TAVRIN_RACES is the file in
# tests/support that names what the thread sanitizer sees wrongly.
set(TAVRIN_RACES tsan.supp)
set(TAVRIN_TEST_QT CORE)
find_program(TAVRIN_XVFB_RUN xvfb-run)
function(tavrin_test name)
    cmake_parse_arguments(ARG "ON_DISPLAY" "" "SOURCES;LINK" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    set_target_properties(${name} PROPERTIES AUTOMOC ON CXX_EXTENSIONS OFF)
    target_include_directories(${name} PRIVATE "${PROJECT_SOURCE_DIR}/tests")
    target_link_libraries(${name} PRIVATE tavrin_flags ${TAVRIN_QT_TEST_${TAVRIN_TEST_QT}} ${ARG_LINK})
    target_compile_definitions(${name} PRIVATE TAVRIN_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
    tavrin_precompiled(${name} TEST_${TAVRIN_TEST_QT})
    set(platform offscreen)
    set(command ${name})
    if(ARG_ON_DISPLAY)
        if(NOT TAVRIN_XVFB_RUN)
            return()
        endif()
        set(platform xcb)
        set(command "${TAVRIN_XVFB_RUN}" -a "$<TARGET_FILE:${name}>")
    endif()
    add_test(NAME ${name} COMMAND ${command})
    set_tests_properties(${name} PROPERTIES ENVIRONMENT "LC_ALL=C.UTF-8;TZ=UTC;QT_QPA_PLATFORM=${platform};TSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/support/${TAVRIN_RACES};LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/support/lsan.supp" TIMEOUT 300)
endfunction()
