#include "widgets/ChartSvg.h"
#include "ChartSamples.h"
#include "foundation/XmlLibrary.h"
#include "support/TestProfile.h"
#include <gmock/gmock.h>
#include <map>
#include <set>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/sax/HandlerBase.hpp>
#include <xercesc/sax2/Attributes.hpp>
#include <xercesc/sax2/DefaultHandler.hpp>
#include <xercesc/sax2/SAX2XMLReader.hpp>
#include <xercesc/sax2/XMLReaderFactory.hpp>
#include <xercesc/util/XMLUni.hpp>

namespace Tallymoor {
namespace {

using namespace ChartSamples;

/// The elements that an XML parser finds in a drawing. A document that is not well-formed fails the test.
class Drawing : public xercesc::DefaultHandler {
public:
  struct Element {
    std::string tag;
    std::map<std::string, std::string> attributes;
    std::string text;
  };

  explicit Drawing(const String& svg) {
    ensureXmlLibrary();
    const std::string utf8 = svg.toUTF8();
    const std::unique_ptr<xercesc::SAX2XMLReader> reader(xercesc::XMLReaderFactory::createXMLReader());
    reader->setFeature(xercesc::XMLUni::fgSAX2CoreNameSpaces, false); // Keeps qualified names.
    reader->setContentHandler(this);
    reader->setErrorHandler(this);
    const xercesc::MemBufInputSource source(reinterpret_cast<const XMLByte*>(utf8.data()), utf8.size(),
                                            "svg");
    try {
      reader->parse(source);
    } catch (const xercesc::SAXException& failure) {
      ADD_FAILURE() << "not well formed: " << String(failure.getMessage()).toUTF8();
    }
  }

  std::vector<Element> all(const std::string& tag) const {
    std::vector<Element> found;
    for (const Element& element : m_elements)
      if (element.tag == tag)
        found.push_back(element);
    return found;
  }
  std::vector<std::string> texts(const std::string& tag = "text") const {
    std::vector<std::string> found;
    for (const Element& element : all(tag))
      found.push_back(element.text);
    return found;
  }

private:
  void startElement(const XMLCh*, const XMLCh*, const XMLCh* const name,
                    const xercesc::Attributes& attributes) override {
    Element element{String(name).toUTF8(), {}, {}};
    for (XMLSize_t i = 0; i < attributes.getLength(); ++i)
      element.attributes[String(attributes.getQName(i)).toUTF8()] = String(attributes.getValue(i)).toUTF8();
    m_open.push_back(m_elements.size());
    m_elements.push_back(element);
  }
  void characters(const XMLCh* text, const XMLSize_t length) override {
    m_elements[m_open.back()].text += String(text, length).toUTF8();
  }
  void endElement(const XMLCh*, const XMLCh*, const XMLCh*) override { m_open.pop_back(); }
  void fatalError(const xercesc::SAXParseException& failure) override { throw failure; }

  std::vector<Element> m_elements;
  std::vector<std::size_t> m_open;
};

class ChartSvgTest : public ::testing::Test {
protected:
  TestProfile m_profile{"en_AU"};
};

TEST_F(ChartSvgTest, TheDrawingIsWellFormedAndScales) {
  const Drawing drawing(chartSvg(priceModel(), 700, 260));
  const auto svg = drawing.all("svg");
  ASSERT_EQ(1u, svg.size());
  EXPECT_EQ("0 0 700 260", svg[0].attributes.at("viewBox"));
  EXPECT_EQ("700", svg[0].attributes.at("width"));
  EXPECT_EQ("http://www.w3.org/2000/svg", svg[0].attributes.at("xmlns"));
  EXPECT_THAT(drawing.texts("title"),
              testing::ElementsAre("AAA.AX", "Bought 100 at 12.00", "Sold 50 at 12.50"));
}

TEST_F(ChartSvgTest, TextsShowAsTheyStand) {
  ChartModel model = priceModel();
  const std::string odd = "<A> & \"B\" 'C' \xC3\xA9";
  model.title = String::fromUTF8(odd);
  model.series[0].name = String::fromUTF8(odd);
  model.levels[0].name = u"Min <&>";
  model.markers[0].text = u"Bought <1> & \"more\"";
  const Drawing drawing(chartSvg(model, 900, 300));
  EXPECT_THAT(drawing.texts(), testing::IsSupersetOf({odd, odd, std::string("Min <&> 11.00")}));
  EXPECT_THAT(drawing.texts("title"), testing::IsSupersetOf({odd, std::string("Bought <1> & \"more\"")}));
}

TEST_F(ChartSvgTest, CharactersThatXmlCannotHoldAreLeftOut) {
  ChartModel model = priceModel();
  model.title = String(u"A\x01") + u'\x0B' + u"B\xFFFE" + u"C";
  const Drawing drawing(chartSvg(model, 700, 260));
  EXPECT_EQ("ABC", drawing.texts("title").at(0));
}

TEST_F(ChartSvgTest, LinesAndMarkersDifferInBlackAndWhite) {
  const Drawing drawing(chartSvg(priceModel(), 700, 260));
  const auto lines = drawing.all("polyline");
  ASSERT_EQ(2u, lines.size());
  EXPECT_FALSE(lines[0].attributes.count("stroke-dasharray"));
  EXPECT_TRUE(lines[1].attributes.count("stroke-dasharray"));
  EXPECT_EQ("#0072b2", lines[0].attributes.at("stroke"));
  std::set<std::string> patterns;
  for (const auto& line : drawing.all("line"))
    if (line.attributes.count("stroke-dasharray"))
      patterns.insert(line.attributes.at("stroke-dasharray"));
  EXPECT_EQ(2u, patterns.size()) << "of the limits, and of the trend in the legend";
  const auto markers = drawing.all("path");
  ASSERT_EQ(4u, markers.size()) << "with those of the legend";
  EXPECT_NE("#ffffff", markers[0].attributes.at("fill"));
  EXPECT_EQ("#ffffff", markers[1].attributes.at("fill"));
}

TEST_F(ChartSvgTest, DecadesMakeNoLongDocument) {
  const String svg = chartSvg(longModel(7300), 700, 260);
  EXPECT_LT(svg.size(), 40000u);
  EXPECT_EQ(1u, Drawing(svg).all("polyline").size());
}

TEST_F(ChartSvgTest, AnEmptyModelSaysSo) {
  ChartModel model;
  model.emptyText = u"No capital to show yet.";
  const Drawing drawing(chartSvg(model, 700, 260));
  EXPECT_THAT(drawing.texts(), testing::ElementsAre("No capital to show yet."));
  EXPECT_TRUE(drawing.all("polyline").empty());
}

TEST_F(ChartSvgTest, ASinglePointIsADot) {
  const Drawing drawing(chartSvg(longModel(1), 700, 260));
  EXPECT_EQ(1u, drawing.all("circle").size());
  EXPECT_TRUE(drawing.all("polyline").empty());
}

TEST_F(ChartSvgTest, NonFiniteValuesAreOmitted) {
  ChartModel model = priceModel();
  model.series[0].points[5].value = NOT_A_NUMBER;
  model.series[0].points[6].value = INFINITE;
  model.markers[0].value = NOT_A_NUMBER;
  model.levels[0].value = INFINITE;
  const String svg = chartSvg(model, 700, 260);
  EXPECT_FALSE(svg.toLower().contains(u"nan"));
  EXPECT_FALSE(svg.toLower().contains(u"inf"));
  EXPECT_EQ(3u, Drawing(svg).all("path").size());
}

} // namespace
} // namespace Tallymoor
