# kov_add_test(NAME SOURCES a.cpp b.cpp
#              [WHITEBOX]        links the static archives; may include "document/..." and the like.
#                                Without it a test links the shared libraries and sees include/ only.
#              [KOVSIM]          links the code of the command line too (headers of tools/kovsim)
#              [NO_MAIN]         the test brings its own main()
#              [ISOLATED]        every single test in a process of its own
#              [SERIAL]          runs alone
#              [SOAK]            runs in `make soak` only
#              [TIMEOUT seconds] default 600
#              [LIBRARIES ...])  further libraries
#
# A test finds in its environment
#   KOV_TEST_TMP   a folder of its own to write into   (tests/support/TempFolder.h wraps it)
#   KOV_SOURCE_DIR the root of the source tree, for stored data
#   KOVSIM         the path of the command line, if that is built
# Results are left as XML in <build>/test-results, where scripts/test-summary.py counts them.

set(KOV_TEST_RESULTS "${CMAKE_BINARY_DIR}/test-results")
file(MAKE_DIRECTORY "${KOV_TEST_RESULTS}")

function(_kov_test_environment output name)
  file(MAKE_DIRECTORY "${CMAKE_BINARY_DIR}/test-tmp/${name}")
  set(environment
    "KOV_TEST_TMP=${CMAKE_BINARY_DIR}/test-tmp/${name}"
    "KOV_SOURCE_DIR=${CMAKE_SOURCE_DIR}"
    "ASAN_OPTIONS=detect_leaks=1:strict_string_checks=1:detect_stack_use_after_return=1:allocator_may_return_null=1"
    "UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1")
  if(TARGET kovsim)
    list(APPEND environment "KOVSIM=${CMAKE_BINARY_DIR}/bin/kovsim")
  endif()
  set(${output} "${environment}" PARENT_SCOPE)
endfunction()

# The archives for tests of internals, else the libraries as outside code links them.
function(_kov_link_libraries name whitebox)
  set(suffix "")
  if(whitebox)
    set(suffix Static)
  endif()
  foreach(library KOVSrvSimServices KOVSimDocument)
    if(TARGET ${library}${suffix})
      target_link_libraries(${name} PRIVATE ${library}${suffix})
    endif()
  endforeach()
endfunction()

function(kov_add_test name)
  cmake_parse_arguments(ARG "WHITEBOX;KOVSIM;NO_MAIN;ISOLATED;SERIAL;SOAK" "TIMEOUT"
    "SOURCES;LIBRARIES" ${ARGN})
  if(ARG_UNPARSED_ARGUMENTS)
    message(FATAL_ERROR "kov_add_test(${name}): unknown arguments ${ARG_UNPARSED_ARGUMENTS}")
  endif()
  foreach(source IN LISTS ARG_SOURCES)
    get_filename_component(path "${source}" ABSOLUTE)
    set_property(GLOBAL APPEND PROPERTY KOV_TEST_SOURCES "${path}")
  endforeach()

  add_executable(${name} ${ARG_SOURCES})
  kov_target_defaults(${name})
  target_include_directories(${name} PRIVATE "${CMAKE_SOURCE_DIR}/tests")
  if(ARG_KOVSIM)
    if(NOT TARGET kovsimStatic)
      set_target_properties(${name} PROPERTIES EXCLUDE_FROM_ALL ON)
      return()
    endif()
    target_link_libraries(${name} PRIVATE kovsimStatic)
    target_include_directories(${name} PRIVATE "${CMAKE_SOURCE_DIR}")
  endif()
  if(ARG_WHITEBOX)
    target_include_directories(${name} PRIVATE "${CMAKE_SOURCE_DIR}")
  endif()
  _kov_link_libraries(${name} ${ARG_WHITEBOX})
  target_include_directories(${name} PRIVATE "${CMAKE_SOURCE_DIR}/include")
  target_link_libraries(${name} PRIVATE ${ARG_LIBRARIES} GTest::gmock Threads::Threads)
  if(NOT ARG_NO_MAIN)
    target_link_libraries(${name} PRIVATE GTest::gmock_main)
  endif()

  _kov_test_environment(environment ${name})
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 600)
  endif()
  set(properties TIMEOUT ${ARG_TIMEOUT})
  if(ARG_SERIAL)
    list(APPEND properties RUN_SERIAL ON)
  endif()
  if(ARG_SOAK)
    list(APPEND properties LABELS soak)
  endif()
  if(ARG_ISOLATED)
    gtest_discover_tests(${name} TEST_PREFIX "${name}." DISCOVERY_MODE PRE_TEST
      XML_OUTPUT_DIR "${KOV_TEST_RESULTS}"
      PROPERTIES ${properties} ENVIRONMENT "${environment}")
  else()
    add_test(NAME ${name} COMMAND ${name} "--gtest_output=xml:${KOV_TEST_RESULTS}/${name}.xml")
    set_tests_properties(${name} PROPERTIES ${properties} ENVIRONMENT "${environment}")
  endif()
