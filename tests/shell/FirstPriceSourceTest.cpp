#include "ShellTest.h"
#include "market/PriceStatus.h"
#include "support/TestPriceService.h"

namespace Tallymoor {
namespace {

/// The first start of a profile whose locator documents lead to the sample market: where prices come from is
/// asked before the wizard opens.
class FirstPriceSourceTest : public ShellTest {
protected:
  FirstPriceSourceTest() { pretendSampleMarket(profile()); }

  std::unique_ptr<MainWindow> makeWindow(FXApp* app) override {
    whenModal("Where do your prices come from?", [this](FXWindow& dialog) { choose(dialog); });
    answerMore();
    return ShellTest::makeWindow(app);
  }
  virtual void choose(FXWindow& dialog) = 0;
  /// Queues the answers to what the choice opens.
  virtual void answerMore() {}

  static PriceStatus& status() { return TallymoorInternet::Instance().priceStatus(); }
  std::string normalStatus() { return tallymoor().statusBar()->getStatusLine()->getNormalText().text(); }
  static std::string namesOn() {
    std::string names;
    for (const ListedSource& source : status().sources().sources())
      if (source.isOn)
        names += source.name.toUTF8() + " ";
    return names;
  }
};

class SampleChosenTest : public FirstPriceSourceTest {
  void choose(FXWindow& dialog) override {
    press(dialog, "The sample market, to try the program: all its prices are made up");
    press(dialog, "OK");
  }
};

TEST_F(SampleChosenTest, ThePricesAreMadeUpAndLabelledSo) {
  EXPECT_TRUE(status().isSampleMarket());
  EXPECT_EQ("Ready. The prices are made up: they are those of the sample market.", normalStatus());
}

class LaterChosenTest : public FirstPriceSourceTest {
  void choose(FXWindow& dialog) override { press(dialog, "OK"); }
};

TEST_F(LaterChosenTest, NoPricesAreFetchedAndNothingIsAsked) {
  EXPECT_EQ(namesOn(), "");
  EXPECT_EQ("Ready. No source of prices is on: see Tools, Prices.", normalStatus());
  market().setHistory(u"ABC.AX", Date(2026, 1, 2), Date(2026, 3, 3), 10.0);
  EXPECT_THROW(TallymoorInternet::Instance().historicalPrice(u"ABC.AX", Date(2026, 3, 2), true), Exception);
  EXPECT_TRUE(TallymoorInternet::Instance().stockSearch(u"ABC", true, false).empty());
  EXPECT_TRUE(market().requested(MarketFixture::Page::History).empty());
  EXPECT_TRUE(boxes().empty());
}

class ClosedTest : public FirstPriceSourceTest {
  void choose(FXWindow& dialog) override { dialog.handle(&dialog, FXSEL(SEL_CLOSE, 0), nullptr); }
};

TEST_F(ClosedTest, ToCloseTheQuestionIsToChooseLater) {
  EXPECT_EQ(namesOn(), "");
}

class FolderChosenTest : public FirstPriceSourceTest {
  void choose(FXWindow& dialog) override {
    TestProfile::writeFile(profile().path("exports/ABC.AX.csv"), "Day,Close\n2026-03-02,4.50\n");
    press(dialog, "A folder of CSV files, one for each stock");
    press(dialog, "OK");
    EXPECT_TRUE(dialog.shown()) << "nothing was chosen yet";
    press(dialog, "OK");
  }
  void answerMore() override {
    whenModal("Folder of CSV files", [this](FXWindow& folders) { press(folders, "Cancel"); });
    whenModal("Folder of CSV files", [this](FXWindow& folders) {
      type(*find<FXTextField>(folders), profile().path("exports").toUTF8());
      press(folders, "OK");
    });
    answer("1 of 1 file can be read.", "OK");
  }
};

TEST_F(FolderChosenTest, ItGivesPricesWithoutARestart) {
  EXPECT_EQ(namesOn(), "Folder exports ");
  EXPECT_DOUBLE_EQ(TallymoorInternet::Instance().historicalPrice(u"ABC.AX", Date(2026, 3, 2), true), 4.5);
  EXPECT_EQ("Ready.", normalStatus());
}

class ServiceChosenTest : public FirstPriceSourceTest {
protected:
  TestPriceService m_service{profile()};

private:
  void choose(FXWindow& dialog) override {
    m_service.answer.body = R"({"days":[{"date":"2026-03-02","close":5.5}]})";
    press(dialog, "A service on the internet, most with a key of your own");
    press(dialog, "OK");
  }
  void answerMore() override {
    whenModal("Services", [this](FXWindow& list) {
      press(list, "Service (with a key)");
      press(list, "OK");
    });
    whenModal("Key", [this](FXWindow& form) {
      type(*find<FXTextField>(form), "s3cret");
      press(form, "OK");
    });
    whenModal("Try a source", [this](FXWindow& trial) {
      runUntil([&] { return std::string(find<FXText>(trial)->getText().text()).starts_with("It answered"); });
      press(trial, "Close");
    });
    answer("Are the figures right, and is Service to be used from now on?", "Yes");
  }
};

TEST_F(ServiceChosenTest, ItGivesPricesWithoutARestart) {
  EXPECT_EQ(namesOn(), "Service ");
  EXPECT_DOUBLE_EQ(TallymoorInternet::Instance().historicalPrice(u"ABC.AX", Date(2026, 3, 2), true), 5.5);
}

/// Nothing can be written into the folder of the configuration.
class UnwritableTest : public FirstPriceSourceTest {
  void choose(FXWindow& dialog) override {
    std::filesystem::create_directories((profile().configFolder() + u"PriceSources.xml/in the way").toUTF8());
    press(dialog, "OK");
    EXPECT_TRUE(dialog.shown());
    dialog.handle(&dialog, FXSEL(SEL_CLOSE, 0), nullptr);
  }
  void answerMore() override {
    whenModal("Dialog::onOK failed.", [this](FXWindow& box) { press(box, "OK"); });
    whenModal("PriceOriginDialog::execute failed.", [this](FXWindow& box) { press(box, "OK"); });
  }
};

TEST_F(UnwritableTest, AFailureIsToldAndTheStartGoesOn) {
  EXPECT_TRUE(status().isSampleMarket());
  EXPECT_TRUE(tallymoor().totalCapital());
}

/// A profile of before, without portfolios.
class OldProfileTest : public ShellTest {
protected:
  OldProfileTest() {
    pretendSampleMarket(profile());
    TestProfile::writeFile(recordsPath(), "<Portfolios/>");
  }
  bool opensWizard() override { return true; }
};

TEST_F(OldProfileTest, IsNotAskedAndKeepsItsPrices) {
  EXPECT_TRUE(TallymoorInternet::Instance().priceStatus().isSampleMarket());
  EXPECT_FALSE(TestProfile::fileExists(profile().configFolder() + u"PriceSources.xml"));
}

} // namespace
} // namespace Tallymoor
