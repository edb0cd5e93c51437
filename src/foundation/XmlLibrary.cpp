#include "foundation/XmlLibrary.h"
#include <atomic>
#include <mutex>
#include <xercesc/util/PlatformUtils.hpp>

namespace Tallymoor {

namespace {

std::mutex initialising;
std::atomic<bool> isUp = false;

} // namespace

void ensureXmlLibrary() {
  if (isUp.load(std::memory_order_acquire))
    return;
  const std::lock_guard lock(initialising);
  if (isUp.load(std::memory_order_relaxed))
    return;
  xercesc::XMLPlatformUtils::Initialize();
  isUp.store(true, std::memory_order_release);
}

void terminateXmlLibrary() {
  const std::lock_guard lock(initialising);
  if (!isUp.load(std::memory_order_relaxed))
    return;
  xercesc::XMLPlatformUtils::Terminate();
  isUp.store(false, std::memory_order_release);
}

} // namespace Tallymoor
