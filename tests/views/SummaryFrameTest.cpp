#include "views/SummaryFrame.h"
#include "support/windows/WindowTest.h"

namespace Tallymoor {
namespace {

class SummaryFrameTest : public WindowTest {
protected:
  void SetUp() override {
    WindowTest::SetUp();
    m_page = new FXVerticalFrame(mainWindow().contentFrame(), LAYOUT_FIX_WIDTH | LAYOUT_FIX_HEIGHT, 0, 0, 800,
                                 200, 0, 0, 0, 0);
    m_page->create();
    m_summary = new SummaryFrame(m_page);
  }

  void show(const String& firstCaption) {
    m_summary->reserveCaption(0, firstCaption, 40);
    m_summary->reserveValue(u"-10.10% (-10.10%)");
    m_summary->startRow();
    m_first = m_summary->addFigure(firstCaption);
    m_second = m_summary->addFigure(u"Percent in shares");
    SummaryFrame::setValue(m_first, u"$1,000.00");
    SummaryFrame::setValue(m_second, u"50.00%");
    m_summary->align();
    letEventsPass();
  }
  void setPageWidth(FXint width) {
    m_page->setWidth(width);
    m_page->recalc();
    letEventsPass();
  }

  static FXint right(const FXWindow& window) { return window.getX() + window.getWidth(); }
  static FXLabel& captionOf(const FXWindow& value) { return dynamic_cast<FXLabel&>(*value.getPrev()); }
  /// The space between the first value and the second caption.
  FXint gap() const { return captionOf(*m_second).getX() - right(*m_first); }
  static bool showsWholeText(FXLabel& label) { return label.getWidth() >= label.getDefaultWidth(); }
  bool everythingFits() const { return right(*m_second) <= m_second->getParent()->getWidth(); }

  FXVerticalFrame* m_page = nullptr;
  SummaryFrame* m_summary = nullptr;
  FXLabel* m_first = nullptr;
  FXLabel* m_second = nullptr;
};

TEST_F(SummaryFrameTest, ColumnsStandApartWhereThereIsRoom) {
  show(u"Capital in shares");
  EXPECT_EQ(50, gap());
  EXPECT_EQ(m_first->getWidth(), m_second->getWidth());
  EXPECT_EQ(captionOf(*m_first).getDefaultWidth() + 40, captionOf(*m_first).getWidth());
  EXPECT_TRUE(everythingFits());
}

TEST_F(SummaryFrameTest, RoomBetweenTheColumnsGoesFirst) {
  show(u"Capital in shares");
  const FXint wanted = right(*m_second) + m_page->getWidth() - m_second->getParent()->getWidth();
  const FXint caption = captionOf(*m_first).getWidth(), value = m_first->getWidth();
  setPageWidth(wanted - 30);
  EXPECT_EQ(20, gap());
  EXPECT_EQ(caption, captionOf(*m_first).getWidth());
  EXPECT_EQ(value, m_first->getWidth());
  EXPECT_TRUE(everythingFits());
}

TEST_F(SummaryFrameTest, InANarrowPageTextsAreStillWhole) {
  show(u"Capital in shares");
  const FXint wanted = right(*m_second) + m_page->getWidth() - m_second->getParent()->getWidth();
  setPageWidth(wanted - 100);
  EXPECT_TRUE(everythingFits());
  for (FXLabel* label : {m_first, m_second, &captionOf(*m_first), &captionOf(*m_second)}) {
    EXPECT_TRUE(showsWholeText(*label)) << label->getText().text();
    EXPECT_TRUE(label->getTipText().empty());
  }
}

TEST_F(SummaryFrameTest, LongCaptionIsCutAndItsTipShowsTheRest) {
  const std::u16string name(60, u'W');
  show(name);
  EXPECT_TRUE(everythingFits());
  EXPECT_TRUE(showsWholeText(*m_first));
  EXPECT_FALSE(showsWholeText(captionOf(*m_first)));
  EXPECT_EQ(String(name).toUTF8(), captionOf(*m_first).getTipText().text());
  EXPECT_TRUE(showsWholeText(captionOf(*m_second)));
}

TEST_F(SummaryFrameTest, RoomThatComesBackIsUsedAgain) {
  show(u"Capital in shares");
  const FXint caption = captionOf(*m_first).getWidth();
  setPageWidth(300);
  EXPECT_LT(captionOf(*m_first).getWidth(), caption);
  setPageWidth(800);
  EXPECT_EQ(caption, captionOf(*m_first).getWidth());
  EXPECT_EQ(50, gap());
}

// ---- The part after the figures ----

class SummaryTailTest : public SummaryFrameTest {
protected:
  void SetUp() override {
    SummaryFrameTest::SetUp();
    m_page->setWidth(1200);
    m_summary->startRow();
    m_button = m_summary->addButton(u"set & go", &m_target, 7);
    m_remark = m_summary->addRemark();
    m_remark->setText("a remark of some length about the figures");
    show(u"Capital in shares"); // In its own row.
    m_row = dynamic_cast<FXComposite*>(m_button->getParent());
  }
  FXint figuresEnd() const { return right(*m_second); }

  FXObject m_target;
  FXButton* m_button = nullptr;
  FXLabel* m_remark = nullptr;
  FXComposite* m_row = nullptr;
};

TEST_F(SummaryTailTest, StandsBehindTheFigures) {
  EXPECT_EQ(figuresEnd() + 20, m_button->getX());
  EXPECT_EQ(right(*m_button) + 40, m_remark->getX());
  EXPECT_STREQ("set & go", m_button->getText().text());
  EXPECT_TRUE(showsWholeText(*m_remark));
  EXPECT_LE(right(*m_remark), m_row->getWidth());
}

TEST_F(SummaryTailTest, GoesBelowTheFiguresInANarrowPage) {
  const FXint high = m_summary->getHeight();
  setPageWidth(figuresEnd() + 60);
  EXPECT_EQ(0, m_button->getX());
  EXPECT_EQ(right(*m_button) + 20, m_remark->getX());
  EXPECT_TRUE(showsWholeText(*m_remark));
  EXPECT_GE(m_row->getHeight(), m_button->getY() + m_button->getHeight());
  EXPECT_GE(m_summary->getHeight(), m_row->getY() + m_row->getHeight());
  setPageWidth(1200);
  EXPECT_EQ(figuresEnd() + 20, m_button->getX());
  EXPECT_EQ(high, m_summary->getHeight());
}

TEST_F(SummaryTailTest, EndOfTheRemarkIsCutInAVeryNarrowPage) {
  setPageWidth(200);
  EXPECT_EQ(m_row->getWidth(), right(*m_remark));
  EXPECT_FALSE(showsWholeText(*m_remark));
}

} // namespace
} // namespace Tallymoor
