#include "XmlTestTools.h"
#include "foundation/Constants.h"
#include "foundation/FileReplacement.h"
#include "support/TestProfile.h"
#include "xml/DocumentFile.h"
#include "xml/DocumentLimits.h"
#include "xml/PortfolioRecords.h"

namespace Tallymoor {
namespace {

/// Records with a comment at every possible place.
const std::string COMMENTED =
    "<!--first--><!--of all--><Portfolios><!--a portfolio--><SharePortfolio><!--its name--><String>Trading"
    "<!--in the name--></String><HeldShares><!--none yet--></HeldShares><SoldShares/><Dividends/>"
    "<CashReserve><!--from <Mum> & \xC3\xA9--><CashEvent><Date>3/3/2006</Date><Constant>1.00</Constant>"
    "<Constant>4</Constant><String>GIFT</String></CashEvent><CashEvent><Date>4/3/2006</Date>"
    "<Constant>2.00</Constant><Constant>4</Constant><String/><!--no words--></CashEvent><!--the end of it-->"
    "</CashReserve><String><!--no index--></String></SharePortfolio><!--no more--></Portfolios><!--behind "
    "all-->";

TEST(ElementCommentsTest, CommentsStandAtTheirPlacesAgain) {
  XMLPortfolios root;
  root.decode(COMMENTED.c_str());
  EXPECT_EQ(encoded(root), COMMENTED);
  EXPECT_EQ(encoded(root), COMMENTED) << "however often";
  const XMLElement& portfolio = root.subElement(u"SharePortfolios");
  EXPECT_EQ(portfolio.subElement(u"Name").value(), u"Trading");
}

TEST(ElementCommentsTest, TheySurviveASaveWithItsDocumentType) {
  const TestProfile profile;
  const String path = profile.path("Portfolios.xml");
  const std::string head =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE Portfolios SYSTEM \"Tallymoor Records.dtd\">\n";
  TestProfile::writeFile(path, head + "<!-- mine -->\n<Portfolios>\n <!-- none -->\n</Portfolios>\n");
  for (int save = 0; save < 2; ++save) {
    XMLPortfolios root;
    root.decode(path);
    saveDocument(path, root, RECORDS_DTD, newElement<XMLPortfolios>);
    EXPECT_EQ(TestProfile::readFile(path), head + "<!-- mine --><Portfolios><!-- none --></Portfolios>");
  }
}

TEST(ElementCommentsTest, TheyGoWithTheElementThatFollows) {
  XMLPortfolios root;
  root.decode(COMMENTED.c_str());
  XMLElement& cash = root.subElement(u"SharePortfolios").subElement(u"CashReserve");
  cash.subElement(u"CashEvents", 0).subElement(u"Value").setValue(u"5.00");
  EXPECT_NE(encoded(root).find("<!--from <Mum> & \xC3\xA9--><CashEvent><Date>3/3/2006</Date><Constant>5.00<"),
            std::string::npos);
  cash.removeSubElement(u"CashEvents", 0);
  EXPECT_EQ(encoded(root).find("Mum"), std::string::npos);
  EXPECT_NE(encoded(root).find("<!--the end of it--></CashReserve>"), std::string::npos);
  root.removeSubElement(u"SharePortfolios", 0);
  EXPECT_EQ(encoded(root),
            "<!--first--><!--of all--><Portfolios><!--no more--></Portfolios><!--behind all-->");
}

TEST(ElementCommentsTest, CopiesHaveThemAndAnotherDocumentDoesNot) {
  XMLPortfolios root;
  root.decode(COMMENTED.c_str());
  XMLPortfolios copy(root);
  EXPECT_EQ(encoded(copy), COMMENTED);
  root.reset();
  root.decode("<Portfolios/>");
  EXPECT_EQ(encoded(root), "<Portfolios/>");
  EXPECT_EQ(encoded(copy), COMMENTED);
  copy = root;
  EXPECT_EQ(encoded(copy), "<Portfolios/>");
}

TEST(ElementCommentsTest, CommentsOfAnAbortedParseAreDiscarded) {
  XMLPortfolios root;
  EXPECT_THROW(root.decode("<Portfolios><!--lost--><Nothing/></Portfolios>"), XMLException);
  root.reset();
  root.decode("<Portfolios/>");
  EXPECT_EQ(encoded(root), "<Portfolios/>");
}

TEST(ElementCommentsTest, OtherDocumentsKeepNone) {
  XMLSample sample;
  sample.decode("<!--a--><Sample><!--b--><Constant>1</Constant></Sample>");
  EXPECT_EQ(encoded(sample).find("<!--"), std::string::npos);
}

TEST(ElementCommentsTest, TheyAreBoundedAsElementsAre) {
  std::string many = "<Portfolios>";
  for (std::size_t i = 0; i < 5 * DocumentLimits::FREE_ELEMENTS; ++i)
    many += "<!---->";
  XMLPortfolios root;
  EXPECT_NE(failureOf([&] { root.decode((many + "</Portfolios>").c_str()); }).find(u"made of empty elements"),
            String::npos);
}

} // namespace
} // namespace Tallymoor
