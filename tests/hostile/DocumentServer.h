#pragma once
#include <string>
#include <sys/types.h>

namespace Tallymoor {

/// The update and advert services, in a process of their own so that their memory is not the reader's. What
/// is asked for stands in the address: "/KIND/PATH/OF/DOCUMENT?QUERY", where the kind is
/// - "list": the document is the list of updates;
/// - "delivered-N": the document is the Nth of the program's documents, and the list has it in version 9;
/// - "advert": the document describes an advert, whose picture is a good one.
class DocumentServer {
public:
  DocumentServer();
  ~DocumentServer();
  DocumentServer(const DocumentServer&) = delete;
  DocumentServer& operator=(const DocumentServer&) = delete;

  int port() const { return m_port; }

private:
  [[noreturn]] static void serve(int reportPort, int waitForEnd);

  pid_t m_process = -1;
  int m_port = 0;
  int m_living = -1; ///< the server ends when this is closed
};

/// The documents that an update can deliver, in the order of their numbers.
extern const char* const DELIVERED_DOCUMENTS[5];

} // namespace Tallymoor
