#pragma once
#include "foundation/String.h"
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace Tallymoor {

// The saves of every kind of file that the program writes, each through the program's own classes, for the
// driver "inject-faults". All of them happen in the profile of the process: see Profile.h.

/// What a save needs to know of the update service that the driver runs.
struct UpdateServiceAddress {
  std::string queryBase;
  std::string publicKey;
};

/// One kind of save.
struct Save {
  /// Puts the profile into the state before it: before the first save of the kind, or with older files to
  /// replace.
  std::function<void(bool overwrite)> prepare;
  /// Reads what is there, changes it in memory, and gives the save itself, which throws where it fails.
  std::function<std::function<void()>(const UpdateServiceAddress&)> makeReady;
};

const std::map<std::string, Save>& saves();

/// Name and content of the documents and program files that the update service offers.
std::vector<std::pair<std::string, std::string>> offeredDocuments();
std::vector<std::pair<std::string, std::string>> offeredProgramFiles();

} // namespace Tallymoor
