#pragma once
#include "foundation/String.h"
#include <cstdint>
#include <string>
#include <vector>

namespace Tallymoor {

/// A folder in which downloads are put together until they are all there and found good. It is empty when it
/// is made; unless it was published it goes with its scope, and with it all that was downloaded. Failures of
/// the file system are Exception.
class StagingFolder {
public:
  /// What an earlier attempt left at this path is removed.
  explicit StagingFolder(const std::string& path);
  ~StagingFolder();
  StagingFolder(const StagingFolder&) = delete;
  StagingFolder& operator=(const StagingFolder&) = delete;

  /// The path of a file in it.
  String file(const String& name) const;
  /// Writes a file whole; it is on disk when this returns.
  void write(const String& name, const std::vector<std::uint8_t>& content) const;
  /// Gives the folder with everything in it another place, in one step. What was there before goes.
  void publishAs(const std::string& path);

private:
  const std::string m_path;
  bool m_published = false;
};

} // namespace Tallymoor
