#include "widgets/ChartDocument.h"
#include "ChartSamples.h"
#include "foundation/XmlLibrary.h"
#include "support/TestProfile.h"
#include "widgets/ChartStrokes.h"
#include <array>
#include <cstdio>
#include <gmock/gmock.h>
#include <map>
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

class ChartDocumentTest : public ::testing::Test {
protected:
  static std::string saved(ChartFormat format) {
    const ChartFont font("sans-serif", 12.0, ChartFont::Target::DOCUMENT);
    return chartDocument(priceModel(), format, 600, 300, font);
  }

  /// As cairo writes it, in percent.
  static std::string named(FXColor colour) {
    std::string text = "rgb(";
    for (const FXuint channel : {FXREDVAL(colour), FXGREENVAL(colour), FXBLUEVAL(colour)}) {
      std::array<char, 16> percent{};
      std::snprintf(percent.data(), percent.size(), "%.6f", channel * 100.0 / 255.0);
      std::string digits = percent.data();
      digits.erase(digits.find_last_not_of('0') + 1);
      if (digits.ends_with('.'))
        digits.pop_back();
      text += digits + "%,";
    }
    text.back() = ')';
    return text;
  }
  /// Paths that are stroked in the colour, with this in their style.
  static std::vector<Drawing::Element> strokes(const Drawing& drawing, FXColor colour,
                                               const std::string& style) {
    return paths(drawing, "stroke:" + named(colour), style);
  }
  static std::vector<Drawing::Element> fills(const Drawing& drawing, FXColor colour) {
    return paths(drawing, "fill:" + named(colour), "fill-opacity:1");
  }
  static std::vector<Drawing::Element> paths(const Drawing& drawing, const std::string& paint,
                                             const std::string& style) {
    std::vector<Drawing::Element> found;
    for (const Drawing::Element& path : drawing.all("path"))
      if (path.attributes.at("style").find(paint) != std::string::npos &&
          path.attributes.at("style").find(style) != std::string::npos)
        found.push_back(path);
    return found;
  }

  TestProfile m_profile{"en_AU"};
};

TEST_F(ChartDocumentTest, TheDrawingIsWellFormedAndScales) {
  const Drawing drawing(chartSvg(priceModel(), 700, 260));
  const auto svg = drawing.all("svg");
  ASSERT_EQ(1u, svg.size());
  EXPECT_EQ("0 0 700 260", svg[0].attributes.at("viewBox"));
  EXPECT_EQ("700px", svg[0].attributes.at("width"));
  EXPECT_EQ("max-width:100%;height:auto", svg[0].attributes.at("style"));
  EXPECT_EQ("http://www.w3.org/2000/svg", svg[0].attributes.at("xmlns"));
  EXPECT_THAT(drawing.texts("title"), testing::ElementsAre("AAA.AX"));
  EXPECT_TRUE(chartSvg(priceModel(), 700, 260).startsWith(u"<svg ")) << "to stand in a page";
}

TEST_F(ChartDocumentTest, TheDescriptionHoldsTheTexts) {
  const Drawing drawing(chartSvg(priceModel(), 700, 260));
  ASSERT_EQ(1u, drawing.texts("desc").size());
  for (const std::string text :
       {"Price", "LR", "Min 11.00", "Max 13.50", "Purchases", "Sales", "12.50", "2026"})
    EXPECT_THAT(drawing.texts("desc")[0], testing::HasSubstr(text));
}

TEST_F(ChartDocumentTest, TextsShowAsTheyStand) {
  ChartModel model = priceModel();
  const std::string odd = "<A> & \"B\" 'C' \xC3\xA9";
  model.title = String::fromUTF8(odd);
  model.series[0].name = String::fromUTF8(odd);
  model.levels[0].name = u"Min <&>";
  const Drawing drawing(chartSvg(model, 900, 300));
  EXPECT_THAT(drawing.texts("title"), testing::ElementsAre(odd));
  EXPECT_THAT(drawing.texts("desc")[0],
              testing::AllOf(testing::StartsWith(odd + ", "), testing::HasSubstr("Min <&> 11.00")));
}

TEST_F(ChartDocumentTest, CharactersThatXmlCannotHoldAreLeftOut) {
  ChartModel model = priceModel();
  model.title = String(u"A\x01") + u'\x0B' + u"B\xFFFE" + u"C";
  EXPECT_EQ("ABC", Drawing(chartSvg(model, 700, 260)).texts("title").at(0));
}

TEST_F(ChartDocumentTest, LinesAndMarkersDifferInBlackAndWhite) {
  const Drawing drawing(chartSvg(priceModel(), 700, 260));
  EXPECT_EQ(2u, strokes(drawing, ChartColours::BLUE, "").size()) << "the price and its sample";
  EXPECT_EQ(2u, strokes(drawing, ChartColours::PURPLE, "stroke-dasharray").size()) << "its trend, dotted";
  EXPECT_EQ(2u, strokes(drawing, ChartColours::VERMILLION, "stroke-dasharray").size()) << "a limit";
  EXPECT_EQ(2u, fills(drawing, ChartColours::PURCHASE).size()) << "filled";
  EXPECT_EQ(0u, fills(drawing, ChartColours::SALE).size()) << "hollow";
  ASSERT_EQ(ChartColours::SALE, ChartColours::VERMILLION);
  EXPECT_EQ(4u, strokes(drawing, ChartColours::SALE, "").size())
      << "outlined, beside the limit and its sample";
}

