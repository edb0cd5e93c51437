#include "views/PricesDialog.h"
#include "ViewsTest.h"
#include "market/PriceStatus.h"
#include "support/TestPriceService.h"
#include "views/DoubtWarnings.h"
#include "views/PricesTable.h"

namespace Tallymoor {
namespace {

using testing::ElementsAre;

/// Two watched stocks on 3 March 2026: the price of one is known, 10.00 of yesterday; of the other nothing
/// is.
class PricesDialogTest : public ViewsTest {
protected:
  PricesDialogTest() {
    for (const char16_t* code : {u"AAA.AX", u"BBB.AX"})
      updater().addCode(code);
    market().setHistory(u"AAA.AX", Date(2026, 2, 20), m_yesterday, 10.0);
    gateway().historicalPrice(u"AAA.AX", m_yesterday, true);
  }

  static TallymoorInternet& gateway() { return TallymoorInternet::Instance(); }
  static PriceUpdater& updater() { return gateway().priceUpdater(); }
  void priceComes(double price) {
    market().setCurrentPrice(u"AAA.AX", price);
    updater().runPass();
    letEventsPass();
  }
  /// Code and cells of each row, without its name.
  static std::vector<std::string> rows(PricesTable& table) {
    std::vector<std::string> texts;
    for (FXint row = 0; Row* known = table.rowAt(row); ++row) {
      std::string text = known->key().toUTF8();
      for (const auto& column : table.columns())
        if (column->title() != String(u"Name"))
          text += "|" + (*column)(*known).toUTF8();
      texts.push_back(text);
    }
    return texts;
  }
  /// Shows the dialog for the steps.
  void show(const std::function<void(FXWindow& dialog, PricesTable& table)>& steps) {
    PricesDialog dialog(&mainWindow());
    whenModal("Prices", [&](FXWindow& window) {
      steps(window, *dialog.table());
      press(window, "Close");
    });
    EXPECT_EQ(1u, dialog.execute());
  }

