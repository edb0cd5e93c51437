# Runs after a test program of windows was built. Writes LIST, which ctest includes, with an entry for each test
# of PROGRAM, which ON_DISPLAY runs on one of the displays of scripts/with-displays. With BY_SUITE there is an
# entry for each suite: with sanitizers a program starts slowly.
execute_process(COMMAND ${CMAKE_COMMAND} -E env ASAN_OPTIONS=detect_leaks=0 ${PROGRAM} --gtest_list_tests
  OUTPUT_VARIABLE lines RESULT_VARIABLE failed)
if(failed)
  message(FATAL_ERROR "${PROGRAM} does not list its tests")
endif()
string(REGEX REPLACE " +#[^\n]*" "" lines "${lines}") # the values of parameters
string(REGEX MATCHALL "[^\n]+" lines "${lines}")

set(text "")
macro(add_entry name filter)
  # Long suites start first, so that none runs alone at the end.
  set(cost 1)
  if("${name}" MATCHES "Counted|YearOf")
    set(cost 50)
  endif()
  string(APPEND text
    "add_test([=[${name}]=] [=[${ON_DISPLAY}]=] [=[${PROGRAM}]=] [=[--gtest_filter=${filter}]=])\n"
    "set_tests_properties([=[${name}]=] PROPERTIES LABELS ${LABEL} TIMEOUT 600 COST ${cost} RESOURCE_GROUPS displays:1)\n")
endmacro()
foreach(line IN LISTS lines)
  if(line MATCHES "^([^ ]+)[.]$")
    set(suite ${CMAKE_MATCH_1})
    if(BY_SUITE)
      add_entry(${suite} ${suite}.*)
    endif()
  elseif(line MATCHES "^  ([^ ]+)$" AND NOT BY_SUITE)
    add_entry(${suite}.${CMAKE_MATCH_1} ${suite}.${CMAKE_MATCH_1})
  endif()
endforeach()
if(NOT text)
  message(FATAL_ERROR "${PROGRAM} has no tests")
endif()
file(WRITE ${LIST} "${text}")
