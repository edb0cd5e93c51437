#pragma once
#include "foundation/String.h"
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace Tallymoor {

// The saves of every kind of file, made with the program's own classes, for the driver "inject-faults". All
// of them use the profile of the process; see Profile.h.

/// Parameters of the driver's update service.
struct UpdateServiceAddress {
  std::string queryBase;
  std::string publicKey;
};

/// A kind of save.
struct Save {
  /// Prepares the profile: for the first save, or with older files to overwrite.
  std::function<void(bool overwrite)> prepare;
  /// Reads and changes the data in memory. Returns the save itself, which throws on failure.
  std::function<std::function<void()>(const UpdateServiceAddress&)> makeReady;
};

const std::map<std::string, Save>& saves();

/// Names and contents of the documents and program files that the update service offers.
std::vector<std::pair<std::string, std::string>> offeredDocuments();
std::vector<std::pair<std::string, std::string>> offeredProgramFiles();

} // namespace Tallymoor
