#pragma once
#include <memory>
#include <string>

namespace Tallymoor {

/// The result for a document.
struct Outcome {
  bool read = false;
  std::string message = {}; ///< Reason of a refusal.
};

/// A way by which documents enter the program, implemented with the program's own classes. Each has a profile
/// with valid documents and records. Documents may be placed and read repeatedly.
class Way {
public:
  virtual ~Way() = default;
  /// Removes what an earlier process has placed and read.
  virtual void restore() = 0;
  /// Starts what the program has running before the document arrives. Threads start here and not in the
  /// constructor, so that the process can fork before.
  virtual void start() {}
  /// Puts the document where the program reads it.
  virtual void place(const std::string& document) = 0;
  virtual Outcome read() = 0;
  /// State in memory that a refused document must not change.
  virtual std::string state() { return {}; }
  /// The profile's folder.
  virtual std::string folder() const = 0;
};

/// Throws std::out_of_range for an unknown name. The folder contains the valid documents. The server is a
/// DocumentServer.
std::unique_ptr<Way> makeWay(const std::string& name, const std::string& soundFolder, int serverPort);

} // namespace Tallymoor