  const Date m_yesterday{2026, 3, 2};
};

TEST_F(PricesDialogTest, ShowsWhatIsKnownOfEachCode) {
  show([](FXWindow& dialog, PricesTable& table) {
    EXPECT_THAT(rows(table), ElementsAre("AAA.AX|10.00|02/03/2026|1||locators",
                                         "BBB.AX||||No price is known. Check the code, or type a price.|"));
    EXPECT_TRUE(shows(dialog, "1 of 2 stocks have a price."));
  });
}

TEST_F(PricesDialogTest, TellsOfDelistedCodes) {
  gateway().markBadCode(u"AAA.AX");
  show([](FXWindow&, PricesTable& table) {
    EXPECT_EQ(rows(table)[0],
              "AAA.AX|10.00|02/03/2026|1|Marked as delisted: its past prices are not fetched.|locators");
  });
}

TEST_F(PricesDialogTest, SaysThatNothingIsWatched) {
  for (const char16_t* code : {u"AAA.AX", u"BBB.AX"})
    updater().removeCode(code);
  show([](FXWindow& dialog, PricesTable&) {
    EXPECT_TRUE(shows(dialog, "No stock is held or watched yet."));
    for (const char* label : {"Type a price...", "Accept", "Accept from now on", "Refuse", "Its source...",
                              "Import...", "Try again"})
      EXPECT_FALSE(button(dialog, label).isEnabled()) << label;
  });
}

TEST_F(PricesDialogTest, ATypedPriceCounts) {
  show([this](FXWindow& dialog, PricesTable& table) {
    table.choose(u"BBB.AX");
    whenModal("Type a price", [this](FXWindow& form) {
      EXPECT_EQ("BBB.AX", std::string(field(form, "Stock").getText().text()));
      EXPECT_EQ("none", std::string(field(form, "Known price").getText().text()));
      answer("You must enter the price.", "OK");
      press(form, "OK");
      type(field(form, "Price"), "4.25");
      type(field(form, "Date"), "2/3/2026");
      press(form, "OK");
    });
    press(dialog, "Type a price...");
    letEventsPass();
    EXPECT_EQ(rows(table)[1], "BBB.AX|4.25|02/03/2026|1||typed");
    EXPECT_TRUE(shows(dialog, "2 of 2 stocks have a price."));
  });
  EXPECT_DOUBLE_EQ(gateway().getCachedPrice(u"BBB.AX", m_yesterday, 0), 4.25);
}

TEST_F(PricesDialogTest, TheFormShowsThePriceThatIsKnown) {
  show([this](FXWindow& dialog, PricesTable& table) {
    table.choose(u"AAA.AX");
    whenModal("Type a price", [this](FXWindow& form) {
      EXPECT_EQ("10.00 on 02/03/2026", std::string(field(form, "Known price").getText().text()));
      type(field(form, "Date"), "4/3/2026");
      type(field(form, "Price"), "4");
      answer("You can't specify a date in the future.", "OK");
      press(form, "OK");
      press(form, "Cancel");
    });
    press(dialog, "Type a price...");
  });
  EXPECT_DOUBLE_EQ(gateway().getCachedPrice(u"AAA.AX", Date(2026, 3, 3), 0), 10);
}

TEST_F(PricesDialogTest, ADoubtfulPriceIsAccepted) {
  priceComes(1000);
  show([this](FXWindow& dialog, PricesTable& table) {
    table.choose(u"AAA.AX");
    letEventsPass();
    EXPECT_TRUE(shows(dialog, "1 of 2 stocks have a price. The price of 1 stock is doubtful."));
    EXPECT_EQ(rows(table)[0], "AAA.AX|10.00|03/03/2026|0|Doubtful: accept or refuse it.|locators");
    press(dialog, "Accept");
    letEventsPass();
    EXPECT_EQ(rows(table)[0], "AAA.AX|1000.00|03/03/2026|0||locators");
    EXPECT_FALSE(button(dialog, "Accept").isEnabled());
  });
  priceComes(10);
  EXPECT_EQ(gateway().doubtfulPrices().size(), 1u);
}

TEST_F(PricesDialogTest, ADoubtfulPriceIsAcceptedFromNowOn) {
  priceComes(1000);
  show([this](FXWindow& dialog, PricesTable& table) {
    table.choose(u"AAA.AX");
    letEventsPass();
    press(dialog, "Accept from now on");
  });
  priceComes(10);
  EXPECT_TRUE(gateway().doubtfulPrices().empty());
  EXPECT_DOUBLE_EQ(updater().getCurrentPrice(u"AAA.AX"), 10);
}

TEST_F(PricesDialogTest, ADoubtfulPriceIsRefused) {
  priceComes(1000);
  show([this](FXWindow& dialog, PricesTable& table) {
    table.choose(u"BBB.AX");
    letEventsPass();
    EXPECT_FALSE(button(dialog, "Refuse").isEnabled()) << "of another stock";
    table.choose(u"AAA.AX");
    letEventsPass();
    press(dialog, "Refuse");
    letEventsPass();
    EXPECT_EQ(rows(table)[0], "AAA.AX|10.00|03/03/2026|0||locators");
  });
  priceComes(1000);
  EXPECT_TRUE(gateway().doubtfulPrices().empty());
}

TEST_F(PricesDialogTest, FollowsThePricesThatCome) {
  show([this](FXWindow&, PricesTable& table) {
    market().setCurrentPrice(u"BBB.AX", 3);
    priceComes(11);
    runUntil([&] { return rows(table)[0] == "AAA.AX|11.00|03/03/2026|0||locators"; });
    EXPECT_EQ(rows(table)[1], "BBB.AX|3.00|03/03/2026|0||locators");
  });
}

TEST_F(PricesDialogTest, FetchingAgainForgetsFailures) {
  const auto requestsOfAFetch = [this] {
    const BackgroundPassScope askNothing;
    const std::size_t before = market().requested(MarketFixture::Page::History).size();
    EXPECT_THROW(gateway().historicalPrice(u"BBB.AX", m_yesterday, true), Exception);
    return market().requested(MarketFixture::Page::History).size() - before;
  };
  EXPECT_GT(requestsOfAFetch(), 0u);
  EXPECT_EQ(requestsOfAFetch(), 0u) << "it is known to fail";
  show([&](FXWindow& dialog, PricesTable&) {
    press(dialog, "Fetch again");
    EXPECT_GT(requestsOfAFetch(), 0u);
  });
}

TEST_F(PricesDialogTest, AStockIsAskedForAtOneSourceAloneByAnotherCode) {
  SourceList& sources = gateway().priceStatus().sources();
  show([&](FXWindow& dialog, PricesTable& table) {
    gateway().pauseUpdates();
    table.choose(u"BBB.AX");
    whenModal("Source of a stock", [this](FXWindow& form) {
      EXPECT_FALSE(field(form, "Code there").isEnabled());
      auto* list = find<FXListBox>(form);
      EXPECT_EQ(list->getNumItems(), 2);
      EXPECT_STREQ("Locator documents alone", list->getItemText(1).text());
      list->setCurrentItem(1, TRUE);
      type(field(form, "Code there"), " ");
      answer("You must enter the code by which the source knows the stock.", "OK");
      press(form, "OK");
      type(field(form, "Code there"), "AAA.AX");
      press(form, "OK");
    });
    press(dialog, "Its source...");
    gateway().pauseUpdates();
  });
  EXPECT_EQ(sources.pins().at(u"BBB.AX").source, u"locators");
  EXPECT_EQ(sources.pins().at(u"BBB.AX").codeThere, u"AAA.AX");
  EXPECT_DOUBLE_EQ(gateway().historicalPrice(u"BBB.AX", m_yesterday, true), 10);

  show([&](FXWindow& dialog, PricesTable& table) {
    table.choose(u"BBB.AX");
    whenModal("Source of a stock", [this](FXWindow& form) {
      EXPECT_EQ("AAA.AX", std::string(field(form, "Code there").getText().text()));
      find<FXListBox>(form)->setCurrentItem(0, TRUE);
      press(form, "OK");
    });
    press(dialog, "Its source...");
    gateway().pauseUpdates();
  });
  EXPECT_TRUE(sources.pins().empty());
}

TEST_F(PricesDialogTest, PricesAreImportedFromAFileOnceItsQuestionsAreAnswered) {
  const String path = profile().path("export.csv");
  TestProfile::writeFile(path, "Date;Close\n01/03/2026;4.20\n02/03/2026;4.25\n");
  const auto chooseIt = [&] {
    whenModal("Import prices of BBB.AX", [this, path](FXWindow& dialog) {
      type(*find<FXTextField>(dialog), path.toUTF8());
      press(dialog, "OK");
    });
  };
  show([&](FXWindow& dialog, PricesTable& table) {
    table.choose(u"BBB.AX");
    chooseIt();
    whenModal("Is the day 01/03/2026 written as", [this](FXWindow& question) { press(question, "Cancel"); });
    press(dialog, "Import...");
    letEventsPass();
    EXPECT_EQ(rows(table)[1], "BBB.AX||||No price is known. Check the code, or type a price.|");
    chooseIt();
    whenModal("Is the day 01/03/2026 written as", [this](FXWindow& question) {
      press(question, "dd/MM/yyyy");
      press(question, "OK");
    });
    answer("2 days of BBB.AX were read, from 01/03/2026 to 02/03/2026.\nThe close of 2 days is new or has "
           "changed.",
           "OK");
    press(dialog, "Import...");
    letEventsPass();
    EXPECT_TRUE(rows(table)[1].starts_with("BBB.AX|4.25|02/03/2026|1|"));
  });
}

TEST_F(PricesDialogTest, AnImportEndsTheSampleMarketOnlyIfTheUserAgrees) {
  pretendSampleMarket(profile());
  TallymoorInternet::reset();
  const String path = profile().path("export.csv");
  TestProfile::writeFile(path, "Date,Close\n2026-03-02,4.25\n");
  show([&](FXWindow& dialog, PricesTable& table) {
    EXPECT_EQ(rows(table)[0], "AAA.AX|10.00|02/03/2026|1||made up, by the sample service");
    table.choose(u"BBB.AX");
    for (const char* wanted : {"No", "Yes"}) {
      EXPECT_TRUE(gateway().priceStatus().isSampleMarket());
      whenModal("Import prices of BBB.AX", [this, path](FXWindow& files) {
        type(*find<FXTextField>(files), path.toUTF8());
        press(files, "OK");
      });
      whenModal("Prices come from the sample market now", [=, this](FXWindow& box) { press(box, wanted); });
      if (wanted == std::string("Yes"))
        whenModal("1 day of BBB.AX was read", [this](FXWindow& box) { press(box, "OK"); });
      press(dialog, "Import...");
      letEventsPass();
    }
    EXPECT_EQ(rows(table)[0], "AAA.AX||||No price is known. Check the code, or type a price.|");
  });
  EXPECT_FALSE(gateway().priceStatus().isSampleMarket());
}

TEST_F(PricesDialogTest, AFileThatCannotBeReadIsToldAndChangesNothing) {
  TestProfile::writeFile(profile().path("export.csv"), "nonsense");
  show([&](FXWindow& dialog, PricesTable& table) {
    table.choose(u"AAA.AX");
    whenModal("Import prices of AAA.AX", [this](FXWindow& files) {
      type(*find<FXTextField>(files), profile().path("export.csv").toUTF8());
      press(files, "OK");
    });
    whenModal("PricesDialog::onStock failed.", [this](FXWindow& box) { press(box, "OK"); });
    press(dialog, "Import...");
    letEventsPass();
    EXPECT_EQ(rows(table)[0], "AAA.AX|10.00|02/03/2026|1||locators");
  });
}

TEST_F(PricesDialogTest, ADelistedStockIsTriedAgain) {
  gateway().markBadCode(u"AAA.AX");
  show([this](FXWindow& dialog, PricesTable& table) {
    table.choose(u"AAA.AX");
    for (const char* wanted : {"No", "Yes"}) {
      EXPECT_TRUE(gateway().isBadCode(u"AAA.AX"));
      answer(
          "No prices of AAA.AX are fetched, since it is marked as delisted.\nDo you want to remove the mark?",
          wanted);
      press(dialog, "Try again");
    }
    gateway().pauseUpdates();
    EXPECT_FALSE(gateway().isBadCode(u"AAA.AX"));
  });
}

TEST_F(PricesDialogTest, TheWindowWarnsOfADoubtfulPriceUntilItIsDecided) {
  DoubtWarnings warnings(&app());
  priceComes(1000);
  priceComes(1001);
  ASSERT_EQ(window().warnings.size(), 1u);
  EXPECT_EQ(
      window().warnings[0].text,
      String(
          u"AAA.AX: 1000.00 of 03/03/2026, but 10.00 of 02/03/2026 is known. One of them may be in cents or "
          u"pence.\nThe last good price counts until you decide in Tools, Prices."));
  EXPECT_TRUE(window().warningsOver.empty());
  gateway().refuseDoubtful(u"AAA.AX");
  letEventsPass();
  EXPECT_TRUE(window().warningsOver.contains(window().warnings[0].key));
}

TEST_F(PricesDialogTest, PricesComeWhileTheWindowIsOpen) {
  market().setCurrentPrice(u"AAA.AX", 10.5);
  const BigMutexLock lock; // as in the handler that opens it
  show([this](FXWindow& dialog, PricesTable& table) {
    updater().start();
    press(dialog, "Fetch again");
    runUntil([&] { return rows(table)[0].starts_with("AAA.AX|10.50"); });
    EXPECT_TRUE(rows(table)[0].starts_with("AAA.AX|10.50"));
    gateway().pauseUpdates();
  });
}

TEST_F(PricesDialogTest, ACurrentPriceOfDaysAgoHasItsOwnDay) {
  TestPriceService service(profile());
  service.answer.body = R"({"days":[{"date":"2026-02-26","close":9.5},{"date":"2026-02-27","close":9.75}]})";
  PriceStatus& status = gateway().priceStatus();
  status.sources().readAgain();
  status.sources().setKey(u"Service", u"key");
  status.endTrial(u"Service", status.beginTrial(u"Service")({}));
  status.setOn(u"Service", true);
  status.setOn(u"locators", false);
  updater().runPass();
  show([this](FXWindow&, PricesTable& table) {
    letEventsPass();
    EXPECT_EQ(rows(table)[0], "AAA.AX|9.75|27/02/2026|4||Service");
  });
}

} // namespace
} // namespace Tallymoor
