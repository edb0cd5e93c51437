#include "shell/AboutDialog.h"
#include "ShellTest.h"
#include <algorithm>
#include <elf.h>
#include <fstream>
#include <gmock/gmock.h>
#include <iterator>
#include <link.h>

namespace Tallymoor {
namespace {

using ::testing::HasSubstr;

/// File name prefixes of the libraries that this program is linked with.
std::vector<std::string> neededLibraries() {
  const char* texts = nullptr;
  for (const ElfW(Dyn)* entry = _DYNAMIC; entry->d_tag != DT_NULL; ++entry)
    if (entry->d_tag == DT_STRTAB)
      texts = reinterpret_cast<const char*>(entry->d_un.d_ptr);
  std::vector<std::string> names;
  for (const ElfW(Dyn)* entry = _DYNAMIC; texts && entry->d_tag != DT_NULL; ++entry)
    if (entry->d_tag == DT_NEEDED)
      names.emplace_back(texts + entry->d_un.d_val);
  return names;
}

/// The dialog's name for each library, by file name prefix. Empty for our own libraries, the standard C++
/// ones and those of the tests.
const std::pair<std::string, std::string> NAMES[] = {{"libFOX-", "FOX Toolkit"},
                                                     {"libxerces-c", "Xerces-C++"},
                                                     {"libxml2.", "libxml2"},
                                                     {"libxslt.", "libxslt"},
                                                     {"libcurl", "libcurl"},
                                                     {"libcrypto.", "OpenSSL"},
                                                     {"libssl.", "OpenSSL"},
                                                     {"libicu", "International Components"},
                                                     {"libsdbus-c++.", "sdbus-c++"},
                                                     {"libcairo.", "cairo"},
                                                     {"libpango-", "Pango"},
                                                     {"libpangocairo-", "Pango"},
                                                     {"libharfbuzz.", "HarfBuzz"},
                                                     {"libgobject-", "GLib"},
                                                     {"libglib-", "GLib"},
                                                     {"libgif.", "giflib"},
                                                     {"libz.", "zlib"},
                                                     {"libcsv.", "libcsv"},
                                                     {"libzstd.", "zstd"},
                                                     {"libX11.", "libX11"},
                                                     {"libSM.", "libSM"},
                                                     {"libICE.", "libICE"},
                                                     {"libFxEx.", ""},
                                                     {"libstdc++.", ""},
                                                     {"libm.", ""},
                                                     {"libgcc_s.", ""},
                                                     {"libc.", ""},
                                                     {"ld-linux", ""},
                                                     {"libasan.", ""},
                                                     {"libubsan.", ""},
                                                     {"libtsan.", ""},
                                                     {"libgtest", ""},
                                                     {"libgmock", ""},
                                                     {"libcpp-httplib.", ""}};

class AboutDialogTest : public ShellTest {};

TEST_F(AboutDialogTest, NamesEveryLibraryThatTheProgramIsLinkedWith) {
  std::string shown;
  whenModal("About Tallymoor", [&](FXWindow& dialog) {
    for (const std::string& label : labels(dialog))
      shown += label + "\n";
    press(dialog, "OK");
  });
  command(TallymoorWindow::ID_ABOUT);
  std::replace(shown.begin(), shown.end(), '\n', ' ');
  const std::vector<std::string> libraries = neededLibraries();
  EXPECT_LT(12u, libraries.size());
  for (const std::string& library : libraries) {
    const auto* const name = std::find_if(std::begin(NAMES), std::end(NAMES), [&library](const auto& known) {
      return library.starts_with(known.first);
    });
    ASSERT_NE(name, std::end(NAMES)) << library << " is not in the dialog, or in this test";
    EXPECT_THAT(shown, HasSubstr(name->second)) << library;
  }
}

} // namespace
} // namespace Tallymoor
