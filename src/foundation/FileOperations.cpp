#include "foundation/FileOperations.h"
#include <cstdio>
#include <unistd.h>

namespace Tallymoor {

const FileOperations& FileOperations::system() {
  static const FileOperations operations{::write, ::fsync, ::rename};
  return operations;
}

FileOperations& FileOperations::current() {
  static FileOperations operations = system();
  return operations;
}

} // namespace Tallymoor
