#include "RecordingPlatform.h"
#include "TestPaths.h"
#include "YearOfTransactionsTest.h"
#include "foundation/RunTimeSettings.h"
#include "shell/TrayTip.h"
#include "shell/WarningStrip.h"
#include "support/LoopbackPeer.h"
#include "support/TestHttpServer.h"
#include "support/desktop/TestDesktop.h"
#include "widgets/FormNotes.h"
#include <filesystem>
#include <iostream>

namespace Tallymoor {
namespace {

/// Conversions of printf: one that writes through a pointer, one that reads through one, and one that prints
/// ten million blanks.
const std::string FORMATS = "%n%s%x%1$*9999999d";
/// With characters that mark mnemonics for the toolkit and for panels.
const std::string TEXT = FORMATS + " & _s <b> 5% of";
/// As on a page, whose text is not decoded.
const std::string NAME = FORMATS + " & _s 5% of";
const std::string CODE = FORMATS + "&_.AX";
const std::string INDEX = "^" + FORMATS;

std::string escaped(std::string text) {
  for (const auto& [mark, escape] : {std::pair("&", "&amp;"), {"<", "&lt;"}, {">", "&gt;"}})
    for (std::size_t at = text.find(mark); at != std::string::npos; at = text.find(mark, at + 1))
      text.replace(at, 1, escape);
  return text;
}

/// Types conversions into every field, receives them from pages and servers, and checks each place where they
/// are displayed. Counts both the expected places and every text of the window with a part of them.
class CountedFormatTexts : public YearOfTransactionsTest {
protected:
  CountedFormatTexts() {
    list(String(CODE.c_str()), 10.0);
    list(String(INDEX.c_str()), 8000.0);
    market().addListing(String(CODE.c_str()), String(NAME.c_str()), String((NAME + " market").c_str()));
  }
  static void TearDownTestSuite() { tellCount("format texts"); }
  static void tellCount(const std::string& what) {
    std::cout << "COUNT: " << what << ": " << places << " places shown as typed, " << changed << " changed"
              << std::endl;
    places = changed = 0;
  }
  std::string portfolioName() const override { return FORMATS; }

  // ---- Looking ----

  static void expectShown(const std::string& place, const std::string& text, const std::string& shown) {
    shown == text ? ++places : ++changed;
    EXPECT_EQ(text, shown) << place;
  }
  /// Checks the labels, buttons and entries of the window.
  static void expectLabel(const std::string& place, const std::string& text, FXWindow& in) {
    const std::vector<std::string> all = labels(in);
    const bool found = std::find(all.begin(), all.end(), text) != all.end();
    found ? ++places : ++changed;
    EXPECT_TRUE(found) << place << " among " << testing::PrintToString(all);
  }
  /// Checks that every text with the end of the conversions contains all of them.
  static void sweep(FXWindow& in) {
    for (const std::string& text : textsOf(in)) {
      if (text.find("9999999d") == std::string::npos)
        continue;
      const bool whole = text.find(FORMATS) != std::string::npos;
      whole ? ++places : ++changed;
      EXPECT_TRUE(whole) << text;
    }
  }
  static std::vector<std::string> textsOf(FXWindow& in) {
    std::vector<std::string> texts = labels(in);
    const auto add = [&texts](const FXString& text) { texts.emplace_back(text.text()); };
    for (FXLabel* label : findAll<FXLabel>(in)) {
      add(label->getTipText());
      add(label->getHelpText());
    }
    for (FXTextField* field : findAll<FXTextField>(in))
      add(field->getText());
    for (FXText* text : findAll<FXText>(in))
      add(text->getText());
    for (FXComboBox* box : findAll<FXComboBox>(in))
      for (FXint i = 0; i < box->getNumItems(); ++i)
        add(box->getItemText(i));
    for (FXHeader* header : findAll<FXHeader>(in))
      for (FXint i = 0; i < header->getNumItems(); ++i)
        add(header->getItemText(i));
    for (FXTreeList* tree : findAll<FXTreeList>(in))
      for (FXTreeItem* item = tree->getFirstItem(); item; item = item->getBelow())
        add(item->getText());
    for (FXTable* table : findAll<FXTable>(in))
      for (FXint row = 0; row < table->getNumRows(); ++row)
        for (FXint column = 0; column < table->getNumColumns(); ++column)
          add(table->getItemText(row, column));
    for (FXStatusLine* line : findAll<FXStatusLine>(in)) {
      add(line->getText());
      add(line->getNormalText());
    }
    texts.push_back(title(in));
    return texts;
  }
  void sweepWindow() {
    letEventsPass();
    for (InvestmentTreeItem* node : {&heldNode(), &soldNode(), &dividendsNode(), &cashNode()})
      leftClick(*node);
    leftClick(trading());
    sweep(run());
  }

