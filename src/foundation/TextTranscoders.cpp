#include "foundation/TextTranscoders.h"
#include "foundation/XmlLibrary.h"
#include <atomic>
#include <mutex>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLUTF8Transcoder.hpp>

namespace Tallymoor {

namespace {

std::mutex creation;
// Plain pointers, so that the exit of the process deletes nothing behind the back of a late static
// destructor.
std::atomic<xercesc::XMLTranscoder*> decoder = nullptr;
std::atomic<xercesc::XMLTranscoder*> encoder = nullptr;
xercesc::XMLTranscoder* substitute = nullptr;

xercesc::XMLTranscoder& ready(std::atomic<xercesc::XMLTranscoder*>& slot) {
  if (xercesc::XMLTranscoder* transcoder = slot.load(std::memory_order_acquire))
    return *transcoder;
  ensureXmlLibrary();
  const std::lock_guard lock(creation);
  if (!slot.load(std::memory_order_relaxed))
    slot.store(new xercesc::XMLUTF8Transcoder(u"utf8", TRANSCODER_BLOCK_SIZE,
                                              xercesc::XMLPlatformUtils::fgMemoryManager),
               std::memory_order_release);
  return *slot.load(std::memory_order_relaxed);
}

} // namespace

xercesc::XMLTranscoder& utf8Decoder() {
  return substitute ? *substitute : ready(decoder);
}

xercesc::XMLTranscoder& utf8Encoder() {
  return substitute ? *substitute : ready(encoder);
}

void setTranscodersForTest(std::unique_ptr<xercesc::XMLTranscoder> transcoder) {
  delete substitute;
  substitute = transcoder.release();
}

void destroyTranscoders() {
  delete decoder.exchange(nullptr);
  delete encoder.exchange(nullptr);
}

} // namespace Tallymoor