endfunction()

# kov_add_script_test(NAME COMMAND command... [SERIAL] [SOAK] [TIMEOUT s] [FILES a.py ...]):
# a test that is a script; it counts as one. FILES are the test files it stands for.
function(kov_add_script_test name)
  cmake_parse_arguments(ARG "SERIAL;SOAK" "TIMEOUT" "COMMAND;FILES" ${ARGN})
  foreach(source IN LISTS ARG_FILES)
    get_filename_component(path "${source}" ABSOLUTE)
    set_property(GLOBAL APPEND PROPERTY KOV_TEST_SOURCES "${path}")
  endforeach()
  add_test(NAME ${name} COMMAND ${ARG_COMMAND})
  _kov_test_environment(environment ${name})
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 600)
  endif()
  set_tests_properties(${name} PROPERTIES TIMEOUT ${ARG_TIMEOUT} ENVIRONMENT "${environment}")
  if(ARG_SERIAL)
    set_tests_properties(${name} PROPERTIES RUN_SERIAL ON)
  endif()
  if(ARG_SOAK)
    set_tests_properties(${name} PROPERTIES LABELS soak)
  endif()
endfunction()

# kov_add_fuzz(NAME SOURCES fuzz_x.cpp SEEDS dir [WHITEBOX] [KOVSIM] [DICT file] [SECONDS n]):
# LLVMFuzzerTestOneInput over a part of the system. With KOV_FUZZ (clang) it is a libFuzzer binary,
# run for a short time over a copy of its seeds; without, the same code is run once over each seed.
function(kov_add_fuzz name)
  cmake_parse_arguments(ARG "WHITEBOX;KOVSIM" "SEEDS;DICT;SECONDS" "SOURCES" ${ARGN})
  get_filename_component(seeds "${ARG_SEEDS}" ABSOLUTE)
  foreach(source IN LISTS ARG_SOURCES)
    get_filename_component(path "${source}" ABSOLUTE)
    set_property(GLOBAL APPEND PROPERTY KOV_TEST_SOURCES "${path}")
  endforeach()
  if(ARG_KOVSIM AND NOT TARGET kovsimStatic)
    return()
  endif()
  if(NOT ARG_SECONDS)
    set(ARG_SECONDS 20)
  endif()

  add_executable(${name} ${ARG_SOURCES})
  kov_target_defaults(${name})
  target_include_directories(${name} PRIVATE
    "${CMAKE_SOURCE_DIR}/include" "${CMAKE_SOURCE_DIR}/tests")
  if(ARG_WHITEBOX OR ARG_KOVSIM)
    target_include_directories(${name} PRIVATE "${CMAKE_SOURCE_DIR}")
  endif()
  if(ARG_KOVSIM)
    target_link_libraries(${name} PRIVATE kovsimStatic)
  endif()
  _kov_link_libraries(${name} ${ARG_WHITEBOX})

  set(options)
  if(ARG_DICT)
    get_filename_component(dict "${ARG_DICT}" ABSOLUTE)
    list(APPEND options "-dict=${dict}")
  endif()
  if(KOV_FUZZ)
    target_link_options(${name} PRIVATE -fsanitize=fuzzer)
    add_test(NAME ${name} COMMAND "${CMAKE_SOURCE_DIR}/scripts/run-fuzz.sh"
      $<TARGET_FILE:${name}> "${seeds}" ${ARG_SECONDS} ${options})
  else()
    target_sources(${name} PRIVATE "${CMAKE_SOURCE_DIR}/tests/support/fuzz_replay_main.cpp")
    add_test(NAME ${name} COMMAND ${name} "${seeds}")
  endif()
  _kov_test_environment(environment ${name})
  set_tests_properties(${name} PROPERTIES TIMEOUT 3600 ENVIRONMENT "${environment}" LABELS fuzz)
endfunction()
