#pragma once
#include "foundation/String.h"
#include "xml/XMLElement.h"
#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Tallymoor {

/// What one registration of a sub-element says. The instances stand in an ElementSlot of the parent.
struct SubElementRego {
  XMLElement::Factory factory = nullptr;
  bool required = false;
  bool multiple = false;
  bool contentSafe = true;
  std::int16_t reference = 0; ///< index of the first registration with this reference name
  String elementName;         ///< tag in the file
  String referenceName;       ///< name used by code
};

/// What the registration of an attribute says. Every registered attribute must be there on writing.
struct AttributeRego {
  String name;
  bool required = true;    ///< registered as such, not only marked unsafe
  bool contentSafe = true; ///< written raw
};

/// All that an element class declares: its name, registrations and marks. Hundreds of thousands of instances
/// share a layout.
///
/// Constructors declare a class one registration at a time, so layouts form a tree: the root of a class is
/// the layout that has a name alone, and each step of a constructor leads from a layout to the one that also
/// holds that step. The first construction of a class makes the layouts on its way, every later one only
/// follows them. An instance that registers or marks something more leaves the way of its class without
/// touching other instances.
///
/// Layouts are immutable, are shared by all threads and live as long as the program. Their number is bounded
/// by what the source code declares; nothing that is read from a file makes one.
class ElementLayout {
public:
  /// The layout with this name and nothing else. Also makes the XML library ready.
  static const ElementLayout& named(std::u16string_view name);

  /// The layout that has this registration as its last.
  const ElementLayout& withSubElement(std::u16string_view elementName, std::u16string_view referenceName,
                                      XMLElement::Factory factory, bool required, bool multiple) const;
  const ElementLayout& withAttribute(std::u16string_view name) const;
  /// Clears contentSafe of the attribute; one that is not there yet is added.
  const ElementLayout& withUnsafeAttribute(std::u16string_view name) const;
  /// Clears contentSafe of the first registration with the name, which must be there.
  const ElementLayout& withUnsafeContent(std::u16string_view referenceName) const;

  const String& name() const { return m_name; }
  const std::string& nameUtf8() const { return m_nameUtf8; }
  const std::vector<SubElementRego>& subElements() const { return m_subElements; }
  const std::vector<AttributeRego>& attributes() const { return m_attributes; }
  /// True for an attribute that is written raw; false also for one that is not registered.
  bool isAttributeSafe(std::u16string_view name) const;
  /// Index of the first registration with the reference name; the number of registrations when there is none.
  std::size_t find(std::u16string_view referenceName) const;
  /// How many registrations an instance of the class will have in the end, as far as is known.
  std::size_t expectedSubElements() const { return m_expectedSubElements.load(std::memory_order_relaxed); }

private:
  /// What leads from a layout to the next.
  struct Step {
    enum Kind { SubElement, Attribute, UnsafeAttribute, UnsafeContent };
    Kind kind;
    std::u16string_view name;
    std::u16string_view referenceName = {};
    XMLElement::Factory factory = nullptr;
    bool required = false;
    bool multiple = false;

    bool operator==(const Step&) const = default;
  };
  struct Successor;

  explicit ElementLayout(std::u16string_view name);
  ElementLayout(const ElementLayout& base, const Step& step);
  const ElementLayout& follow(const Step& step) const;
  const ElementLayout* knownSuccessor(const Step& step) const;
  void apply(const Step& step);
  void raiseExpectation(std::size_t subElements) const;

  const ElementLayout* m_base = nullptr;
  String m_name;
  std::string m_nameUtf8;
  std::vector<SubElementRego> m_subElements;
  std::vector<AttributeRego> m_attributes;
  mutable std::atomic<std::size_t> m_expectedSubElements{0};
  mutable std::atomic<const Successor*> m_successors{
      nullptr}; ///< grows at its head, under a lock; read without
};

/// The named layout of a class, looked up once. For constructors that run often.
template <class Element>
const ElementLayout& layoutOf(std::u16string_view name) {
  static const ElementLayout& layout = ElementLayout::named(name);
  return layout;
}

} // namespace Tallymoor
