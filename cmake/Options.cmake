# SPDX-License-Identifier: MIT
# orbivue_options: warnings and sanitizers. Every target of ours links it and nothing else sets flags.
add_library(orbivue_options INTERFACE)
target_include_directories(orbivue_options INTERFACE ${PROJECT_SOURCE_DIR}/src)
target_compile_options(orbivue_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow=local -Wnon-virtual-dtor -Woverloaded-virtual -Wold-style-cast
  -Wcast-align -Wconversion -Wsign-conversion -Wformat=2)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # -fpch-preprocess: without it ccache leaves alone what uses precompiled headers.
  target_compile_options(orbivue_options INTERFACE
    -Wduplicated-cond -Wduplicated-branches -Wlogical-op -fpch-preprocess)
else()
  # clang calls -Wshadow=local plain -Wshadow.
  target_compile_options(orbivue_options INTERFACE -Wno-unknown-warning-option -Wno-unused-command-line-argument)
endif()
if(ORBIVUE_WERROR)
  target_compile_options(orbivue_options INTERFACE -Werror)
endif()
if(ORBIVUE_SANITIZE)
  target_compile_options(orbivue_options INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-omit-frame-pointer)
  target_link_options(orbivue_options INTERFACE -fsanitize=address,undefined)
endif()
if(ORBIVUE_SANITIZE_THREADS)
  target_compile_options(orbivue_options INTERFACE -fsanitize=thread -fno-omit-frame-pointer)
  target_link_options(orbivue_options INTERFACE -fsanitize=thread)
endif()
if(ORBIVUE_FUZZ)
  target_compile_options(orbivue_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

# The x86-64 processors that the programs run on; nothing of ours is written for one, so this only tunes what the compiler makes.
if(CMAKE_SYSTEM_PROCESSOR STREQUAL "x86_64" AND ORBIVUE_X86_64_LEVEL GREATER 1)
  target_compile_options(orbivue_options INTERFACE -march=x86-64-v${ORBIVUE_X86_64_LEVEL})
endif()

# orbivue_add_library(NAME SOURCES... ): a static library with our options.
function(orbivue_add_library name)
  add_library(${name} STATIC ${ARGN})
  target_link_libraries(${name} PUBLIC orbivue_options)
endfunction()

# orbivue_test_target(NAME HEADERS_OF): what all test code has in common. Tests are compiled for a quick build, not for
# speed, and take GoogleTest's headers from what the target HEADERS_OF precompiled.
function(orbivue_test_target name headers_of)
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_compile_options(${name} PRIVATE -O0)
  target_precompile_headers(${name} REUSE_FROM ${headers_of})
endfunction()

# orbivue_add_tests(NAME LABEL SOURCES...): a GoogleTest program whose tests CTest lists one by one (under sanitizers: as
# one).
function(orbivue_add_tests name label)
  add_executable(${name} ${ARGN})
  target_link_libraries(${name} PRIVATE orbivue_options GTest::gtest_main)
  orbivue_test_target(${name} orbivue_test_headers)
  if(name IN_LIST ORBIVUE_THREAD_TESTS)
    add_dependencies(orbivue-thread-tests ${name})
    list(APPEND label threads)
  endif()
  if(ORBIVUE_SANITIZE OR ORBIVUE_SANITIZE_THREADS)
    # Starting a sanitized program takes longer than most tests.
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES LABELS "${label}" TIMEOUT 600)
  else()
    list(GET label 0 label)  # a list would not pass through
    gtest_discover_tests(${name} PROPERTIES LABELS "${label}" TIMEOUT 120 DISCOVERY_TIMEOUT 60)
  endif()
endfunction()

# orbivue_add_window_tests(NAME SOURCES...): tests of windows, in a display of their own. CTest sees one test: starting a
# display takes longer than most of them.
function(orbivue_add_window_tests name)
  add_executable(${name} ${ARGN})
  target_link_libraries(${name} PRIVATE orbivue_wx_test_main)
  orbivue_test_target(${name} orbivue_wx_test_main)
  add_test(NAME ${name} COMMAND ${PROJECT_SOURCE_DIR}/tests/run_under_xvfb.sh $<TARGET_FILE:${name}>)
  set_tests_properties(${name} PROPERTIES LABELS wx TIMEOUT 300)
endfunction()
