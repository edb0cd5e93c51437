#pragma once
#include "PriceHistory.h"
#include <filesystem>
#include <optional>
#include <string>

namespace SampleService {

/// A folder of CODE.csv files as providers export them: date, open, high, low, close, adjusted close, volume,
/// a header line first. Files are read anew at each request, so that a changed one counts at once.
class PriceFolder {
public:
  explicit PriceFolder(std::filesystem::path folder) : m_folder(std::move(folder)) {}

  /// Nothing when there is no such file or the code is no plain file name. Lines that can't be read are left
  /// out.
  std::optional<PriceHistory> history(const std::string& code) const;
  /// A listing for each file; the name is the code.
  std::vector<Listing> listings() const;

private:
  std::filesystem::path m_folder;
};

} // namespace SampleService
