#include "SampleDataService.h"
#include "Pages.h"
#include <algorithm>
#include <atomic>
#include <charconv>
#include <ctime>
#include <fstream>
#include <httplib.h>
#include <iterator>
#include <map>

namespace SampleService {

using namespace std::chrono;

namespace {

const char* const HTML = "text/html; charset=utf-8";

struct Now {
  Day day;
  int minuteOfDay;
};

Now localNow() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  return {
      sys_days(year(local.tm_year + 1900) / month(unsigned(local.tm_mon + 1)) / day(unsigned(local.tm_mday))),
      local.tm_hour * 60 + local.tm_min};
}

/// A number of at most four digits, otherwise -1.
int numberParameter(const httplib::Request& request, const char* name) {
  const std::string text = request.get_param_value(name);
  int value = -1;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  return error == std::errc() && value >= 0 && value <= 9999 ? value : -1;
}

/// A date from the parameters for day, month (counted from 0) and year, or the fallback if they are invalid.
Day dayParameter(const httplib::Request& request, const char* dayName, const char* monthName,
                 const char* yearName, Day fallback) {
  const int y = numberParameter(request, yearName);
  const int m = numberParameter(request, monthName);
  const int d = numberParameter(request, dayName);
  const year_month_day ymd{year(y), month(unsigned(m + 1)), day(unsigned(d))};
  return y >= 0 && m >= 0 && d >= 0 && ymd.ok() ? sys_days(ymd) : fallback;
}

std::string upperCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return c < 128 ? std::toupper(c) : c; });
  return text;
}

} // namespace

class SampleDataService::Implementation {
public:
  explicit Implementation(const ServiceOptions& options) : m_options(options), m_folder(options.prices) {
    m_server.Get("/quote", [this](const auto& request, auto& response) { quote(request, response); });
    m_server.Get("/history", [this](const auto& request, auto& response) { history(request, response); });
    m_server.Get("/search", [this](const auto& request, auto& response) { search(request, response); });
    m_server.Get("/updates/update.php",
                 [this](const auto& request, auto& response) { update(request, response); });
    m_server.Get("/adverts/randomAdvert.php",
                 [this](const auto& request, auto& response) { advert(request, response); });
    m_server.Get("/adverts/about", [](const auto&, auto& response) {
      response.set_content("<html><body><p>A sample advert leads here.</p></body></html>", HTML);
    });
    m_server.set_tcp_nodelay(true);
    if (!options.log.empty())
      m_server.set_logger([path = options.log](const auto& request, const auto&) {
        std::ofstream(path, std::ios::app) << request.target + "\n";
      });
    readAdverts();
  }

  bool bind() {
    m_port = m_options.port == 0 ? m_server.bind_to_any_port("127.0.0.1") : m_options.port;
    return m_options.port == 0 ? m_port > 0 : m_server.bind_to_port("127.0.0.1", m_options.port);
  }
  int port() const { return m_port; }
  void serve() { m_server.listen_after_bind(); }
  void stop() { m_server.stop(); }

private:
  Now now() const { return m_options.today ? Now{*m_options.today, 720} : localNow(); }

  std::vector<Listing> listings() const {
    std::vector<Listing> all = SampleMarket::listings();
    const std::vector<Listing> fromFolder = m_folder.listings();
    all.insert(all.end(), fromFolder.begin(), fromFolder.end());
    return all;
  }

  Listing listingOf(const std::string& code) const {
    for (const Listing& listing : listings())
      if (listing.code == code)
        return listing;
    return {code, code, "N/A", false};
  }

  std::optional<PriceHistory> historyOf(const std::string& code) const {
    if (auto fromFile = m_folder.history(code))
      return fromFile;
    return m_market.history(code, now().day);
  }

  static void notFound(httplib::Response& response, const std::string& what) {
    response.status = 404;
    response.set_content(notFoundPage(what), HTML);
  }

  void quote(const httplib::Request& request, httplib::Response& response) const {
    const std::string code = request.get_param_value("s");
    const auto past = historyOf(code);
    if (!past || past->rows.empty())
      return notFound(response, "stock " + code);
    const std::int64_t lastClose = past->rows.back().close;
    const bool fromFile = m_folder.history(code).has_value();
    const auto [today, minute] = now();
    const auto moving = fromFile ? std::nullopt : m_market.quote(code, today, minute);
    response.set_content(quotePage(listingOf(code), moving.value_or(lastClose), lastClose), HTML);
  }

