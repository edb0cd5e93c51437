#include "entry/EditSoldShareDialog.h"
#include "BrokenPlatform.h"
#include "PortfolioFormTest.h"
#include "books/CashBalance.h"
#include "foundation/LinuxPlatform.h"
#include "market/StockNames.h"
#include "session/BookQuestions.h"
#include "widgets/FXCalendar.h"

namespace Tallymoor {
namespace {

constexpr const char* CAPTION = "Edit share sold on 03/02/2026";

class EditSoldShareDialogTest : public PortfolioFormTest {
protected:
  EditSoldShareDialogTest() {
    m_share.setCode(u"ABC.AX");
    m_event.subElement(u"BuyDate").setValue(u"3/7/2025");
    m_event.subElement(u"SellDate").setValue(u"3/2/2026");
    m_event.subElement(u"NumHeld").setValue(u"100.00");
    m_event.subElement(u"BuyPrice").setValue(u"2.5000");
    m_event.subElement(u"SellPrice").setValue(u"3.7500");
    m_event.subElement(u"BuyBrokerage").setValue(u"10.00");
    m_event.subElement(u"SellBrokerage").setValue(u"29.95");
    m_event.subElement(u"Comment").setValue(u"dear & shaky");
  }
  void SetUp() override {
    PortfolioFormTest::SetUp();
    m_dialog = std::make_unique<EditSoldShareDialog>(&mainWindow(), m_event);
  }
  void TearDown() override {
    m_dialog.reset();
    PortfolioFormTest::TearDown();
  }
  void run(const Step& step, FXuint result) {
    whenModal(CAPTION, step);
    EXPECT_EQ(result, m_dialog->execute());
  }
  void set(const std::string& label, const std::string& text) { type(field(*m_dialog, label), text); }
  std::string shown(const std::string& label) { return field(*m_dialog, label).getText().text(); }
  void expectRefused(const char* message, const char* button, const std::string& label) {
    answer(message, button);
    press(*m_dialog, "OK");
    EXPECT_EQ(&field(*m_dialog, label), focused(*m_dialog)) << label;
    EXPECT_TRUE(m_dialog->shown());
  }

