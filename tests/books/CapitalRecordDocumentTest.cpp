// The document of a capital record in columns against the same document as elements: whatever stands in a
// file, both must read the same, refuse the same and write the same.
#include "books/CapitalRecordDocument.h"
#include "books/CapitalRecord.h"
#include "foundation/Amounts.h"
#include "foundation/Constants.h"
#include "foundation/Exception.h"
#include "support/StringPrinting.h"
#include "support/TestProfile.h"
#include "xml/RecordTexts.h"
#include <gtest/gtest.h>
#include <random>
#include <sstream>

namespace Tallymoor {
namespace {

const std::string HEAD = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                         "<!DOCTYPE SharePortfolioCapitalRecord SYSTEM \"Tallymoor Records.dtd\">\n";
const std::string REFUSED = "refused";

std::string encoded(XMLSharePortfolioCapitalRecord& record) {
  std::ostringstream text;
  record.encodeWithDoctype(text, RECORDS_DTD);
  return text.str();
}

/// The record as a tree, and what is done to it: short, slow and easy to check by eye.
class RecordOfElements {
public:
  RecordOfElements() { setName(); }
  /// Throws Exception as the record must refuse the file.
  explicit RecordOfElements(const String& path) {
    m_record.decode(path);
    for (std::size_t i = 0; i < numDays(); ++i)
      if (i > 0 && date(i) <= date(i - 1))
        throw Exception(u"out of order");
      else
        date(i);
  }

  void readMark() {
    if (m_record.hasAttribute(u"RecomputeFrom"))
      m_recomputeFrom = Date(m_record.attribute(u"RecomputeFrom"), DATE_DISPLAY_DMY);
  }

  void setName() { m_record.subElement(u"Name").setValue(u"Trading"); }
  std::size_t numDays() const { return m_record.numSubElements(u"DayCaps"); }
  const XMLElement& day(std::size_t i) const { return m_record.subElement(u"DayCaps", i); }
  Date date(std::size_t i) const { return dateValue(day(i), u"Date"); }
  std::string text() { return encoded(m_record); }

  void addDay(const Date& date, const String& cash, const String& injected) {
    XMLElement& day = m_record.addSubElement(XMLDayCap::create(), u"DayCaps");
    day.subElement(u"Date").setValue(dayText(date));
    day.subElement(u"CashTotal").setValue(cash);
    if (!injected.empty())
      day.addSubElement(new XMLConstant, u"CashInjected").setValue(injected);
  }
  void addHolding(const String& code, const String& number, const String& price, PriceStanding standing) {
    XMLElement& holding =
        m_record.subElement(u"DayCaps", numDays() - 1).addSubElement(XMLShareVal::create(), u"ShareVals");
    holding.subElement(u"Code").setValue(code);
    holding.subElement(u"Number").setValue(number);
    holding.subElement(u"Price").setValue(price);
    setStanding(holding, standing);
  }
  void recordsChangedFrom(const Date& date) {
    const std::size_t before = numDays();
    while (numDays() > 0 && this->date(numDays() - 1) >= date)
      m_record.removeSubElement(u"DayCaps", numDays() - 1);
    if (before > 0 && numDays() == 0) {
      m_record.reset();
      setName();
    }
  }
  void setPrice(const String& code, const Date& date, const DayPrice& price) {
    const String text = recordedPriceText(price.price);
    for (std::size_t i = 0; i < numDays(); ++i)
      for (std::size_t j = 0; j < day(i).numSubElements(u"ShareVals"); ++j) {
        XMLElement& holding = m_record.subElement(u"DayCaps", i).subElement(u"ShareVals", j);
        if (this->date(i) != date || textValue(holding, u"Code") != code)
          continue;
        setStanding(holding, price.standing);
        if (textValue(holding, u"Price") == text)
          return;
        holding.subElement(u"Price").setValue(text);
        if (i + 1 < numDays())
          recomputeFrom(date);
        return;
      }
  }
  void recomputeFrom(const Date& date) {
    m_recomputeFrom = std::min(m_recomputeFrom.value_or(date), date);
    m_record.setAttribute(u"RecomputeFrom", dayText(*m_recomputeFrom));
  }
  const XMLElement* dayOn(const Date& date) const {
    for (std::size_t i = 0; i < numDays(); ++i)
      if (this->date(i) == date)
        return &day(i);
    return nullptr;
  }
  double flowBetween(const Date& from, const Date& to) const {
    double flow = 0.0;
    for (std::size_t i = 0; i < numDays(); ++i)
      if (date(i) > from && date(i) <= to && day(i).numSubElements(u"CashInjected") > 0)
        flow += doubleValue(day(i), u"CashInjected");
    return flow;
  }

private:
  static void setStanding(XMLElement& holding, PriceStanding standing) {
    holding.removeAttribute(u"Standing");
    if (standing != PriceStanding::Final)
      holding.setAttribute(u"Standing", standingName(standing));
  }

