#include "xml/ElementLayout.h"
#include "XmlTestTools.h"
#include <thread>
#include <vector>

namespace Tallymoor {
namespace {

XMLElement* makeLeaf() {
  return new XMLString;
}

TEST(ElementLayoutTest, TheSameStepsLeadToTheSameLayout) {
  const ElementLayout& first = ElementLayout::named(u"LayoutTest")
                                   .withSubElement(u"String", u"A", makeLeaf, true, false)
                                   .withAttribute(u"x");
  const ElementLayout& second = ElementLayout::named(u"LayoutTest")
                                    .withSubElement(u"String", u"A", makeLeaf, true, false)
                                    .withAttribute(u"x");
  EXPECT_EQ(&first, &second);
  EXPECT_EQ(first.subElements().size(), 1u);
  EXPECT_EQ(first.attributes().size(), 1u);
  EXPECT_TRUE(first.isAttributeSafe(u"x"));
  EXPECT_FALSE(first.isAttributeSafe(u"y"));
}

TEST(ElementLayoutTest, EveryDifferenceLeadsElsewhere) {
  const ElementLayout& root = ElementLayout::named(u"LayoutDifferences");
  const ElementLayout* base = &root.withSubElement(u"String", u"A", makeLeaf, true, false);
  EXPECT_NE(base, &root.withSubElement(u"Date", u"A", makeLeaf, true, false));
  EXPECT_NE(base, &root.withSubElement(u"String", u"B", makeLeaf, true, false));
  EXPECT_NE(base, &root.withSubElement(u"String", u"A", newElement<XMLDate>, true, false));
  EXPECT_NE(base, &root.withSubElement(u"String", u"A", makeLeaf, false, false));
  EXPECT_NE(base, &root.withSubElement(u"String", u"A", makeLeaf, true, true));
  EXPECT_FALSE(base->withUnsafeContent(u"A").subElements()[0].contentSafe);
  EXPECT_TRUE(base->subElements()[0].contentSafe);
  EXPECT_TRUE(root.subElements().empty());
}

TEST(ElementLayoutTest, ThreadsThatDeclareTheSameClassMeet) {
  std::vector<const ElementLayout*> found(8);
  std::vector<std::thread> threads;
  for (const ElementLayout*& mine : found)
    threads.emplace_back([&mine] {
      const ElementLayout* layout = &ElementLayout::named(u"LayoutThreads");
      for (char16_t letter = u'a'; letter <= u'z'; ++letter)
        layout = &layout->withSubElement(u"String", std::u16string(1, letter), makeLeaf, true, false);
      mine = layout;
    });
  for (std::thread& thread : threads)
    thread.join();
  for (const ElementLayout* layout : found)
    EXPECT_EQ(layout, found[0]);
  EXPECT_EQ(found[0]->subElements().size(), 26u);
  EXPECT_EQ(found[0]->find(u"z"), 25u);
  EXPECT_EQ(found[0]->find(u"none"), 26u);
}

} // namespace
} // namespace Tallymoor
