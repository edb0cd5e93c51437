#include "analysis/ReportFiles.h"
#include "foundation/Constants.h"
#include "foundation/Exception.h"
#include "foundation/FileReplacement.h"
#include "foundation/Platform.h"
#include "foundation/Uninterrupted.h"
#include "market/PercentEncoding.h"
#include "xml/StylesheetTransform.h"
#include "xml/Utf8Writer.h"
#include "xml/XMLElement.h"
#include <fstream>
#include <sstream>
#include <string>

namespace Tallymoor {

namespace {

std::string contentOf(const String& path) {
  const std::ifstream file = openToRead(path.toUTF8());
  std::ostringstream content;
  if (filePresence(path) != FilePresence::RegularFile || !(content << file.rdbuf()))
    throw Exception(u"The stylesheet of the report can't be read:\n" + path);
  return content.str();
}

void write(const String& path, const std::string& content) {
  replaceFile(path, [&](std::ostream& stream) { stream << content; });
}

/// What could end the line that names the stylesheet, or be no part of an address.
String asAddress(const String& path) {
  const std::string address = percentEncoded(path.toUTF8(), [](unsigned char byte) {
    return byte <= ' ' || byte >= 0x7F || std::string_view("\"'<>?#%&").find(char(byte)) != std::string::npos;
  });
  return String(address.c_str());
}

std::string documentOf(XMLElement& report, const String& folder) {
  std::ostringstream document;
  report.encodeWithStylesheet(document, asAddress(folder + REPORT_XSL), REPORT_DTD);
  return document.str();
}

std::string escapedMarkup(const String& text) {
  std::ostringstream escaped;
  Utf8Writer writer(escaped);
  writer.escaped(text);
  writer.flush();
  return escaped.str();
}

/// The stylesheet with its mark replaced by the folder.
std::string stylesheetIn(const String& folder) {
  const std::string mark = REPORT_DIR_MARK;
  const std::string place = escapedMarkup(folder);
  std::string stylesheet = contentOf(folder + REPORT_XSL);
  for (std::size_t at = stylesheet.find(mark); at != std::string::npos;
       at = stylesheet.find(mark, at + place.size()))
    stylesheet.replace(at, mark.size(), place);
  return stylesheet;
}

} // namespace

String writeReportFiles(XMLElement& report, const String& fileName) {
  Platform& platform = Platform::Instance();
  installMissingDefaults(platform, APP_NAME);
  const String folder = reportDirectory(platform, APP_NAME);
  const String documentFile = folder + fileName + u".xml";
  String pageFile = folder + fileName + u".html";
  report.setAttribute(u"directory", folder);
  const std::string document = documentOf(report, folder);
  write(documentFile, document);
  try {
    write(pageFile, transformByStylesheet(stylesheetIn(folder), document));
  } catch (const Exception& failure) {
    throw Exception(failure.message() + u"\nThe figures of the report are in\n" + documentFile);
  }
  return pageFile;
}

} // namespace Tallymoor
