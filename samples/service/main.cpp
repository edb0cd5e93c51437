#include "IsoDay.h"
#include "SampleDataService.h"
#include <charconv>
#include <cstdio>
#include <cstring>

using namespace SampleService;

namespace {

int usage() {
  std::fputs(
      "usage: sample_data_service [--port N] [--prices FOLDER] [--today YYYY-MM-DD] [--updates FOLDER]\n"
      "                           [--adverts FOLDER] [--log FILE]\n"
      "Serves made-up share prices, the CODE.csv files of a folder, program updates from another one, and "
      "the GIFs\n"
      "of a third as adverts, on this machine's loopback address. Appends each answered request to a file.\n",
      stderr);
  return 2;
}

bool readDate(const char* text, ServiceOptions& options) {
  options.today = isoDay(text);
  return options.today.has_value();
}

bool readPort(const char* text, int& port) {
  const auto [end, error] = std::from_chars(text, text + std::strlen(text), port);
  return error == std::errc() && *end == '\0' && port >= 0 && port <= 65535;
}

} // namespace

int main(int argc, char** argv) {
  ServiceOptions options;
  for (int i = 1; i < argc; i += 2) {
    const std::string name = argv[i];
    if (i + 1 == argc)
      return usage();
    if (name == "--prices")
      options.prices = argv[i + 1];
    else if (name == "--updates")
      options.updates = argv[i + 1];
    else if (name == "--adverts")
      options.adverts = argv[i + 1];
    else if (name == "--log")
      options.log = argv[i + 1];
    else if (!(name == "--port" && readPort(argv[i + 1], options.port)) &&
             !(name == "--today" && readDate(argv[i + 1], options)))
      return usage();
  }
  SampleDataService service(options);
  if (!service.bind()) {
    std::fprintf(stderr, "sample_data_service: port %d is in use\n", options.port);
    return 1;
  }
  std::printf("http://127.0.0.1:%d/\n", service.port());
  std::fflush(stdout);
  service.serve();
  return 0;
}
