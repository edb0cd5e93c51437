#include "shell/AboutDialog.h"
#include "foundation/Constants.h"
#include "widgets/MainWindow.h"
#include "widgets/ToolkitText.h"

namespace Tallymoor {

namespace {

const char16_t* const NOTICES =
    u"This program stands on the FOX Toolkit, the Xerces-C++ XML parser,\n"
    u"libxml2 and libxslt, libcurl, OpenSSL, the International Components\n"
    u"for Unicode (ICU), cairo, Pango, HarfBuzz, GLib, giflib, zlib, zstd,\n"
    u"libcsv, sdbus-c++, and libX11, libSM and libICE of the X Window System, each\n"
    u"under its own licence.\n\n"
    u"Prices come from the sources that you choose in Tools, Prices.\n"
    u"They may be delayed or wrong: check them with your broker\n"
    u"before you act on them.";

} // namespace

FXIMPLEMENT(AboutDialog, Dialog, nullptr, 0)

AboutDialog::AboutDialog(FXWindow* owner, FXIcon* icon)
    : Dialog(owner, u"About Tallymoor", u"Records and performance of your share portfolios") {
  buildVersion(contents(), icon);
  new FXHorizontalSeparator(contents(), SEPARATOR_GROOVE | LAYOUT_FILL_X);
  buildNotices(contents());
  cancelButton()->hide();
}

void AboutDialog::buildVersion(FXComposite* parent, FXIcon* icon) {
  auto* row = new FXHorizontalFrame(parent, LAYOUT_FILL_X, 0, 0, 0, 0, 0, 0, 0, 0, 12);
  new FXLabel(row, FXString(), icon, LAYOUT_CENTER_Y);
  auto* version = new FXLabel(row, VERSION_TEXT, nullptr, JUSTIFY_LEFT | LAYOUT_CENTER_Y);
  version->setFont(MainWindow::Instance().boldFont());
}

void AboutDialog::buildNotices(FXComposite* parent) {
  new FXLabel(parent, labelText(NOTICES), nullptr, JUSTIFY_LEFT | LAYOUT_FILL_X);
}

} // namespace Tallymoor
