tallymoor_benchmark(StartBenchmark SOURCES StartBenchmark.cpp USES shell LINK Xerces::Xerces)
target_compile_definitions(StartBenchmark PRIVATE TALLYMOOR_PROGRAM_FOLDER="${PROJECT_SOURCE_DIR}/assets")
