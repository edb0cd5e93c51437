#include "widgets/ChartView.h"
#include "ChartSamples.h"
#include "foundation/Exception.h"
#include "foundation/TransferFolder.h"
#include "support/windows/WindowTest.h"
#include "widgets/HandlerScope.h"
#include <fxkeys.h>

namespace Tallymoor {
namespace {

using namespace ChartSamples;

class ChartViewTest : public WindowTest {
protected:
  ChartView& show(const ChartModel& model) {
    ChartView& view = makeView();
    view.setModel(model);
    paint();
    return view;
  }
  ChartView& makeView() {
    auto* view = new ChartView(mainWindow().contentFrame(), FRAME_LINE | LAYOUT_EXPLICIT);
    view->create();
    resize(*view, 600, 320);
    return *view;
  }
  void resize(ChartView& view, FXint width, FXint height) {
    view.position(0, 0, width, height);
    paint();
  }
  void paint() {
    letEventsPass();
    app().repaint();
  }
  /// Moves the pointer to a position in the window.
  void point(ChartView& view, FXint x) {
    FXEvent event{};
    event.type = SEL_MOTION;
    event.win_x = x;
    event.win_y = view.getHeight() / 2;
    EXPECT_EQ(1, view.handle(&app(), FXSEL(SEL_MOTION, 0), &event));
    paint();
  }
  void pointAt(ChartView& view, const Date& day) {
    point(view, FXint(std::lround(view.chart().xOf(day))) + view.getBorderWidth());
  }
  void leave(ChartView& view) {
    FXEvent event{};
    event.type = SEL_LEAVE;
    view.handle(&app(), FXSEL(SEL_LEAVE, 0), &event);
    paint();
  }
  static std::optional<Date> day(ChartView& view) {
    const std::optional<ChartReading> reading = view.reading();
    return reading ? std::optional(reading->day) : std::nullopt;
  }
  /// The window's pixels.
  std::vector<FXColor> picture(ChartView& view) {
    paint();
    FXImage image(&app(), nullptr, IMAGE_KEEP | IMAGE_OWNED, view.getWidth(), view.getHeight());
    image.create();
    {
      FXDCWindow dc(&image);
      dc.drawArea(&view, 0, 0, view.getWidth(), view.getHeight(), 0, 0);
    }
    image.restore();
    return {image.getData(), image.getData() + view.getWidth() * view.getHeight()};
  }
};

TEST_F(ChartViewTest, TheChartIsDrawnInTheWindow) {
  ChartView& view = show(priceModel());
  const std::vector<FXColor> pixels = picture(view);
  EXPECT_GT(std::count(pixels.begin(), pixels.end(), ChartColours::BLUE), 100);
  EXPECT_GT(std::count(pixels.begin(), pixels.end(), FXRGB(60, 60, 60)), 100) << "texts";
}

TEST_F(ChartViewTest, ThePointerShowsTheValuesOfTheDay) {
  ChartView& view = show(priceModel());
  EXPECT_FALSE(view.reading());
  pointAt(view, Date(2025, 12, 1));
  const std::optional<ChartReading> reading = view.reading();
  ASSERT_TRUE(reading);
  EXPECT_EQ(Date(2025, 12, 1), reading->day);
  ASSERT_EQ(2u, reading->values.size());
  EXPECT_DOUBLE_EQ(view.model().series[0].points[273].value, reading->values[0].value);
  EXPECT_EQ(std::vector<String>{u"Sold 50 at 12.50"}, reading->notes);
}

TEST_F(ChartViewTest, TheCrosshairIsSeenAndGoesWithThePointer) {
  ChartView& view = show(priceModel());
  const std::vector<FXColor> before = picture(view);
  pointAt(view, Date(2025, 6, 1));
  EXPECT_NE(before, picture(view));
  leave(view);
  EXPECT_FALSE(view.reading());
  EXPECT_EQ(before, picture(view));
}

TEST_F(ChartViewTest, OutsideThePlotThereIsNoCrosshair) {
  ChartView& view = show(priceModel());
  pointAt(view, Date(2025, 6, 1));
  point(view, 0);
  EXPECT_FALSE(view.reading());
  pointAt(view, Date(2025, 6, 1));
  point(view, view.getWidth() - 1);
  EXPECT_FALSE(view.reading());
}

TEST_F(ChartViewTest, TheArrowKeysMoveTheCrosshair) {
  ChartView& view = show(priceModel());
  view.setFocus();
  key(mainWindow(), KEY_Left);
  EXPECT_EQ(Date(2026, 3, 3), day(view)) << "it begins on the last day";
  key(mainWindow(), KEY_Left);
  EXPECT_EQ(Date(2026, 3, 2), day(view));
  key(mainWindow(), KEY_Right);
  key(mainWindow(), KEY_Right);
  EXPECT_EQ(Date(2026, 3, 3), day(view));
  key(mainWindow(), KEY_Left, CONTROLMASK);
  EXPECT_EQ(Date(2026, 2, 11), day(view));
  key(mainWindow(), KEY_Home);
  EXPECT_EQ(Date(2025, 3, 3), day(view));
  key(mainWindow(), KEY_Left);
  EXPECT_EQ(Date(2025, 3, 3), day(view));
  key(mainWindow(), KEY_End);
  EXPECT_EQ(Date(2026, 3, 3), day(view));
}

TEST_F(ChartViewTest, OtherKeysAreNotHandled) {
  ChartView& view = show(priceModel());
  FXEvent event{};
  event.type = SEL_KEYPRESS;
  event.code = KEY_Tab;
  EXPECT_EQ(0, view.handle(&app(), FXSEL(SEL_KEYPRESS, 0), &event));
  EXPECT_FALSE(view.reading());
}

TEST_F(ChartViewTest, AClickGivesTheFocus) {
  ChartView& view = show(priceModel());
  FXEvent event{};
  event.type = SEL_LEFTBUTTONPRESS;
  view.handle(&app(), FXSEL(SEL_LEFTBUTTONPRESS, 0), &event);
  EXPECT_EQ(&view, view.getParent()->getFocus());
}

TEST_F(ChartViewTest, AnEmptyChartHandlesPointerAndKeys) {
  ChartModel none;
  none.emptyText = u"No prices to show yet.";
  ChartView& view = show(none);
  point(view, view.getWidth() / 2);
  view.setFocus();
  key(mainWindow(), KEY_Left);
  key(mainWindow(), KEY_Home);
  EXPECT_FALSE(view.reading());
}

TEST_F(ChartViewTest, EverySizeIsDrawn) {
  ChartView& view = show(priceModel());
  pointAt(view, Date(2025, 12, 1));
  for (const FXint width : {1, 3, 17, 60, 300, 1200})
    for (const FXint height : {1, 2, 9, 40, 150, 700}) {
      resize(view, width, height);
      EXPECT_EQ(std::max(1, width - 2 * view.getBorderWidth()), view.chart().width());
      EXPECT_EQ(Date(2025, 12, 1), day(view));
    }
}

TEST_F(ChartViewTest, TheCrosshairStaysOnItsDayWhenTheModelChanges) {
  ChartView& view = show(priceModel());
  pointAt(view, Date(2025, 12, 1));
  ChartModel other = priceModel();
  other.markers.clear();
  other.series[0].points.resize(100); // Up to 10 June 2025.
  other.series.pop_back();
  view.setModel(other);
  EXPECT_EQ(Date(2025, 6, 10), day(view)) << "the nearest that is left";
  view.setModel(ChartModel());
  EXPECT_FALSE(view.reading());
}

TEST_F(ChartViewTest, TheSourceIsAskedOnceForEachChange) {
  ChartView& view = makeView();
  int asked = 0;
  view.setSource([&asked] {
    ++asked;
    return priceModel();
  });
  EXPECT_EQ(0, asked) << "not before it is drawn";
  paint();
  EXPECT_EQ(1, asked);
  view.update();
  paint();
  EXPECT_EQ(1, asked);
  view.modelChanged();
  view.modelChanged();
  paint();
  EXPECT_EQ(2, asked);
  view.modelChanged();
  EXPECT_EQ(u"AAA.AX", view.model().title);
  EXPECT_EQ(3, asked);
}

TEST_F(ChartViewTest, WhileAHandlerRunsTheSourceIsNotAsked) {
  ChartView& view = makeView();
  int asked = 0;
  view.setSource([&asked] {
    ++asked;
    return priceModel();
  });
  {
    const BigMutexLock lock;
    const HandlerScope scope(u"test");
    paint();
    EXPECT_EQ(0, asked);
  }
  paint();
  EXPECT_EQ(1, asked);
}

TEST_F(ChartViewTest, AFailureOfTheSourceIsShownInTheChartsPlace) {
  ChartView& view = makeView();
  view.setSource([]() -> ChartModel { throw Exception(u"The records can't be read."); });
  paint();
  EXPECT_TRUE(view.chart().isEmpty());
  EXPECT_EQ(u"The records can't be read.", view.model().emptyText);
}

TEST_F(ChartViewTest, LargerTextsMakeALargerChart) {
  const FXint before = makeView().getDefaultHeight();
  FXFontDesc description;
  app().getNormalFont()->getFontDesc(description);
  description.size *= 2;
  auto* large = new FXFont(&app(), description);
  large->create();
  app().setNormalFont(large); // Owned by the application.
  ChartView& view = show(priceModel());
  EXPECT_GT(view.getDefaultHeight(), before * 3 / 2);
  EXPECT_FALSE(view.chart().isEmpty());
}

class ChartSavingTest : public ChartViewTest {
protected:
  void openMenu(ChartView& view) {
    FXEvent event{};
    event.type = SEL_RIGHTBUTTONRELEASE;
    event.root_x = event.root_y = 100;
    EXPECT_EQ(1, view.handle(&app(), FXSEL(SEL_RIGHTBUTTONRELEASE, 0), &event));
  }
  void chooseSave() {
    whenModal("Save chart as...", [this](FXWindow& popup) { press(popup, "Save chart as..."); });
  }
  void chooseFileName(const String& path) {
    whenModal("Save chart as:", [this, path](FXWindow& dialog) {
      EXPECT_EQ("chart.svg", std::string(find<FXTextField>(dialog)->getText().text()));
      type(*find<FXTextField>(dialog), path.toUTF8());
      press(dialog, "OK");
    });
  }
  void saveAs(const String& path) {
    ChartView& view = show(priceModel());
    chooseSave();
    chooseFileName(path);
    openMenu(view);
  }
};

TEST_F(ChartSavingTest, TheChartIsSavedByItsMenu) {
  const String path = profile().path("prices.svg");
  saveAs(path);
  const std::string svg = TestProfile::readFile(path);
  EXPECT_NE(std::string::npos, svg.find("<title>AAA.AX</title>"));
  EXPECT_NE(std::string::npos, svg.find("<path "));
  EXPECT_EQ(profile().path(""), lastTransferFolder());
}

TEST_F(ChartSavingTest, TheMenuKeyOpensTheMenu) {
  const String path = profile().path("prices.pdf");
  ChartView& view = show(priceModel());
  view.setFocus();
  chooseSave();
  chooseFileName(path);
  key(mainWindow(), KEY_Menu);
  EXPECT_TRUE(TestProfile::readFile(path).starts_with("%PDF-"));
}

TEST_F(ChartSavingTest, AnEmptyChartHasNoMenu) {
  ChartView& view = show(ChartModel());
  openMenu(view);
  EXPECT_FALSE(app().getPopupWindow());
}

TEST_F(ChartSavingTest, ANameWithoutExtensionIsADrawing) {
  saveAs(profile().path("prices"));
  EXPECT_TRUE(TestProfile::fileExists(profile().path("prices.svg")));
  EXPECT_FALSE(TestProfile::fileExists(profile().path("prices")));
}

TEST_F(ChartSavingTest, AnotherExtensionIsRefused) {
  const String path = profile().path("prices.gif");
  ChartView& view = show(priceModel());
  chooseSave();
  chooseFileName(path);
  answer("A chart can't be saved as\n" + path.toUTF8() +
             "\nEnd the name with .svg or .pdf for a drawing, or with .png for a picture.",
         "OK");
  openMenu(view);
  EXPECT_FALSE(TestProfile::fileExists(path));
}

TEST_F(ChartSavingTest, AnOlderFileIsOverwrittenOnlyAfterAYes) {
  const String path = profile().path("prices.png");
  TestProfile::writeFile(path, "old");
  const std::string question = "Do you want to overwrite the file\n" + path.toUTF8() + "\nwith this chart?";
  ChartView& view = show(priceModel());
  chooseSave();
  chooseFileName(path);
  answer(question, "No");
  openMenu(view);
  EXPECT_EQ("old", TestProfile::readFile(path));
  chooseSave();
  chooseFileName(path);
  answer(question, "Yes");
  openMenu(view);
  EXPECT_TRUE(TestProfile::readFile(path).starts_with("\x89PNG"));
}

TEST_F(ChartSavingTest, AFileThatCannotBeWrittenTellsItsPathAndTheCause) {
  const String path = u"/proc/prices.svg"; // where nobody can make a file
  ChartView& view = show(priceModel());
  chooseSave();
  chooseFileName(path);
  whenModal("ChartView::onSave failed.", [this, path](FXWindow& box) {
    std::string shown;
    for (const std::string& label : labels(box))
      shown += label;
    EXPECT_NE(std::string::npos, shown.find(path.toUTF8())) << shown;
    EXPECT_NE(std::string::npos, shown.find("No such file or directory")) << shown;
    press(box, "OK");
  });
  openMenu(view);
}

TEST_F(ChartSavingTest, CancellingSavesNothing) {
  ChartView& view = show(priceModel());
  chooseSave();
  whenModal("Save chart as:", [this](FXWindow& dialog) { press(dialog, "Cancel"); });
  openMenu(view);
  EXPECT_FALSE(TestProfile::fileExists(profile().path("chart.svg")));
}

} // namespace
} // namespace Tallymoor
