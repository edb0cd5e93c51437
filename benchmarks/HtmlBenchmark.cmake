find_package(LibXml2 REQUIRED)
tallymoor_benchmark(HtmlBenchmark SOURCES HtmlBenchmark.cpp USES market LINK LibXml2::LibXml2)