  void history(const httplib::Request& request, httplib::Response& response) const {
    const std::string code = request.get_param_value("s");
    const auto past = historyOf(code);
    if (!past)
      return notFound(response, "stock " + code);
    const Day first = dayParameter(request, "b", "a", "c", Day{});
    const Day last = dayParameter(request, "e", "d", "f", now().day);
    response.set_content(historyPage(listingOf(code), *past, first, last), HTML);
  }

  void search(const httplib::Request& request, httplib::Response& response) const {
    const std::string text = request.get_param_value("s");
    const bool wantIndex = request.get_param_value("t") == "I";
    const bool usOnly = request.get_param_value("m") == "US";
    const std::string wanted = upperCase(text);
    std::vector<Listing> found;
    for (const Listing& listing : listings()) {
      const bool matches = upperCase(listing.code).find(wanted) != std::string::npos ||
                           upperCase(listing.name).find(wanted) != std::string::npos;
      const bool isUS = listing.code.find('.') == std::string::npos;
      if (matches && listing.isIndex == wantIndex && (isUS || !usOnly))
        found.push_back(listing);
    }
    response.set_content(searchPage(text, found), HTML);
  }

  /// A missing list means that there are no updates.
  void update(const httplib::Request& request, httplib::Response& response) const {
    const std::string name = request.get_param_value("filename");
    const bool plain = !name.empty() && name.front() != '.' && name.find_first_of("/\\") == std::string::npos;
    const std::filesystem::path path = m_options.updates / name;
    std::error_code unreadable;
    if (plain && !m_options.updates.empty() && std::filesystem::is_regular_file(path, unreadable)) {
      std::ifstream file(path, std::ios::binary);
      response.set_content(std::string(std::istreambuf_iterator<char>(file), {}), "application/octet-stream");
    } else if (name == "binaryupdates.xml" || name == "configupdates.xml") {
      response.set_content("<VersionsAvailable/>", "text/xml");
    } else {
      notFound(response, "file " + name);
    }
  }

  void readAdverts() {
    if (m_options.adverts.empty())
      return;
    for (const auto& entry : std::filesystem::directory_iterator(m_options.adverts)) {
      std::ifstream file(entry.path(), std::ios::binary);
      if (entry.path().extension() == ".gif")
        m_adverts[entry.path().filename()].assign(std::istreambuf_iterator<char>(file), {});
    }
  }

  /// A picture if a name is given, otherwise the next advert's document.
  void advert(const httplib::Request& request, httplib::Response& response) {
    if (request.has_param("image")) {
      const auto picture = m_adverts.find(request.get_param_value("image"));
      if (picture == m_adverts.end())
        response.status = 404;
      else
        response.set_content(picture->second, "image/gif");
      return;
    }
    if (m_adverts.empty()) {
      response.status = 404;
      return;
    }
    const auto next = std::next(m_adverts.begin(), m_nextAdvert++ % m_adverts.size());
    response.set_content("<?xml version=\"1.0\"?>\n<Advertisement url=\"http://127.0.0.1:" +
                             std::to_string(m_port) + "/adverts/about\" image=\"" + next->first + "\"/>",
                         "text/xml");
  }

  const ServiceOptions m_options;
  std::map<std::string, std::string> m_adverts; ///< GIFs by file name.
  std::atomic<unsigned> m_nextAdvert = 0;
  const PriceFolder m_folder;
  const SampleMarket m_market;
  httplib::Server m_server;
  int m_port = 0;
};

SampleDataService::SampleDataService(const ServiceOptions& options)
    : m_implementation(std::make_unique<Implementation>(options)) {}
SampleDataService::~SampleDataService() = default;
bool SampleDataService::bind() {
  return m_implementation->bind();
}
int SampleDataService::port() const {
  return m_implementation->port();
}
void SampleDataService::serve() {
  m_implementation->serve();
}
void SampleDataService::stop() {
  m_implementation->stop();
}

} // namespace SampleService