  XMLSharePortfolioCapitalRecord m_record;
  std::optional<Date> m_recomputeFrom;
};

/// The operations that the update uses.
class OpenRecord : public CapitalRecord {
public:
  using CapitalRecord::addDay;
  using CapitalRecord::addHolding;
  using CapitalRecord::CapitalRecord;
  using CapitalRecord::setPrice;

private:
  void daysChanged(const Date&, const Date&) override {}
};

class CapitalRecordDocumentTest : public testing::Test {
protected:
  std::string byElements(const std::string& document) const {
    TestProfile::writeFile(m_path, document);
    try {
      return RecordOfElements(m_path).text();
    } catch (const Exception&) {
      return REFUSED;
    }
  }
  std::string byColumns(const std::string& document) const {
    TestProfile::writeFile(m_path, document);
    try {
      CapitalRecordDocument record;
      record.read(m_path);
      std::ostringstream text;
      record.write(text);
      return text.str();
    } catch (const Exception&) {
      return REFUSED;
    }
  }
  bool isPlain(const std::string& document) const {
    TestProfile::writeFile(m_path, document);
    return CapitalRecordDocument().readPlain(m_path);
  }

  unsigned upTo(unsigned most) { return std::uniform_int_distribution<unsigned>(0, most)(m_random); }
  template <class Choice>
  const Choice& oneOf(const std::vector<Choice>& choices) {
    return choices[upTo(static_cast<unsigned>(choices.size()) - 1)];
  }
  String randomAmount() {
    return String::fromDouble((upTo(3) == 0 ? -1.0 : 1.0) * upTo(2000000) / 1000.0,
                              2 + static_cast<int>(upTo(4)));
  }
  /// What documents hold, and now and then what they might.
  String randomNumber() {
    static const std::vector<String> UNUSUAL{u"",
                                             u"-0.00",
                                             u"1e3",
                                             u" 5",
                                             u"1.2.3",
                                             u"007.00",
                                             u".5",
                                             u"5.",
                                             u"+1",
                                             u"abc",
                                             u"1,000.00",
                                             u"-",
                                             u"12345678901234567890.12",
                                             u"0.0000001",
                                             u"\u00e9"};
    return upTo(40) == 0 ? oneOf(UNUSUAL) : randomAmount();
  }
  std::string maybeAttribute() {
    return m_isUnusual && upTo(30) == 0
               ? oneOf<std::string>({" x=\"1 &amp; 2\"", " Standing=\"later\"", " Standing=\"\"",
                                     " A=\"&quot;\" Standing=\"open\"", " B=''"})
               : "";
  }
  std::string leaf(const std::string& tag, const std::string& text) {
    const std::string attribute = maybeAttribute();
    return text.empty() && upTo(1) == 0 ? "<" + tag + attribute + "/>"
                                        : "<" + tag + attribute + ">" + text + "</" + tag + ">";
  }
  std::string number() {
    return leaf("Constant", m_isUnusual ? randomNumber().toUTF8() : randomAmount().toUTF8());
  }
  std::string space() { return m_isUnusual && upTo(50) == 0 ? "\n  " : ""; }
  std::string holding() {
    static const std::vector<std::string> CODES{"ABC.AX", "DEF.AX", "M&amp;M.NS", "^GSPC", "A'B", "BHP"};
    static const std::vector<std::string> STANDINGS{"open", "last-close", "transaction"};
    const std::string standing = upTo(5) == 0 ? " Standing=\"" + oneOf(STANDINGS) + "\"" : maybeAttribute();
    const std::string code = m_isUnusual && upTo(30) == 0
                                 ? oneOf<std::string>({"", "\xC3\xA9", "A&lt;", "<![CDATA[<&]]>"})
                                 : oneOf(CODES);
    return "<ShareVal" + standing + ">" + leaf("String", code) + number() + number() + space() +
           "</ShareVal>";
  }
  std::string randomDocument(bool isUnusual) {
    m_isUnusual = isUnusual;
    std::string text = HEAD + "<SharePortfolioCapitalRecord" +
                       (upTo(4) == 0 ? " RecomputeFrom=\"2/3/2026\"" : "") + maybeAttribute() + ">" +
                       leaf("String", "Trading");
    Date day(2025, 12, 20);
    for (unsigned i = upTo(20); i > 0; --i) {
      day.addDays(isUnusual && upTo(60) == 0 ? 0 : 1 + (upTo(5) == 0));
      const String date = isUnusual && upTo(30) == 0
                              ? oneOf<String>({u"03/03/2026", u"31/2/2026", u"", u" 4/3/2026", u"1/1/9999"})
                              : dayText(day);
      text += "<DayCap" + maybeAttribute() + ">" + leaf("Date", date.toUTF8()) + number();
      for (unsigned held = upTo(4); held > 0; --held)
        text += holding() + space();
      if (upTo(4) == 0)
        text += number();
      text += "</DayCap>" + space();
    }
    return text + "</SharePortfolioCapitalRecord>";
  }

