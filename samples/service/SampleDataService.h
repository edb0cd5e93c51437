#pragma once
#include "PriceFolder.h"
#include "SampleMarket.h"
#include <memory>
#include <optional>

namespace SampleService {

struct ServiceOptions {
  std::filesystem::path prices;  ///< Folder of CODE.csv files, which take precedence over the sample market.
  std::filesystem::path updates; ///< Folder served by the update service; empty for no updates.
  std::filesystem::path adverts; ///< Folder of GIFs served as adverts in turn; empty for none.
  std::filesystem::path log;     ///< File to which each answered request is appended; empty for none.
  int port = 8317;               ///< 0 selects a free port.
  std::optional<Day> today;      ///< Empty: the machine's date.
};

/// The sample data source: an HTTP server on the loopback interface with quote, price history and search
/// pages. Also acts as the update service: "/updates/update.php?filename=NAME" returns the file of that name.
class SampleDataService {
public:
  explicit SampleDataService(const ServiceOptions& options);
  ~SampleDataService();

  /// Binds the port. False if it is in use. port() then returns the actual port.
  bool bind();
  int port() const;
  /// Serves until stop() is called on another thread.
  void serve();
  void stop();

private:
  class Implementation;
  std::unique_ptr<Implementation> m_implementation;
};

} // namespace SampleService
