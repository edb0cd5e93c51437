#include "shell/Application.h"

int main(int argc, char** argv) {
  return Tallymoor::runApplication(argc, argv);
}
