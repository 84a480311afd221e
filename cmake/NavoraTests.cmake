# navora_suite_test(NAME COMMAND target SUITES filter LABEL label TIMEOUT seconds [PARTS count] [SECONDS cost])
#
# Runs the GoogleTest suites that match a filter in one process, because its tests share a desktop, whose
# start takes longer than most of them. A suite that takes more than about 40 s is divided into PARTS
# entries, so that no core waits for it at the end. SECONDS estimates the time of one entry: ctest starts
# the longest ones first.
function(navora_suite_test name)
  cmake_parse_arguments(TEST "" "COMMAND;SUITES;LABEL;TIMEOUT;PARTS;SECONDS" "" ${ARGN})
  if(NOT TEST_PARTS)
    set(TEST_PARTS 1)
  endif()
  if(NOT TEST_SECONDS)
    set(TEST_SECONDS 10)
  endif()
  # What the toolkit and the web engine allocate once and never free is not a leak of ours.
  set(environment ASAN_OPTIONS=detect_leaks=0)
  foreach(part RANGE 1 ${TEST_PARTS})
    set(entry ${name})
    set(shard "")
    if(TEST_PARTS GREATER 1)
      math(EXPR index "${part} - 1")
      set(entry ${name}.${part})
      set(shard "GTEST_TOTAL_SHARDS=${TEST_PARTS};GTEST_SHARD_INDEX=${index}")
    endif()
    add_test(NAME ${entry} COMMAND ${TEST_COMMAND} "--gtest_filter=${TEST_SUITES}")
    set_tests_properties(${entry} PROPERTIES
      LABELS ${TEST_LABEL} TIMEOUT ${TEST_TIMEOUT} COST ${TEST_SECONDS} ENVIRONMENT "${environment};${shard}")
  endforeach()
endfunction()
