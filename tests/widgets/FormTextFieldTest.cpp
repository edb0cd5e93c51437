#include "widgets/FormTextField.h"
#include "support/windows/WindowTest.h"
#include "widgets/Dialog.h"

namespace Tallymoor {
namespace {

class FormTextFieldTest : public WindowTest {};

TEST_F(FormTextFieldTest, AReadOnlyFieldShowsTheBeginningOfALongText) {
  Dialog dialog(&mainWindow(), u"Fields", String());
  auto* readOnly = new FormTextField(dialog.contents(), 8);
  readOnly->makeReadOnly();
  auto* typed = new FormTextField(dialog.contents(), 8);
  whenModal("Fields", [&](FXWindow& window) {
    const String longName = u"Blackwood Timber and Paper Company in Australia";
    readOnly->setText(longName);
    typed->setText(longName);
    EXPECT_TRUE(readOnly->isPosVisible(0));
    EXPECT_FALSE(typed->isPosVisible(0)) << "typing goes on at the end";
    press(window, "Cancel");
  });
  dialog.execute();
}

} // namespace
} // namespace Tallymoor
