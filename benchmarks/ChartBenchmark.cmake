tallymoor_benchmark(ChartBenchmark SOURCES ChartBenchmark.cpp USES widgets LINK Fox::Fox)
