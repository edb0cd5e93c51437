#include "session/ImportedPortfolios.h"
#include "support/ImportFiles.h"
#include "support/MessageOf.h"
#include "support/TestProfile.h"
#include "xml/Leaves.h"
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

namespace Tallymoor {
namespace {

class ImportedPortfoliosTest : public ::testing::Test {
protected:
  TestProfile profile;
};

TEST_F(ImportedPortfoliosTest, NegativeAmountsAreRefusedWithStockAndField) {
  const String path = profile.path("spoilt.xml");
  for (const auto& [name, value, words] : AMOUNTS) {
    std::string spoilt = withTrades();
    const std::size_t at = spoilt.find(name);
    ASSERT_NE(std::string::npos, at) << name;
    TestProfile::writeFile(path, document(written(spoilt.replace(at, std::string(name).size(), value))));
    EXPECT_EQ("In the portfolio \"Savings\", the " + std::string(words) + " is " + value +
                  ".\nIt can't be less than zero.",
              messageOf([&] { ImportedPortfolios{path}; }).toUTF8());
  }
}

TEST_F(ImportedPortfoliosTest, ValidAmountsAndNegativeCashAreImported) {
  std::string sound = written(withTrades());
  sound.replace(sound.find(">9.00<"), 6, ">-9.00<");
  const String path = profile.path("sound.xml");
  TestProfile::writeFile(path, document(sound));
  const auto portfolios = ImportedPortfolios(path).take();
  ASSERT_EQ(1u, portfolios.size());
  const XMLElement& cash = portfolios.front()->subElement(u"CashReserve").subElement(u"CashEvents");
  EXPECT_EQ(String(u"-9.00"), textValue(cash, u"Value"));
}

TEST_F(ImportedPortfoliosTest, FileThatDoesNotExistIsRefused) {
  EXPECT_EQ(u"There is no such file: /nowhere/at all.xml",
            messageOf([] { ImportedPortfolios{u"/nowhere/at all.xml"}; }));
}

TEST_F(ImportedPortfoliosTest, FileThatIsFarTooLongIsNotRead) {
  const std::string path = profile.folder() + "/long.xml";
  std::ofstream(path) << "<Portfolios>";
  std::filesystem::resize_file(path, ImportedPortfolios::LARGEST_FILE + 1); // A sparse file.
  EXPECT_EQ(u"The file is longer than 64 MB, far more than any portfolios take.",
            messageOf([&] { ImportedPortfolios{String(path.c_str())}; }));
}

TEST_F(ImportedPortfoliosTest, NumberOfPortfoliosIsBounded) {
  const auto fileOf = [this](std::size_t count) {
    std::string portfolios;
    for (std::size_t i = 0; i < count; ++i)
      portfolios += portfolio("P" + std::to_string(i), "1.00");
    const String path = profile.path("many.xml");
    TestProfile::writeFile(path, document(portfolios));
    return path;
  };
  const ImportedPortfolios most(fileOf(ImportedPortfolios::MOST_PORTFOLIOS));
  EXPECT_EQ(ImportedPortfolios::MOST_PORTFOLIOS, most.names().size());
  EXPECT_EQ(u"The file holds more than 1000 portfolios.",
            messageOf([&] { ImportedPortfolios{fileOf(ImportedPortfolios::MOST_PORTFOLIOS + 1)}; }));
  const std::string summary = importSummary(most.names()).toUTF8();
  EXPECT_TRUE(summary.starts_with("The following share portfolios were imported:\nP0, P1, "));
  EXPECT_TRUE(summary.ends_with(", P49 and 950 more"));
}

} // namespace
} // namespace Tallymoor
