#pragma once
#include "foundation/String.h"

namespace Tallymoor {

/// Base of every failure of the program. Thrown by value, caught by reference; the message names the thrower
/// at its head, as in "SharePortfolioUser::sellShares - cant find held shares to sell".
class Exception {
public:
  explicit Exception(const String& message) : m_message(message) {}
  Exception(const Exception&) = default;
  Exception& operator=(const Exception&) = default;
  virtual ~Exception() = default;

  /// Fills the text that message boxes show: the type name, " : ", the message. The same form for every
  /// class.
  virtual void description(String& text) const;
  /// Fills the text with the class's name as users see it.
  virtual void typeName(String& text) const;

  const String& message() const { return m_message; }
  /// description as a value.
  String description() const;

private:
  String m_message;
};

/// A processor fault, for platforms that can turn one into an exception. Here a fault ends the process, and
/// FaultReport.h tells of it.
class C_Exception : public Exception {
public:
  using Exception::Exception;
  explicit C_Exception(const Exception& other) : Exception(other) {}
  void typeName(String& text) const override;
};

/// Reading or writing a document failed.
class XMLException : public Exception {
public:
  using Exception::Exception;
  explicit XMLException(const Exception& other) : Exception(other) {}
  void typeName(String& text) const override;
};

/// The network failed. The code is the HTTP status of a refused request, otherwise 0.
class HTTPException : public Exception {
public:
  explicit HTTPException(const String& message, unsigned code = 0) : Exception(message), m_code(code) {}
  HTTPException(const Exception& other, unsigned code) : Exception(other), m_code(code) {}
  void typeName(String& text) const override;
  unsigned code() const { return m_code; }

private:
  unsigned m_code;
};

/// A page could not be read, or is not what its locator says.
class HTMLException : public Exception {
public:
  using Exception::Exception;
  explicit HTMLException(const Exception& other) : Exception(other) {}
  void typeName(String& text) const override;
};

} // namespace Tallymoor
