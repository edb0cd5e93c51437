#pragma once
#include <memory>
#include <string>

namespace Tallymoor {

/// What became of a document.
struct Outcome {
  bool read = false;
  std::string message = {}; ///< why it was refused
};

/// A way by which a document comes into the program, walked with the program's own classes. Each stands on a
/// profile with sound documents and records. A document may be placed and read after another one.
class Way {
public:
  virtual ~Way() = default;
  /// Takes away what an earlier process has placed and read.
  virtual void restore() = 0;
  /// What the program has begun before the document comes. Threads begin here and not in the constructor, so
  /// that a process can be split before.
  virtual void start() {}
  /// Puts the document where the program will find it.
  virtual void place(const std::string& document) = 0;
  virtual Outcome read() = 0;
  /// What the program holds in memory and a refused document must not change.
  virtual std::string state() { return {}; }
  /// The profile's folder.
  virtual std::string folder() const = 0;
};

/// By its name; throws std::out_of_range for another one. The folder holds the sound documents; the server is
/// that of DocumentServer.
std::unique_ptr<Way> makeWay(const std::string& name, const std::string& soundFolder, int serverPort);

} // namespace Tallymoor