  // ---- Acting ----

  /// Answers a box with this text.
  void answerBox(const std::string& text, const std::string& button) {
    whenModal(text, [=, this](FXWindow& box) {
      expectLabel("a box", text, box);
      press(box, button);
    });
  }
  void typeNotes(FXWindow& form, const std::string& text) {
    FormNotes& notes = *find<FormNotes>(form);
    for (const char c : text) {
      FXEvent event{};
      event.type = SEL_KEYPRESS;
      event.code = static_cast<FXuint>(c);
      event.text = FXString(&c, 1);
      notes.handle(&app(), FXSEL(SEL_KEYPRESS, 0), &event);
    }
    expectShown("the notes of a form", text, notes.getText().text());
  }
  void typeAndSee(FXTextField& field, const std::string& text) {
    type(field, text);
    expectShown("a field", text, field.getText().text());
  }
  /// Checks the entry of the row's popup and the window it opens, then cancels.
  void lookFromRow(InvestmentTreeItem& node, const std::string& rowText, const std::string& entry,
                   const std::string& opened, const std::string& cancel, const Step& look = {}) {
    fromRow(node, rowText, entry, [=, this] {
      ++places; // The popup's entry was found by its text.
      whenModal(opened, [=, this](FXWindow& window) {
        sweep(window);
        if (look)
          look(window);
        press(window, cancel);
      });
    });
  }
  void buyOne() {
    enter(byCommand(TallymoorWindow::ID_BUY), "Buy Shares", [this](FXWindow& form) {
      typeAndSee(field(form, "Stock code"), CODE);
      whenModal("Stock Search", [this](FXWindow& search) {
        Table& table = *find<Table>(search);
        expectShown("the code of a search", CODE, table.getRowText(0).text());
        sweep(search);
        press(search, "OK");
      });
      press(form, "Search for stock code");
      expectShown("the found name", NAME + " in " + NAME + " market",
                  field(form, "Stock name").getText().text());
      type(field(form, "Number bought"), "100");
      type(field(form, "Share price"), "10");
      type(field(form, "Date bought"), "02/02/2026");
      typeNotes(form, TEXT);
      sweep(form);
      press(form, "OK");
    });
  }
  void deposit() {
    enter(byCommand(TallymoorWindow::ID_DEPOSIT_CASH), "Deposit cash", [this](FXWindow& form) {
      type(field(form, "Amount"), "50000");
      type(field(form, "Date"), "02/01/2026");
      typeAndSee(field(form, "Description (optional)"), TEXT);
      press(form, "OK");
    });
  }

  /// Checks that the page of last month's report contains these texts.
  void expectReport(const std::vector<std::string>& texts) {
    std::filesystem::copy(TALLYMOOR_SAMPLES "/../assets/defaults/Report",
                          profile().defaultsFolder() + "/Report", std::filesystem::copy_options::recursive);
    const RecordingPlatform& opener = RecordingPlatform::install(profile(), {});
    command(TallymoorWindow::ID_REPORT_LAST_MONTH);
    ASSERT_EQ(1u, opener.opened().size());
    const std::string page = TestProfile::readFile(opener.opened().front());
    for (const std::string& text : texts)
      expectShown("the report", "true", page.find(text) != std::string::npos ? "true" : "false: " + text);
  }