TEST_F(ChartDocumentTest, LettersAreOutlinesSoThatDrawingsOfOnePageShareNoNames) {
  const String svg = chartSvg(priceModel(), 700, 260);
  const Drawing drawing(svg);
  EXPECT_TRUE(drawing.all("symbol").empty());
  EXPECT_FALSE(svg.contains(u"href"));
  EXPECT_GT(fills(drawing, ChartColours::TEXT).size(), 15u) << "a path for each text";
}

TEST_F(ChartDocumentTest, DecadesMakeNoLongDocument) {
  const String svg = chartSvg(longModel(7300), 700, 260);
  EXPECT_LT(svg.size(), 200000u);
  EXPECT_EQ(2u, strokes(Drawing(svg), ChartColours::BLUE, "").size());
}

TEST_F(ChartDocumentTest, AnEmptyModelSaysSo) {
  ChartModel model;
  model.emptyText = u"No capital to show yet.";
  const Drawing drawing(chartSvg(model, 700, 260));
  EXPECT_THAT(drawing.texts("desc"), testing::ElementsAre("No capital to show yet."));
  EXPECT_EQ(1u, drawing.all("path").size()) << "the text";
}

TEST_F(ChartDocumentTest, ASinglePointIsADot) {
  const Drawing drawing(chartSvg(longModel(1), 700, 260));
  EXPECT_EQ(1u, fills(drawing, ChartColours::BLUE).size());
  EXPECT_EQ(1u, strokes(drawing, ChartColours::BLUE, "").size()) << "in the legend";
}

TEST_F(ChartDocumentTest, NonFiniteValuesAreOmitted) {
  ChartModel model = priceModel();
  model.series[0].points[5].value = NOT_A_NUMBER;
  model.series[0].points[6].value = INFINITE;
  model.markers[0].value = NOT_A_NUMBER;
  model.levels[0].value = INFINITE;
  const String svg = chartSvg(model, 700, 260);
  EXPECT_FALSE(svg.toLower().contains(u"nan"));
  const Drawing drawing(svg);
  EXPECT_EQ(1u, fills(drawing, ChartColours::PURCHASE).size()) << "in the legend alone";
}

TEST_F(ChartDocumentTest, ASavedDrawingIsADocumentOfItsOwn) {
  const std::string svg = saved(ChartFormat::SVG);
  EXPECT_TRUE(svg.starts_with("<?xml version=\"1.0\" encoding=\"UTF-8\"?>"));
  const Drawing drawing(String::fromUTF8(svg));
  EXPECT_THAT(drawing.texts("title"), testing::ElementsAre("AAA.AX"));
  EXPECT_EQ("600px", drawing.all("svg").at(0).attributes.at("width"));
}

TEST_F(ChartDocumentTest, APdfHasOnePage) {
  const std::string pdf = saved(ChartFormat::PDF);
  EXPECT_TRUE(pdf.starts_with("%PDF-"));
  EXPECT_THAT(pdf, testing::HasSubstr("/Type /Pages"));
  EXPECT_THAT(pdf, testing::HasSubstr("/Count 1\n"));
  EXPECT_THAT(pdf, testing::HasSubstr("/MediaBox [ 0 0 450 225 ]"))
      << "three quarters of a pixel are a point";
  EXPECT_THAT(pdf, testing::HasSubstr("(AAA.AX)")) << "its title";
  EXPECT_THAT(pdf, testing::HasSubstr("/ToUnicode")) << "its letters can be searched";
  EXPECT_TRUE(pdf.ends_with("%%EOF\n"));
}

TEST_F(ChartDocumentTest, APngIsAPictureOfTheSize) {
  const std::string png = saved(ChartFormat::PNG);
  ASSERT_TRUE(png.starts_with("\x89PNG\r\n\x1A\n"));
  EXPECT_EQ(std::string("\0\0\x02\x58\0\0\x01\x2C", 8), png.substr(16, 8)) << "600 by 300";
}

TEST_F(ChartDocumentTest, TheFormatIsThatOfTheExtension) {
  EXPECT_EQ(ChartFormat::SVG, chartFormatOf(u"/a.b/c.svg"));
  EXPECT_EQ(ChartFormat::PDF, chartFormatOf(u"/a/c.d.PDF"));
  EXPECT_EQ(ChartFormat::PNG, chartFormatOf(u"c.Png"));
  EXPECT_FALSE(chartFormatOf(u"/a.svg/c"));
  EXPECT_FALSE(chartFormatOf(u"/a/c.svgz"));
}

} // namespace
} // namespace Tallymoor
