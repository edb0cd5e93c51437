#include "xml/Leaves.h"
#include "xml/ElementLayout.h"

namespace Tallymoor {

namespace {

constexpr std::u16string_view UNREADABLE = u"Unreadable";
constexpr const char16_t* FAR_OFF_TEXT = u"1/1/9999";

bool isDate(const String& text) {
  try {
    static_cast<void>(Date(text, DATE_DISPLAY_DMY));
    return true;
  } catch (const Exception&) {
    return false;
  }
}

} // namespace

XMLString::XMLString() : XMLElement(layoutOf<XMLString>(u"String")) {}

XMLDate::XMLDate() : XMLElement(layoutOf<XMLDate>(u"Date")) {}

Date XMLDate::date() const {
  if (!m_date || m_dateStamp != changeStamp()) {
    m_date.emplace(value(), DATE_DISPLAY_DMY);
    m_dateStamp = changeStamp();
  }
  return *m_date;
}

bool XMLDate::isSetAside() const {
  return hasAttribute(UNREADABLE) && value() == FAR_OFF_TEXT;
}

void XMLDate::setAside() {
  if (hasAttribute(UNREADABLE))
    return;
  setAttribute(UNREADABLE, value());
  setValue(FAR_OFF_TEXT);
}

void XMLDate::putBack() {
  if (!hasAttribute(UNREADABLE))
    return;
  const String kept = attribute(UNREADABLE);
  const bool wasPutRight = value() != FAR_OFF_TEXT;
  if (!wasPutRight && !isDate(kept))
    return;
  if (!wasPutRight)
    setValue(kept);
  removeAttribute(UNREADABLE);
}

std::optional<String> XMLDate::unreadableText() const {
  if (hasAttribute(UNREADABLE))
    return attribute(UNREADABLE);
  return isDate(value()) ? std::nullopt : std::optional(value());
}

XMLConstant::XMLConstant() : XMLElement(layoutOf<XMLConstant>(u"Constant")) {}

double XMLConstant::toDouble() const {
  return value().toDouble();
}

std::int32_t XMLConstant::toLong() const {
  return value().toLong();
}

Date dateValue(const XMLElement& parent, std::u16string_view referenceName) {
  const XMLElement& leaf = parent.subElement(referenceName);
  if (const auto* date = dynamic_cast<const XMLDate*>(&leaf))
    return date->date();
  return Date(leaf.value(), DATE_DISPLAY_DMY);
}

double doubleValue(const XMLElement& parent, std::u16string_view referenceName) {
  return textValue(parent, referenceName).toDouble();
}

std::int32_t longValue(const XMLElement& parent, std::u16string_view referenceName) {
  return textValue(parent, referenceName).toLong();
}

const String& textValue(const XMLElement& parent, std::u16string_view referenceName) {
  return parent.subElement(referenceName).value();
}

} // namespace Tallymoor
