# SPDX-License-Identifier: MIT
# What every wing is built with. A wing links holdwise_options privately; nothing leaks through its public face.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
# A plug-in shows its entry functions only; the same flags everywhere let the rooms share one precompiled header.
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/lib)

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env
      CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime ${CCACHE_PROGRAM})
endif()

add_library(holdwise_options INTERFACE)
target_compile_options(holdwise_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Wold-style-cast -Wcast-align -Woverloaded-virtual
  -Wimplicit-fallthrough -Werror)
target_compile_definitions(holdwise_options INTERFACE QT_NO_KEYWORDS QT_NO_CAST_TO_ASCII QT_NO_NARROWING_CONVERSIONS_IN_CONNECT)

# So that an error in reading a file from outside ends the program and does no more: tests/programs looks at what was linked.
target_compile_options(holdwise_options INTERFACE -fstack-protector-strong -fstack-clash-protection)
if(CMAKE_SYSTEM_PROCESSOR STREQUAL "x86_64")
  target_compile_options(holdwise_options INTERFACE -fcf-protection=full)
endif()
if(NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize")  # the sanitizers have checks of their own in these places
  target_compile_options(holdwise_options INTERFACE
    $<$<CONFIG:RelWithDebInfo>:-U_FORTIFY_SOURCE> $<$<CONFIG:RelWithDebInfo>:-D_FORTIFY_SOURCE=2>)
endif()
target_link_options(holdwise_options INTERFACE LINKER:-z,relro LINKER:-z,now)
# What a sanitizer puts between the lines makes gcc see values that are not set where all are.
if(CMAKE_CXX_FLAGS MATCHES "-fsanitize" AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(holdwise_options INTERFACE -Wno-maybe-uninitialized)
endif()

# A sanitizer's programs are several times slower.
set(HOLDWISE_TIMEOUT_FACTOR 1)
if(CMAKE_CXX_FLAGS MATCHES "-fsanitize")
  set(HOLDWISE_TIMEOUT_FACTOR 5)
endif()

# What every test runs in, also one that is a script: the sanitizers of a sanitizer build. They report into files, because a
# test seldom shows what a program that it starts writes.
# The leak sanitizer's look into the storage of threads crashes now and then while the database engine's threads end.
set(HOLDWISE_REPORTS ${CMAKE_BINARY_DIR}/reports)
file(MAKE_DIRECTORY ${HOLDWISE_REPORTS})
set(HOLDWISE_TEST_ENVIRONMENT
  QT_QPA_PLATFORM=offscreen
  HOLDWISE_SLOWNESS=${HOLDWISE_TIMEOUT_FACTOR}
  ASAN_OPTIONS=log_path=${HOLDWISE_REPORTS}/address
  LSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/tests/support/leaks.supp:print_suppressions=0:use_tls=0
  TSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/tests/support/threads.supp:detect_deadlocks=0:die_after_fork=0:history_size=7:log_path=${HOLDWISE_REPORTS}/thread
  UBSAN_OPTIONS=print_stacktrace=1)

# How many seconds each of the tests named after it may take.
function(holdwise_test_timeout seconds)
  math(EXPR timeout "${seconds} * ${HOLDWISE_TIMEOUT_FACTOR}")
  set_tests_properties(${ARGN} PROPERTIES TIMEOUT ${timeout})
endfunction()

# A program of the tests: one executable, one ctest entry. Arguments: SOURCES, LIBS, LABELS (default: HOLDWISE_TEST_LABEL of
# the folder), TIMEOUT (s). The target tests-LABEL builds all programs of a label.
function(holdwise_test name)
  cmake_parse_arguments(ARG "" "TIMEOUT" "SOURCES;LIBS;LABELS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE holdwise_options holdwise_test_support ${ARG_LIBS})
  target_precompile_headers(${name} REUSE_FROM holdwise_test_support)
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 120)
  endif()
  if(NOT ARG_LABELS)
    set(ARG_LABELS ${HOLDWISE_TEST_LABEL})
  endif()
  foreach(label IN LISTS ARG_LABELS)
    if(NOT TARGET tests-${label})
      add_custom_target(tests-${label})
    endif()
    add_dependencies(tests-${label} ${name})
  endforeach()
  add_test(NAME ${name} COMMAND ${name})
  holdwise_test_timeout(${ARG_TIMEOUT} ${name})
  set_tests_properties(${name} PROPERTIES LABELS "${ARG_LABELS}"
    ENVIRONMENT "${HOLDWISE_TEST_ENVIRONMENT};HOLDWISE_MARKET_DATA=${HOLDWISE_MARKET_DATA};HOLDWISE_BIN=${CMAKE_BINARY_DIR}/bin;HOLDWISE_SOURCE=${CMAKE_SOURCE_DIR}")
endfunction()
