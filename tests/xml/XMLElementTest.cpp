#include "xml/XMLElement.h"
#include "XmlTestTools.h"

namespace Tallymoor {
namespace {

/// Counts its instances to detect leaks.
class XMLCounted : public XMLElement {
public:
  XMLCounted() : XMLElement(u"Counted") {
    ++alive;
    registerSubElements(u"Counted", u"Nested", newElement<XMLCounted>, false);
  }
  ~XMLCounted() override { --alive; }
  static int alive;
};
int XMLCounted::alive = 0;

class XMLCountedOwner : public XMLElement {
public:
  XMLCountedOwner() : XMLElement(u"Owner") {
    registerSubElement(u"Counted", u"Single", newElement<XMLCounted>, true);
    registerSubElements(u"Counted", u"Many", newElement<XMLCounted>, false);
  }
};

class XMLElementTest : public ::testing::Test {
protected:
  void SetUp() override { XMLCounted::alive = 0; }
  XMLSample m_sample;
};

TEST_F(XMLElementTest, SubElementsAreReachedByReferenceNameAndIndex) {
  m_sample.subElement(u"First").setValue(u"1");
  m_sample.subElement(u"Second").setValue(u"2");
  m_sample.addSubElement(XMLSample::item(), u"Items").setValue(u"a");
  m_sample.addSubElement(XMLSample::item(), u"Items").setValue(u"b");
  const XMLElement& constant = m_sample;
  EXPECT_EQ(constant.subElement(u"First").value(), String(u"1"));
  EXPECT_EQ(constant.subElement(u"Second").value(), String(u"2"));
  EXPECT_EQ(constant.subElement(u"Items", 1).value(), String(u"b"));
  EXPECT_EQ(m_sample.numSubElements(u"Items"), 2u);
  EXPECT_EQ(m_sample.numSubElements(u"Optional"), 0u);
  EXPECT_EQ(m_sample.subElement(u"First").parent(), &m_sample);
}

TEST_F(XMLElementTest, AnUnknownReferenceNameFails) {
  const XMLElement& constant = m_sample;
  EXPECT_EQ(failureOf([&] { m_sample.subElement(u"Nowhere"); }), String(u"XMLElement::findRego: Nowhere"));
  EXPECT_EQ(failureOf([&] { constant.subElement(u"Nowhere"); }), String(u"XMLElement::findRego(2): Nowhere"));
  EXPECT_EQ(failureOf([&] { m_sample.numSubElements(u"Nowhere"); }),
            String(u"XMLElement::findRego(2): Nowhere"));
  EXPECT_EQ(failureOf([&] { m_sample.addSubElement(new XMLString, u"Nowhere"); }),
            String(u"XMLElement::findRego: Nowhere"));
  EXPECT_EQ(failureOf([&] { m_sample.removeSubElement(u"Nowhere", 0); }),
            String(u"XMLElement::findRego: Nowhere"));
  EXPECT_EQ(failureOf([&] { m_sample.removeSubElements(u"Nowhere"); }),
            String(u"XMLElement::findRego: Nowhere"));
  // The tag and the reference name differ.
  EXPECT_EQ(failureOf([&] { m_sample.subElement(u"Constant"); }), String(u"XMLElement::findRego: Constant"));
}

TEST_F(XMLElementTest, AnIndexPastTheEndFails) {
  const XMLElement& constant = m_sample;
  EXPECT_EQ(failureOf([&] { constant.subElement(u"First", 1); }), String(u"XMLElement::subElement :First1"));
  EXPECT_EQ(failureOf([&] { m_sample.subElement(u"Items", 12); }),
            String(u"XMLElement::subElement(2) :Items12"));
  EXPECT_EQ(failureOf([&] { m_sample.subElement(u"Optional"); }),
            String(u"XMLElement::subElement(2) :Optional0"));
  EXPECT_EQ(failureOf([&] { m_sample.removeSubElement(u"Items", 3); }),
            String(u"XMLElement::removeSubElement: Items3"));
}

TEST_F(XMLElementTest, AddingToATakenSinglePlaceDestroysWhatStoodThere) {
  XMLCountedOwner owner;
  XMLElement* first = new XMLCounted;
  EXPECT_EQ(&owner.addSubElement(first, u"Single"), first);
  EXPECT_EQ(first->parent(), &owner);
  XMLElement* second = new XMLCounted;
  owner.addSubElement(second, u"Single");
  EXPECT_EQ(owner.numSubElements(u"Single"), 1u);
  EXPECT_EQ(&owner.subElement(u"Single"), second);
  EXPECT_EQ(XMLCounted::alive, 1);
  owner.addSubElement(second, u"Single");
  EXPECT_EQ(owner.numSubElements(u"Single"), 1u);
  EXPECT_EQ(XMLCounted::alive, 1);
}

TEST_F(XMLElementTest, AddingUnderAnUnknownNameDestroysTheElement) {
  XMLCountedOwner owner;
  failureOf([&] { owner.addSubElement(new XMLCounted, u"Nowhere"); });
  EXPECT_EQ(XMLCounted::alive, 0);
}

TEST_F(XMLElementTest, RemovingClosesTheGapAndDestroys) {
  XMLCountedOwner owner;
  std::vector<XMLElement*> added;
  for (int i = 0; i < 5; ++i)
    added.push_back(&owner.addSubElement(new XMLCounted, u"Many"));
  owner.removeSubElement(u"Many", 1);
  EXPECT_EQ(XMLCounted::alive, 4);
  EXPECT_EQ(&owner.subElement(u"Many", 0), added[0]);
  EXPECT_EQ(&owner.subElement(u"Many", 1), added[2]);
  EXPECT_EQ(&owner.subElement(u"Many", 3), added[4]);
  EXPECT_EQ(owner.removeSubElements(u"Many"), 4u);
  EXPECT_EQ(owner.removeSubElements(u"Many"), 0u);
  EXPECT_EQ(XMLCounted::alive, 0);
}

TEST_F(XMLElementTest, OnlyALeafHasAValue) {
  XMLString leaf;
  leaf.setValue(u"text");
  EXPECT_EQ(leaf.value(), String(u"text"));
  EXPECT_EQ(
      failureOf([&] { m_sample.setValue(u"some text"); }),
      String(u"XMLElement::setValue: m_registeredSubElements.size() > 0 :Sample with value: some text"));
}

TEST_F(XMLElementTest, Attributes) {
  EXPECT_FALSE(m_sample.hasAttribute(u"version"));
  EXPECT_EQ(failureOf([&] { m_sample.attribute(u"version"); }),
            String(u"XMLElement::attribute :version in Sample"));
  m_sample.setAttribute(u"version", u"12a");
  m_sample.setAttribute(u"version", u"13a");
  EXPECT_TRUE(m_sample.hasAttribute(u"version"));
  EXPECT_EQ(m_sample.attribute(u"version"), String(u"13a"));
  EXPECT_EQ(m_sample.attribute(u"version").toLong(), 13);
  m_sample.removeAttribute(u"other");
  m_sample.removeAttribute(u"version");
  m_sample.removeAttribute(u"version");
  EXPECT_FALSE(m_sample.hasAttribute(u"version"));
}

TEST_F(XMLElementTest, MarkingAnUnknownRegistrationFails) {
  EXPECT_EQ(failureOf([&] { m_sample.markContentUnsafe(u"Nowhere"); }),
            String(u"XMLElement::markContentUnsafe - cant find referenceName Nowhere"));
}

TEST_F(XMLElementTest, MarkingAnInstanceLeavesOthersOfItsClassAlone) {
  XMLSample other;
  m_sample.markContentUnsafe(u"Text");
  m_sample.registerSubElement(u"More", u"More", newElement<XMLString>, true);
  m_sample.subElement(u"Text").setValue(u"a&b");
  other.subElement(u"Text").setValue(u"a&b");
  EXPECT_NE(encoded(m_sample).find("<String>a&amp;b</String>"), std::string::npos);
  EXPECT_NE(encoded(other).find("<String>a&b</String>"), std::string::npos);
  EXPECT_EQ(m_sample.numSubElements(u"More"), 0u);
  EXPECT_EQ(failureOf([&] { other.numSubElements(u"More"); }), String(u"XMLElement::findRego(2): More"));
  m_sample.addSubElement(new XMLElement(u"More"), u"More").setValue(u"more");
  EXPECT_EQ(m_sample.subElement(u"Text").value(), String(u"a&b"));
  EXPECT_NE(encoded(m_sample).find("</String><More>more</More></Sample>"), std::string::npos);
}

TEST_F(XMLElementTest, CopiesAreDeep) {
  m_sample.subElement(u"First").setValue(u"1");
  m_sample.addSubElement(XMLSample::item(), u"Items").setValue(u"a<b");
  m_sample.addSubElement(XMLSample::item(), u"Items").setValue(u"b");
  m_sample.setAttribute(u"kind", u"x");
  m_sample.markContentUnsafe(u"Items");
  m_sample.subElement(u"Text").markContentUnsafe();
  const std::string before = encoded(m_sample);
  XMLSample copy(m_sample);
  EXPECT_EQ(encoded(copy), before);
  EXPECT_EQ(copy.parent(), nullptr);
  EXPECT_EQ(copy.subElement(u"Items", 1).parent(), &copy);
  EXPECT_FALSE(copy.subElement(u"Text").isContentSafe());
  copy.subElement(u"Items", 0).setValue(u"changed");
  copy.setAttribute(u"kind", u"y");
  EXPECT_EQ(encoded(m_sample), before);
}

TEST_F(XMLElementTest, AssignmentFreesWhatTheTargetHeld) {
  XMLCountedOwner owner;
  XMLCountedOwner target;
  owner.addSubElement(new XMLCounted, u"Single").addSubElement(new XMLCounted, u"Nested");
  target.addSubElement(new XMLCounted, u"Many");
  target.addSubElement(new XMLCounted, u"Many");
  EXPECT_EQ(XMLCounted::alive, 4);
  target = owner;
  EXPECT_EQ(XMLCounted::alive, 4);
  EXPECT_EQ(target.numSubElements(u"Many"), 0u);
  EXPECT_EQ(target.subElement(u"Single").numSubElements(u"Nested"), 1u);
  const XMLElement& itself = target;
  target = static_cast<const XMLCountedOwner&>(itself);
  EXPECT_EQ(target.numSubElements(u"Single"), 1u);
}

TEST_F(XMLElementTest, AssigningAnElementOfAnotherClassTakesItsRegistrationsToo) {
  XMLElement plain(u"Plain");
  plain = m_sample;
  EXPECT_EQ(plain.name(), String(u"Sample"));
  EXPECT_EQ(encoded(plain), encoded(m_sample));
}

TEST_F(XMLElementTest, CloneAssignsToWhatTheFactoryMakes) {
  m_sample.subElement(u"Text").setValue(u"text");
  XMLElement* copy = m_sample.clone(newElement<XMLSample>);
  EXPECT_NE(dynamic_cast<XMLSample*>(copy), nullptr);
  EXPECT_EQ(encoded(*copy), encoded(m_sample));
  copy->destroy();
}

TEST_F(XMLElementTest, ResetEmptiesAndKeepsRequiredSingles) {
  XMLElement* first = &m_sample.subElement(u"First");
  first->setValue(u"1");
  first->setAttribute(u"a", u"b");
  m_sample.setAttribute(u"a", u"b");
  m_sample.addSubElement(XMLSample::item(), u"Items");
  m_sample.addSubElement(new XMLDate, u"Optional");
  m_sample.reset();
  EXPECT_EQ(&m_sample.subElement(u"First"), first);
  EXPECT_EQ(first->value(), String());
  EXPECT_FALSE(first->hasAttribute(u"a"));
  EXPECT_FALSE(m_sample.hasAttribute(u"a"));
  EXPECT_EQ(m_sample.numSubElements(u"Items"), 0u);
  EXPECT_EQ(m_sample.numSubElements(u"Optional"), 0u);
}

TEST_F(XMLElementTest, DestroyEndsTheWholeTree) {
  auto* owner = new XMLCountedOwner;
  owner->addSubElement(new XMLCounted, u"Many").addSubElement(new XMLCounted, u"Nested");
  EXPECT_EQ(XMLCounted::alive, 2);
  owner->destroy();
  EXPECT_EQ(XMLCounted::alive, 0);
}

TEST_F(XMLElementTest, AMillionLevelsAreDestroyed) {
  XMLCountedOwner owner;
  XMLElement* top = new XMLCounted;
  // From the deepest level up, because a change is reported to all levels above it.
  for (int i = 0; i < 1000000; ++i) {
    auto* above = new XMLCounted;
    above->addSubElement(top, u"Nested");
    top = above;
  }
  owner.addSubElement(top, u"Single");
  EXPECT_EQ(XMLCounted::alive, 1000001);
  owner.removeSubElements(u"Single");
  EXPECT_EQ(XMLCounted::alive, 0);
}

TEST_F(XMLElementTest, AMillionSiblingsAreDestroyed) {
  XMLCountedOwner owner;
  for (int i = 0; i < 1000000; ++i)
    owner.addSubElement(new XMLCounted, u"Many");
  EXPECT_EQ(owner.removeSubElements(u"Many"), 1000000u);
  EXPECT_EQ(XMLCounted::alive, 0);
}

TEST(LeavesTest, ReadDatesAndNumbers) {
  XMLDate date;
  date.setValue(u"3/3/2006");
  EXPECT_EQ(date.date(), Date(2006, 3, 3));
  date.setValue(u"nonsense");
  EXPECT_THROW(date.date(), Exception);
  XMLConstant constant;
  EXPECT_EQ(constant.toDouble(), 0.0);
  EXPECT_EQ(constant.toLong(), 0);
  constant.setValue(u"-12.75");
  EXPECT_EQ(constant.toDouble(), -12.75);
  EXPECT_EQ(constant.toLong(), -12);
  EXPECT_EQ(XMLString().name(), String(u"String"));
  EXPECT_EQ(date.name(), String(u"Date"));
  EXPECT_EQ(constant.name(), String(u"Constant"));
}

TEST(LeavesTest, AreReadThroughTheirParent) {
  XMLSample sample;
  sample.subElement(u"First").setValue(u"12.5");
  sample.addSubElement(new XMLDate, u"Optional").setValue(u"29/2/2008");
  sample.subElement(u"Text").setValue(u"text");
  EXPECT_EQ(doubleValue(sample, u"First"), 12.5);
  EXPECT_EQ(longValue(sample, u"First"), 12);
  EXPECT_EQ(longValue(sample, u"Second"), 0);
  EXPECT_EQ(dateValue(sample, u"Optional"), Date(2008, 2, 29));
  EXPECT_EQ(textValue(sample, u"Text"), String(u"text"));
  EXPECT_EQ(failureOf([&] { textValue(sample, u"Last"); }), String(u"XMLElement::subElement :Last0"));
}

} // namespace
} // namespace Tallymoor