  Date randomDay() { return Date(2025, 12, 18).plusDays(static_cast<int>(upTo(40))); }
  const String& randomCode() {
    static const std::vector<String> CODES{u"ABC.AX", u"DEF.AX", u"M&M.NS", u"^GSPC", u"A'B", u"NEW"};
    return oneOf(CODES);
  }
  void change(OpenRecord& record, RecordOfElements& elements) {
    const Date day = randomDay();
    const DayPrice price{upTo(3000) / 100.0, static_cast<PriceStanding>(upTo(3))};
    switch (upTo(6)) {
    case 0:
      record.recordsChangedFrom(day);
      elements.recordsChangedFrom(day);
      break;
    case 1:
      record.recomputeFrom(day);
      elements.recomputeFrom(day);
      break;
    case 2:
      addDay(record, elements);
      break;
    default: {
      const String code = randomCode();
      record.setPrice(code, day, price);
      elements.setPrice(code, day, price);
    }
    }
  }
  void addDay(OpenRecord& record, RecordOfElements& elements) {
    const Date day = record.lastRecordDate().value_or(Date(2025, 12, 17)).plusDays(1);
    const String cash = randomAmount();
    const String injected = upTo(2) == 0 ? randomAmount() : String();
    record.addDay(day, cash, injected);
    elements.addDay(day, cash, injected);
    for (unsigned held = upTo(3); held > 0; --held) {
      const String code = randomCode(), number = randomAmount(), price = randomAmount();
      const auto standing = static_cast<PriceStanding>(upTo(3));
      record.addHolding(code, number, price, standing);
      elements.addHolding(code, number, price, standing);
    }
  }
  void expectSameAnswers(const OpenRecord& record, const RecordOfElements& elements) {
    const Date day = randomDay(), other = randomDay();
    EXPECT_EQ(record.externalFlowBetween(day, other), elements.flowBetween(day, other));
    EXPECT_EQ(record.firstRecordDate(), elements.numDays() > 0 ? elements.date(0) : Date());
    const XMLElement* element = elements.dayOn(day);
    ASSERT_EQ(record.hasDayCap(day), element != nullptr);
    if (!element)
      return;
    double value = 0.0;
    bool isProvisional = false;
    std::optional<double> price;
    const String code = randomCode();
    for (std::size_t i = 0; i < element->numSubElements(u"ShareVals"); ++i) {
      const XMLElement& holding = element->subElement(u"ShareVals", i);
      value += doubleValue(holding, u"Number") * doubleValue(holding, u"Price");
      isProvisional |=
          holding.hasAttribute(u"Standing") && isStandIn(standingNamed(holding.attribute(u"Standing")));
      if (textValue(holding, u"Code") == code && !price)
        price = doubleValue(holding, u"Price");
    }
    EXPECT_EQ(record.sharesValueOn(day), value);
    EXPECT_EQ(record.cashOn(day), doubleValue(*element, u"CashTotal"));
    EXPECT_EQ(record.capitalOn(day), value + doubleValue(*element, u"CashTotal"));
    EXPECT_EQ(record.isProvisional(day), isProvisional);
    EXPECT_EQ(record.priceOn(code, day).has_value(), price.has_value());
    EXPECT_TRUE(!price || record.priceOn(code, day)->price == *price);
    EXPECT_EQ(record.holdingsOn(day).size(), element->numSubElements(u"ShareVals"));
    XMLDayCap given(static_cast<const XMLDayCap&>(record.dayCapFor(day)));
    XMLDayCap expected(static_cast<const XMLDayCap&>(*element));
    std::ostringstream givenText, expectedText;
    given.encode(givenText);
    expected.encode(expectedText);
    EXPECT_EQ(givenText.str(), expectedText.str());
  }

