#pragma once
#include <string>
#include <sys/types.h>

namespace Tallymoor {

/// The update and advert services, in a separate process so that their memory does not count as the reader's.
/// The address selects the answer: "/KIND/PATH/OF/DOCUMENT?QUERY". KIND is
/// - "list": the document is the update list;
/// - "delivered-N": the document is number N of the program's documents, listed in version 9;
/// - "advert": the document describes an advert with a valid picture.
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
  int m_living = -1; ///< Closing it ends the server.
};

/// The documents that an update can deliver, by number.
extern const char* const DELIVERED_DOCUMENTS[5];

} // namespace Tallymoor
