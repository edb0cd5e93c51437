#include "workbench/WebPage.h"
#include "foundation/Exception.h"
#include "market/HTTPClient.h"
#include "market/URL.h"
#include "workbench/PageText.h"
#include "workbench/PlainOutput.h"
#include "workbench/WorkbenchFailure.h"
#include <cerrno>
#include <cstring>
#include <curl/curl.h>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <unistd.h>

namespace Tallymoor {

namespace {

String megabytes() {
  return numberText(HTTPClient::PAGE_BODY_LIMIT / 1024 / 1024) + u" MB";
}

[[noreturn]] void failForFile(const std::string& path, const char* what, const String& why) {
  throw WorkbenchFailure(WorkbenchFailure::WRONG_COMMAND,
                         String(what) + u" " + String(path.c_str()) + u": " + why);
}

String systemsReason() {
  return String(std::strerror(errno));
}

/// The parser's message with an explanation.
String whyNotRead(const String& name, const HTMLException& failure) {
  String meaning;
  if (failure.message().contains(u"no tags found"))
    meaning = u"It contains no tags, so it is not a web page.";
  else if (failure.message().contains(u"no html tag found"))
    meaning = u"It has no <html> tag, where every walk starts, so the program can't read it.";
  else
    meaning = u"A <script> has no </script> after it in all lower-case or all upper-case letters.";
  return name + u" can't be read as a web page: " + failure.message() + u"\n" + meaning;
}

/// The message for the network library's error code at the end of a failure text.
String reasonOf(const HTTPException& failure) {
  const String& message = failure.message();
  if (failure.code() != 0)
    return u"the server refused with status " + String::fromLong(failure.code()) + u".";
  if (message.contains(u"goOnline"))
    return u"there is no network.";
  std::size_t start = message.size();
  while (start > 0 && message[start - 1] >= u'0' && message[start - 1] <= u'9')
    --start;
  const auto code = static_cast<CURLcode>(message.substr(start).toLong());
  if (code == CURLE_FILESIZE_EXCEEDED)
    return u"the answer is larger than " + megabytes() + u", the program's limit.";
  if (code == CURLE_UNSUPPORTED_PROTOCOL)
    return u"only http and https are supported, also after a redirection.";
  return code == CURLE_OK || start == message.size() ? message : String(curl_easy_strerror(code)) + u".";
}

} // namespace

void checkScheme(const URL& address) {
  const String scheme = address.scheme();
  if (!scheme.empty() && scheme != u"http" && scheme != u"https")
    throw WorkbenchFailure(WorkbenchFailure::NOT_READ, u"The address begins with " + scheme +
                                                           u"://, but only http and https are supported.");
}

String fetchFailure(const HTTPException& failure) {
  return reasonOf(failure) + u"\n(" + failure.message() + u")";
}

std::string readWholeFile(const std::string& path) {
  std::error_code unknown;
  if (std::filesystem::is_directory(path, unknown))
    failForFile(path, "can't read", u"it is a folder");
  std::ifstream file(path, std::ios::binary);
  if (!file)
    failForFile(path, "can't read", systemsReason());
  std::string bytes(HTTPClient::PAGE_BODY_LIMIT + 1, '\0');
  file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (file.bad())
    failForFile(path, "can't read", systemsReason());
  bytes.resize(static_cast<std::size_t>(file.gcount()));
  if (bytes.size() > HTTPClient::PAGE_BODY_LIMIT)
    failForFile(path, "can't read", u"it is larger than " + megabytes() + u", the program's limit");
  return bytes;
}

WebPage::WebPage(const String& name, const String& text, bool cutAtZero)
    : m_name(name), m_text(text), m_cutAtZero(cutAtZero) {
  try {
    m_tags = HTMLParser::Parse(m_text);
  } catch (const HTMLException& failure) {
    throw WorkbenchFailure(WorkbenchFailure::NOT_READ, whyNotRead(name, failure));
  }
}

WebPage WebPage::fromFile(const std::string& path) {
  const std::string bytes = readWholeFile(path);
  return WebPage(String(path.c_str()), String(bytes.c_str()), bytes.find('\0') != std::string::npos);
}

WebPage WebPage::fetched(HTTPClient& client, const URL& address) {
  checkScheme(address);
  try {
    client.goOnline();
    return WebPage(u"the page", client.getPage(address), false);
  } catch (const HTTPException& failure) {
    throw WorkbenchFailure(WorkbenchFailure::NOT_READ,
                           u"The page can't be fetched: " + fetchFailure(failure));
  }
}

void WebPage::save(const std::string& path) const {
  writeNewFile(path, m_text.toUTF8());
}

void writeNewFile(const std::string& path, std::string_view bytes) {
  // O_EXCL: never overwrite a file, which may be a page that could still be read.
  const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  if (file < 0)
    failForFile(path, "can't save to", systemsReason());
  std::size_t written = 0;
  ssize_t piece = 0;
  while (written < bytes.size() &&
         (piece = ::write(file, bytes.data() + written, bytes.size() - written)) > 0)
    written += static_cast<std::size_t>(piece);
  const bool whole = written == bytes.size();
  const String reason = systemsReason();
  if (::close(file) != 0 || !whole) {
    ::unlink(path.c_str());
    failForFile(path, "can't save to", reason);
  }
}

void WebPage::show(PlainOutput& out) const {
  out.line(u"Page: " + m_name + u", " + counted(m_text.size(), u"character", u"characters") + u", " +
           counted(root()->countTags(), u"tag", u"tags"));
  if (m_cutAtZero)
    out.line(u"Note: it contains zero bytes (is it UTF-16?); the program reads only the text before the "
             u"first one.");
  if (root()->numSubTags() == 0)
    out.line(u"Note: its <html> tag contains no tags. It is empty or never closed by </html>, so the program "
             u"sees nothing of the page.");
}

} // namespace Tallymoor
