#include "market/KeyMask.h"
#include "market/AddressTemplate.h"

namespace Tallymoor {

namespace {

void replaceAll(std::string& text, const std::string& what, const std::string& by) {
  for (std::size_t at = 0; (at = text.find(what, at)) != std::string::npos; at += by.size())
    text.replace(at, what.size(), by);
}

} // namespace

void maskKey(std::string& text, const String& key) {
  if (key.empty())
    return;
  AddressValues values;
  values.key = key;
  replaceAll(text, key.toUTF8(), "(key)");
  replaceAll(text, AddressTemplate(u"{KEY}").fill(values).toUTF8(), "(key)");
}

} // namespace Tallymoor
