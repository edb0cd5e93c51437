#include "widgets/ChartSaving.h"
#include "foundation/FileReplacement.h"
#include "foundation/TransferFolder.h"
#include "foundation/UserInteraction.h"
#include "widgets/ChartDocument.h"
#include "widgets/FileChoice.h"
#include "widgets/ToolkitText.h"
#include <fx.h>
#include <ostream>

namespace Tallymoor {

void saveChart(FXWindow* owner, const ChartModel& model, int width, int height, const ChartFont& font) {
  String path =
      chooseFile(owner, u"Save chart as:", u"Charts (*.svg,*.pdf,*.png)\nAll Files (*)\n", u"chart.svg");
  if (path.empty())
    return;
  if (FXPath::extension(toFox(path)).empty())
    path += u".svg";
  UserInteraction& user = UserInteraction::Instance();
  const std::optional<ChartFormat> format = chartFormatOf(path);
  if (!format) {
    user.information(u"A chart can't be saved as\n" + path +
                     u"\nEnd the name with .svg or .pdf for a drawing, or with .png for a picture.");
    return;
  }
  if (FXStat::exists(toFox(path)) &&
      !user.question(u"Do you want to overwrite the file\n" + path + u"\nwith this chart?"))
    return;
  const std::string document = chartDocument(model, *format, width, height, font);
  commitTransferFolderOf(path);
  replaceFile(path, [&document](std::ostream& stream) { stream << document; });
}

} // namespace Tallymoor
