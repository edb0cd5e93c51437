#pragma once
#include <cstdint>
#include <vector>

namespace Tallymoor {

/// Whether these bytes are a GIF that the toolkit may be given: complete to its end mark, with every block
/// inside the file and no picture larger than an advert needs. The toolkit itself loops for ever on a cut
/// file and takes any size that a file claims.
bool isSoundGif(const std::vector<std::uint8_t>& bytes);

} // namespace Tallymoor
