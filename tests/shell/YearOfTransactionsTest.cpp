#include "YearOfTransactionsTest.h"
#include "xml/Leaves.h"
#include "xml/PortfolioRecords.h"
#include <cmath>

namespace Tallymoor {
namespace {

using testing::ElementsAre;

/// A portfolio over the year up to 3 March 2026, recorded on an account sheet in parallel.
class WholeYearTest : public YearOfTransactionsTest {
protected:
  using Row = std::vector<std::string>;

  // ---- The year ----

  void enterTheYear() {
    enterAutumn();
    enterWinter();
    enterSpring();
    enterSummer();
  }

  void enterAutumn() {
    cash(byCommand(TallymoorWindow::ID_DEPOSIT_CASH), "Deposit cash", "03/03/2025", "50000", "opening");
    sheet.write("03/03/2025", "DEPOSIT opening", 5'000'000);
    buy(byCommand(TallymoorWindow::ID_BUY), "ABC.AX", "05/03/2025", "1000", "10");
    sheet.write("05/03/2025", "BUY 1000.00 of ABC.AX @ 10.0000", -1'005'000);
    buy(byButton("Buy Shares"), "XYZ.AX", "17/03/2025", "500", "4.20");
    sheet.write("17/03/2025", "BUY 500.00 of XYZ.AX @ 4.2000", -215'000);
    cash(byCommand(TallymoorWindow::ID_INTEREST), "Receive interest", "31/03/2025", "12.34", "March");
    sheet.write("31/03/2025", "INTEREST March", 1'234);
    buy(byPopup(&WholeYearTest::tradingNode, "Buy shares..."), "ABC.AX", "15/04/2025", "333", "9.8765");
    sheet.write("15/04/2025", "BUY 333.00 of ABC.AX @ 9.8765", -333'887); // 3,288.8745 plus 50.00.
    cash(byButton("Withdraw Cash"), "Withdraw cash", "30/04/2025", "1500", "rent");
    sheet.write("30/04/2025", "WITHDRAWAL rent", -150'000);
    buy(byPopup(&WholeYearTest::heldNode, "Buy shares..."), "QRS.AX", "14/05/2025", "2000", "1.25", "19.95");
    sheet.write("14/05/2025", "BUY 2000.00 of QRS.AX @ 1.2500", -251'995);
    dividend(byCommand(TallymoorWindow::ID_DIVIDENDS), "ABC.AX", "28/05/2025", "1333", "0.25", 100);
    sheet.write("28/05/2025", "DIVIDEND ABC.AX @ 0.250000 x 1333.00", 33'325);
  }

  void enterWinter() {
    sell(byButton("Sell Shares"), "ABC.AX", "10/06/2025", "400", "10.50");
    sheet.write("10/06/2025", "SELL 400.00 of ABC.AX @ 10.5000", 415'000);
    cash(byButton("Receive Interest"), "Receive interest", "30/06/2025", "7.66", "June");
    sheet.write("30/06/2025", "INTEREST June", 766);
    cash(byPopup(&WholeYearTest::cashNode, "Deposit cash..."), "Deposit cash", "01/07/2025", "10000",
         "salary");
    sheet.write("01/07/2025", "DEPOSIT salary", 1'000'000);
    buy(byButton("Buy Shares"), "ABC.AX", "15/07/2025", "250", "10.10");
    sheet.write("15/07/2025", "BUY 250.00 of ABC.AX @ 10.1000", -257'500);
    cash(byPopup(&WholeYearTest::cashNode, "Pay account fee..."), "Pay account fee", "30/07/2025", "15",
         "broker");
    sheet.write("30/07/2025", "Account fee broker", -1'500);
    dividend(byPopup(&WholeYearTest::tradingNode, "Receive a dividend..."), "XYZ.AX", "12/08/2025", "500",
             "0.123456", 0, fromAbroad("New Zealand", "9.26"));
    sheet.write("12/08/2025", "DIVIDEND XYZ.AX @ 0.123456 x 500.00", 6'173); // The tax is only recorded.
  }

  void enterSpring() {
    // 600 remain of the first parcel, 333 are in the second, and 67 come from the third.
    sell(byPopup(&WholeYearTest::tradingNode, "Sell shares..."), "ABC.AX", "01/09/2025", "1000", "11");
    sheet.write("01/09/2025", "SELL 600.00 of ABC.AX @ 11.0000", 655'000); // With all of the brokerage.
    sheet.write("01/09/2025", "SELL 333.00 of ABC.AX @ 11.0000", 366'300);
    sheet.write("01/09/2025", "SELL 67.00 of ABC.AX @ 11.0000", 73'700);
    dividend(byPopup(&WholeYearTest::dividendsNode, "Receive a dividend..."), "QRS.AX", "22/09/2025", "2000",
             "0.05", 100, asShares("70", "1.4286"));
    cash(byPopup(&WholeYearTest::cashNode, "Receive Interest..."), "Receive interest", "30/09/2025", "9.99",
         "September");
    sheet.write("30/09/2025", "INTEREST September", 999);
    buy(byCommand(TallymoorWindow::ID_BUY), "TUV.AX", "15/10/2025", "150", "22.22");
    sheet.write("15/10/2025", "BUY 150.00 of TUV.AX @ 22.2200", -338'300);
    cash(byPopup(&WholeYearTest::cashNode, "Withdraw cash..."), "Withdraw cash", "31/10/2025", "2000.50",
         "tax");
    sheet.write("31/10/2025", "WITHDRAWAL tax", -200'050);
    sell(byCommand(TallymoorWindow::ID_SELL), "XYZ.AX", "17/11/2025", "500", "4.55");
    sheet.write("17/11/2025", "SELL 500.00 of XYZ.AX @ 4.5500", 222'500);
  }

  void enterSummer() {
    dividend(byButton("Receive a Dividend"), "TUV.AX", "03/12/2025", "150", "0.40", 50);
    sheet.write("03/12/2025", "DIVIDEND TUV.AX @ 0.400000 x 150.00", 6'000);
    cash(byButton("Deposit Cash"), "Deposit cash", "15/12/2025", "2500", "bonus");
    sheet.write("15/12/2025", "DEPOSIT bonus", 250'000);
    cash(byPopup(&WholeYearTest::tradingNode, "Receive interest..."), "Receive interest", "31/12/2025",
         "11.11", "December");
    sheet.write("31/12/2025", "INTEREST December", 1'111);
    sell(byPopup(&WholeYearTest::heldNode, "Sell shares..."), "QRS.AX", "20/01/2026", "1035", "1.50");
    sheet.write("20/01/2026", "SELL 1035.00 of QRS.AX @ 1.5000", 150'250);
    buy(byCommand(TallymoorWindow::ID_BUY), "XYZ.AX", "09/02/2026", "800", "4.05");
    sheet.write("09/02/2026", "BUY 800.00 of XYZ.AX @ 4.0500", -329'000);
    dividend(byCommand(TallymoorWindow::ID_DIVIDENDS), "QRS.AX", "23/02/2026", "1035", "0.04", 100,
             asShares("28", "1.4786"));
    cash(byCommand(TallymoorWindow::ID_WITHDRAW_CASH), "Withdraw cash", "27/02/2026", "300", "car");
    sheet.write("27/02/2026", "WITHDRAWAL car", -30'000);
    dividend(byButton("Receive a Dividend"), "XYZ.AX", "03/03/2026", "800", "0.03", 100);
    sheet.write("03/03/2026", "DIVIDEND XYZ.AX @ 0.030000 x 800.00", 2'400);
  }

  // ---- One entry of every kind is corrected ----

  void correctTheYear() {
    correctCash();
    correctPurchases();
    correctSales();
    correctDividends();
  }

  void correctCash() {
    editCash("INTEREST March", "31/03/2025", {{"Amount", "21.34"}});
    sheet.correct("INTEREST March", {"31/03/2025", "INTEREST March", 2'134});
    editCash("DEPOSIT salary", "01/07/2025", {{"Amount", "10,500"}, {"Date", "02/07/2025"}});
    sheet.correct("DEPOSIT salary", {"02/07/2025", "DEPOSIT salary", 1'050'000});
    editCash("WITHDRAWAL rent", "30/04/2025", {{"Amount", "1600"}});
    sheet.correct("WITHDRAWAL rent", {"30/04/2025", "WITHDRAWAL rent", -160'000});
    editCash("Account fee broker", "30/07/2025", {{"Description (optional)", "Account fee bank"}});
    sheet.correct("Account fee broker", {"30/07/2025", "Account fee bank", -1'500});
  }

  void correctPurchases() {
    editPurchase("TUV.AX", "15/10/2025", {{"Number bought", "160"}}, {});
    sheet.correct("BUY 150.00 of TUV.AX @ 22.2200",
                  {"15/10/2025", "BUY 160.00 of TUV.AX @ 22.2200", -360'520});
    // Part of these are sold, so the cost of the rest is not the amount paid.
    editPurchase("ABC.AX", "15/07/2025", {{"Share price", "10.20"}}, [this] { saysToEdit(cashWithdrawal); });
    editCash("BUY 250.00 of ABC.AX @ 10.1000", "15/07/2025",
             {{"Amount", "2600"}, {"Description (optional)", "BUY 250.00 of ABC.AX @ 10.2000"}});
    sheet.correct("BUY 250.00 of ABC.AX @ 10.1000",
                  {"15/07/2025", "BUY 250.00 of ABC.AX @ 10.2000", -260'000});
    // First the bank's figure, then the brokerage that explains it.
    editCash("BUY 800.00 of XYZ.AX @ 4.0500", "09/02/2026", {{"Amount", "3300"}});
    sheet.correct("BUY 800.00 of XYZ.AX @ 4.0500", {"09/02/2026", "BUY 800.00 of XYZ.AX @ 4.0500", -330'000});
    editPurchase("XYZ.AX", "09/02/2026", {{"Brokerage paid", "60"}}, [this] {
      answer("Would you like to make this the default brokerage rate?", "No");
      saysToEdit(cashWithdrawal);
    });
  }
  /// Expects the message that the cash entry was not found.
  void saysToEdit(const std::string& message) { answer(message, "OK"); }

  void correctSales() {
    editSale("500.00", "XYZ.AX", "17/11/2025", {{"Sell price", "4.60"}});
    sheet.correct("SELL 500.00 of XYZ.AX @ 4.5500",
                  {"17/11/2025", "SELL 500.00 of XYZ.AX @ 4.6000", 225'000});
    // One of the three of a day, with its complete parcel.
    editSale("333.00", "ABC.AX", "01/09/2025", {{"Buy price", "9.8764"}, {"Sell price", "11.01"}}, [this] {
      answer("Are you sure there was no sell brokerage charged\nfor this purchase?", "Yes");
    });
    sheet.correct("BUY 333.00 of ABC.AX @ 9.8765",
                  {"15/04/2025", "BUY 333.00 of ABC.AX @ 9.8764", -333'884}); // 3,288.8412 plus 50.00.
    sheet.correct("SELL 333.00 of ABC.AX @ 11.0000",
                  {"01/09/2025", "SELL 333.00 of ABC.AX @ 11.0100", 366'633});
    // Its purchase is not completely sold and was paid as a whole, so only the proceeds change.
    editSale("400.00", "ABC.AX", "10/06/2025", {{"Sell price", "10.60"}}, [this] {
      answer("Are you sure there was no buy brokerage charged\nfor this purchase?", "Yes");
      answer("Please find and edit the corresponding cash deposit and withdrawal for this transaction.",
             "OK");
    });
    sheet.correct("SELL 400.00 of ABC.AX @ 10.5000",
                  {"10/06/2025", "SELL 400.00 of ABC.AX @ 10.6000", 419'000});
  }

  void correctDividends() {
    editDividend("ABC.AX", "28/05/2025", {{"Dividend Rate", "0.26"}});
    sheet.correct("DIVIDEND ABC.AX @ 0.250000 x 1333.00",
                  {"28/05/2025", "DIVIDEND ABC.AX @ 0.260000 x 1333.00", 34'658});
    // The bank paid the amount after tax. The entry then no longer matches the dividend.
    editCash("DIVIDEND XYZ.AX @ 0.123456 x 500.00", "12/08/2025", {{"Amount", "52.47"}});
    sheet.correct("DIVIDEND XYZ.AX @ 0.123456 x 500.00",
                  {"12/08/2025", "DIVIDEND XYZ.AX @ 0.123456 x 500.00", 5'247});
    editDividend("XYZ.AX", "12/08/2025", {{"Dividend Rate", "0.123457"}}, [this] {
      answer("Please find and edit the corresponding cash deposit from this transaction.", "OK");
    });
    editDividend("QRS.AX", "23/02/2026", {{"Shares received", "30"}});
    correctReinvestedShares();
  }

  /// The shares are changed first, so that the dividend doesn't find them.
  void correctReinvestedShares() {
    editReinvestedShares("71");
    editDividend("QRS.AX", "22/09/2025", {{"Shares received", "71"}}, [this] {
      answer("Please find and edit the corresponding reinvested held shares from this transaction.", "OK");
    });
  }

  void editReinvestedShares(const std::string& number) {
    editPurchase("QRS.AX", "22/09/2025", {{"Number bought", number}}, [this] {
      answer("Are you sure there was no brokerage charged for this purchase?", "Yes");
      answer("Would you like to make this the default brokerage rate?", "No");
      saysToEdit(cashWithdrawal);
    });
  }

  // ---- About half of the entries are deleted ----

  void deleteHalfTheYear() {
    deleteCash();
    deletePurchases();
    deleteSales();
    deleteDividends();
  }

  void deleteCash() {
    for (const std::string text :
         {"INTEREST March", "INTEREST June", "DEPOSIT bonus", "WITHDRAWAL car", "Account fee bank"}) {
      removeCash(text);
      sheet.strike(text);
    }
  }

  void deletePurchases() {
    removePurchase("TUV.AX", "15/10/2025");
    sheet.strike("BUY 160.00 of TUV.AX @ 22.2200");
    // With the brokerage corrected, the cost equals the bank's figure.
    removePurchase("XYZ.AX", "09/02/2026");
    sheet.strike("BUY 800.00 of XYZ.AX @ 4.0500");
    removePurchase("ABC.AX", "15/07/2025", noWithdrawalDeleted);
    removeCash("BUY 250.00 of ABC.AX @ 10.2000");
    sheet.strike("BUY 250.00 of ABC.AX @ 10.2000");
  }

  void deleteSales() {
    removeSale("500.00", "XYZ.AX", "17/11/2025"); // As if the shares had never been bought.
    sheet.strike("SELL 500.00 of XYZ.AX @ 4.6000");
    sheet.strike("BUY 500.00 of XYZ.AX @ 4.2000");
    removeSale("400.00", "ABC.AX", "10/06/2025");
    sheet.strike("SELL 400.00 of ABC.AX @ 10.6000");
    removeSale("1035.00", "QRS.AX", "20/01/2026");
    sheet.strike("SELL 1035.00 of QRS.AX @ 1.5000");
  }

  void deleteDividends() {
    removeDividend("ABC.AX", "28/05/2025");
    sheet.strike("DIVIDEND ABC.AX @ 0.260000 x 1333.00");
    removeDividend("XYZ.AX", "12/08/2025",
                   "Please find and delete the corresponding cash deposit from this transaction.");
    removeCash("DIVIDEND XYZ.AX @ 0.123456 x 500.00");
    sheet.strike("DIVIDEND XYZ.AX @ 0.123456 x 500.00");
    removeDividend("QRS.AX", "23/02/2026"); // And its 30 shares.
    deleteSharesThatTheDividendMisses();
  }
  void deleteSharesThatTheDividendMisses() {
    editReinvestedShares("72");
    removeDividend("QRS.AX", "22/09/2025",
                   "Please find and delete the corresponding reinvested shares from this dividend.");
    removePurchase("QRS.AX", "22/09/2025", noWithdrawalDeleted);
  }

  // ---- The window's content ----

  Rows cashRows() { return shown(cashNode(), {"", "Description", "Credits", "Debits", "Balance"}); }
  Rows heldRows() { return shown(heldNode(), {"", "Number", "Current Value"}); }
  Rows purchaseRows(const std::string& code) {
    return shown(purchasesNode(code), {"", "Number", "Buy price"});
  }
  Rows soldRows() {
    return shown(soldNode(), {"", "Stock Code", "Num Sold", "Buy Price", "Sell Price", "Gross Sale"});
  }
  Rows dividendRows() {
    return shown(dividendsNode(),
                 {"", "Code", "On Num Held", "Rate", "Value", "% Franked", "Franking Credit", "Received As"});
  }

  /// Checks that the cash reserve has exactly the lines of the sheet, and that the program's three sums agree
  /// with it.
  void expectTheSheet() {
    EXPECT_EQ(sheet.rows(), cashRows());
    const std::string total = Sheet::money(sheet.total());
    EXPECT_EQ(total, cashRows().back().back());
    EXPECT_TRUE(shows(*cashNode().page(), "Total available cash reserve:    " + total)) << total;
    EXPECT_EQ(total, figure(tradingNode(), "Capital in cash"));
  }
  void expectCapital(std::int64_t shares) {
    EXPECT_EQ(Sheet::money(shares), figure(tradingNode(), "Capital in shares"));
    EXPECT_EQ(Sheet::money(shares + sheet.total()), figure(tradingNode(), "Total Capital"));
    EXPECT_EQ(Sheet::money(shares + sheet.total()), figure(*run().totalCapital(), "Total Capital"));
  }

  void expectTheYear() {
    expectTheSheet();
    EXPECT_EQ(5'072'526, sheet.total());
    expectCapital(981'820); // 1,830.00 plus 3,200.00 plus 1,488.20 plus 3,300.00.
    EXPECT_TRUE(shows(*cashNode().page(), "Total interest this FY:          $21.10")); // Since July.
    expectHoldingsOfTheYear();
    expectSalesOfTheYear();
    EXPECT_TRUE(shows(*soldNode().page(), "$19,027.50"));
    expectDividendsOfTheYear();
    EXPECT_TRUE(shows(*dividendsNode().page(), "$620.38"));
    EXPECT_TRUE(shows(*dividendsNode().page(), "$226.56")); // Of franking credits.
  }
  void expectHoldingsOfTheYear() {
    EXPECT_THAT(heldRows(),
                ElementsAre(Row{"ABC.AX", "183.00", "$1,830.00"}, Row{"QRS.AX", "1063.00", "$1,488.20"},
                            Row{"TUV.AX", "150.00", "$3,300.00"}, Row{"XYZ.AX", "800.00", "$3,200.00"}));
    EXPECT_THAT(purchaseRows("ABC.AX"), ElementsAre(Row{"15/07/2025", "183.00", "10.10"}));
    EXPECT_THAT(purchaseRows("QRS.AX"),
                ElementsAre(Row{"14/05/2025", "965.00", "1.25"}, Row{"22/09/2025", "70.00", "1.4286"},
                            Row{"23/02/2026", "28.00", "1.4786"}));
    EXPECT_THAT(purchaseRows("TUV.AX"), ElementsAre(Row{"15/10/2025", "150.00", "22.22"}));
    EXPECT_THAT(purchaseRows("XYZ.AX"), ElementsAre(Row{"09/02/2026", "800.00", "4.05"}));
  }
  void expectSalesOfTheYear() {
    EXPECT_THAT(soldRows(), ElementsAre(Row{"10/06/2025", "ABC.AX", "400.00", "10.00", "10.50", "$4,200.00"},
                                        Row{"01/09/2025", "ABC.AX", "600.00", "10.00", "11.00", "$6,600.00"},
                                        Row{"01/09/2025", "ABC.AX", "333.00", "9.8765", "11.00", "$3,663.00"},
                                        Row{"01/09/2025", "ABC.AX", "67.00", "10.10", "11.00", "$737.00"},
                                        Row{"17/11/2025", "XYZ.AX", "500.00", "4.20", "4.55", "$2,275.00"},
                                        Row{"20/01/2026", "QRS.AX", "1035.00", "1.25", "1.50", "$1,552.50"}));
  }
  void expectDividendsOfTheYear() {
    EXPECT_THAT(
        dividendRows(),
        ElementsAre(
            Row{"28/05/2025", "ABC.AX", "1333.00", "0.250000", "$333.25", "100.00%", "$142.82", "Cash"},
            Row{"12/08/2025", "XYZ.AX", "500.00", "0.123456", "$61.73", "0.00%", "$0.00", "Cash"},
            Row{"22/09/2025", "QRS.AX", "2000.00", "0.050000", "$100.00", "100.00%", "$42.86",
                "70.00 shares at 1.4286"},
            Row{"03/12/2025", "TUV.AX", "150.00", "0.400000", "$60.00", "50.00%", "$12.86", "Cash"},
            Row{"23/02/2026", "QRS.AX", "1035.00", "0.040000", "$41.40", "100.00%", "$17.74",
                "28.00 shares at 1.4786"},
            Row{"03/03/2026", "XYZ.AX", "800.00", "0.030000", "$24.00", "100.00%", "$10.29", "Cash"}));
  }

  void expectTheCorrectedYear() {
    expectTheSheet();
    EXPECT_EQ(5'094'949, sheet.total());
    expectCapital(1'004'240); // Ten TUV.AX, two and one QRS.AX more.
    EXPECT_THAT(purchaseRows("QRS.AX"),
                ElementsAre(Row{"14/05/2025", "965.00", "1.25"}, Row{"22/09/2025", "71.00", "1.4286"},
                            Row{"23/02/2026", "30.00", "1.4786"}));
    EXPECT_EQ("10.60", soldRows()[0][4]);
    EXPECT_EQ((Row{"01/09/2025", "ABC.AX", "333.00", "9.8764", "11.01", "$3,666.33"}), soldRows()[2]);
    EXPECT_EQ("4.60", soldRows()[4][4]);
    EXPECT_EQ("$346.58", dividendRows()[0][4]);
    EXPECT_EQ("0.123457", dividendRows()[1][3]);
    EXPECT_EQ("71.00 shares at 1.4286", dividendRows()[2].back());
    EXPECT_EQ("30.00 shares at 1.4786", dividendRows()[4].back());
  }

  void expectWhatIsLeft() {
    expectTheSheet();
    EXPECT_EQ(5'204'914, sheet.total());
    expectCapital(135'100); // 965 QRS.AX.
    EXPECT_THAT(heldRows(), ElementsAre(Row{"QRS.AX", "965.00", "$1,351.00"}));
    EXPECT_THAT(purchaseRows("QRS.AX"), ElementsAre(Row{"14/05/2025", "965.00", "1.25"}));
    EXPECT_THAT(soldRows(), ElementsAre(Row{"01/09/2025", "ABC.AX", "600.00", "10.00", "11.00", "$6,600.00"},
                                        Row{"01/09/2025", "ABC.AX", "333.00", "9.8764", "11.01", "$3,666.33"},
                                        Row{"01/09/2025", "ABC.AX", "67.00", "10.10", "11.00", "$737.00"}));
    EXPECT_THAT(dividendRows(), ElementsAre(Row{"03/12/2025", "TUV.AX", "150.00", "0.400000", "$60.00",
                                                "50.00%", "$12.86", "Cash"},
                                            Row{"03/03/2026", "XYZ.AX", "800.00", "0.030000", "$24.00",
                                                "100.00%", "$10.29", "Cash"}));
  }

  /// Adds up the saved document independently.
  void expectTheSheetInTheDocument() {
    XMLPortfolios records;
    records.decode(recordsPath());
    const XMLElement& reserve = records.subElement(u"SharePortfolios").subElement(u"CashReserve");
    Sheet decoded;
    for (std::size_t i = 0; i < reserve.numSubElements(u"CashEvents"); ++i) {
      const XMLElement& event = reserve.subElement(u"CashEvents", i);
      decoded.write(dateValue(event, u"Date").toString(DATE_DISPLAY_LOCAL).toUTF8(),
                    textValue(event, u"Description").toUTF8(), signedCents(event));
    }
    EXPECT_EQ(sheet.rows(), decoded.rows());
    EXPECT_EQ(sheet.total(), decoded.total());
  }
  static std::int64_t signedCents(const XMLElement& event) {
    const std::int32_t type = longValue(event, u"Type");
    const std::int64_t cents = std::llround(100.0 * doubleValue(event, u"Value"));
    return type == 2 || type == 5 ? -cents : cents;
  }
  void expectTheForeignDividendInTheDocument() {
    XMLPortfolios records;
    records.decode(recordsPath());
    const auto& dividend = records.portfolios()[0].dividends()[1];
    EXPECT_EQ("XYZ.AX", textValue(dividend, u"Code").toUTF8());
    EXPECT_EQ("New Zealand", textValue(dividend, u"ForeignDividend").toUTF8());
    EXPECT_EQ(9.26, doubleValue(dividend, u"WithholdingTax"));
  }
  double sharesInTheDocument(const String& code) {
    XMLPortfolios records;
    records.decode(recordsPath());
    double sum = 0.0;
    for (const XMLHeldShare& stock : records.portfolios()[0].heldShares())
      if (stock.code() == code)
        for (const XMLBuyEvent& parcel : stock.parcels())
          sum += parcel.number();
    return sum;
  }

  Sheet sheet;
  const std::string cashWithdrawal =
      "Please find and edit the corresponding cash withdrawal for this transaction.";
  const std::string noWithdrawalDeleted =
      "Please find and delete the corresponding cash withdrawal from this transaction.";
};

TEST_F(WholeYearTest, EveryTableShowsWhatWasEntered) {
  enterTheYear();
  expectTheYear();
  startAgain();
  expectTheYear();
  expectTheSheetInTheDocument();
  expectTheForeignDividendInTheDocument();
  EXPECT_EQ(183.0, sharesInTheDocument(u"ABC.AX"));
  EXPECT_EQ(1063.0, sharesInTheDocument(u"QRS.AX"));
  EXPECT_EQ(150.0, sharesInTheDocument(u"TUV.AX"));
  EXPECT_EQ(800.0, sharesInTheDocument(u"XYZ.AX"));
}

TEST_F(WholeYearTest, CorrectionsAndDeletionsKeepTheSheet) {
  enterTheYear();
  correctTheYear();
  expectTheCorrectedYear();
  deleteHalfTheYear();
  expectWhatIsLeft();
  startAgain();
  expectWhatIsLeft();
  expectTheSheetInTheDocument();
  EXPECT_EQ(965.0, sharesInTheDocument(u"QRS.AX"));
}

} // namespace
} // namespace Tallymoor
