# Runs after a test program of windows was built. Writes LIST, which ctest includes, with an entry for each
# suite of PROGRAM. A display per test would take longer than the tests, and a display per suite still allows
# selecting suites by name.
execute_process(COMMAND ${CMAKE_COMMAND} -E env ASAN_OPTIONS=detect_leaks=0 ${PROGRAM} --gtest_list_tests OUTPUT_VARIABLE tests RESULT_VARIABLE failed)
if(failed)
  message(FATAL_ERROR "${PROGRAM} does not list its tests")
endif()
string(REGEX MATCHALL "[^\n]+" lines "${tests}")
set(text "")
foreach(line IN LISTS lines)
  if(NOT line MATCHES "^([^ ]+)[.]")
    continue()
  endif()
  set(suite ${CMAKE_MATCH_1})
  # Long suites start first, so that none runs alone at the end.
  set(cost 1)
  if(suite MATCHES "Counted|YearOf")
    set(cost 50)
  endif()
  string(APPEND text
    "add_test([=[${suite}]=] ${XVFB_RUN} -a -s \"-screen 0 1280x1024x24 -noreset\" [=[${PROGRAM}]=] [=[--gtest_filter=${suite}.*]=])\n"
    "set_tests_properties([=[${suite}]=] PROPERTIES LABELS ${LABEL} TIMEOUT 600 COST ${cost})\n")
endforeach()
if(NOT text)
  message(FATAL_ERROR "${PROGRAM} has no tests")
endif()
file(WRITE ${LIST} "${text}")
