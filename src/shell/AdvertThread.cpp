#include "shell/AdvertThread.h"
#include "foundation/RunTimeSettings.h"
#include "foundation/Settings.h"
#include "market/HTTPClient.h"
#include "market/TallymoorInternet.h"
#include "market/URL.h"
#include "shell/AdvertPicture.h"
#include "xml/SmallDocuments.h"
#include <algorithm>

namespace Tallymoor {

namespace {

const AdvertSettings* s_forTest = nullptr;

constexpr std::size_t LARGEST_PICTURE = std::size_t{1024} * 1024; ///< bytes

/// The name goes into an address as it is.
bool isPlainName(const String& name) {
  const auto isPlain = [](char16_t unit) {
    return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z') ||
           (unit >= u'0' && unit <= u'9') || unit == u'.' || unit == u'-' || unit == u'_';
  };
  return !name.empty() && std::all_of(name.begin(), name.end(), isPlain);
}

} // namespace

AdvertSettings AdvertSettings::current() {
  if (s_forTest)
    return *s_forTest;
  AdvertSettings settings;
  settings.base = TALLYMOOR_ADVERT_SERVICE;
  settings.wanted = Settings::Instance().readUnsigned(u"Operation", u"ShowAdverts", 1) != 0;
  return settings;
}

void AdvertSettings::setForTest(const AdvertSettings* settings) {
  s_forTest = settings;
}

AdvertThread::AdvertThread(const AdvertSettings& settings, PendingAdvert& pending)
    : Thread(settings.period, false, 0), m_settings(settings), m_pending(pending) {
  if (settings.wanted)
    start();
}

AdvertThread::~AdvertThread() {
  stopAndJoin();
}

void AdvertThread::threadFunction() {
  runPass();
}

/// No request leaves the machine while the user is offline.
bool AdvertThread::mayFetch() {
  const BackgroundPassScope scope;
  return m_pending.image.empty() && TallymoorInternet::exists() && TallymoorInternet::Instance().isOnline();
}

void AdvertThread::runPass() {
  if (!mayFetch())
    return;
  PendingAdvert advert = fetch();
  const BackgroundPassScope scope;
  m_pending = std::move(advert);
}

PendingAdvert AdvertThread::fetch() const {
  const std::stop_token stop = passToken();
  const std::unique_ptr<HTTPClient> client = createHTTPClient();
  client->goOnline();
  client->setBodyLimit(LARGEST_PICTURE);
  XMLAdvertisement reply;
  reply.decode(client->getPage(URL(m_settings.base), stop).toUTF8().c_str());
  const String& name = reply.attribute(u"image");
  if (!isPlainName(name))
    throw Exception(u"AdvertThread::fetch - not the name of a picture: " + name);
  PendingAdvert advert;
  advert.url = reply.attribute(u"url");
  client->getPage(URL(m_settings.base + u"?image=" + name), advert.image, stop);
  if (!isSoundGif(advert.image))
    throw Exception(u"AdvertThread::fetch - not a picture that can be shown: " + name);
  return advert;
}

} // namespace Tallymoor
