#pragma once
#include "PriceFolder.h"
#include "SampleMarket.h"
#include <memory>
#include <optional>

namespace SampleService {

struct ServiceOptions {
  std::filesystem::path prices;  ///< folder of CODE.csv files, which win over the made-up market
  std::filesystem::path updates; ///< folder that the update service serves; empty: it has no updates
  std::filesystem::path adverts; ///< folder of GIFs that are served as adverts in turn; empty: none
  int port = 8317;               ///< 0 takes a free one
  std::optional<Day> today;      ///< nothing: the machine's date
};

/// The sample data source: an HTTP server on loopback with a quote, a price-history and a search page. It
/// plays the update service, too: "/updates/update.php?filename=NAME" gives the file of that name.
class SampleDataService {
public:
  explicit SampleDataService(const ServiceOptions& options);
  ~SampleDataService();

  /// Takes the port; false when it is in use. port() then tells which.
  bool bind();
  int port() const;
  /// Serves until stop() is called from another thread.
  void serve();
  void stop();

private:
  class Implementation;
  std::unique_ptr<Implementation> m_implementation;
};

} // namespace SampleService
