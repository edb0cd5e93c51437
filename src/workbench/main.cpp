#include "foundation/XmlLibrary.h"
#include "market/HTTPClient.h"
#include "workbench/Workbench.h"
#include <iostream>
#include <unistd.h>

// What nobody foresaw ends the program.
int main(int argc, char** argv) { // NOLINT(bugprone-exception-escape)
  using namespace Tallymoor;
  ensureXmlLibrary();
  const std::vector<std::string> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);
  int status =
      Workbench(std::cout, std::cerr, createHTTPClient, &std::cin, isatty(STDIN_FILENO) != 0).run(arguments);
  std::cout.flush();
  if (!std::cout && status == Workbench::DONE)
    status = Workbench::WRONG_USE; // The output could not be written.
  terminateXmlLibrary();
  return status;
}
