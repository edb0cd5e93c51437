#pragma once
#include "foundation/Exception.h"
#include "foundation/String.h"
#include "pages/HTMLParser.h"
#include "pages/HTMLTag.h"
#include "pages/HTMLTagSearch.h"
#include <functional>
#include <limits>
#include <utility>
#include <vector>

namespace Tallymoor {

/// A page of any size in a shape with quadratic cost in a simple implementation.
struct HtmlShape {
  const char* name;
  std::function<String(std::size_t)> page; ///< Makes a page of this many elements.
  /// The most elements read; a longer page is rejected after that many.
  std::size_t mostPieces = std::numeric_limits<std::size_t>::max();
};

/// Limits of different names per page (besides "html" and "script") and of attributes per tag.
constexpr std::size_t MOST_NAMES = 4096 - 2;
constexpr std::size_t MOST_ATTRIBUTES = 16384;

inline String repeated(std::u16string_view piece, std::size_t count) {
  String text;
  text.reserve(piece.size() * count + 64);
  for (std::size_t i = 0; i < count; ++i)
    text += piece;
  return text;
}

/// Unordered names of equal length.
inline String manyNames(std::u16string_view before, std::size_t count, std::u16string_view behind) {
  constexpr std::size_t FIRST = 10000000;
  String text;
  for (std::size_t i = 0; i < count; ++i) {
    text += before;
    text += String::fromLong(static_cast<std::int64_t>(FIRST + i * 7919 % count));
    text += behind;
  }
  return text;
}

inline std::vector<HtmlShape> htmlShapes() {
  const auto run = [](const char16_t* piece) {
    return [piece](std::size_t count) { return u"<html>" + repeated(piece, count); };
  };
  const auto inside = [](const char16_t* piece) {
    return [piece](std::size_t count) { return u"<html>" + repeated(piece, count) + u"</html>"; };
  };
  const auto nested = [](const char16_t* opening, const char16_t* closing) {
    return [opening, closing](std::size_t count) {
      return u"<html>" + repeated(opening, count) + repeated(closing, count) + u"</html>";
    };
  };
  return {
      {"brackets that open nothing", run(u"<")},
      {"a quote that never ends", [](std::size_t n) { return u"<html><a b=\"" + repeated(u"<p a=\\", n); }},
      {"quotes that never end", run(u"<p a='")},
      {"a comment that never ends", [](std::size_t n) { return u"<html><!--" + repeated(u"-- >", n); }},
      {"attributes", [](std::size_t n) { return u"<html " + manyNames(u"a", n, u" ") + u">"; },
       MOST_ATTRIBUTES},
      {"one attribute again and again", [](std::size_t n) { return u"<html " + repeated(u"a ", n) + u">"; }},
      {"tags that are never closed", inside(u"<td>")},
      {"closing tags that close nothing", inside(u"x</b>")},
      {"ampersands", inside(u"&")},
      {"zero units", [](std::size_t n) { return u"<html><b>" + String(n, u'\0') + u"</b></html>"; }},
      {"lone surrogates",
       [](std::size_t n) { return u"<html><b>" + String(n, char16_t(0xD800)) + u"</b></html>"; }},
      {"declarations that are none", run(u"<!")},
      {"comments in comments", run(u"<!--")},
      {"closing brackets that close nothing", run(u"</")},
      {"tags that end in the next one", run(u"<a ")},
      {"a script that never ends", [](std::size_t n) { return u"<html><script>" + repeated(u"</scrip", n); }},
      {"scripts", inside(u"<script>x</script>")},
      {"tags that take turns", nested(u"<div><td>", u"</div></td>")},
      {"tags of one name in each other", nested(u"<div>", u"</div>")},
      {"tags closed under many parents",
       [](std::size_t n) {
         return u"<html>" + repeated(u"<div>", n) + u"</div>" + repeated(u"<b></b></div>", n);
       }},
      {"names", [](std::size_t n) { return u"<html>" + manyNames(u"<n", n, u">") + u"</html>"; }, MOST_NAMES},
      {"a text in pieces",
       [](std::size_t n) { return u"<html><b>" + repeated(u"x<!---->", n) + u"</b></html>"; }},
  };
}

/// Builds the tree and walks through all of it, like the program.
inline void readShape(String page) {
  try {
    const HTMLPage tree = HTMLParser::Parse(std::move(page));
    HTMLTagSearch(*tree).first([](const HTMLTag& tag) { return tag.nameView() == u"no such name"; });
  } catch (const HTMLException&) {
    // A page may be rejected if that happens early.
  }
}

} // namespace Tallymoor
