#pragma once
#include "foundation/String.h"

namespace Tallymoor {

/// Base class of all failures. Throw by value, catch by reference. The message begins with the name of the
/// throwing function: "SharePortfolioUser::sellShares - cant find held shares to sell".
class Exception {
public:
  explicit Exception(const String& message) : m_message(message) {}
  Exception(const Exception&) = default;
  Exception& operator=(const Exception&) = default;
  virtual ~Exception() = default;

  /// Sets text to the message box text: type name, " : ", message. All subclasses use this form.
  virtual void description(String& text) const;
  /// Sets text to the class name shown to users.
  virtual void typeName(String& text) const;

  const String& message() const { return m_message; }
  /// Returns the description.
  String description() const;

private:
  String m_message;
};

/// A processor fault, for platforms that convert faults into exceptions. On Linux a fault ends the process;
/// see FaultReport.h.
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

/// The network failed. code() is the HTTP status of a refused request, otherwise 0.
class HTTPException : public Exception {
public:
  explicit HTTPException(const String& message, unsigned code = 0) : Exception(message), m_code(code) {}
  HTTPException(const Exception& other, unsigned code) : Exception(other), m_code(code) {}
  void typeName(String& text) const override;
  unsigned code() const { return m_code; }

private:
  unsigned m_code;
};

/// A page could not be read or does not match its locator.
class HTMLException : public Exception {
public:
  using Exception::Exception;
  explicit HTMLException(const Exception& other) : Exception(other) {}
  void typeName(String& text) const override;
};

} // namespace Tallymoor
