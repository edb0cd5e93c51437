#pragma once
#include "books/SharePortfolioUser.h"
#include "session/BookQuestions.h"
#include "support/FakeUserInteraction.h"
#include "support/TestProfile.h"
#include "xml/PortfolioRecords.h"
#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <optional>
#include <sstream>
#include <vector>

namespace Tallymoor {

/// Records the progress of lengthy work and can cancel it.
class RecordingProgress : public Progress {
public:
  void setTotal(unsigned) override {}
  void step(unsigned increment, const String&) override { steps += increment; }
  void setText(const String& text) override { texts.push_back(text); }
  bool isCancelled() const override {
    return (cancelAfter && steps >= *cancelAfter) ||
           (cancelAtText && std::find(texts.begin(), texts.end(), *cancelAtText) != texts.end());
  }

  std::vector<String> texts;
  unsigned steps = 0;
  std::optional<unsigned> cancelAfter;
  std::optional<String> cancelAtText; ///< Cancels when this text is shown.
};

/// A user who watches the progress dialog.
class BooksInteraction : public FakeUserInteraction {
public:
  bool runLengthy(const String& caption, const String& heading, unsigned steps, HasLengthyFunctions& work,
                  int argument) override {
    lengthyCaption = caption;
    lengthyHeading = heading;
    lengthySteps = steps;
    lengthyArgument = argument;
    if (duringLengthy)
      duringLengthy();
    work.runLengthyFunction(progress, argument);
    return !progress.isCancelled();
  }

  bool isStopWanted() override { return stopWanted && stopWanted(); }

  RecordingProgress progress;
  std::function<bool()> stopWanted;
  String lengthyCaption;
  String lengthyHeading;
  unsigned lengthySteps = 0;
  int lengthyArgument = 0;
  std::function<void()> duringLengthy;
};

/// A portfolio named "Trading" on Tuesday, 3 March 2026. Prices come from where a derived test has them.
class PortfolioTest : public testing::Test {
protected:
  PortfolioTest() { m_portfolio.subElement(u"Name").setValue(u"Trading"); }

  void open(MarketPrices& prices) {
    m_user = std::make_unique<SharePortfolioUser>(m_portfolio, prices);
    m_interaction.clearCalls();
  }

  SharePortfolioUser& user() { return *m_user; }
  SharePortfolioCapitalRecordUser& record() { return m_user->capitalRecord(); }

  virtual void setPrice(const String& code, const Date& day, double close) = 0;
  /// Sets the same close on every day, including weekends.
  void setPrices(const String& code, const Date& first, const Date& last, double close) {
    for (Date day = first; day <= last; day.addDays(1))
      setPrice(code, day, close);
  }

  /// The price of the day, after a question about a split.
  double priceWithSplitCheck(const String& code, const Date& day) {
    return AskingPortfolio(user()).checkPriceForSplit(code, day).price.price;
  }

  XMLBuyEvent& parcel(const String& code, std::size_t place = 0) {
    return user().findHeldShare(code)->parcels()[place];
  }
  XMLSellEvent& sale(const String& code, std::size_t place = 0) {
    return user().findSoldShare(code)->sales()[place];
  }
  std::size_t numParcels(const String& code) {
    const XMLHeldShare* stock = user().findHeldShare(code);
    return stock ? stock->parcels().size() : 0;
  }
  std::size_t numSales(const String& code) {
    const XMLSoldShare* stock = user().findSoldShare(code);
    return stock ? stock->sales().size() : 0;
  }
  std::size_t numCashEntries() { return m_portfolio.cashEvents().size(); }
  /// "3/3/2026 1 100.00 DEPOSIT x": date, type, value and description.
  String cashEntryText(std::size_t place) {
    const auto& entry = m_portfolio.cashEvents()[place];
    return textValue(entry, u"Date") + u' ' + textValue(entry, u"Type") + u' ' + textValue(entry, u"Value") +
           u' ' + textValue(entry, u"Description");
  }
  /// Adds a sale with the cost and proceeds that sellShares would have recorded.
  XMLSellEvent& addSale(const String& code, const Date& bought, const Date& sold, double number,
                        double buyPrice, double sellPrice) {
    XMLSoldShare* stock = user().findSoldShare(code);
    if (!stock) {
      stock = &m_portfolio.soldShares().add();
      stock->setCode(code);
    }
    XMLSellEvent& event = stock->sales().add();
    event.subElement(u"BuyDate").setValue(bought.toString(DATE_DISPLAY_DMY));
    event.subElement(u"SellDate").setValue(sold.toString(DATE_DISPLAY_DMY));
    event.subElement(u"NumHeld").setValue(String::fromDouble(number, 2));
    event.subElement(u"BuyPrice").setValue(String::fromDouble(buyPrice, 4));
    event.subElement(u"SellPrice").setValue(String::fromDouble(sellPrice, 4));
    event.subElement(u"BuyBrokerage").setValue(u"0.00");
    event.subElement(u"SellBrokerage").setValue(u"0.00");
    return event;
  }
  void addAdjustment(XMLParcel& event, const Date& start, std::int32_t factor) {
    user().setAdjustment(event.adjustments().add(), start, factor, false);
  }

  /// A recorded day: "2/3/2026 cash 100.00 injected 100.00; ABC.AX 10.00 x 5.00"
  String dayOf(const Date& day) {
    const XMLElement& dayCap = record().dayCapFor(day);
    String text = textValue(dayCap, u"Date") + u" cash " + textValue(dayCap, u"CashTotal");
    if (dayCap.numSubElements(u"CashInjected") > 0)
      text = text + u" injected " + textValue(dayCap, u"CashInjected");
    for (std::size_t i = 0; i < dayCap.numSubElements(u"ShareVals"); ++i) {
      const XMLElement& shareVal = dayCap.subElement(u"ShareVals", i);
      text = text + u"; " + textValue(shareVal, u"Code") + u' ' + textValue(shareVal, u"Number") + u" x " +
             textValue(shareVal, u"Price");
    }
    return text;
  }

  /// The portfolio's XML.
  String encodedPortfolio() {
    std::ostringstream text;
    m_portfolio.encode(text);
    return String::fromUTF8(text.str());
  }

  /// The message thrown by the operation; empty if nothing is thrown.
  template <class Operation>
  static String messageOf(Operation operation) {
    try {
      operation();
    } catch (const Exception& failure) {
      return failure.message();
    }
    return String();
  }

  using Kind = FakeUserInteraction::Kind;

  const Date m_today{2026, 3, 3};
  TestProfile m_profile{"en_AU", m_today};
  BooksInteraction m_interaction;
  XMLSharePortfolio m_portfolio;
  std::unique_ptr<SharePortfolioUser> m_user;
};

} // namespace Tallymoor
