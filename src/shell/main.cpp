#include "foundation/VersionRecord.h"
#include "shell/Application.h"

TALLYMOOR_VERSION_RECORD("1.3.1.510");

int main(int argc, char** argv) {
  return Tallymoor::runApplication(argc, argv);
}