  TestProfile m_profile{"en_AU", Date(2026, 3, 3)};
  const String m_path = m_profile.dataFolder() + u"TradingCapRecord.xml";
  std::mt19937 m_random{12};
  bool m_isUnusual = false;
};

TEST_F(CapitalRecordDocumentTest, DocumentsOfTheProgramComeBackToTheByte) {
  std::size_t plain = 0;
  for (int i = 0; i < 300; ++i) {
    const std::string document = byElements(randomDocument(false));
    ASSERT_NE(document, REFUSED);
    ASSERT_EQ(byColumns(document), document);
    plain += isPlain(document);
  }
  EXPECT_GT(plain, 250u) << "some have no days";
}

TEST_F(CapitalRecordDocumentTest, WhateverElseADocumentHoldsIsReadRefusedAndWrittenAsByElements) {
  std::size_t refused = 0;
  constexpr int DOCUMENTS = 1000;
  for (int i = 0; i < DOCUMENTS; ++i) {
    const std::string document = randomDocument(true);
    const std::string expected = byElements(document);
    refused += expected == REFUSED;
    ASSERT_EQ(byColumns(document), expected) << document;
  }
  EXPECT_GT(refused, DOCUMENTS / 20u);
  EXPECT_LT(refused, DOCUMENTS / 2u);
}

TEST_F(CapitalRecordDocumentTest, NoChangedByteIsReadAsAnotherThing) {
  const std::string document =
      HEAD + "<SharePortfolioCapitalRecord "
             "RecomputeFrom=\"1/3/2026\"><String>Trading</String><DayCap><Date>28/2/2026</Date>"
             "<Constant>-0.50</Constant><ShareVal "
             "Standing=\"open\"><String>M&amp;M</String><Constant>10.00</Constant>"
             "<Constant>1.234567</Constant></ShareVal><Constant>5.00</Constant></DayCap><DayCap><Date>1/3/"
             "2026</Date>"
             "<Constant>0</Constant></DayCap></SharePortfolioCapitalRecord>";
  ASSERT_TRUE(isPlain(document));
  std::size_t plain = 0;
  for (std::size_t i = HEAD.size(); i < document.size(); ++i)
    for (const char letter : std::string("0/<& \"N\xC3")) {
      std::string changed = document;
      changed[i] = letter;
      if (!isPlain(changed))
        continue;
      ++plain;
      ASSERT_EQ(byColumns(changed), byElements(changed)) << changed;
    }
  EXPECT_GT(plain, 100u);
}

TEST_F(CapitalRecordDocumentTest, NoCutDocumentIsAccepted) {
  const std::string document = byElements(randomDocument(false) + " ");
  for (std::size_t length = 0; length < document.size(); length += 3) {
    ASSERT_FALSE(isPlain(document.substr(0, length))) << length;
    // What goes wrong in the middle, with an end as it should be.
    const std::string gap = document.substr(0, length) + "</SharePortfolioCapitalRecord>";
    ASSERT_EQ(byColumns(gap), byElements(gap)) << gap;
  }
}

TEST_F(CapitalRecordDocumentTest, ADayLiesWhereOnePieceOfTheFileEndsAndTheNextBegins) {
  CapitalRecordDocument record;
  record.head.subElement(u"Name").setValue(u"Trading");
  for (int i = 0; i < 9000; ++i) {
    record.days.addDay(Date(2001, 1, 1).plusDays(i), record.days.written(String::fromDouble(i * 1.5, 2)));
    record.days.addHolding(record.days.placeOf(u"ABC.AX"), record.days.written(u"10.00"),
                           record.days.written(String::fromDouble(i * 0.01, 3)), PriceStanding::Final);
  }
  std::ostringstream text;
  record.write(text);
  ASSERT_GT(text.str().size(), 1000000u);
  EXPECT_TRUE(isPlain(text.str()));
  EXPECT_EQ(byColumns(text.str()), text.str());
  EXPECT_EQ(byElements(text.str()), text.str());
}

TEST_F(CapitalRecordDocumentTest, OperationsChangeTheDocumentAndTheAnswersAsTheyWouldTheElements) {
  for (int round = 0; round < 60; ++round) {
    const std::string document = randomDocument(round % 2 == 1);
    const std::string start = byElements(document);
    TestProfile::writeFile(m_path, document);
    OpenRecord record(u"Trading");
    RecordOfElements elements = start == REFUSED ? RecordOfElements() : RecordOfElements(m_path);
    elements.readMark();
    for (int i = 0; i < 25; ++i) {
      change(record, elements);
      expectSameAnswers(record, elements);
    }
    const bool isModified = record.isModified();
    record.save();
    ASSERT_EQ(TestProfile::readFile(m_path), isModified ? elements.text() : document);
  }
}

} // namespace
} // namespace Tallymoor
