tallymoor_benchmark(TableBenchmark SOURCES TableBenchmark.cpp USES widgets LINK Fox::Fox)
