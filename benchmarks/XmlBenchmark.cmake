tallymoor_benchmark(XmlBenchmark SOURCES XmlBenchmark.cpp USES xml LINK Xerces::Xerces)
