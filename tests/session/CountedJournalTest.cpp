#include "session/CountedJournalTest.h"
#include "TestPaths.h"
#include "foundation/Constants.h"
#include "foundation/FileOperations.h"
#include "foundation/Platform.h"
#include "market/HTTPClient.h"
#include <filesystem>

namespace Tallymoor {

namespace {

class NoConnection : public HTTPClient {
public:
  void goOnline() override { fail(); }
  HTTPAnswer get(const URL&, const HTTPHeaders&, const std::stop_token&) override { fail(); }
  void setBodyLimit(std::size_t) override {}

private:
  [[noreturn]] static void fail() { throw HTTPException(u"there is no network here"); }
};

TallymoorInternet::Options offline() {
  TallymoorInternet::Options options = GatewayScope::defaults();
  options.makeClient = [] { return std::make_unique<NoConnection>(); };
  return options;
}

} // namespace

CountedJournalTest::CountedJournalTest() : gateway(offline()) {
  std::filesystem::copy(std::string(TALLYMOOR_ASSETS) + "/defaults", profile.defaultsFolder(),
                        std::filesystem::copy_options::recursive);
  installMissingDefaults(Platform::Instance(), APP_NAME);
  for (const String& code : RandomCommands::codes())
    for (Date day = RandomCommands::firstDay().plusDays(-7); day <= Date(); day = day.plusDays(1))
      TallymoorInternet::Instance().setCachedPrice(code, day, 2.25);
}

CountedJournalTest::~CountedJournalTest() {
  FileOperations::current() = FileOperations::system();
}

void CountedJournalTest::forgetEverything() const {
  std::filesystem::remove_all(profile.dataFolder().toUTF8());
  std::filesystem::create_directories(profile.dataFolder().toUTF8());
}

} // namespace Tallymoor
