#pragma once
#include "PriceHistory.h"
#include <filesystem>
#include <optional>
#include <string>

namespace SampleService {

/// A folder of CODE.csv files as exported by providers: a header line, then date, open, high, low, close,
/// adjusted close, volume. Files are read at each request, so changes apply at once.
class PriceFolder {
public:
  explicit PriceFolder(std::filesystem::path folder) : m_folder(std::move(folder)) {}

  /// Empty if the file is missing or the code is not a plain file name. Skips unreadable lines.
  std::optional<PriceHistory> history(const std::string& code) const;
  /// One listing per file, with the code as its name.
  std::vector<Listing> listings() const;

private:
  std::filesystem::path m_folder;
};

} // namespace SampleService