  XMLSoldShare m_share;
  XMLSellEvent& m_event = m_share.sales().add();
  std::unique_ptr<EditSoldShareDialog> m_dialog;
};

TEST_F(EditSoldShareDialogTest, ShowsBothSidesOfTheSale) {
  EXPECT_EQ(CAPTION, title(*m_dialog));
  EXPECT_EQ("ABC.AX", shown("Stock Code"));
  EXPECT_EQ("100.00", shown("Number sold"));
  EXPECT_EQ("2.5000", shown("Buy price"));
  EXPECT_EQ("3.7500", shown("Sell price"));
  EXPECT_EQ("10.00", shown("Buy Brokerage paid"));
  EXPECT_EQ("29.95", shown("Sell Brokerage paid"));
  EXPECT_EQ("39.95", shown("TOTAL brokerage paid"));
  EXPECT_EQ("03/07/2025", shown("Date bought"));
  EXPECT_EQ("03/02/2026", shown("Date sold"));
  EXPECT_EQ(String(u"dear & shaky"), m_dialog->comments());
  EXPECT_TRUE(shows(*m_dialog, "Sale reasons, comments, indicators"));
  EXPECT_FALSE(field(*m_dialog, "Stock Code").isEditable());
  EXPECT_FALSE(field(*m_dialog, "TOTAL brokerage paid").isEditable());
}

TEST_F(EditSoldShareDialogTest, ARecordWithoutACommentIsShown) {
  m_event.removeSubElement(u"Comment", 0);
  EditSoldShareDialog dialog(&mainWindow(), m_event);
  EXPECT_EQ(String(), dialog.comments());
}

TEST_F(EditSoldShareDialogTest, TheTotalFollowsBothBrokeragesAsTheyAreTyped) {
  m_dialog->create();
  set("Buy Brokerage paid", "1,000.50");
  EXPECT_EQ("1030.45", shown("TOTAL brokerage paid"));
  set("Sell Brokerage paid", "0.05");
  EXPECT_EQ("1000.55", shown("TOTAL brokerage paid"));
}

TEST_F(EditSoldShareDialogTest, TheChecksComeInTheirOrder) {
  run(
      [&](FXWindow& form) {
        EXPECT_EQ(&field(form, "Number sold"), focused(form));
        for (const char* label :
             {"Number sold", "Buy price", "Sell price", "Buy Brokerage paid", "Sell Brokerage paid"})
          set(label, "0");
        set("Date bought", "05/03/2026");
        set("Date sold", "04/03/2026");
        expectRefused("You must select the number of shares sold.", "OK", "Number sold");
        set("Number sold", "10");
        expectRefused("You must enter the price you bought the shares", "OK", "Buy price");
        set("Buy price", "2");
        expectRefused("Do you really want to record a sell price of $0.00?", "No", "Sell price");
        set("Sell price", "3");
        expectRefused("Are you sure there was no buy brokerage charged\nfor this purchase?", "No",
                      "Buy Brokerage paid");
        set("Buy Brokerage paid", "1");
        expectRefused("Are you sure there was no sell brokerage charged\nfor this purchase?", "No",
                      "Sell Brokerage paid");
        set("Sell Brokerage paid", "1");
        expectRefused("You can't specify a sell date in the future.", "OK", "Date sold");
        set("Date sold", "01/03/2026");
        expectRefused("You can't specify a buy date in the future.", "OK", "Date bought");
        set("Date bought", "02/03/2026");
        expectRefused("The sell date is before the buy date!", "OK", "Date sold");
        set("Date sold", "02/03/2026"); // The same day is allowed.
        press(form, "OK");
      },
      1);
  EXPECT_EQ(10.0, m_dialog->number());
  EXPECT_EQ(2.0, m_dialog->buyPrice());
  EXPECT_EQ(3.0, m_dialog->sellPrice());
  EXPECT_EQ(1.0, m_dialog->buyBrokerage());
  EXPECT_EQ(1.0, m_dialog->sellBrokerage());
  EXPECT_EQ(Date(2026, 3, 2), m_dialog->buyDate());
  EXPECT_EQ(Date(2026, 3, 2), m_dialog->sellDate());
}

TEST_F(EditSoldShareDialogTest, APriceOfZeroIsAcceptedAfterConfirmation) {
  run(
      [&](FXWindow& form) {
        for (const char* label : {"Sell price", "Buy Brokerage paid", "Sell Brokerage paid"})
          set(label, "0");
        answer("Do you really want to record a sell price of $0.00?", "Yes");
        answer("Are you sure there was no buy brokerage charged\nfor this purchase?", "Yes");
        answer("Are you sure there was no sell brokerage charged\nfor this purchase?", "Yes");
        key(form, KEY_Return);
      },
      1);
  EXPECT_EQ(0.0, m_dialog->sellPrice());
  EXPECT_EQ(50.0, storedBrokerage()); // Editing a sale doesn't change the default.
}

TEST_F(EditSoldShareDialogTest, NegativeValuesAreRefused) {
  run(
      [&](FXWindow& form) {
        const std::pair<const char*, const char*> fields[] = {
            {"Sell price", "The sell price can't be less than zero."},
            {"Buy Brokerage paid", "The buy brokerage can't be less than zero."},
            {"Sell Brokerage paid", "The sell brokerage can't be less than zero."}};
        for (const auto& [label, message] : fields) {
          const std::string before = shown(label);
          set(label, "-5");
          expectRefused(message, "OK", label);
          set(label, before);
        }
        key(form, KEY_Escape);
      },
      0);
}

TEST_F(EditSoldShareDialogTest, AnUnreadableDateStaysInTheForm) {
  run(
      [&](FXWindow& form) {
        set("Date bought", "31/31/2025");
        expectRefused(
            "Date bought: \"31/31/2025\" is no date.\nA date is written like 31/12/2026 or 31 Dec 2026.",
            "OK", "Date bought");
        EXPECT_EQ("31/31/2025", shown("Date bought"));
        key(form, KEY_Escape);
      },
      0);
  EXPECT_EQ(String(u"3/7/2025"), m_event.subElement(u"BuyDate").value()); // The record itself is unchanged.
}

TEST_F(EditSoldShareDialogTest, EachDateHasItsButton) {
  run(
      [&](FXWindow& form) {
        for (const auto& [label, day] : {std::pair("Date bought", "18"), std::pair("Date sold", "19")}) {
          whenModal("Choose the date", [&](FXWindow& calendar) {
            EXPECT_EQ(std::string(label) == "Date bought" ? Date(2025, 7, 3) : Date(2026, 2, 3),
                      find<FXCalendar>(calendar)->date());
            press(calendar, day);
            press(calendar, "OK");
          });
          press(*field(form, label).getNext());
        }
        press(form, "OK");
      },
      1);
  EXPECT_EQ(Date(2025, 7, 18), m_dialog->buyDate());
  EXPECT_EQ(Date(2026, 2, 19), m_dialog->sellDate());
}

TEST_F(EditSoldShareDialogTest, FailuresOfTheDateButtonsAreReported) {
  run(
      [&](FXWindow& form) {
        Platform::setInstance(std::make_unique<BrokenPlatform>());
        answer("SellSharesPanel::onChooseBuyDate failed. Exception : no form for dates", "OK");
        press(*field(form, "Date bought").getNext());
        answer("SellSharesPanel::onChooseSellDate failed. Exception : no form for dates", "OK");
        press(*field(form, "Date sold").getNext());
        key(form, KEY_Escape);
      },
      0);
}

TEST_F(EditSoldShareDialogTest, APriceFarFromThatOfItsDayIsDoubtedOnceItIsChanged) {
  TallymoorInternet::Instance().setCachedPrice(u"ABC.AX", Date(2025, 7, 3), 25.0);
  TallymoorInternet::Instance().setCachedPrice(u"ABC.AX", Date(2026, 2, 3), 3.5);
  run([&](FXWindow& form) { press(form, "OK"); }, 1); // Recorded values are not questioned.
  run(
      [&](FXWindow& form) {
        set("Sell price", "37.5");
        expectRefused("The price of 37.50 is far from that of ABC.AX on 03/02/2026, which was 3.50.\n"
                      "Do you want to record it all the same?",
                      "No", "Sell price");
        set("Sell price", "3.8");
        set("Buy price", "2.6");
        answer("The price of 2.60 is far from that of ABC.AX on 03/07/2025, which was 25.00.\n"
               "Do you want to record it all the same?",
               "Yes");
        press(form, "OK");
      },
      1);
  EXPECT_EQ(2.6, m_dialog->buyPrice());
}

TEST_F(EditSoldShareDialogTest, TheBuyPriceOfASplitSaleIsNotComparedWithItsDay) {
  TallymoorInternet::Instance().setCachedPrice(u"ABC.AX", Date(2025, 7, 3), 7.5);
  XMLElement& split = m_event.addSubElement(new XMLSplitAdjustment, u"Adjustments");
  split.subElement(u"StartDate").setValue(u"1/8/2025");
  split.subElement(u"Factor").setValue(u"3");
  m_event.subElement(u"BuyPrice").setValue(u"7.5000");
  m_dialog = std::make_unique<EditSoldShareDialog>(&mainWindow(), m_event);
  run(
      [&](FXWindow& form) {
        EXPECT_EQ("2.5000", shown("Buy price"));
        set("Buy price", "2.6");
        press(form, "OK");
      },
      1);
}

TEST_F(EditSoldShareDialogTest, ASplitSaleIsShownInSharesOfTheDayOfSale) {
  m_event.subElement(u"NumHeld").setValue(u"33.333333");
  m_event.subElement(u"BuyPrice").setValue(u"9.0000");
  XMLElement& split = m_event.addSubElement(new XMLSplitAdjustment, u"Adjustments");
  split.subElement(u"StartDate").setValue(u"1/8/2025");
  split.subElement(u"Factor").setValue(u"3");
  m_dialog = std::make_unique<EditSoldShareDialog>(&mainWindow(), m_event);
  EXPECT_EQ("100.00", shown("Number sold"));
  EXPECT_EQ("3.0000", shown("Buy price"));
  EXPECT_EQ("3.7500", shown("Sell price"));
}

TEST_F(EditSoldShareDialogTest, ShowsTheCompanysNameAndWhatTheSaleBrings) {
  StockNames::remember(u"ABC.AX", u"Alphabet Bricks");
  m_dialog = std::make_unique<EditSoldShareDialog>(&mainWindow(), m_event);
  EXPECT_EQ("Alphabet Bricks", shown("Stock name"));
  EXPECT_FALSE(field(*m_dialog, "Stock name").isEditable());
  EXPECT_EQ("345.05", shown("Total received"));
  EXPECT_FALSE(field(*m_dialog, "Total received").isEditable());
  m_dialog->create();
  set("Number sold", "200");
  EXPECT_EQ("720.05", shown("Total received"));
  set("Sell price", "4");
  EXPECT_EQ("770.05", shown("Total received"));
  set("Sell Brokerage paid", "0.05");
  EXPECT_EQ("799.95", shown("Total received"));
}

/// A real sale of the portfolio: 100 ABC.AX, bought at 2.50 for 260.00, sold for 345.05.
class EditRecordedSaleTest : public PortfolioFormTest {
protected:
  void SetUp() override {
    PortfolioFormTest::SetUp();
    user().creditCash(Date(2026, 2, 25), 1000.0, CASH_EVENT_DEPOSIT, u"DEPOSIT ");
  }
  void buyAndSell(double bought) {
    user().buyShares(u"NEW.AX", {Date(2026, 2, 25), bought, 2.5, 10.0, String()});
    updateCapitalRecord(user());
    user().sellShares(u"NEW.AX", {Date(2026, 3, 2), 100.0, 3.75, 29.95, String()}, true);
  }
  XMLSellEvent& sale() { return user().findSoldShare(u"NEW.AX")->sales()[0]; }
  std::string cashAfter(FXWindow& dialog) { return field(dialog, "Cash afterwards").getText().text(); }
};

TEST_F(EditRecordedSaleTest, TheCashAfterwardsFollowsTheSaleAndAPurchaseOfItsOwn) {
  buyAndSell(100.0);
  EditSoldShareDialog dialog(&mainWindow(), sale());
  dialog.create();
  EXPECT_EQ("1085.05", cashAfter(dialog)) << user().cashReserveToday();
  type(field(dialog, "Sell price"), "4");
  EXPECT_EQ("1110.05", cashAfter(dialog));
  type(field(dialog, "Buy price"), "3");
  EXPECT_EQ("1060.05", cashAfter(dialog));
  ASSERT_TRUE(user().editSellEvent(sale(), {dialog.buyDate(), dialog.sellDate(), dialog.number(),
                                            dialog.buyPrice(), dialog.sellPrice(), dialog.buyBrokerage(),
                                            dialog.sellBrokerage(), String()}));
  EXPECT_DOUBLE_EQ(1060.05, cashBalance(user().portfolio(), Date()));
}

TEST_F(EditRecordedSaleTest, TheCostOfAPartlySoldPurchaseStaysPaid) {
  buyAndSell(200.0);
  EditSoldShareDialog dialog(&mainWindow(), sale());
  dialog.create();
  EXPECT_EQ("835.05", cashAfter(dialog));
  type(field(dialog, "Buy price"), "3");
  EXPECT_EQ("835.05", cashAfter(dialog));
}

TEST_F(EditRecordedSaleTest, ShowsNoCashWithoutTheSalesEntryOrAfterASplit) {
  buyAndSell(100.0);
  sale().subElement(u"SellPrice").setValue(u"3.0000"); // It now differs from that of its cash entry.
  EditSoldShareDialog withoutEntry(&mainWindow(), sale());
  EXPECT_FALSE(field(withoutEntry, "Cash afterwards").getParent()->shown());
  sale().subElement(u"SellPrice").setValue(u"3.7500");
  auto& split = sale().addSubElement(new XMLSplitAdjustment, u"Adjustments");
  split.subElement(u"StartDate").setValue(u"27/2/2026");
  split.subElement(u"Factor").setValue(u"2");
  EditSoldShareDialog afterASplit(&mainWindow(), sale());
  EXPECT_FALSE(field(afterASplit, "Cash afterwards").getParent()->shown());
}

TEST_F(EditSoldShareDialogTest, FieldsLineUpAndTabGoesDown) {
  run(
      [&](FXWindow& form) {
        const FXint left = field(form, "Stock Code").getX();
        for (const char* label : {"Number sold", "Buy price", "Sell price", "Buy Brokerage paid",
                                  "Sell Brokerage paid", "TOTAL brokerage paid", "Date bought", "Date sold"})
          EXPECT_EQ(left, field(form, label).getX()) << label;
        EXPECT_GE(find<FXText>(form)->getWidth(), 400);
        expectTabGoesDown(form);
        key(form, KEY_Escape);
      },
      0);
}

} // namespace
} // namespace Tallymoor
