#include "xml/DocumentFile.h"
#include "XmlTestTools.h"
#include "foundation/Constants.h"
#include "support/TestProfile.h"
#include "xml/PortfolioRecords.h"
#include <filesystem>

namespace Tallymoor {
namespace {

class DocumentFileTest : public ::testing::Test {
protected:
  std::size_t filesInFolder() const {
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(m_profile.folder() + "/documents"))
      count += entry.is_regular_file() ? 1u : 0u;
    return count;
  }
  TestProfile m_profile;
  const String m_path = m_profile.path("documents/Portfolios.xml");
};

TEST_F(DocumentFileTest, ADocumentReplacesTheOldOne) {
  TestProfile::writeFile(m_path, "old");
  XMLPortfolios root;
  saveDocument(m_path, root, RECORDS_DTD, newElement<XMLPortfolios>);
  EXPECT_EQ(TestProfile::readFile(m_path),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE Portfolios SYSTEM "
            "\"Tallymoor Records.dtd\">\n<Portfolios/>");
  EXPECT_EQ(filesInFolder(), 1u);
}

TEST_F(DocumentFileTest, ADocumentThatCouldNotBeReadAgainLeavesTheOldOne) {
  TestProfile::writeFile(m_path, "old");
  XMLPortfolios root;
  root.addSubElement(new XMLSharePortfolio, u"SharePortfolios").subElement(u"Name").setValue(u"A&B");
  EXPECT_THROW(saveDocument(m_path, root, RECORDS_DTD, newElement<XMLPortfolios>), Exception);
  EXPECT_EQ(TestProfile::readFile(m_path), "old");
  EXPECT_EQ(filesInFolder(), 1u);
}

TEST_F(DocumentFileTest, ADocumentThatLacksSomethingLeavesTheOldOne) {
  TestProfile::writeFile(m_path, "old");
  XMLPortfolios root;
  XMLElement& portfolio = root.addSubElement(new XMLSharePortfolio, u"SharePortfolios");
  portfolio.subElement(u"HeldShares").addSubElement(new XMLHeldShare, u"HeldShares");
  EXPECT_EQ(failureOf([&] { saveDocument(m_path, root, RECORDS_DTD, newElement<XMLPortfolios>); }),
            String(u"XMLElement::checkSubElements - required at least one BuyEvents in HeldShare"));
  EXPECT_EQ(TestProfile::readFile(m_path), "old");
  EXPECT_EQ(filesInFolder(), 1u);
}

TEST_F(DocumentFileTest, AFolderThatIsNotThereIsAFailure) {
  XMLPortfolios root;
  EXPECT_THROW(saveDocument(m_profile.path("none/x.xml"), root, RECORDS_DTD, newElement<XMLPortfolios>),
               Exception);
}

} // namespace
} // namespace Tallymoor
