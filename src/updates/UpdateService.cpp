#include "updates/UpdateService.h"
#include "market/HTTPClient.h"
#include "market/URL.h"
#include <utility>

namespace Tallymoor {

namespace {

const String QUERY_KEY = u"filename=";

} // namespace

UpdateService::UpdateService(const UpdateSettings& settings, std::stop_token stop)
    : m_settings(settings), m_stop(std::move(stop)), m_client(createHTTPClient()) {
  try {
    m_client->goOnline();
  } catch (const HTTPException& exception) {
    m_connectFailure = exception;
  }
}

UpdateService::~UpdateService() = default;

std::vector<std::uint8_t> UpdateService::fetch(const String& fileName, std::size_t limit) {
  if (!m_settings.isServiceSafe())
    throw Exception(u"Updates::getBinaryUpdates - the address of the update service is not https: " +
                    m_settings.queryBase);
  if (m_connectFailure)
    throw *m_connectFailure;
  std::vector<std::uint8_t> reply;
  m_client->setBodyLimit(limit);
  m_client->getPage(URL(m_settings.queryBase + QUERY_KEY + fileName), reply, m_stop);
  return reply;
}

std::unique_ptr<XMLVersionsAvailable> UpdateService::fetchOffered(const String& listName) {
  std::vector<std::uint8_t> reply;
  try {
    reply = fetch(listName, LIST_LIMIT);
  } catch (const HTTPException& exception) {
    throw Exception(u"Updates::getBinaryUpdates - Problem getting updates: " + exception.description());
  }
  reply.push_back(0);
  auto offered = std::make_unique<XMLVersionsAvailable>();
  try {
    offered->decode(reinterpret_cast<const char*>(reply.data()));
  } catch (const Exception& exception) {
    throw Exception(u"Updates::getBinaryUpdates failed: " + exception.description());
  }
  return offered;
}

std::vector<std::uint8_t> UpdateService::fetchSignature(const String& fileName) {
  try {
    return fetch(fileName + u".sig", SIGNATURE_LIMIT);
  } catch (const HTTPException& exception) {
    throw Exception(u"Updates::downloadFile - no signature for " + fileName + u": " +
                    exception.description());
  }
}

} // namespace Tallymoor
