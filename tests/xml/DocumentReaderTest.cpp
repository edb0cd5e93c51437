// Hostile documents.
#include "xml/DocumentReader.h"
#include "XmlTestTools.h"
#include "support/TestProfile.h"
#include "xml/CapitalRecord.h"
#include "xml/LocatorDocuments.h"
#include "xml/PortfolioRecords.h"
#include "xml/PriceCache.h"
#include "xml/SmallDocuments.h"
#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/inotify.h>
#include <sys/socket.h>
#include <unistd.h>

namespace Tallymoor {
namespace {

const String NO_DECLARATIONS =
    u"XMLElement::decode, parse exception in Sample : declarations in the document are not accepted";

/// A port on the loopback interface that records whether a connection was made.
class Listener {
public:
  Listener() : m_socket(socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    EXPECT_EQ(bind(m_socket, reinterpret_cast<sockaddr*>(&address), size), 0);
    EXPECT_EQ(listen(m_socket, 4), 0);
    EXPECT_EQ(getsockname(m_socket, reinterpret_cast<sockaddr*>(&address), &size), 0);
    m_port = ntohs(address.sin_port);
  }
  ~Listener() { close(m_socket); }
  std::string url() const { return "http://127.0.0.1:" + std::to_string(m_port) + "/x.dtd"; }
  bool somebodyCame() const {
    pollfd waiting{m_socket, POLLIN, 0};
    return poll(&waiting, 1, 0) > 0;
  }

private:
  int m_socket;
  int m_port = 0;
};

/// Records whether a file was opened.
class OpenWatch {
public:
  explicit OpenWatch(const String& path) : m_queue(inotify_init1(IN_NONBLOCK)) {
    EXPECT_GE(inotify_add_watch(m_queue, path.toUTF8().c_str(), IN_OPEN), 0);
  }
  ~OpenWatch() { close(m_queue); }
  bool opened() const {
    char events[4096];
    return read(m_queue, events, sizeof events) > 0;
  }

private:
  int m_queue;
};

class DocumentReaderTest : public ::testing::Test {
protected:
  String failureOfReading(const std::string& text) {
    XMLSample sample;
    return failureOf([&] { sample.decode(text.c_str()); });
  }
  TestProfile m_profile;
};

TEST_F(DocumentReaderTest, TheWatchesOfThisTestWork) {
  const String path = m_profile.path("seen.txt");
  TestProfile::writeFile(path, "x");
  OpenWatch watch(path);
  EXPECT_FALSE(watch.opened());
  TestProfile::readFile(path);
  EXPECT_TRUE(watch.opened());
}

TEST_F(DocumentReaderTest, ANamedDocumentTypeIsNeitherOpenedNorNeeded) {
  const String dtd = m_profile.path("Tallymoor Records.dtd");
  TestProfile::writeFile(dtd, "<!ENTITY e 'x'>");
  const String path = m_profile.path("document.xml");
  Listener listener;
  for (const std::string& name : {std::string("Tallymoor Records.dtd"), dtd.toUTF8(),
                                  "file://" + dtd.toUTF8(), listener.url(), std::string("missing.dtd")}) {
    TestProfile::writeFile(path, "<!DOCTYPE Sample SYSTEM \"" + name +
                                     "\">\n<Sample><Constant>1</Constant></Sample>");
    OpenWatch watch(dtd);
    XMLSample sample;
    sample.decode(path);
    EXPECT_EQ(textValue(sample, u"First"), String(u"1"));
    EXPECT_FALSE(watch.opened()) << name;
  }
  EXPECT_FALSE(listener.somebodyCame());
}

TEST_F(DocumentReaderTest, AnEntityBombIsRefusedAtItsFirstDeclaration) {
  std::string bomb = "<!DOCTYPE Sample [<!ENTITY a0 'aaaaaaaaaaaaaaaa'>";
  for (int i = 1; i < 30; ++i) {
    bomb += "<!ENTITY a" + std::to_string(i) + " '";
    for (int n = 0; n < 10; ++n)
      bomb += "&a" + std::to_string(i - 1) + ";";
    bomb += "'>";
  }
  EXPECT_EQ(failureOfReading(bomb + "]><Sample><String>&a29;</String></Sample>"), NO_DECLARATIONS);
}

TEST_F(DocumentReaderTest, ADeclaredEntityIsRefusedEvenIfUnused) {
  EXPECT_EQ(failureOfReading("<!DOCTYPE Sample [<!ENTITY a 'b'>]><Sample/>"), NO_DECLARATIONS);
  EXPECT_EQ(failureOfReading("<!DOCTYPE Sample [<!ENTITY % a 'b'>]><Sample/>"), NO_DECLARATIONS);
  EXPECT_EQ(
      failureOfReading("<!DOCTYPE Sample [<!NOTATION n SYSTEM 'n'><!ENTITY a SYSTEM 'b' NDATA n>]><Sample/>"),
      NO_DECLARATIONS);
}

TEST_F(DocumentReaderTest, ExternalEntitiesOpenNothing) {
  const String secret = m_profile.path("secret.txt");
  TestProfile::writeFile(secret, "secret");
  Listener listener;
  OpenWatch watch(secret);
  for (const std::string& target : {"file://" + secret.toUTF8(), secret.toUTF8(), listener.url()}) {
    EXPECT_EQ(failureOfReading("<!DOCTYPE Sample [<!ENTITY a SYSTEM '" + target +
                               "'>]><Sample><String>&a;</String></Sample>"),
              NO_DECLARATIONS);
    EXPECT_EQ(failureOfReading("<!DOCTYPE Sample [<!ENTITY % a SYSTEM '" + target + "'> %a;]><Sample/>"),
              NO_DECLARATIONS);
    EXPECT_EQ(failureOfReading("<!DOCTYPE Sample [<!ENTITY a PUBLIC 'p' '" + target + "'>]><Sample/>"),
              NO_DECLARATIONS);
  }
  EXPECT_FALSE(watch.opened());
  EXPECT_FALSE(listener.somebodyCame());
}

TEST_F(DocumentReaderTest, SchemaLocationsOpenNothing) {
  Listener listener;
  XMLSample sample;
  sample.decode(
      ("<Sample xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' xsi:noNamespaceSchemaLocation='" +
       listener.url() + "' xsi:schemaLocation='urn:x " + listener.url() + "'/>")
          .c_str());
  EXPECT_FALSE(listener.somebodyCame());
}

TEST_F(DocumentReaderTest, OtherDeclarationsAreRefusedToo) {
  for (const char* declaration : {"<!ATTLIST Sample a CDATA 'much'>", "<!ELEMENT Sample ANY>",
                                  "<!NOTATION n SYSTEM 'a'>", "<!-- a comment -->", ""})
    EXPECT_EQ(failureOfReading("<!DOCTYPE Sample [" + std::string(declaration) + "]><Sample/>"),
              NO_DECLARATIONS)
        << declaration;
}

TEST_F(DocumentReaderTest, DeclarationsAreRefusedBeforeTheyAreRead) {
  // Not well-formed either: reading further would give a syntax error.
  std::string choices;
  for (int i = 0; i < 100000; ++i)
    choices += "b|";
  EXPECT_EQ(failureOfReading("<!DOCTYPE Sample [<!ELEMENT a (" + choices), NO_DECLARATIONS);
}

TEST_F(DocumentReaderTest, AnUndeclaredEntityIsAFailure) {
  EXPECT_TRUE(failureOfReading("<Sample><String>&nbsp;</String></Sample>")
                  .startsWith(u"XMLElement::decode, parse fatal error in Sample : "));
}

TEST_F(DocumentReaderTest, ADocumentTypeWithoutDeclarationsIsRead) {
  XMLSample sample;
  sample.decode("<!DOCTYPE Sample SYSTEM \"Sample.dtd\"><Sample><Constant>1</Constant></Sample>");
  EXPECT_EQ(textValue(sample, u"First"), String(u"1"));
}

std::string nested(const std::string& tag, std::size_t levels) {
  std::string text;
  for (std::size_t i = 0; i < levels; ++i)
    text += "<" + tag + ">";
  for (std::size_t i = 0; i < levels; ++i)
    text += "</" + tag + ">";
  return text;
}

TEST_F(DocumentReaderTest, NestingIsBounded) {
  // Only an element with its parent's name can nest without limit.
  const String tooDeep = u"XMLElement::decode, parse exception in Sample : elements are nested too deeply";
  EXPECT_EQ(failureOfReading(nested("Sample", 100000)), tooDeep);
  EXPECT_EQ(failureOfReading(nested("Sample", DocumentReader::MAX_DEPTH + 1)), tooDeep);
  XMLSample sample;
  sample.decode(nested("Sample", DocumentReader::MAX_DEPTH).c_str());
  // The depth of an aborted document does not count for the next one.
  failureOf([&] { sample.decode(nested("Sample", 100000).c_str()); });
  sample.reset();
  sample.decode(nested("Sample", DocumentReader::MAX_DEPTH).c_str());
}

class XMLNest : public XMLElement {
public:
  XMLNest() : XMLElement(u"Nest") { registerSubElements(u"Twig", u"Twigs", twig, false); }
  static XMLElement* twig();
};
class XMLTwig : public XMLElement {
public:
  XMLTwig() : XMLElement(u"Twig") { registerSubElements(u"Nest", u"Nests", newElement<XMLNest>, false); }
};
XMLElement* XMLNest::twig() {
  return new XMLTwig;
}

TEST_F(DocumentReaderTest, ARecursiveTreeIsBoundedToo) {
  const auto text = [](std::size_t pairs) {
    std::string opening;
    std::string closing;
    for (std::size_t i = 0; i < pairs; ++i) {
      opening += "<Nest><Twig>";
      closing += "</Twig></Nest>";
    }
    return opening + closing;
  };
  XMLNest nest;
  EXPECT_EQ(failureOf([&] { nest.decode(text(50000).c_str()); }),
            String(u"XMLElement::decode, parse exception in Nest : elements are nested too deeply"));
  nest.reset();
  nest.decode(text(DocumentReader::MAX_DEPTH / 2).c_str());
  XMLNest copy(nest);
  EXPECT_EQ(encoded(copy), encoded(nest));
}

TEST_F(DocumentReaderTest, AMillionSiblingsAreRead) {
  std::string text = "<Sample>";
  for (int i = 0; i < 1000000; ++i)
    text += "<Item>12345</Item>";
  XMLSample sample;
  sample.decode((text + "</Sample>").c_str());
  EXPECT_EQ(sample.numSubElements(u"Items"), 1000000u);
}

const String EMPTY_ELEMENTS = u"the document is made of empty elements";

String refusal(const String& root, const String& reason) {
  return u"XMLElement::decode, parse exception in " + root + u" : " + reason;
}

std::string repeated(const std::string& piece, std::size_t count) {
  std::string text;
  text.reserve(piece.size() * count);
  for (std::size_t i = 0; i < count; ++i)
    text += piece;
  return text;
}

TEST_F(DocumentReaderTest, ElementsWithoutContentAreBounded) {
  EXPECT_EQ(failureOfReading("<Sample>" + repeated("<Item/>", 1000000) + "</Sample>"),
            refusal(u"Sample", EMPTY_ELEMENTS));
  XMLSample sample;
  sample.decode(("<Sample>" + repeated("<Item/>", DocumentLimits::FREE_ELEMENTS) + "</Sample>").c_str());
  EXPECT_EQ(sample.numSubElements(u"Items"), DocumentLimits::FREE_ELEMENTS);
}

TEST_F(DocumentReaderTest, ImplicitElementsCountToo) {
  XMLPortfolios records;
  EXPECT_EQ(failureOf([&] {
              records.decode(("<Portfolios><SharePortfolio><CashReserve>" +
                              repeated("<CashEvent></CashEvent>", 100000) +
                              "</CashReserve></SharePortfolio></Portfolios>")
                                 .c_str());
            }),
            refusal(u"Portfolios", EMPTY_ELEMENTS));
}

/// Writes and reads back a number of empty elements of one kind.
void expectRead(XMLElement& root, XMLElement& parent, std::u16string_view kind, XMLElement::Factory create) {
  for (int i = 0; i < 30000; ++i)
    parent.addSubElement(create(), kind);
  const std::string document = encoded(root);
  root.reset();
  root.decode(document.c_str());
  EXPECT_EQ(parent.numSubElements(kind), 30000u);
  root.reset();
}

TEST_F(DocumentReaderTest, TheSmallestElementsOfTheProgramAreRead) {
  XMLPortfolios records;
  expectRead(records, records, u"SharePortfolios", newElement<XMLSharePortfolio>);
  XMLHeldShare held;
  expectRead(held, held, u"BuyEvents", newElement<XMLBuyEvent>);
  XMLSoldShare sold;
  expectRead(sold, sold, u"SellEvents", newElement<XMLSellEvent>);
  XMLBuyEvent parcel;
  expectRead(parcel, parcel, u"Adjustments", newElement<XMLSplitAdjustment>);
  XMLDividends dividends;
  expectRead(dividends, dividends, u"DividendEvents", newElement<XMLDividendEvent>);
  XMLCashReserve cash;
  expectRead(cash, cash, u"CashEvents", newElement<XMLCashEvent>);
  XMLShareValues prices;
  expectRead(prices, prices, u"Values", XMLShareValue::create);
  XMLSharePortfolioCapitalRecord capital;
  expectRead(capital, capital, u"DayCaps", XMLDayCap::create);
  XMLDayCap day;
  expectRead(day, day, u"ShareVals", XMLShareVal::create);
}

TEST_F(DocumentReaderTest, TheTextOfAnElementIsBounded) {
  const auto document = [](std::size_t length) {
    return "<Sample><String>" + std::string(length, 't') + "</String></Sample>";
  };
  XMLSample sample;
  sample.decode(document(DocumentLimits::LONGEST_TEXT).c_str());
  EXPECT_EQ(textValue(sample, u"Text").size(), DocumentLimits::LONGEST_TEXT);
  EXPECT_EQ(failureOfReading(document(DocumentLimits::LONGEST_TEXT + 1)),
            refusal(u"Sample", u"the text of an element is too long"));
}

TEST_F(DocumentReaderTest, TextBetweenElementsIsNotKept) {
  XMLSample sample;
  sample.decode(("<Sample>" + std::string(2 * DocumentLimits::LONGEST_TEXT, '\n') + "</Sample>").c_str());
  EXPECT_EQ(sample.value(), String());
}

TEST_F(DocumentReaderTest, TheAttributesOfAnElementAreBounded) {
  const auto attributes = [](std::size_t count) {
    std::string text;
    for (std::size_t i = 0; i < count; ++i)
      text += " a" + std::to_string(i) + "='" + std::to_string(i) + "'";
    return text;
  };
  const String tooMany = refusal(u"Sample", u"an element has too many attributes");
  XMLSample sample;
  sample.decode(("<Sample" + attributes(DocumentLimits::MOST_ATTRIBUTES) + "/>").c_str());
  EXPECT_EQ(sample.attribute(u"a255"), String(u"255"));
  EXPECT_EQ(failureOfReading("<Sample" + attributes(DocumentLimits::MOST_ATTRIBUTES + 1) + "/>"), tooMany);
  // An element with its parent's name adds its attributes to the parent.
  EXPECT_EQ(failureOfReading("<Sample" + attributes(200) + "><Sample" + attributes(100) + "/></Sample>"),
            tooMany);
}

TEST_F(DocumentReaderTest, TheMemoryOfTheParserIsBounded) {
  const String tooMuch =
      refusal(u"Sample", u"a name, attribute or comment is too long, or there are too many of them");
  const std::string much(DocumentLimits::PARSER_MEMORY, 'x');
  std::string attributes;
  for (int i = 0; i < 300000; ++i)
    attributes += " a" + std::to_string(i) + "=''";
  XMLSample sample;
  for (const std::string& document :
       {"<Sample><!--" + much + "--></Sample>", "<Sample><?p " + much + "?></Sample>",
        "<Sample a='" + much + "'/>", "<" + much + "/>", "<Sample " + much + "='1'/>",
        "<Sample><String>&" + much + ";</String></Sample>",
        "<!DOCTYPE Sample SYSTEM '" + much + "'><Sample/>", "<Sample" + attributes + "/>"}) {
    EXPECT_EQ(failureOf([&] { sample.decode(document.c_str()); }), tooMuch) << document.substr(0, 20);
    sample.reset();
    sample.decode("<Sample><String>fine</String></Sample>");
    EXPECT_EQ(textValue(sample, u"Text"), String(u"fine"));
    sample.reset();
  }
}

TEST_F(DocumentReaderTest, DeliveredDocumentsAreShort) {
  const String path = m_profile.path("delivered.xml");
  const std::unique_ptr<XMLElement> roots[] = {std::make_unique<XMLCurrentPriceLocators>(),
                                               std::make_unique<XMLCodeSearchLocators>(),
                                               std::make_unique<XMLHistoricalPricesLocators>(),
                                               std::make_unique<XMLCountryOptions>(),
                                               std::make_unique<XMLVersionsAvailable>(),
                                               std::make_unique<XMLAdvertisement>(),
                                               std::make_unique<XMLXslStylesheet>()};
  for (const auto& root : roots) {
    const std::string name = root->name().toUTF8();
    const std::string document =
        "<" + name + ">" + repeated(" ", 2 * DocumentLimits::MEGABYTE) + "</" + name + ">";
    const String tooLong = refusal(root->name(), u"the document is longer than 2 MB");
    EXPECT_EQ(failureOf([&] { root->decode(document.c_str()); }), tooLong) << name;
    root->reset();
    TestProfile::writeFile(path, document);
    EXPECT_EQ(failureOf([&] { root->decode(path); }), tooLong) << name;
  }
}

TEST_F(DocumentReaderTest, RowsOfPricesAreBounded) {
  const std::size_t most = DocumentLimits::of(u"ShareValues").siblings;
  const std::string row =
      "<ShareValue><Date>3/3/2006</Date><Constant>1.0000</Constant><Constant>1.0000</Constant>"
      "<Constant>1.0000</Constant><Constant>0</Constant></ShareValue>";
  XMLShareValues prices;
  prices.decode(("<ShareValues>" + repeated(row, most) + "</ShareValues>").c_str());
  EXPECT_EQ(prices.numSubElements(u"Values"), most);
  prices.reset();
  EXPECT_EQ(failureOf([&] {
              prices.decode(("<ShareValues>" + repeated(row, most + 1) + "</ShareValues>").c_str());
            }),
            refusal(u"ShareValues", u"an element holds more than 65000 others"));
}

TEST_F(DocumentReaderTest, ALongFileThatIsCutShortIsRefusedBeforeItIsRead) {
  const String path = m_profile.path("long.xml");
  const std::string items = repeated("<Item>123456789</Item>", 400000);
  TestProfile::writeFile(path, "<Sample>" + items + "</Samp");
  XMLSample sample;
  EXPECT_EQ(failureOf([&] { sample.decode(path); }), refusal(u"Sample", u"the document is cut short"));
  EXPECT_EQ(sample.numSubElements(u"Items"), 0u);
  TestProfile::writeFile(path, "<Sample>" + items + "</Sample>\n<!-- the end -->\n");
  sample.decode(path);
  EXPECT_EQ(sample.numSubElements(u"Items"), 400000u);
}

TEST_F(DocumentReaderTest, ALongFileIsReadInItsOwnEncoding) {
  const String path = m_profile.path("wide.xml");
  std::string wide("\xFF\xFE");
  for (const char c : "<Sample>" + repeated("<Item>123456789</Item>", 150000) + "</Sample>")
    wide += {c, '\0'};
  TestProfile::writeFile(path, wide);
  XMLSample sample;
  sample.decode(path);
  EXPECT_EQ(sample.numSubElements(u"Items"), 150000u);
}

const std::string RECORDS =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE Portfolios SYSTEM \"Tallymoor "
    "Records.dtd\">\n<Portfolios>"
    "<SharePortfolio><String>Trad\xC3\xA9</String><HeldShares><HeldShare><String>A&amp;C.AX</"
    "String><BuyEvent>"
    "<Date>3/3/2006</Date><Constant>100.00</Constant><Constant/><Constant/><String><![CDATA[x]]></String>"
    "</BuyEvent><Constant/></HeldShare></HeldShares><!-- c --><CashReserve><CashEvent><Date>3/3/2006</Date>"
    "</CashEvent></CashReserve></SharePortfolio></Portfolios>";

TEST_F(DocumentReaderTest, ADocumentCutAnywhereIsRefused) {
  XMLPortfolios whole;
  whole.decode(RECORDS.c_str());
  for (std::size_t length = 0; length < RECORDS.size(); ++length) {
    XMLPortfolios root;
    EXPECT_THROW(root.decode(RECORDS.substr(0, length).c_str()), XMLException) << length;
  }
}

TEST_F(DocumentReaderTest, ADocumentCutAnywhereIsRefusedByATreeThatReadsOn) {
  XMLPortfolios root;
  for (std::size_t length = 0; length < RECORDS.size(); ++length) {
    EXPECT_THROW(root.decode(RECORDS.substr(0, length).c_str()), XMLException) << length;
    root.reset();
  }
  root.decode(RECORDS.c_str());
  EXPECT_EQ(root.numSubElements(u"SharePortfolios"), 1u);
}

TEST_F(DocumentReaderTest, ADocumentDamagedAnywhereIsReadOrRefused) {
  std::size_t refused = 0;
  for (std::size_t place = 0; place < RECORDS.size(); ++place)
    for (const char byte : {'<', '\xFF', '&', 'x', '\x01'}) {
      std::string spoilt = RECORDS;
      spoilt[place] = byte;
      XMLPortfolios root;
      try {
        root.decode(spoilt.c_str());
      } catch (const XMLException&) {
        ++refused;
      }
    }
  EXPECT_GT(refused, RECORDS.size() * 3);
}

TEST_F(DocumentReaderTest, ATruncatedCapitalRecordReleasesItsElements) {
  const std::string text =
      "<SharePortfolioCapitalRecord><String>T</String><DayCap><Date>3/3/2006</Date><Constant>7"
      "</Constant><ShareVal><String>A</String><Constant>1</Constant></ShareVal></DayCap>"
      "</SharePortfolioCapitalRecord>";
  const std::size_t inUse = XMLShareVal::pool().numInUse();
  for (std::size_t length = 0; length < text.size(); ++length) {
    XMLSharePortfolioCapitalRecord record;
    EXPECT_THROW(record.decode(text.substr(0, length).c_str()), XMLException) << length;
  }
  EXPECT_EQ(XMLShareVal::pool().numInUse(), inUse);
}

} // namespace
} // namespace Tallymoor
