tallymoor_benchmark(XmlBenchmark SOURCES XmlBenchmark.cpp USES books LINK Xerces::Xerces)
