#include "xml/ElementAttributes.h"

namespace Tallymoor {

ElementAttributes& ElementAttributes::operator=(const ElementAttributes& other) {
  m_values = other.m_values ? std::make_unique<Values>(*other.m_values) : nullptr;
  return *this;
}

const ElementAttributes::Values& ElementAttributes::all() const {
  static const Values NONE;
  return m_values ? *m_values : NONE;
}

const String* ElementAttributes::find(std::u16string_view name) const {
  if (!m_values)
    return nullptr;
  const auto found = m_values->find(name);
  return found == m_values->end() ? nullptr : &found->second;
}

void ElementAttributes::set(std::u16string_view name, const String& value) {
  made().insert_or_assign(String(String::Base(name)), value);
}

void ElementAttributes::add(const char16_t* name, const char16_t* value) {
  made().emplace(String(name), String(value));
}

void ElementAttributes::remove(std::u16string_view name) {
  if (!m_values)
    return;
  const auto found = m_values->find(name);
  if (found != m_values->end())
    m_values->erase(found);
}

ElementAttributes::Values& ElementAttributes::made() {
  if (!m_values)
    m_values = std::make_unique<Values>();
  return *m_values;
}

} // namespace Tallymoor
