#pragma once
#include "foundation/String.h"
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace Tallymoor {

/// Names that leave a folder, have a meaning to a shell, the settings file or the file system, contain
/// characters not allowed in files or documents, are too long, or become equal when escaped, cleaned or
/// shortened.
inline std::vector<String> badNames() {
  const auto repeated = [](const char16_t* text, int times) {
    String name;
    for (int i = 0; i < times; ++i)
      name += text;
    return name;
  };
  std::vector<String> names = {u"../x",
                               u"..",
                               u".",
                               u"a/b",
                               u"ab",
                               u"/etc/passwd",
                               u"..\\x",
                               u"\\",
                               u"/",
                               u"//",
                               u"../../../../../x",
                               u"%2e%2e%2f",
                               u"%2E%2E%2Fx",
                               u"a%2Fb",
                               u"a%252Fb",
                               u"%",
                               u"%%",
                               u"%n%s",
                               u"50%",
                               u"%~",
                               u"%u0041",
                               u"CON",
                               u"con",
                               u"nul",
                               u"-rf",
                               u"--help",
                               u"~",
                               u"~root",
                               u"$HOME",
                               u"$(id)",
                               u"`id`",
                               u"a;b",
                               u"a|b",
                               u"*",
                               u"?",
                               u"=",
                               u"a=b",
                               u"[x]",
                               u"]",
                               u"[",
                               u"#",
                               u"#x",
                               u";x",
                               u"x#",
                               u".x",
                               u"x.",
                               u"...",
                               u" x",
                               u"x ",
                               u"x  y",
                               u"\u00A0x",
                               u"\u200Ex\u200F",
                               u"\u202Egnp.x",
                               u"\u200B",
                               u"e\u0301",
                               u"\u00E9",
                               u"\U0001F4C8",
                               u"\U0001F4C8/..",
                               u"\u4E2D\u6587",
                               u"\uFFFD",
                               u"Portfolios",
                               u"Portfolios.xml",
                               u"Portfolios.xml.bak",
                               u"PriceCache.x.xml",
                               u"xCapRecord.xml",
                               u".tallymoor-x.tmp",
                               u"<b>",
                               u"&amp;",
                               u"a&b",
                               u"\"",
                               u"'",
                               u"Portfolio 1",
                               u"watchlist exists",
                               u"abc",
                               u"ABC",
                               u"Watchlist ",
                               u"%+1",
                               u"x%+1",
                               u"true"};
  for (const String& text : {String(u"a\0b", 3), String(u"\0", 1), String(u"a\nb"), String(u"\n"),
                             String(u"a\tb"), String(u"\u0001"), String(u"\u007F"), String(u"\u0085"),
                             String(u"\uFFFE"), String(1, char16_t(0xD800)), String(1, char16_t(0xD801)),
                             String(1, char16_t(0xDC00)), String(u"x") + char16_t(0xD83D)})
    names.push_back(text);
  for (const int length : {60, 61, 200, 239, 240, 241, 255, 256, 5000})
    names.push_back(repeated(u"L", length));
  for (const int length : {60, 79, 80, 81, 85, 86}) {
    names.push_back(repeated(u"\u4E2D", length));
    names.push_back(repeated(u"\U0001F4C8", length));
  }
  names.push_back(repeated(u"L", 240) + u"1");
  names.push_back(repeated(u"L", 240) + u"2");
  names.push_back(repeated(u"../", 100) + u"x");
  names.push_back(repeated(u"/", 300));
  return names;
}

/// True if an XML document can contain the name.
inline bool xmlHolds(const String& name) {
  for (std::size_t i = 0; i < name.size(); ++i) {
    const char16_t unit = name[i];
    const bool pair = (unit & 0xFC00) == 0xD800 && i + 1 < name.size() && (name[i + 1] & 0xFC00) == 0xDC00;
    if (pair)
      ++i;
    else if ((unit < 0x20 && unit != u'\t' && unit != u'\n') || (unit & 0xF800) == 0xD800 || unit >= 0xFFFE)
      return false;
  }
  return true;
}

inline std::string asXmlText(const String& name) {
  std::string text;
  for (const char c : name.toUTF8())
    text += c == '&'   ? "&amp;"
            : c == '<' ? "&lt;"
            : c == '>' ? "&gt;"
            : c == '"' ? "&quot;"
                       : std::string(1, c);
  return text;
}

/// All files below a folder with their content, except the files in the folder of the path `but`. Does not
/// follow links.
inline std::map<std::string, std::string> filesBelow(const std::string& folder, const std::string& but) {
  std::map<std::string, std::string> files;
  for (const auto& item : std::filesystem::recursive_directory_iterator(folder)) {
    const std::filesystem::path parent = item.path().parent_path();
    if (parent == std::filesystem::path(but).parent_path() && !item.is_directory())
      continue;
    std::ostringstream content;
    if (item.is_regular_file())
      content << std::ifstream(item.path(), std::ios::binary).rdbuf();
    files[item.path().string()] = content.str();
  }
  return files;
}

} // namespace Tallymoor
