# Uses the tests' real window and simulated exchange, so it is built only with the tests.
if(TALLYMOOR_TESTS)
  find_package(GTest REQUIRED)
  tallymoor_benchmark(SessionBenchmark SOURCES SessionBenchmark.cpp USES shell test_support window_support
    LINK GTest::gtest_main)
  target_include_directories(SessionBenchmark PRIVATE ${PROJECT_SOURCE_DIR}/tests/shell)
endif()
