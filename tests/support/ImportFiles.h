#pragma once
#include <initializer_list>
#include <string>

/// Portfolio files as users import them.
namespace Tallymoor {

/// A portfolio with one deposit on 3 March 2026.
inline std::string portfolio(const std::string& name, const std::string& amount,
                             const std::string& day = "3/3/2026") {
  return "<SharePortfolio><String>" + name +
         "</String><HeldShares/><SoldShares/><Dividends/><CashReserve><CashEvent><Date>" + day +
         "</Date><Constant>" + amount +
         "</Constant><Constant>4</Constant><String>DEPOSIT </String></CashEvent></CashReserve><String/>"
         "</SharePortfolio>";
}

/// A portfolio "Savings" with one entry of each kind. The amounts are placeholders.
inline std::string withTrades() {
  const auto constants = [](std::initializer_list<const char*> names) {
    std::string text;
    for (const std::string name : names)
      text += "<Constant>" + name + "</Constant>";
    return text;
  };
  return "<SharePortfolio><String>Savings</String><HeldShares><HeldShare><String>ABC.AX</String><BuyEvent>"
         "<Date>2/3/2026</Date>" +
         constants({"#bought", "#paid", "#brokerage"}) + "</BuyEvent>" +
         constants({"#least", "#most", "0.00"}) +
         "</HeldShare></HeldShares><SoldShares><SoldShare><String>XYZ.AX</String><SellEvent>"
         "<Date>2/2/2026</Date><Date>3/2/2026</Date>" +
         constants({"#sold", "#cost", "#proceeds", "#buying", "#selling"}) +
         "</SellEvent></SoldShare></SoldShares><Dividends><DividendEvent><String>DIV.AX</String>"
         "<Date>1/3/2026</Date>" +
         constants({"#held", "#rate", "#franked", "#received", "#reinvested"}) + "<String>France</String>" +
         constants({"#tax"}) +
         "</DividendEvent></Dividends><CashReserve><CashEvent><Date>3/3/2026</Date><Constant>9.00</Constant>"
         "<Constant>4</Constant><String>DEPOSIT </String></CashEvent></CashReserve><String/>"
         "</SharePortfolio>";
}

/// A placeholder, a negative value for it, and its name in the error message.
struct SpoiltAmount {
  const char* name;
  const char* value;
  const char* words;
};
inline constexpr SpoiltAmount AMOUNTS[] = {
    {"#bought", "-1.00", "number of the purchase of ABC.AX on 02/03/2026"},
    {"#paid", "-5.0000", "buy price of the purchase of ABC.AX on 02/03/2026"},
    {"#brokerage", "-0.01", "brokerage of the purchase of ABC.AX on 02/03/2026"},
    {"#least", "-1.0000", "minimum price of the stock ABC.AX"},
    {"#most", "-1.0000", "maximum price of the stock ABC.AX"},
    {"#sold", "-1.00", "number of the sale of XYZ.AX on 03/02/2026"},
    {"#cost", "-1.0000", "buy price of the sale of XYZ.AX on 03/02/2026"},
    {"#proceeds", "-5.0000", "sell price of the sale of XYZ.AX on 03/02/2026"},
    {"#buying", "-1.00", "buy brokerage of the sale of XYZ.AX on 03/02/2026"},
    {"#selling", "-1.00", "sell brokerage of the sale of XYZ.AX on 03/02/2026"},
    {"#held", "-1.00", "number of shares of the dividend of DIV.AX on 01/03/2026"},
    {"#rate", "-0.100000", "dividend rate of the dividend of DIV.AX on 01/03/2026"},
    {"#franked", "-1", "percent franked of the dividend of DIV.AX on 01/03/2026"},
    {"#received", "-1.00", "number of shares received of the dividend of DIV.AX on 01/03/2026"},
    {"#reinvested", "-1.0000", "share price of the dividend of DIV.AX on 01/03/2026"},
    {"#tax", "-2.20", "withholding tax of the dividend of DIV.AX on 01/03/2026"},
};

/// Replaces the remaining placeholders by valid amounts.
inline std::string written(std::string portfolio) {
  for (const SpoiltAmount& amount : AMOUNTS)
    if (const std::size_t at = portfolio.find(amount.name); at != std::string::npos)
      portfolio.replace(at, std::string(amount.name).size(), "1");
  return portfolio;
}

inline std::string document(const std::string& portfolios) {
  return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
         "<!DOCTYPE Portfolios SYSTEM \"Tallymoor Records.dtd\">\n"
         "<Portfolios>" +
         portfolios + "</Portfolios>";
}

} // namespace Tallymoor
