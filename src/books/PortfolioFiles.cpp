#include "books/PortfolioFiles.h"
#include "foundation/Constants.h"
#include "foundation/FileName.h"
#include "foundation/Platform.h"
#include "xml/CapitalRecord.h"
#include <string_view>

namespace Tallymoor {

namespace {

/// True when the name could be taken for an escaped one.
bool holdsEscape(const String& name) {
  const auto isHex = [](char16_t unit) {
    return std::u16string_view(u"0123456789ABCDEF").find(unit) != std::u16string_view::npos;
  };
  for (std::size_t i = 0; i + 1 < name.size(); ++i)
    if (name[i] == u'%' && (name[i + 1] == u'~' || name[i + 1] == u'u' ||
                            (i + 2 < name.size() && isHex(name[i + 1]) && isHex(name[i + 2]))))
      return true;
  return false;
}

/// Files of clean names keep lone percent signs unescaped.
String withPlainPercents(String escaped) {
  for (std::size_t i = escaped.find(u"%25"); i != String::npos; i = escaped.find(u"%25", i + 1))
    escaped.erase(i + 1, 2);
  return escaped;
}

} // namespace

String capitalRecordFile(const String& portfolioName) {
  // Names are kept clean where they are taken; one that slipped through must not lead elsewhere, nor to the
  // record of another.
  const String escaped = fileNameFor(portfolioName, capitalRecordFileName(String()).size());
  const bool plain = !holdsEscape(portfolioName) && withPlainPercents(escaped) == portfolioName;
  return dataDirectory(Platform::Instance(), APP_NAME) +
         capitalRecordFileName(plain ? portfolioName : escaped);
}

} // namespace Tallymoor