  /// Chooses an entry of a node's popup, checks the window it opens, and cancels.
  void lookFromNode(InvestmentTreeItem& node, const std::string& entry, const std::string& opened,
                    const std::string& cancel, const Step& look = {}) {
    whenModal(entry, [=, this](FXWindow& popup) {
      expectLabel("a popup", entry, popup);
      press(popup, entry);
    });
    whenModal(opened, [=, this](FXWindow& window) {
      sweep(window);
      if (look)
        look(window);
      press(window, cancel);
    });
    clickNode(node, RIGHTBUTTON);
    letEventsPass();
  }

  static inline int places = 0;
  static inline int changed = 0;
};

// ---- Names of portfolios ----

TEST_F(CountedFormatTexts, TheNameOfAPortfolioInTreePageAndPopups) {
  expectShown("the tree", FORMATS, trading().getText().text());
  leftClick(trading());
  expectLabel("the heading of its page", FORMATS, *trading().page());
  lookFromNode(trading(), "Rename share portfolio " + FORMATS + "...", "Rename portfolio", "Cancel",
               [this](FXWindow& prompt) {
                 expectLabel("the prompt", "Please choose a new name for " + FORMATS, prompt);
                 expectShown("its field", FORMATS, find<FXTextField>(prompt)->getText().text());
               });
  const std::string question = "Are you sure you want to delete share portfolio " + FORMATS + "?";
  lookFromNode(trading(), "Delete share portfolio " + FORMATS + "...", question, "No",
               [&](FXWindow& box) { expectLabel("the question", question, box); });
  lookFromNode(trading(), "Set portfolio comparison index...", "Portfolio Properties", "Cancel",
               [this](FXWindow& form) {
                 expectShown("the properties", FORMATS, field(form, "Name").getText().text());
               });
  sweepWindow();
}

TEST_F(CountedFormatTexts, TheNameOfAPortfolioInListsOptionsAndWarnings) {
  whenModal("Choose Portfolio", [this](FXWindow& dialog) {
    expectLabel("the list of portfolios", FORMATS, dialog);
    press(dialog, "Cancel");
  });
  command(TallymoorWindow::ID_DEPOSIT_CASH);
  whenModal("Tallymoor Options", [this](FXWindow& dialog) {
    sweep(dialog);
    press(dialog, "Cancel");
  });
  command(TallymoorWindow::ID_SETTINGS);
  run().tabBook()->setCurrent(1, TRUE);
  letEventsPass();
  expectShown("its watchlist", "for " + FORMATS, run().watchlistTree()->firstRoot()->getText().text());
  expectLabel("the heading of its watchlist", "for " + FORMATS, *run().watchlistTree()->shownItem()->page());
  run().tabBook()->setCurrent(0, TRUE);
  cash(byCommand(TallymoorWindow::ID_WITHDRAW_CASH), "Withdraw cash", "02/02/2026", "12", TEXT);
  const std::string warning = "Warning: The cash reserve for " + FORMATS + " is currently negative.";
  bool shown = false;
  for (std::string label : labels(*find<WarningStrip>(run()))) {
    std::replace(label.begin(), label.end(), '\n', ' ');
    shown |= label.starts_with(warning);
  }
  expectShown("the strip of warnings", "true", shown ? "true" : "false");
  sweepWindow();
}

TEST_F(CountedFormatTexts, TheNameOfAnImportedPortfolioInBoxes) {
  const String path = profile().path(FORMATS + " & _.xml");
  const auto chooseFile = [this, path](const std::string& dialogTitle) {
    whenModal(dialogTitle, [this, path](FXWindow& dialog) {
      type(*find<FXTextField>(dialog), path.toUTF8());
      press(dialog, "OK");
    });
  };
  chooseFile("Export portfolios to:");
  answerBox("Your portfolios have been exported to\n" + path.toUTF8() +
                "\nThis can be used as a backup, or imported for a different user or computer.",
            "OK");
  command(TallymoorWindow::ID_EXPORT);
  chooseFile("Export portfolios to:");
  answerBox("Do you want to overwrite the file\n" + path.toUTF8() + "\nwith your exported portfolios?", "No");
  command(TallymoorWindow::ID_EXPORT);
  chooseFile("Import portfolios from:");
  answerBox("You already have a portfolio called \"" + FORMATS +
                "\"\nin your Total Capital. Do you want to replace it with\nan imported portfolio?",
            "Yes");
  answerBox("The following share portfolios were imported:\n" + FORMATS, "OK");
  command(TallymoorWindow::ID_IMPORT);
  letEventsPass();
  TestProfile::writeFile(path, "<Portfolios><" + escaped(FORMATS) + "/></Portfolios>");
  chooseFile("Import portfolios from:");
  whenModal("Failed to decode the imported portfolios: ", [this](FXWindow& box) {
    sweep(box);
    press(box, "OK");
  });
  command(TallymoorWindow::ID_IMPORT);
}

// ---- Stock codes, comments and descriptions ----

TEST_F(CountedFormatTexts, ACodeAndItsCommentsFromThePurchaseToTheSale) {
  deposit();
  buyOne();
  InvestmentTreeItem& purchases = purchasesNode(CODE);
  expectShown("the tree", CODE + " Purchases", purchases.getText().text());
  expectShown("the row of a holding", CODE, tableOf(heldNode()).getRowText(0).text());
  lookFromRow(purchases, "02/02/2026", "Edit purchase from 02/02/2026...",
              "Edit share purchase for " + CODE + " on 02/02/2026", "Cancel", [this](FXWindow& form) {
                expectShown("the code", CODE, field(form, "Stock code").getText().text());
                expectShown("the notes", TEXT, find<FormNotes>(form)->getText().text());
              });
  lookFromRow(purchases, "02/02/2026", "Delete from records!...",
              "Continue to delete the share purchase of " + CODE + " at 02/02/2026?", "No");
  enter(byCommand(TallymoorWindow::ID_SELL), "Sell Shares", [this](FXWindow& form) {
    chooseCode(form, CODE);
    expectShown("the chosen code", CODE, find<FXComboBox>(form)->getText().text());
    type(field(form, "Number sold"), "50");
    type(field(form, "Share price"), "12");
    type(field(form, "Date sold"), "20/02/2026");
    typeNotes(form, TEXT);
    press(form, "OK");
  });
  expectShown("the sold stock", CODE, cell(tableOf(soldNode()), 0, "Stock Code"));
  lookFromRow(soldNode(), "50.00", "Edit sale of " + CODE + " from 20/02/2026...",
              "Edit share sold on 20/02/2026", "Cancel", [this](FXWindow& form) {
                expectShown("the code", CODE, field(form, "Stock Code").getText().text());
                expectShown("the notes", TEXT, find<FormNotes>(form)->getText().text());
              });
  lookFromRow(soldNode(), "50.00", "Delete sale of " + CODE + " from 20/02/2026...",
              "Delete the sale of " + CODE + " on 20/02/2026", "Cancel");
  expectShown("the cash of a purchase", "BUY 100.00 of " + CODE + " @ 10.0000",
              cell(tableOf(cashNode()), 1, "Description"));
  sweepWindow();
  expectReport({FORMATS, escaped(CODE), escaped(TEXT)});
}

TEST_F(CountedFormatTexts, ACodeAndACountryOfADividend) {
  deposit();
  buyOne();
  dividend(byCommand(TallymoorWindow::ID_DIVIDENDS), CODE, "03/02/2026", "100", "0.25", 0,
           fromAbroad(TEXT, "1.00"));
  expectShown("the dividend", CODE, cell(tableOf(dividendsNode()), 0, "Code"));
  lookFromRow(dividendsNode(), "03/02/2026", "Edit dividend for " + CODE + " on 03/02/2026...",
              "Edit dividend of " + CODE + " on 03/02/2026", "Cancel", [](FXWindow& form) {
                expectShown("the country", TEXT, findAll<FXComboBox>(form).back()->getText().text());
              });
  lookFromRow(dividendsNode(), "03/02/2026", "Delete from records!...",
              "Delete dividend of " + CODE + " on 03/02/2026?", "No");
  sweepWindow();
}

TEST_F(CountedFormatTexts, DescriptionsOfCash) {
  deposit();
  leftClick(*run().totalCapital());
  expectLabel("the caption in the summary of all", "Capital in " + FORMATS, *run().totalCapital()->page());
  expectShown("the cash", "DEPOSIT " + TEXT, cell(tableOf(cashNode()), 0, "Description"));
  lookFromRow(cashNode(), "DEPOSIT " + TEXT, "Edit cash transaction from 02/01/2026...",
              "Edit cash transaction", "Cancel", [this](FXWindow& form) {
                expectShown("the description", "DEPOSIT " + TEXT,
                            field(form, "Description (optional)").getText().text());
              });
  sweepWindow();
}

// ---- Indexes and watchlists ----

TEST_F(CountedFormatTexts, AComparisonIndex) {
  lookFromNode(trading(), "Set portfolio comparison index...", "Portfolio Properties", "OK",
               [this](FXWindow& form) { typeAndSee(field(form, "Comparison Index"), INDEX); });
  lookFromNode(trading(), "Set portfolio comparison index...", "Portfolio Properties", "Cancel",
               [this](FXWindow& form) {
                 expectShown("the index", INDEX, field(form, "Comparison Index").getText().text());
               });
  sweepWindow();
}

TEST_F(CountedFormatTexts, AWatchlistAndItsCodes) {
  whenModal("Add New Watchlist", [this](FXWindow& dialog) {
    typeAndSee(*find<FXTextField>(dialog), FORMATS);
    press(dialog, "OK");
  });
  press(run(), "New Watchlist");
  letEventsPass();
  auto& list = dynamic_cast<InvestmentTreeItem&>(*run().watchlistTree()->shownItem());
  expectShown("the tree of lists", FORMATS, list.getText().text());
  expectLabel("the heading of the list", FORMATS, *list.page());
  whenModal("Add a stock to watch...", [this](FXWindow& popup) { press(popup, "Add a stock to watch..."); });
  whenModal("Add Stock to Watch", [this](FXWindow& dialog) {
    typeAndSee(*find<FXTextField>(dialog), CODE);
    whenModal("Stock Search", [this](FXWindow& search) { press(search, "OK"); });
    press(dialog, "Search for stock code");
    expectLabel("the found name", NAME + " in " + NAME + " market", dialog);
    press(dialog, "OK");
  });
  list.onRightClick(100, 100);
  letEventsPass();
  Table& table = *find<Table>(*list.page());
  expectShown("the watched code", CODE, table.getRowText(0).text());
  const std::string question = "Do you want to remove " + FORMATS + "?";
  whenModal("Remove " + FORMATS + "...", [this](FXWindow& popup) {
    expectLabel("the popup", "Remove " + FORMATS + "...", popup);
    press(popup, "Remove " + FORMATS + "...");
  });
  answerBox(question, "No");
  list.onRightClick(100, 100);
  whenModal("Remove stock " + CODE + " from watchlist", [this](FXWindow& popup) {
    expectLabel("the popup of a row", "Buy stock " + CODE + "...", popup);
    press(popup, "Remove stock " + CODE + " from watchlist");
  });
  FXHeader& header = *table.getRowHeader();
  click(header, RIGHTBUTTON, 5, header.getItemOffset(0) + header.getItemSize(0) / 2);
  letEventsPass();
  EXPECT_EQ(0, table.getNumRows());
}

// ---- What servers send ----

TEST_F(CountedFormatTexts, TheReasonPhraseOfAServer) {
  LoopbackPeer peer([](LoopbackPeer::Connection& connection) {
    connection.readHead();
    connection.write("HTTP/1.1 503 " + TEXT + "\r\nContent-Length: 0\r\nConnection: close\r\n\r\n");
  });
  const String path = profile().configFolder() + u"CodeSearchLocators.xml";
  std::string locators = TestProfile::readFile(path);
  const std::string exchange = market().server().url("/");
  ASSERT_NE(std::string::npos, locators.find(exchange));
  TestProfile::writeFile(path,
                         locators.replace(locators.find(exchange), exchange.size(), peer.address().toUTF8()));
  gateway().restart();
  enter(byCommand(TallymoorWindow::ID_BUY), "Buy Shares", [this](FXWindow& form) {
    type(field(form, "Stock code"), CODE);
    answerBox("There was a problem accessing the internet to search for\n" + CODE +
                  ". \nDo you want to retry?",
              "No");
    answer("If you are having problems with Internet access\nyou should place Tallymoor into offline mode to "
           "speed operation.\nPut Tallymoor into offline mode now?",
           "No");
    answerBox("BuySharesPanel::onSearchCode failed. HTTPException : Win32HTTPClient::getResponse - HTTP GET "
              "failed \nwith code: 503 and status: " +
                  TEXT,
              "OK");
    press(form, "Search for stock code");
    press(form, "Cancel");
  });
}

TEST_F(CountedFormatTexts, TextsOfAPage) {
  market().answerWith(MarketFixture::Page::History,
                      "<html><body><table id=\"prices\"><tr><td>" + NAME +
                          "</td><td>1</td><td>1</td><td>1</td><td>1</td></tr></table></body></html>");
  pickViewDate(Date(2026, 2, 2));
  enter(byCommand(TallymoorWindow::ID_BUY), "Buy Shares", [this](FXWindow& form) {
    type(field(form, "Stock code"), CODE);
    whenModal("Stock Search", [this](FXWindow& search) { press(search, "OK"); });
    press(form, "Search for stock code");
    expectShown("the passing status",
                "No price for " + CODE + ": Exception : Date::fromString - no separator: " + NAME,
                find<FXStatusLine>(run())->getText().text());
    press(form, "Cancel");
  });
}

TEST_F(CountedFormatTexts, StatusLine) {
  const String text(TEXT.c_str());
  MainWindow::setNormalStatusText(text);
  expectShown("the status line", TEXT, find<FXStatusLine>(run())->getNormalText().text());
  MainWindow::setStatusText(text);
  expectShown("the passing status", TEXT, find<FXStatusLine>(run())->getText().text());
}

// ---- The desktop ----

class CountedFormatTextsOnTheDesktop : public CountedFormatTexts {
protected:
  CountedFormatTextsOnTheDesktop() { m_desktop.emplace(profile().folder()); }
  static void TearDownTestSuite() { tellCount("format texts on the desktop"); }
  void TearDown() override {
    trayFormat = String();
    CountedFormatTexts::TearDown();
    m_desktop.reset();
  }
  void serveUntil(const std::function<bool()>& condition) {
    runUntil([&] {
      m_desktop->serve();
      return condition();
    });
  }
  TestDesktop& desktop() { return *m_desktop; }

private:
  std::optional<TestDesktop> m_desktop;
};

TEST_F(CountedFormatTextsOnTheDesktop, TipAndBalloon) {
  desktop().startNotifications({"body", "body-markup"});
  desktop().startPanel();
  serveUntil([this] { return run().tray().hasPlace(); });
  deposit();
  buyOne();
  trayFormat = String(FORMATS.c_str());
  TallymoorInternet::Instance().priceUpdater().runPass();
  letEventsPass();
  desktop().panel().ask("ToolTip");
  serveUntil([this] { return desktop().panel().answer().has_value(); });
  const std::string tip = std::get<2>(desktop().panel().answer()->get<TestPanel::ToolTip>());
  expectShown("the tip of the icon", FORMATS + " : ", tip.substr(0, FORMATS.size() + 3));
  {
    BigMutexLock lock;
    run().warnOnce(String(TEXT.c_str()), String(FORMATS.c_str()), String(CODE.c_str()), 1);
  }
  serveUntil([this] { return !desktop().notifications().notices().empty(); });
  expectShown("the title of a balloon", FORMATS, desktop().notifications().notices().back().title);
  expectShown("its text, as markup", escaped(TEXT), desktop().notifications().notices().back().text);
}

} // namespace
} // namespace Tallymoor
