#pragma once
#include "foundation/String.h"
#include <cstddef>
#include <map>
#include <memory>
#include <string_view>

namespace Tallymoor {

/// The attributes of one element. Most elements have none, and then this is one pointer.
class ElementAttributes {
public:
  struct NameLess {
    using is_transparent = void;
    bool operator()(std::u16string_view left, std::u16string_view right) const { return left < right; }
  };
  using Values = std::map<String, String, NameLess>;

  ElementAttributes() = default;
  ElementAttributes& operator=(const ElementAttributes& other);

  /// By name.
  const Values& all() const;
  std::size_t size() const { return m_values ? m_values->size() : 0; }
  /// Null if there is none.
  const String* find(std::u16string_view name) const;
  void set(std::u16string_view name, const String& value);
  /// Keeps a value that is there already.
  void add(const char16_t* name, const char16_t* value);
  void remove(std::u16string_view name);
  void clear() { m_values.reset(); }

private:
  Values& made();

  std::unique_ptr<Values> m_values;
};

} // namespace Tallymoor
