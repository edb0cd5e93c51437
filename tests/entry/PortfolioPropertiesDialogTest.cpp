#include "entry/PortfolioPropertiesDialog.h"
#include "FocusedWidget.h"
#include "market/TallymoorInternet.h"
#include "support/GatewayScope.h"
#include "support/MarketFixture.h"
#include "support/TestHttpServer.h"
#include "support/windows/WindowTest.h"
#include <gmock/gmock.h>

namespace Tallymoor {
namespace {

class PortfolioPropertiesDialogTest : public WindowTest {
protected:
  PortfolioPropertiesDialogTest() {
    m_market.addListing(u"^NORD", u"Northern Shares Index", u"Norway");
    m_market.addListing(u"^NOSM", u"Northern Small Index", u"Norway");
  }

  /// Opens the form and runs the step, whose last press closes it.
  FXuint run(const std::function<void(FXWindow&)>& step, const String& indexCode = String()) {
    m_dialog = std::make_unique<PortfolioPropertiesDialog>(&mainWindow(), u"Trading", indexCode,
                                                           [this](const String& name) {
                                                             m_checked.push_back(name);
                                                             return m_nameIsFree;
                                                           });
    whenModal("Portfolio Properties", step);
    return m_dialog->execute();
  }
  void TearDown() override {
    m_dialog.reset();
    WindowTest::TearDown();
  }

  /// Opens the list of common indexes and chooses an entry.
  void chooseFromList(FXWindow& form, const std::string& entry, const std::function<void()>& expected = {}) {
    whenModal("Common Stock Indexes", [this, entry](FXWindow& list) {
      press(list, entry);
      press(list, "OK");
    });
    if (expected)
      expected(); // Queues what follows the list.
    press(form, "Search for a comparison index");
  }
  static std::string shown(FXWindow& form, const std::string& label) {
    return field(form, label).getText().text();
  }
  std::size_t numRequests() { return m_market.server().requests().size(); }

