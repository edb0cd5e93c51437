#pragma once
#include "TestPaths.h"
#include "analysis/ReportBuilder.h"
#include "books/BooksWithGatewayTest.h"
#include <filesystem>

namespace Tallymoor {

/// A portfolio with figures for January 2026 that can be verified by hand. It starts with 8,970.00 in cash
/// and 100 shares at 11.00, and ends with 7,500.00 and 202 shares at 22.00. 50 of them are sold in February.
class ReportTest : public BooksWithGatewayTest {
protected:
  ReportTest() {
    std::filesystem::copy(TALLYMOOR_SAMPLES "/../assets/defaults/Report",
                          m_profile.defaultsFolder() + "/Report", std::filesystem::copy_options::recursive);
  }

  static constexpr const char16_t* COMMENT = u"<b>\"Take\" & 'run'</b>\nsecond line";

  void trade() {
    setPrices(u"ABC.AX", Date(2025, 12, 10), Date(2025, 12, 31), 11);
    setPrices(u"ABC.AX", Date(2026, 1, 1), Date(2026, 1, 31), 22);
    setPrices(u"ABC.AX", Date(2026, 2, 1), m_today, 30);
    user().creditCash(Date(2025, 12, 1), 10000, CASH_EVENT_DEPOSIT, u"DEPOSIT start");
    user().buyShares(u"ABC.AX", {Date(2025, 12, 10), 100, 10, 30, String()});
    user().buyShares(u"ABC.AX", {Date(2026, 1, 5), 100, 20, 20, String()});
    user().receiveDividend({u"ABC.AX", Date(2026, 1, 15), 200, 0.5, 70, 0, 0, String(), 0});
    user().receiveDividend({u"ABC.AX", Date(2026, 1, 20), 200, 0.25, 0, 2, 25, u"New <Zealand>", 7.5});
    user().creditCash(Date(2026, 1, 21), 12.34, CASH_EVENT_INTEREST, u"INTEREST <1> & more");
    user().creditCash(Date(2026, 1, 25), 500, CASH_EVENT_DEPOSIT, u"DEPOSIT ");
    user().debitCash(Date(2026, 1, 26), 62.34, CASH_EVENT_WITHDRAWAL, u"WITHDRAWAL ");
    user().sellShares(u"ABC.AX", {Date(2026, 2, 10), 50, 30, 15, COMMENT}, true);
    // The price doubles although there was no split.
    user().recordAdjustment(u"ABC.AX", Date(2026, 1, 1), 1, true);
  }

  std::unique_ptr<XMLReport> report(const ReportPeriod& period) {
    return report({&user()}, period, u"Report");
  }
  /// Made as the program makes it: the records are brought up to date first.
  static std::unique_ptr<XMLReport> report(const Portfolios& portfolios, const ReportPeriod& period,
                                           const String& title, const ReportChart& chart = {}) {
    for (SharePortfolioUser* portfolio : portfolios)
      updateCapitalRecord(*portfolio);
    return makeReport(portfolios, period, title, chart);
  }
  std::unique_ptr<XMLReport> january() { return report(m_january); }

  static XMLElement& part(XMLReport& report, std::size_t place = 0) {
    return report.subElement(u"Portfolios", place);
  }

  /// A value with its displayed form: "1234.50 $1,234.50".
  static String value(const XMLElement& element, const String& name) {
    return element.attribute(name) + u" " + element.attribute(name + u"Shown");
  }
  static void expectValues(const XMLElement& element, const std::vector<std::pair<String, String>>& values) {
    for (const auto& [name, text] : values)
      EXPECT_EQ(value(element, name), text) << name.toUTF8();
  }
  static void expectTexts(const XMLElement& element, const std::vector<std::pair<String, String>>& texts) {
    for (const auto& [name, text] : texts)
      EXPECT_EQ(element.attribute(name), text) << name.toUTF8();
  }
  static std::vector<String> notes(const XMLElement& part) {
    std::vector<String> texts;
    for (std::size_t i = 0; i < part.numSubElements(u"Notes"); ++i)
      texts.push_back(part.subElement(u"Notes", i).value());
    return texts;
  }

  const ReportPeriod m_january{Date(2026, 1, 1), Date(2026, 1, 31)};
  const ReportPeriod m_february{Date(2026, 2, 1), Date(2026, 2, 28)};
};

} // namespace Tallymoor
