tallymoor_benchmark(JournalBenchmark SOURCES JournalBenchmark.cpp USES session)
target_compile_definitions(JournalBenchmark PRIVATE TALLYMOOR_PROGRAM_FOLDER="${PROJECT_SOURCE_DIR}/assets")
