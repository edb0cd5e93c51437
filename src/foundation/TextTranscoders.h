#pragma once
#include <memory>
#include <xercesc/util/TransService.hpp>

namespace Tallymoor {

constexpr XMLSize_t TRANSCODER_BLOCK_SIZE = 96;

/// The two transcoders of String, one a direction, which live for the whole run so that a document of many
/// thousand short values does not make one for each. Made at the first call. They have no state of their own,
/// so any number of threads may use them at once.
xercesc::XMLTranscoder& utf8Decoder();
xercesc::XMLTranscoder& utf8Encoder();

/// For tests of what String makes of a failing transcoder: puts one in the place of both; null goes back.
/// Only while no other thread converts text.
void setTranscodersForTest(std::unique_ptr<xercesc::XMLTranscoder> transcoder);

/// Deletes the transcoders; they must not outlive the XML library.
void destroyTranscoders();

} // namespace Tallymoor
