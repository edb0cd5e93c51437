#include "support/updates/UpdatesTest.h"
#include "updates/UpdateHandover.h"
#include "xml/CountryOfResidence.h"
#include <gmock/gmock.h>
#include <thread>
#include <unistd.h>

namespace Tallymoor {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

const char* const MISSING = "Updates::getUpdateForBinFile - failed to find local file for update: ";
const char* const MULTIPLE = "Updates::getUpdateForBinFile - multiple matches for ";
const char* const PROBLEM = "Updates::getBinaryUpdates - Problem getting updates: ";
const char* const FAILED = "Updates::getBinaryUpdates failed: ";

// --- The check for updates

TEST_F(UpdatesTest, ReadsTheVersionsOfTheLocalDocuments) {
  writeDocument("CodeSearchLocators.xml", locators("CodeSearchLocators.xml", 7));
  writeDocument("HistoricalPricesLocators.xml", locators("HistoricalPricesLocators.xml", 8));
  writeDocument("CountryConfig.xml", countries(9));
  TestProfile::writeFile(stylesheetPath(), stylesheet(11));
  const Updates updates(service().settings());
  EXPECT_EQ(5, updates.currentPricesVersion());
  EXPECT_EQ(7, updates.codeSearchVersion());
  EXPECT_EQ(8, updates.historicalPricesVersion());
  EXPECT_EQ(9, updates.countryConfigVersion());
  EXPECT_EQ(11, updates.stylesheetVersion());
  EXPECT_TRUE(std::filesystem::is_directory("updates")) << "it makes the folder for updates";
}

TEST_F(UpdatesTest, LocalDocumentsThatAreMissingOrDamagedCountAsVersion0) {
  std::filesystem::remove(stylesheetPath().toUTF8());
  writeDocument("CountryConfig.xml", "<Country");
  const Updates updates(service().settings());
  EXPECT_EQ(0, updates.stylesheetVersion());
  EXPECT_EQ(0, updates.countryConfigVersion());
}

TEST_F(UpdatesTest, AsksByTheNamesOfTheLists) {
  Updates updates(service().settings());
  EXPECT_FALSE(updates.getConfigUpdates(true));
  EXPECT_FALSE(updates.getBinaryUpdates(true));
  EXPECT_THAT(service().asked(), ElementsAre("configupdates.xml", "binaryupdates.xml"));
}

TEST_F(UpdatesTest, NewerDocumentIsAnUpdateAndAnEqualOrOlderOneIsNot) {
  service().offerDocuments({{"CountryConfig.xml", "5.9.9"}});
  EXPECT_FALSE(documentsNewer()) << "minor and patch play no part";
  service().offerDocuments({{"CountryConfig.xml", "4.0.0"}});
  EXPECT_FALSE(documentsNewer());
  service().offerDocuments({{"CountryConfig.xml", "6.0.0"}});
  EXPECT_TRUE(documentsNewer());
}

TEST_F(UpdatesTest, EachOfTheFiveDocumentsCanBeUpdated) {
  for (const char* name : {"CurrentPriceLocators.xml", "CodeSearchLocators.xml",
                           "HistoricalPricesLocators.xml", "CountryConfig.xml", "Tallymoor Report.xsl"}) {
    service().offerDocuments({{name, "6.0.0"}});
    EXPECT_TRUE(documentsNewer()) << name;
  }
}

TEST_F(UpdatesTest, UnknownComponentOfTheDocumentsIsIgnored) {
  service().offerDocuments({{"Portfolios.xml", "99.0.0"}, {"../CountryConfig.xml", "99.0.0"}});
  Updates updates(service().settings());
  EXPECT_FALSE(updates.getConfigUpdates(false));
  EXPECT_THAT(service().asked(), ElementsAre("configupdates.xml")) << "nothing of that was asked for";
}

TEST_F(UpdatesTest, ProgramFilesCompareByMajorThenMinorThenPatch) {
  const std::pair<const char*, bool> versions[] = {{"1.3.1", false}, {"1.3.2", true},  {"1.4.0", true},
                                                   {"2.0.0", true},  {"1.2.9", false}, {"0.9.9", false},
                                                   {"1.3.0", false}};
  for (const auto& [version, newer] : versions) {
    service().offerProgramFiles({{"Tallymoor.exe", version}});
    EXPECT_EQ(newer, binariesNewer()) << version;
  }
}

TEST_F(UpdatesTest, VersionsOfLibrariesAreThoseInTheirNames) {
  service().offerProgramFiles({{"FOXDLL-1.6.57.dll", "1.6.57"}});
  EXPECT_FALSE(binariesNewer()) << "the local one";
  service().offerProgramFiles({{"FOXDLL-1.6.58.dll", "1.6.58"}});
  EXPECT_TRUE(binariesNewer());
}

TEST_F(UpdatesTest, ComponentsThatAreNotOnOfferAreNotNewer) {
  service().offerProgramFiles({{"Notepad.exe", "99.0.0"}});
  EXPECT_FALSE(binariesNewer());
}

TEST_F(UpdatesTest, AllNamesAreCheckedEvenAfterTheFirstUpdate) {
  service().offerProgramFiles({{"Tallymoor.exe", "2.0.0"}, {"xerces-c_4.0.0.dll", "4.0.0"}});
  service().serveSigned("Tallymoor.exe", InstalledFolder::image("2.0.0"));
  service().serveSigned("xerces-c_4.0.0.dll", "new library");
  Updates updates(service().settings());
  EXPECT_TRUE(updates.getBinaryUpdates(false));
  EXPECT_THAT(folder().waiting(), ElementsAre("Tallymoor.exe", "xerces-c_4.0.0.dll"));
}

TEST_F(UpdatesTest, MissingLocalFileStopsTheLookAtProgramFiles) {
  for (const char* name :
       {"UpdateInstaller.exe", "FOXDLL-1.6.57.dll", "FxEx-1.0.0.dll", "xerces-c_3.2.4.dll"}) {
    std::filesystem::rename(name, "elsewhere");
    EXPECT_EQ(String(MISSING) + String(name).substr(0, String(name).find_first_of(u"-_.")) +
                  (String(name).startsWith(u"xerces") ? u"-c" : u""),
              binaryFailure(true));
    std::filesystem::rename("elsewhere", name);
  }
  std::filesystem::remove("Tallymoor.exe");
  EXPECT_EQ(String(u"Win32Platform::getFileVersion - GetFileVersionInfo failed for Tallymoor.exe"),
            binaryFailure(true));
}

TEST_F(UpdatesTest, TwoLocalFilesOfOneStemAreRefused) {
  folder().write("xerces-c_2_6.dll", "another");
  EXPECT_EQ(String(MULTIPLE) + u"xerces-c", binaryFailure(true));
}

TEST_F(UpdatesTest, StemsFindLocalFilesInAnyCaseAndNoFolders) {
  std::filesystem::rename("FOXDLL-1.6.57.dll", "foxdll-1.6.57.dll");
  std::filesystem::create_directory("FOXDLL-old");
  EXPECT_FALSE(binariesNewer());
}

// --- Failures of the service

TEST_F(UpdatesTest, ServiceThatCannotBeReachedFailsBothTracksInTheSameWords) {
  service().server().stop();
  EXPECT_TRUE(configFailure().startsWith(String(PROBLEM) + u"HTTPException : ")) << configFailure().toUTF8();
  EXPECT_TRUE(binaryFailure().startsWith(String(PROBLEM) + u"HTTPException : ")) << binaryFailure().toUTF8();
}

TEST_F(UpdatesTest, RefusalOfTheServiceIsTold) {
  service().serve("configupdates.xml", TestHttpServer::Response{503, "busy", "text/plain", {}, -1});
  EXPECT_TRUE(configFailure().startsWith(PROBLEM));
  EXPECT_TRUE(configFailure().contains(u"503"));
}

TEST_F(UpdatesTest, AnInvalidListFailsBothTracks) {
  for (const char* list : {"configupdates.xml", "binaryupdates.xml"}) {
    service().serve(list, "<html>Page not found</html>");
    const String failure = String(list).startsWith(u"config") ? configFailure() : binaryFailure();
    EXPECT_TRUE(failure.startsWith(String(FAILED) + u"XMLException : ")) << failure.toUTF8();
  }
}

TEST_F(UpdatesTest, AComponentWithoutMinorVersionInvalidatesTheList) {
  service().serve("configupdates.xml",
                  "<VersionsAvailable><Component FileName=\"CountryConfig.xml\" Major=\"9\" "
                  "Patch=\"0\"/></VersionsAvailable>");
  EXPECT_TRUE(configFailure().startsWith(FAILED)) << configFailure().toUTF8();
}

TEST_F(UpdatesTest, ListBeyondItsBoundIsRefused) {
  service().serve("configupdates.xml", "<VersionsAvailable>" + std::string(UpdateService::LIST_LIMIT, ' ') +
                                           "</VersionsAvailable>");
  EXPECT_TRUE(configFailure().startsWith(PROBLEM)) << configFailure().toUTF8();
}

TEST_F(UpdatesTest, EntityBombIsRefused) {
  service().serve("configupdates.xml",
                  "<!DOCTYPE VersionsAvailable [<!ENTITY a \"aaaaaaaaaa\"><!ENTITY b \"&a;&a;&a;&a;&a;&a;\">"
                  "<!ENTITY c \"&b;&b;&b;&b;&b;&b;\">]><VersionsAvailable>&c;</VersionsAvailable>");
  EXPECT_TRUE(configFailure().startsWith(FAILED)) << configFailure().toUTF8();
}

TEST_F(UpdatesTest, CutConnectionIsAFailure) {
  service().serve("configupdates.xml",
                  TestHttpServer::Response{200, "<VersionsAvailable/>", "text/xml", {}, 5});
  EXPECT_TRUE(configFailure().startsWith(PROBLEM)) << configFailure().toUTF8();
}

TEST_F(UpdatesTest, AbortEndsAFetchUnderWay) {
  service().server().stall();
  std::stop_source stop;
  Updates updates(service().settings(), stop.get_token());
  std::thread aborter([&] {
    service().server().waitForRequests(1);
    stop.request_stop();
  });
  const String failure = messageOf([&] { updates.getConfigUpdates(true); });
  aborter.join();
  EXPECT_TRUE(failure.startsWith(PROBLEM)) << failure.toUTF8();
  service().server().release();
}

// --- Downloads of documents

TEST_F(UpdatesTest, DocumentsArePublishedBelowTheFolderAndPutInPlaceWithACopyOfTheOld) {
  service().offerDocuments({{"CountryConfig.xml", "6.0.0"}, {"Tallymoor Report.xsl", "6.0.0"}});
  service().serveSigned("CountryConfig.xml", countries(6));
  service().serveSigned("Tallymoor Report.xsl", stylesheet(6));
  Updates updates(service().settings());
  EXPECT_TRUE(updates.getConfigUpdates(false));
  EXPECT_THAT(folder().waiting(),
              ElementsAre("documents", "documents/CountryConfig.xml", "documents/Tallymoor Report.xsl"));
  EXPECT_FALSE(updatesPending()) << "documents send no start to the installer";
  EXPECT_EQ(countries(5), document("CountryConfig.xml")) << "not before they are installed";
  EXPECT_TRUE(updates.installConfigUpdates());
  EXPECT_EQ(countries(6), document("CountryConfig.xml"));
  EXPECT_EQ(countries(5), document("CountryConfig.xml.bak"));
  EXPECT_EQ(stylesheet(6), TestProfile::readFile(stylesheetPath()));
  EXPECT_THAT(folder().waiting(), IsEmpty());
  EXPECT_FALSE(updates.installConfigUpdates()) << "nothing is left";
}

TEST_F(UpdatesTest, CheckAloneDownloadsNothing) {
  service().offerDocuments({{"CountryConfig.xml", "6.0.0"}});
  service().offerProgramFiles({{"Tallymoor.exe", "2.0.0"}});
  EXPECT_TRUE(documentsNewer());
  EXPECT_TRUE(binariesNewer());
  EXPECT_THAT(service().asked(), ElementsAre("configupdates.xml", "binaryupdates.xml"));
  EXPECT_THAT(folder().waiting(), IsEmpty());
}

TEST_F(UpdatesTest, MissingLocalDocumentIsReplacedToo) {
  std::filesystem::remove(stylesheetPath().toUTF8());
  service().offerDocuments({{"Tallymoor Report.xsl", "1.0.0"}});
  service().serveSigned("Tallymoor Report.xsl", stylesheet(1));
  Updates updates(service().settings());
  updates.getConfigUpdates(false);
  EXPECT_TRUE(updates.installConfigUpdates());
  EXPECT_EQ(stylesheet(1), TestProfile::readFile(stylesheetPath()));
}

/// A download with wrong content in place of a document.
struct BadDocument {
  const char* what;
  TestHttpServer::Response reply;
};

TEST_F(UpdatesTest, AMismatchedDocumentFailsTheWholeTrack) {
  const BadDocument replies[] = {
      {"another document", {200, stylesheet(6), "text/xml", {}, -1}},
      {"a page", {200, "<html><body>Sign in</body></html>", "text/html", {}, -1}},
      {"nothing", {200, "", "text/xml", {}, -1}},
      {"half a document", {200, countries(6).substr(0, 60), "text/xml", {}, -1}},
      {"no version", {200, "<CountryOptions/>", "text/xml", {}, -1}},
      {"an older version", {200, countries(4), "text/xml", {}, -1}},
      {"an entity",
       {200, "<!DOCTYPE CountryOptions [<!ENTITY e \"x\">]>" + countries(6), "text/xml", {}, -1}},
      {"a cut connection", {200, countries(6), "text/xml", {}, 20}},
      {"a refusal", {404, "gone", "text/xml", {}, -1}},
      {"too much", {200, std::string(Updates::DOCUMENT_LIMIT + 1, ' '), "text/xml", {}, -1}}};
  service().offerDocuments({{"Tallymoor Report.xsl", "6.0.0"}, {"CountryConfig.xml", "6.0.0"}});
  service().serveSigned("Tallymoor Report.xsl", stylesheet(6));
  for (const BadDocument& bad : replies) {
    service().serveSigned("CountryConfig.xml", bad.reply.body); // Signed by another key.
    service().serve("CountryConfig.xml", bad.reply);
    Updates updates(service().settings());
    const String failure = messageOf([&] { updates.getConfigUpdates(false); });
    EXPECT_TRUE(failure.startsWith(u"Updates::downloadFile - ")) << bad.what << ": " << failure.toUTF8();
    EXPECT_TRUE(failure.contains(u"CountryConfig.xml")) << bad.what << ": " << failure.toUTF8();
    EXPECT_THAT(folder().waiting(), IsEmpty()) << bad.what;
    EXPECT_FALSE(updates.installConfigUpdates());
    EXPECT_EQ(countries(5), document("CountryConfig.xml"));
  }
}

TEST_F(UpdatesTest, AnUnsignedDocumentFailsTheWholeTrack) {
  const std::string good = countries(6);
  TestUpdateService stranger;
  const struct {
    const char* what;
    std::string content;
    std::string signature;
  } replies[] = {{"a changed document", good + " ", service().signatureOf("CountryConfig.xml", good)},
                 {"another's signature", good, stranger.signatureOf("CountryConfig.xml", good)},
                 {"a signature for another name", good, service().signatureOf("Tallymoor Report.xsl", good)},
                 {"a short signature", good, service().signatureOf("CountryConfig.xml", good).substr(0, 63)},
                 {"nothing", good, ""}};
  service().offerDocuments({{"Tallymoor Report.xsl", "6.0.0"}, {"CountryConfig.xml", "6.0.0"}});
  service().serveSigned("Tallymoor Report.xsl", stylesheet(6));
  for (const auto& bad : replies) {
    service().serve("CountryConfig.xml", bad.content);
    service().serve("CountryConfig.xml.sig", bad.signature);
    EXPECT_EQ(u"Updates::downloadFile - the signature of CountryConfig.xml is wrong", configFailure())
        << bad.what;
    EXPECT_THAT(folder().waiting(), IsEmpty()) << bad.what;
  }
}

TEST_F(UpdatesTest, DocumentWithoutASignatureIsNotEvenFetched) {
  service().offerDocuments({{"CountryConfig.xml", "6.0.0"}});
  service().serve("CountryConfig.xml", countries(6));
  EXPECT_TRUE(configFailure().startsWith(u"Updates::downloadFile - no signature for CountryConfig.xml: "));
  EXPECT_THAT(service().asked(), ElementsAre("configupdates.xml", "CountryConfig.xml.sig"));
  EXPECT_THAT(folder().waiting(), IsEmpty());
}

TEST_F(UpdatesTest, LocatorsThatLeadNowhereAreRefused) {
  std::string broken = locators("CurrentPriceLocators.xml", 6);
  const std::size_t at = broken.find("active=\"") + 8;
  broken.replace(at, broken.find('"', at) - at, "nobody");
  service().offerDocuments({{"CurrentPriceLocators.xml", "6.0.0"}});
  service().serveSigned("CurrentPriceLocators.xml", broken);
  EXPECT_EQ(String(u"Updates::downloadFile - the locator documents can't be used: HTMLException : "
                   u"TallymoorInternet::TallymoorInternet - failed to find a price locator"),
            configFailure());
  EXPECT_THAT(folder().waiting(), IsEmpty());
}

TEST_F(UpdatesTest, NewLocatorsAreTriedTogetherWithTheOldOnes) {
  service().offerDocuments({{"CurrentPriceLocators.xml", "6.0.0"}});
  service().serveSigned("CurrentPriceLocators.xml", locators("CurrentPriceLocators.xml", 6));
  Updates updates(service().settings());
  EXPECT_TRUE(updates.getConfigUpdates(false));
  EXPECT_THAT(folder().waiting(), ElementsAre("documents", "documents/CurrentPriceLocators.xml"));
}

// --- Downloads of program files

TEST_F(UpdatesTest, SignedProgramFileWaitsForTheNextStartWithItsExecuteBits) {
  offerProgramFile("Tallymoor.exe", "2.0.0", InstalledFolder::image("2.0.0"));
  Updates updates(service().settings());
  EXPECT_TRUE(updates.getBinaryUpdates(false));
  EXPECT_THAT(folder().waiting(), ElementsAre("Tallymoor.exe"));
  EXPECT_EQ(InstalledFolder::image("2.0.0"), folder().read("updates/Tallymoor.exe"));
  EXPECT_EQ(0755u, folder().mode("updates/Tallymoor.exe"));
  EXPECT_TRUE(updatesPending());
  EXPECT_TRUE(updates.installBinaryUpdates());
  EXPECT_EQ(InstalledFolder::image("1.3.1"), folder().read("Tallymoor.exe"))
      << "it runs: the installer does it";
  EXPECT_TRUE(updatesPending());
}

TEST_F(UpdatesTest, TheInstallerItselfIsReplacedAtOnce) {
  offerProgramFile("UpdateInstaller.exe", "2.0.0", InstalledFolder::image("2.0.0"));
  Updates updates(service().settings());
  updates.getBinaryUpdates(false);
  EXPECT_TRUE(updates.installBinaryUpdates());
  EXPECT_EQ(InstalledFolder::image("2.0.0"), folder().read("UpdateInstaller.exe"));
  EXPECT_EQ(0755u, folder().mode("UpdateInstaller.exe"));
  EXPECT_FALSE(updatesPending());
}

struct BadProgramFile {
  const char* what;
  std::string content;
  std::string signature;
  const char* failure;
};

TEST_F(UpdatesTest, ProgramFileThatFailsIsRemovedWithTheOthersOfItsSet) {
  const std::string good = InstalledFolder::image("2.0.0");
  TestUpdateService stranger;
  const std::string signature = service().signatureOf("Tallymoor.exe", good);
  std::string flipped = signature;
  flipped[10] = static_cast<char>(flipped[10] ^ 1);
  const std::string old = InstalledFolder::image("1.3.1");
  const std::string noImage = "no version here";
  const BadProgramFile files[] = {
      {"a changed file", good + "x", signature, "the signature of Tallymoor.exe is wrong"},
      {"a changed signature", good, flipped, "the signature of Tallymoor.exe is wrong"},
      {"a short signature", good, signature.substr(0, 63), "the signature of Tallymoor.exe is wrong"},
      {"a long signature", good, signature + "x", "the signature of Tallymoor.exe is wrong"},
      {"no signature in the reply", good, "", "the signature of Tallymoor.exe is wrong"},
      {"another's signature", good, stranger.signatureOf("Tallymoor.exe", good),
       "the signature of Tallymoor.exe is wrong"},
      {"a signature for another name", good, service().signatureOf("UpdateInstaller.exe", good),
       "the signature of Tallymoor.exe is wrong"},
      {"an endless signature", good, std::string(UpdateService::SIGNATURE_LIMIT + 1, 'x'),
       "no signature for Tallymoor.exe"},
      {"an old file, signed in its day", old, service().signatureOf("Tallymoor.exe", old),
       "Tallymoor.exe is not newer than the local one"},
      {"a file without a version", noImage, service().signatureOf("Tallymoor.exe", noImage),
       "VerQueryValue failed for"}};
  service().offerProgramFiles({{"xerces-c_4.0.0.dll", "4.0.0"}, {"Tallymoor.exe", "2.0.0"}});
  service().serveSigned("xerces-c_4.0.0.dll", "new library");
  for (const BadProgramFile& bad : files) {
    service().serve("Tallymoor.exe", bad.content);
    service().serve("Tallymoor.exe.sig", bad.signature);
    EXPECT_THAT(binaryFailure().toUTF8(), HasSubstr(bad.failure)) << bad.what;
    EXPECT_THAT(folder().waiting(), IsEmpty()) << bad.what;
  }
}

TEST_F(UpdatesTest, MissingSignatureIsRefused) {
  service().offerProgramFiles({{"Tallymoor.exe", "2.0.0"}});
  service().serve("Tallymoor.exe", InstalledFolder::image("2.0.0"));
  EXPECT_TRUE(binaryFailure().startsWith(u"Updates::downloadFile - no signature for Tallymoor.exe: "));
  EXPECT_THAT(folder().waiting(), IsEmpty());
}

TEST_F(UpdatesTest, AFailedLastFileRemovesTheWholeSet) {
  service().offerProgramFiles({{"Tallymoor.exe", "2.0.0"}, {"xerces-c_4.0.0.dll", "4.0.0"}});
  service().serveSigned("Tallymoor.exe", InstalledFolder::image("2.0.0"));
  service().serve("xerces-c_4.0.0.dll", "unsigned");
  EXPECT_TRUE(binaryFailure().startsWith(u"Updates::downloadFile - no signature for xerces-c_4.0.0.dll"));
  EXPECT_THAT(folder().waiting(), IsEmpty());
  EXPECT_FALSE(updatesPending());
}

TEST_F(UpdatesTest, TruncatedProgramFileIsRefused) {
  offerProgramFile("Tallymoor.exe", "2.0.0", InstalledFolder::image("2.0.0"));
  service().serve("Tallymoor.exe",
                  TestHttpServer::Response{200, InstalledFolder::image("2.0.0"), "text/plain", {}, 10});
  EXPECT_TRUE(binaryFailure().startsWith(u"Updates::downloadFile - problem getting Tallymoor.exe: "));
  EXPECT_THAT(folder().waiting(), IsEmpty());
}

TEST_F(UpdatesTest, NamesThatAreNoPlainNamesOfProgramFilesAreRefused) {
  for (const char* name : {"../Tallymoor.exe", "Tallymoor.exe/..", "/tmp/Tallymoor.exe",
                           "updates\\Tallymoor.exe", "Tallymoor.exe.bak", "xTallymoor.exe"}) {
    service().offerProgramFiles({{name, "2.0.0"}});
    EXPECT_EQ(String(u"Updates::getUpdateForBinFile - no name of a program file: ") + name, binaryFailure());
  }
  for (const char* name : {"../FOXDLL-2.0.0.dll", "FOXDLL/../../x.dll", "FOXDLL-2.0.0.so", "FOXDLL 2.dll",
                           "FOXDLL..dll", "FOXDLL%2F2.dll"}) {
    service().offerProgramFiles({{name, "2.0.0"}});
    EXPECT_EQ(String(u"Updates::getUpdateForBinFile - no name of a program file: ") + name,
              binaryFailure(true));
  }
  EXPECT_THAT(folder().waiting(), IsEmpty());
}

// --- Copies without a key, or with files that can't be replaced

const char16_t* const NO_KEY =
    u"This copy was built without the key by which updates are recognised as genuine.";

TEST_F(UpdatesTest, BuildWithoutAKeyTakesDocumentsFromThisMachineAlone) {
  UpdateSettings settings = service().settings();
  settings.publicKey.clear();
  service().offerDocuments({{"CountryConfig.xml", "6.0.0"}});
  service().serve("CountryConfig.xml", countries(6));
  Updates updates(settings);
  EXPECT_EQ(String(NO_KEY), messageOf([&] { updates.getBinaryUpdates(true); }));
  EXPECT_TRUE(updates.getConfigUpdates(false));
  EXPECT_TRUE(updates.installConfigUpdates());
  EXPECT_EQ(countries(6), document("CountryConfig.xml"));
  EXPECT_THAT(service().asked(), ElementsAre("configupdates.xml", "CountryConfig.xml"));

  settings.queryBase = u"https://updates.example.invalid/update.php?";
  Updates fromElsewhere(settings);
  const UpdatesFound found = lookForUpdates(fromElsewhere, false);
  ASSERT_TRUE(found.documentsFixed);
  EXPECT_EQ(String(NO_KEY), found.documentsFixed->message());
  ASSERT_TRUE(found.programFilesFixed);
  EXPECT_TRUE(found.failures.empty()) << "nothing was requested";
}

TEST_F(UpdatesTest, UnreadableKeyTakesNothing) {
  for (const std::string& key : {std::string("12"), std::string(64, 'g')}) {
    UpdateSettings settings = service().settings();
    settings.publicKey = key;
    Updates updates(settings);
    const String unreadable = u"The key by which updates are recognised as genuine can't be read.";
    EXPECT_EQ(unreadable, messageOf([&] { updates.getBinaryUpdates(true); }));
    EXPECT_EQ(unreadable, messageOf([&] { updates.getConfigUpdates(true); }));
  }
  EXPECT_THAT(service().asked(), IsEmpty());
}

TEST_F(UpdatesTest, PlainHttpIsForThisMachineAlone) {
  const struct {
    const char16_t* address;
    bool safe;
    bool local;
  } services[] = {{u"https://updates.example.com/update.php?", true, false},
                  {u"HTTPS://updates.example.com/update.php?", true, false},
                  {u"http://updates.example.com/update.php?", false, false},
                  {u"updates.example.com/update.php?", false, false},
                  {u"ftp://updates.example.com/update.php?", false, false},
                  {u"http://127.0.0.1:8317/update.php?", true, true},
                  {u"http://127.9.8.7/update.php?", true, true},
                  {u"http://localhost/update.php?", true, true},
                  {u"http://127.0.0.1.example.com/update.php?", false, false},
                  {u"http://localhost.example.com/update.php?", false, false},
                  {u"http://localhost@example.com/update.php?", false, false},
                  {u"http://128.0.0.1/update.php?", false, false},
                  {u"", false, false}};
  for (const auto& each : services) {
    UpdateSettings settings = service().settings();
    settings.queryBase = each.address;
    EXPECT_EQ(each.safe, settings.isServiceSafe()) << settings.queryBase.toUTF8();
    EXPECT_EQ(each.local, settings.isServiceLocal()) << settings.queryBase.toUTF8();
    if (each.safe)
      continue;
    Updates updates(settings);
    const String refusal =
        u"Updates::getBinaryUpdates - the address of the update service is not https: " + settings.queryBase;
    EXPECT_EQ(refusal, messageOf([&] { updates.getConfigUpdates(true); }));
    EXPECT_EQ(refusal, messageOf([&] { updates.getBinaryUpdates(true); }));
  }
}

/// The text for a folder that must not be changed.
const char16_t* const NOT_YOURS =
    u"The folder that the program was started in is not yours, or others can write to it.\n"
    u"Whoever installed the program there can update it.";

TEST_F(UpdatesTest, AStartCompletesAnInterruptedUpdateAndRemovesTheRest) {
  folder().write("updates/staging/Tallymoor.exe", "half");
  folder().write("updates/locators/CurrentPriceLocators.xml", "half");
  folder().write("updates/previous/Tallymoor.exe", "of an installation");
  folder().write("updates/documents/CountryConfig.xml", countries(6));
  std::filesystem::permissions("updates", std::filesystem::perms(0700));
  finishInterruptedUpdates();
  EXPECT_EQ(countries(6), document("CountryConfig.xml"));
  EXPECT_EQ(countries(5), document("CountryConfig.xml.bak"));
  EXPECT_THAT(folder().waiting(), ::testing::IsEmpty());
}

TEST_F(UpdatesTest, CopyOfTheLastDocumentOutlivesAnInstallationThatWasCutOff) {
  folder().write("updates/documents/CountryConfig.xml", countries(6));
  std::filesystem::permissions("updates", std::filesystem::perms(0700));
  writeDocument("CountryConfig.xml.bak", countries(5));
  writeDocument("CountryConfig.xml", countries(6)); // And then it was killed.
  finishInterruptedUpdates();
  EXPECT_EQ(countries(6), document("CountryConfig.xml"));
  EXPECT_EQ(countries(5), document("CountryConfig.xml.bak"));
  EXPECT_FALSE(folder().exists("updates/documents"));
}

TEST_F(UpdatesTest, StartMovesUpAPublishedSetAndKeepsWhatTheInstallerNeeds) {
  folder().write("updates/complete/Tallymoor.exe", "new");
  folder().write("updates/previous/Tallymoor.exe", "old");
  std::filesystem::permissions("updates", std::filesystem::perms(0700));
  finishInterruptedUpdates();
  EXPECT_THAT(folder().waiting(),
              ::testing::ElementsAre("Tallymoor.exe", "previous", "previous/Tallymoor.exe"));
}

TEST_F(UpdatesTest, StartLeavesDocumentsThatCannotBePutInPlaceForTheNext) {
  folder().write("updates/documents/CountryConfig.xml", countries(6));
  std::filesystem::permissions("updates", std::filesystem::perms(0700));
  std::filesystem::remove(documentPath("CountryConfig.xml").toUTF8());
  std::filesystem::create_directory(documentPath("CountryConfig.xml").toUTF8());
  finishInterruptedUpdates();
  std::filesystem::remove(documentPath("CountryConfig.xml").toUTF8());
  finishInterruptedUpdates();
  EXPECT_EQ(countries(6), document("CountryConfig.xml"));
}

TEST_F(UpdatesTest, StartTouchesNothingInAFolderThatOthersCanWriteTo) {
  folder().write("updates/documents/CountryConfig.xml", countries(6));
  std::filesystem::permissions("updates", std::filesystem::perms(0777));
  finishInterruptedUpdates();
  EXPECT_EQ(countries(5), document("CountryConfig.xml"));
  EXPECT_TRUE(folder().exists("updates/documents/CountryConfig.xml"));
}

TEST_F(UpdatesTest, FolderThatOthersCanWriteToIsLeftAlone) {
  std::filesystem::permissions(".", std::filesystem::perms(0777));
  EXPECT_EQ(String(NOT_YOURS), binaryFailure(true));
}

TEST_F(UpdatesTest, FolderOfSomebodyElseIsLeftAloneAndDocumentsAreStillUpdated) {
  if (::geteuid() == 0) {
    ASSERT_EQ(0, ::chown(".", 65534, 65534));
  } else {
    std::filesystem::permissions(".", std::filesystem::perms(0555));
  }
  std::filesystem::remove_all("updates");
  TestProfile::writeFile(u"./updates", "in the way");
  service().offerDocuments({{"CountryConfig.xml", "6.0.0"}});
  service().serveSigned("CountryConfig.xml", countries(6));
  Updates updates(service().settings());
  EXPECT_EQ(String(NOT_YOURS), messageOf([&] { updates.getBinaryUpdates(true); }));
  EXPECT_TRUE(updates.getConfigUpdates(false));
  EXPECT_TRUE(updates.installConfigUpdates());
  EXPECT_EQ(countries(6), document("CountryConfig.xml"));
}

TEST_F(UpdatesTest, FilesOfAPackageAreLeftAloneEvenByTheirOwnerAndDocumentsAreStillUpdated) {
  InstalledFolder::write("package.tallymoor", "");
  std::filesystem::remove_all("updates");
  service().offerDocuments({{"CountryConfig.xml", "6.0.0"}});
  service().serveSigned("CountryConfig.xml", countries(6));
  Updates updates(service().settings());
  EXPECT_EQ(String(u"They were installed as a package, and the system's package manager keeps them.\n"
                   u"A newer version comes as a newer package."),
            messageOf([&] { updates.getBinaryUpdates(false); }));
  EXPECT_TRUE(updates.getConfigUpdates(false));
  EXPECT_TRUE(updates.installConfigUpdates());
  EXPECT_EQ(countries(6), document("CountryConfig.xml"));
  EXPECT_FALSE(InstalledFolder::exists("updates")) << "nothing is stored beside the package's files";
}

TEST_F(UpdatesTest, ReasonsOfThePlaceAreReportedBeforeMissingKeys) {
  std::filesystem::permissions(".", std::filesystem::perms(0777));
  UpdateSettings settings = service().settings();
  settings.publicKey.clear();
  Updates updates(settings);
  EXPECT_EQ(String(NOT_YOURS), messageOf([&] { updates.getBinaryUpdates(true); }));
}

TEST_F(UpdatesTest, FolderForUpdatesThatOthersCanWriteToIsNotUsed) {
  std::filesystem::create_directory("updates");
  std::filesystem::permissions("updates", std::filesystem::perms(0777));
  EXPECT_EQ(String(NOT_YOURS), binaryFailure(true));
}

// --- Both tracks

TEST_F(UpdatesTest, TheTracksAreIndependent) {
  service().serve("binaryupdates.xml", "rubbish");
  service().offerDocuments({{"CountryConfig.xml", "6.0.0"}});
  Updates updates(service().settings());
  const UpdatesFound found = lookForUpdates(updates, true);
  EXPECT_TRUE(found.any);
  ASSERT_EQ(1u, found.failures.size());
  EXPECT_TRUE(found.failures[0].message().startsWith(FAILED));
  EXPECT_FALSE(found.programFilesFixed);
}

TEST_F(UpdatesTest, OmittedProgramFilesAreNotAFailure) {
  std::filesystem::remove("FxEx-1.0.0.dll");
  Updates updates(service().settings());
  const UpdatesFound found = lookForUpdates(updates, true);
  EXPECT_FALSE(found.any);
  EXPECT_TRUE(found.failures.empty());
  ASSERT_TRUE(found.programFilesFixed);
  EXPECT_EQ(String(MISSING) + u"FxEx", found.programFilesFixed->message());
}

} // namespace
} // namespace Tallymoor
