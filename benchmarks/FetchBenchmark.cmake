# Uses the tests' profile and server, so it is built only with the tests.
if(TALLYMOOR_TESTS)
  find_package(GTest REQUIRED)
  tallymoor_benchmark(FetchBenchmark SOURCES FetchBenchmark.cpp USES market test_support LINK CURL::libcurl GTest::gtest)
  target_include_directories(FetchBenchmark PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_compile_definitions(FetchBenchmark PRIVATE TALLYMOOR_DEFAULTS="${PROJECT_SOURCE_DIR}/assets/defaults/Config/")
endif()