  MarketFixture m_market;
  GatewayScope m_gateway;
  std::unique_ptr<PortfolioPropertiesDialog> m_dialog;
  std::vector<String> m_checked; ///< Names passed to the check.
  bool m_nameIsFree = true;
};

TEST_F(PortfolioPropertiesDialogTest, BeginsWithWhatThePortfolioHas) {
  run(
      [this](FXWindow& form) {
        EXPECT_EQ("Trading", shown(form, "Name"));
        EXPECT_EQ("^FTSE", shown(form, "Comparison Index"));
        EXPECT_EQ("FTSE (UK) ^FTSE", shown(form, "Index Name"));
        EXPECT_FALSE(field(form, "Index Name").isEditable());
        EXPECT_EQ(&field(form, "Comparison Index"), focused(form));
        press(form, "OK");
      },
      u"^FTSE");
  EXPECT_EQ(String(u"Trading"), m_dialog->name());
  EXPECT_EQ(String(u"^FTSE"), m_dialog->indexCode());
  EXPECT_TRUE(m_checked.empty());
}

TEST_F(PortfolioPropertiesDialogTest, ListShowsTheCommonIndexesInTheirOrder) {
  run([this](FXWindow& form) {
    whenModal("Common Stock Indexes", [this](FXWindow& list) {
      EXPECT_TRUE(shows(list, "You can choose a common Stock Index,\nor continue on to a search."));
      std::vector<std::string> entries;
      for (FXCheckButton* entry : findAll<FXCheckButton>(list))
        entries.push_back(entry->getText().text());
      EXPECT_THAT(entries,
                  testing::ElementsAre(
                      "S&P 500 INDEX (USA) ^GSPC", "Dow Jones (USA) ^DJI", "NASDAQ (USA) ^IXIC",
                      "S&P TSX Composite (Canada) ^GSPTSE", "All Ordinaries (Australia) ^AORD",
                      "S&P ASX 200 (Australia) ^AXJO", "NZSE 50 (New Zealand) ^NZ50", "DAX (Germany) ^GDAXI",
                      "FTSE (UK) ^FTSE", "CAC 40 (France) ^FCHI", "continue on to a search..."));
      press(list, "Cancel");
    });
    press(form, "Search for a comparison index");
    EXPECT_EQ("", shown(form, "Comparison Index"));
    press(form, "Cancel");
  });
}

TEST_F(PortfolioPropertiesDialogTest, EveryCommonIndexFillsTheFieldsWithNoNetworkUse) {
  const std::pair<std::string, std::string> indexes[] = {
      {"S&P 500 INDEX (USA) ^GSPC", "^GSPC"},
      {"Dow Jones (USA) ^DJI", "^DJI"},
      {"NASDAQ (USA) ^IXIC", "^IXIC"},
      {"S&P TSX Composite (Canada) ^GSPTSE", "^GSPTSE"},
      {"All Ordinaries (Australia) ^AORD", "^AORD"},
      {"S&P ASX 200 (Australia) ^AXJO", "^AXJO"},
      {"NZSE 50 (New Zealand) ^NZ50", "^NZ50"},
      {"DAX (Germany) ^GDAXI", "^GDAXI"},
      {"FTSE (UK) ^FTSE", "^FTSE"},
      {"CAC 40 (France) ^FCHI", "^FCHI"},
  };
  EXPECT_EQ(1u, run([&](FXWindow& form) {
              for (const auto& [name, code] : indexes) {
                chooseFromList(form, name);
                EXPECT_EQ(code, shown(form, "Comparison Index"));
                EXPECT_EQ(name, shown(form, "Index Name"));
              }
              press(form, "OK");
            }));
  EXPECT_EQ(String(u"^FCHI"), m_dialog->indexCode());
  EXPECT_EQ(0u, numRequests());
}

TEST_F(PortfolioPropertiesDialogTest, SearchWithoutACodeIsRefused) {
  const auto refused = [this] { answer("You must enter an index name to search for", "OK"); };
  run([&](FXWindow& form) {
    chooseFromList(form, "continue on to a search...", refused);
    EXPECT_EQ(&field(form, "Comparison Index"), focused(form));
    type(field(form, "Comparison Index"), "  ");
    chooseFromList(form, "continue on to a search...", refused);
    press(form, "Cancel");
  });
  EXPECT_EQ(0u, numRequests());
}

TEST_F(PortfolioPropertiesDialogTest, SearchAsksForAnIndexOfAllCountriesAndTakesCodeAndName) {
  EXPECT_EQ(1u, run([this](FXWindow& form) {
              type(field(form, "Comparison Index"), "small");
              chooseFromList(form, "continue on to a search...", [this] {
                whenModal("Stock Search", [this](FXWindow& search) { press(search, "OK"); });
              });
              EXPECT_EQ("^NOSM", shown(form, "Comparison Index"));
              EXPECT_EQ("Northern Small Index in Norway", shown(form, "Index Name"));
              press(form, "OK");
            }));
  EXPECT_EQ(String(u"^NOSM"), m_dialog->indexCode());
  ASSERT_EQ(1u, numRequests());
  EXPECT_THAT(m_market.server().requests()[0].target, testing::EndsWith("code=small&country=ALL&kind=I"));
}

TEST_F(PortfolioPropertiesDialogTest, ASearchWithoutAResultKeepsTheTypedCode) {
  run([this](FXWindow& form) {
    type(field(form, "Comparison Index"), "unheard of");
    chooseFromList(form, "continue on to a search...", [this] {
      whenModal("No stock matches were found", [this](FXWindow& search) { press(search, "OK"); });
    });
    EXPECT_EQ("unheard of", shown(form, "Comparison Index"));
    type(field(form, "Comparison Index"), "north");
    chooseFromList(form, "continue on to a search...", [this] {
      whenModal("Stock Search", [this](FXWindow& search) { press(search, "Cancel"); });
    });
    EXPECT_EQ("north", shown(form, "Comparison Index"));
    EXPECT_EQ("", shown(form, "Index Name"));
    press(form, "Cancel");
  });
}

TEST_F(PortfolioPropertiesDialogTest, TypedCodeHasNoNameUnlessItIsACommonOne) {
  run(
      [this](FXWindow& form) {
        type(field(form, "Comparison Index"), "^FTS");
        EXPECT_EQ("", shown(form, "Index Name"));
        type(field(form, "Comparison Index"), " ^DJI ");
        EXPECT_EQ("Dow Jones (USA) ^DJI", shown(form, "Index Name"));
        press(form, "OK");
      },
      u"^FTSE");
  EXPECT_EQ(String(u"^DJI"), m_dialog->indexCode());
}

TEST_F(PortfolioPropertiesDialogTest, CodeAndNameAreCleaned) {
  run([this](FXWindow& form) {
    type(field(form, "Name"), " <R&D>/ 2 ");
    type(field(form, "Comparison Index"), "<^GDAXI> ");
    press(form, "OK");
  });
  EXPECT_EQ(String(u"RD 2"), m_dialog->name());
  EXPECT_EQ(String(u"^GDAXI"), m_dialog->indexCode());
  EXPECT_EQ((std::vector<String>{u"RD 2"}), m_checked);
}

TEST_F(PortfolioPropertiesDialogTest, EmptyNameIsRefused) {
  EXPECT_EQ(1u, run([this](FXWindow& form) {
              type(field(form, "Name"), "<>");
              answer("You must enter a value.", "OK");
              press(form, "OK");
              EXPECT_EQ(&field(form, "Name"), focused(form));
              type(field(form, "Name"), "Savings");
              press(form, "OK");
            }));
  EXPECT_EQ(String(u"Savings"), m_dialog->name());
}

TEST_F(PortfolioPropertiesDialogTest, ATakenNameKeepsTheTypedText) {
  m_nameIsFree = false;
  EXPECT_EQ(0u, run([this](FXWindow& form) {
              type(field(form, "Name"), "Another");
              type(field(form, "Comparison Index"), "^DJI");
              press(form, "OK");
              EXPECT_EQ(&field(form, "Name"), focused(form));
              EXPECT_EQ("Another", shown(form, "Name"));
              EXPECT_EQ("^DJI", shown(form, "Comparison Index"));
              press(form, "Cancel");
            }));
  EXPECT_EQ((std::vector<String>{u"Another"}), m_checked);
}

TEST_F(PortfolioPropertiesDialogTest, FailureOfTheSearchIsReported) {
  TallymoorInternet::Instance().goOffline();
  run([this](FXWindow& form) {
    type(field(form, "Comparison Index"), "north");
    chooseFromList(form, "continue on to a search...", [this] {
      answer("PortfolioPropertiesDialog::onSearchCode failed. HTTPException : "
             "TallymoorInternet::stockSearch - internet offline.",
             "OK");
    });
    EXPECT_EQ("north", shown(form, "Comparison Index"));
    press(form, "Cancel");
  });
}

} // namespace
} // namespace Tallymoor
