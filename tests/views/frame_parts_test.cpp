// SPDX-License-Identifier: MIT
// The parts that views are put together from, each by itself.
#include "common/frames/frame_parts.h"

#include <gtest/gtest.h>

#include <QComboBox>
#include <QInputMethodEvent>
#include <QLabel>
#include <QPushButton>
#include <QTest>

#include "common/frames/cell_buttons.h"
#include "common/frames/column_table.h"
#include "common/frames/entry_bar.h"
#include "common/host/host_access.h"
#include "scripted_host.h"

namespace holdwise::test {
namespace {

TEST(ColumnTableTest, HiddenColumnsTakeNoShareAndHaveNoTitle) {
  const ColumnTable table = {{.title = QStringLiteral("甲"), .extra = 12},
                             {.title = QStringLiteral("乙"), .isLink = true},
                             {.title = QStringLiteral("丙"), .extra = -12, .takesRest = true, .isLeft = true},
                             {.isHidden = true}};
  // 200 = 3 x 66 + 2
  EXPECT_EQ(WidthsOf(table, 200), std::vector<int>({78, 66, 56, 0}));
  EXPECT_EQ(WidthsOf(table, 0), std::vector<int>({12, 0, -12, 0}));
  EXPECT_EQ(TitlesOf(table), QStringList({QStringLiteral("甲"), QStringLiteral("乙"), QStringLiteral("丙")}));
  EXPECT_EQ(LinkColumnsOf(table), std::vector<int>({1}));
  TStringGrid grid(QStringLiteral("Test"), QStringLiteral("grid"));
  ApplyColumns(table, grid);
  EXPECT_EQ(grid.ColCount(), 4);
  EXPECT_TRUE(grid.isColumnHidden(3));
  EXPECT_EQ(grid.ColumnAlignment(2), Qt::AlignLeft);
  EXPECT_EQ(grid.ColumnAlignment(0), Qt::AlignHCenter);
}

TEST(DrawnDecimals, TheDrawingIsRoundedAndTheCellKeepsItsText) {
  TStringGrid rounded(QStringLiteral("Test"), QStringLiteral("rounded"));
  TStringGrid written(QStringLiteral("Test"), QStringLiteral("written"));
  rounded.SetColumnDecimals(0, 6);
  rounded.SetCells(0, 0, QStringLiteral("-0.0006322400158553884"));
  written.SetCells(0, 0, QStringLiteral("-0.000632"));
  for (TStringGrid* grid : {&rounded, &written}) {
    grid->resize(300, 60);
    grid->SetColWidths({300});
    grid->show();
  }
  QTest::qWait(10);
  EXPECT_EQ(rounded.viewport()->grab().toImage(), written.viewport()->grab().toImage());
  EXPECT_EQ(rounded.ToGridText().rows.front().front(), QStringLiteral("-0.0006322400158553884"));
  EXPECT_EQ(rounded.ClippedText({0, 0}), QStringLiteral("-0.0006322400158553884")) << "the rest can be read";
  rounded.SetCells(0, 0, QStringLiteral("1.25"));
  EXPECT_EQ(rounded.ClippedText({0, 0}), QString()) << "nothing is missing from 1.250000";
  rounded.SetCells(0, 0, QStringLiteral("无"));
  EXPECT_EQ(rounded.TextWidth({0, 0}), written.fontMetrics().horizontalAdvance(QStringLiteral("无")));
}

/// A grid of two rows whose second column, 90 pixels wide, has three buttons of 20 pixels: in each row at x = 105,
/// 135 and 165 (the middles of the thirds less half a picture).
class Buttons : public testing::Test {
 protected:
  Buttons() : buttons(grid, 1, {Make(0, "改"), Make(1, "删"), Make(2, "")}) {
    grid.SetColCount(2);
    grid.SetRowCount(2);
    grid.SetCells(0, 0, QStringLiteral("a"));
    grid.SetCells(0, 1, QStringLiteral("b"));
    grid.resize(190, 100);
    grid.SetColWidths({100, 90});
    grid.OnDrawCell = [this](QPainter& painter, const GridCellPaint& cell) { buttons.Draw(painter, cell); };
    grid.show();
    QTest::qWait(10);
  }
  CellButtons::Button Make(int number, const char* hint) {
    QPixmap normal(20, 20);
    normal.fill(QColor(10 + number, 0, 0));
    QPixmap pressed(20, 20);
    pressed.fill(QColor(0, 10 + number, 0));
    return {normal, pressed, QString::fromUtf8(hint), [this, number](int row) {
              presses.emplace_back(number, row);
              if (onPress) onPress();
            }};
  }
  QColor ColorAt(int x, int row) { return grid.viewport()->grab().toImage().pixelColor(x, row * 26 + 13); }

  std::vector<std::pair<int, int>> presses;
  std::function<void()> onPress;
  TStringGrid grid{QStringLiteral("Test"), QStringLiteral("grid")};
  CellButtons buttons;
};

TEST_F(Buttons, EachHasItsPartOfTheCell) {
  EXPECT_EQ(ColorAt(115, 0), QColor(10, 0, 0));
  EXPECT_EQ(ColorAt(145, 1), QColor(11, 0, 0));
  EXPECT_EQ(ColorAt(175, 1), QColor(12, 0, 0));
}

TEST_F(Buttons, HoverGivesHandAndHint) {
  EXPECT_EQ(buttons.MouseMove({115, 13}), QStringLiteral("改"));
  EXPECT_EQ(grid.viewport()->cursor().shape(), Qt::PointingHandCursor);
  EXPECT_EQ(buttons.MouseMove({130, 13}), QString()) << "between two of them";
  EXPECT_EQ(grid.viewport()->cursor().shape(), Qt::ArrowCursor);
  EXPECT_EQ(buttons.MouseMove({145, 39}), QStringLiteral("删"));
  EXPECT_EQ(buttons.MouseMove({115, 80}), QString()) << "below the rows";
}

TEST_F(Buttons, APressTellsItsRowAndShowsTheOtherPictureMeanwhile) {
  QColor during;
  QColor other;
  onPress = [&] {
    during = ColorAt(145, 1);
    other = ColorAt(145, 0);
    buttons.MouseMove({115, 13});
    buttons.MouseDown(Qt::LeftButton);  // no press counts while one is being handled
  };
  buttons.MouseMove({145, 39});
  buttons.MouseDown(Qt::RightButton);
  EXPECT_TRUE(presses.empty());
  buttons.MouseDown(Qt::LeftButton);
  EXPECT_EQ(presses, (std::vector<std::pair<int, int>>{{1, 1}}));
  EXPECT_EQ(during, QColor(0, 11, 0));
  EXPECT_EQ(other, QColor(11, 0, 0));
  EXPECT_EQ(ColorAt(145, 1), QColor(11, 0, 0));
}

TEST_F(Buttons, AnEmptyGridHasNone) {
  ClearStrnGrd(grid);
  buttons.MouseMove({115, 13});
  buttons.MouseDown(Qt::LeftButton);
  EXPECT_TRUE(presses.empty());
}

class HostedPart : public testing::Test {
 protected:
  HostedPart() { SetModuleHost(&host); }
  ~HostedPart() override { SetModuleHost(nullptr); }
  ScriptedHost host;
};

class Bar : public HostedPart {
 protected:
  Bar() {
    bar.AddLabel(QStringLiteral("预期"));
    entry = &bar.AddEntry(QStringLiteral("Edit1"), QStringLiteral("20"), 60);
    choice = &bar.AddChoice(QStringLiteral("ComboBox1"), {QStringLiteral("一"), QStringLiteral("二")},
                            [this](int place) { chosen.push_back(place); });
    button = &bar.AddButton(QStringLiteral("btnOK"), QStringLiteral("确 定"), [this] { ++clicks; });
    entry->OnKeyPress = [this](QChar key) {
      keys.append(key);
      return key == u'\b' || key.isDigit();
    };
    bar.ApplyTheme();
    bar.resize(600, EntryBar::kHeight);
    bar.show();
    QApplication::setActiveWindow(&bar);
    QTest::qWait(10);
  }
  EntryBar bar{QStringLiteral("Test"), nullptr};
  EntryField* entry = nullptr;
  QComboBox* choice = nullptr;
  QPushButton* button = nullptr;
  QString keys;
  std::vector<int> chosen;
  int clicks = 0;
};

TEST_F(Bar, KeysAreFilteredBeforeTheyTakeEffect) {
  entry->setFocus();
  entry->setCursorPosition(2);
  QTest::keyClicks(entry, QStringLiteral("5x"));
  EXPECT_EQ(entry->text(), QStringLiteral("205"));
  QTest::keyClick(entry, Qt::Key_Backspace);
  EXPECT_EQ(entry->text(), QStringLiteral("20"));
  QTest::keyClick(entry, Qt::Key_Left);
  QTest::keyClick(entry, Qt::Key_Return);
  EXPECT_EQ(keys, QStringLiteral("5x\b\r")) << "moving is not asked about";
  EXPECT_EQ(entry->cursorPosition(), 1);
}

TEST_F(Bar, WhatAnInputMethodPutsTogetherIsFilteredCharacterByCharacter) {
  entry->setFocus();
  entry->setText(QStringLiteral("12"));
  entry->setCursorPosition(1);
  QInputMethodEvent compose(QStringLiteral("san"), {});
  QApplication::sendEvent(entry, &compose);
  EXPECT_EQ(entry->text(), QStringLiteral("12")) << "nothing is in yet";
  QInputMethodEvent commit;
  commit.setCommitString(QStringLiteral("3x三\U00020BB74"));
  QApplication::sendEvent(entry, &commit);
  EXPECT_EQ(entry->text(), QStringLiteral("1342"));
  EXPECT_EQ(keys.size(), 5) << "a pair of surrogates is one character";
  entry->OnKeyPress = {};
  QApplication::sendEvent(entry, &commit);
  EXPECT_EQ(entry->text(), QStringLiteral("134") + commit.commitString() + QStringLiteral("2"));
}

TEST_F(Bar, CommandsAreNotTypedCharacters) {
  entry->setFocus();
  entry->selectAll();
  QTest::keyClick(entry, Qt::Key_X, Qt::ControlModifier);
  EXPECT_EQ(entry->text(), QString());
  QTest::keyClick(entry, Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(entry->text(), QStringLiteral("20"));
  EXPECT_EQ(keys, QString());
  QTest::keyClick(entry, Qt::Key_5, Qt::ControlModifier | Qt::AltModifier);
  EXPECT_EQ(keys, QStringLiteral("5")) << "the third level of a key types";
}

TEST_F(Bar, AKeyThatHasBeenDealtWithHasNoOtherEffect) {
  std::vector<int> seen;
  entry->OnKeyDown = [&](int key, Qt::KeyboardModifiers) {
    seen.push_back(key);
    return key == Qt::Key_Home;
  };
  entry->setFocus();
  entry->setCursorPosition(2);
  QTest::keyClick(entry, Qt::Key_Home);
  EXPECT_EQ(entry->cursorPosition(), 2);
  QTest::keyClick(entry, Qt::Key_Left);
  EXPECT_EQ(entry->cursorPosition(), 1);
  EXPECT_EQ(seen, (std::vector<int>{Qt::Key_Home, Qt::Key_Left}));
}

TEST_F(Bar, TheHostLeavesTheKeyboardToAFocusedEntry) {
  button->setFocus();
  host.keyCodes.calls.clear();
  entry->setFocus();
  EXPECT_EQ(host.keyCodes.calls, std::vector<bool>{false});
  button->setFocus();
  EXPECT_EQ(host.keyCodes.calls, (std::vector<bool>{false, true}));
}

TEST_F(Bar, ChoicesAndButtonsWorkByKeyboardAndMouse) {
  choice->setFocus();
  QTest::keyClick(choice, Qt::Key_Down);
  EXPECT_EQ(chosen, std::vector<int>{1});
  QTest::mouseClick(button, Qt::LeftButton);
  button->setFocus();
  QTest::keyClick(button, Qt::Key_Space);
  EXPECT_EQ(clicks, 2);
}

TEST_F(Bar, ItTakesTheThemesColours) {
  const auto color = [this](const char* key) { return host.theme.ColorOf(QString::fromLatin1(key)); };
  EXPECT_EQ(bar.palette().color(QPalette::Window), color("Qm_BGCorlor"));
  EXPECT_EQ(entry->palette().color(QPalette::Text), color("QM_TitleFontColor"));
  host.theme.Switch();
  bar.ApplyTheme();
  EXPECT_EQ(bar.palette().color(QPalette::Window), color("Qm_BGCorlor"));
  EXPECT_EQ(entry->palette().color(QPalette::Text), color("QM_TitleFontColor"));
}

TEST_F(Bar, AHookThatThrowsIsLoggedAndTheBarStaysUsable) {
  entry->OnKeyPress = [](QChar) -> bool { throw std::runtime_error("boom"); };
  entry->setFocus();
  QTest::keyClicks(entry, QStringLiteral("5"));
  ASSERT_FALSE(host.debug.Lines().empty());
  EXPECT_TRUE(host.debug.Lines().back().startsWith(QStringLiteral("Holdwise.bpl->Test->Edit1 发生错误!错误信息:boom")));
  QTest::mouseClick(button, Qt::LeftButton);
  EXPECT_EQ(clicks, 1);
}

TEST_F(HostedPart, ANoticeStandsAtTheRightAndKeepsClearOfTheCaption) {
  TitleStrip strip(QStringLiteral("组合表现"), DesignFont(15, true), {14, 9}, nullptr);
  strip.resize(500, TitleStrip::kHeight);
  strip.show();
  EXPECT_FALSE(strip.Notice().isVisible());
  strip.SetNotice(QStringLiteral("2 个组合的数据不完整"), QStringLiteral("稳健：缺少 <600000>"));
  EXPECT_TRUE(strip.Notice().isVisible());
  EXPECT_GT(strip.Notice().x(), strip.Caption().geometry().right());
  EXPECT_EQ(strip.Notice().geometry().right() + 1, 500 - 14);
  EXPECT_TRUE(strip.Notice().toolTip().contains(QStringLiteral("&lt;600000&gt;"))) << "names are not mark-up";
  strip.SetNotice({}, {});
  EXPECT_FALSE(strip.Notice().isVisible());
}

}  // namespace
}  // namespace holdwise::test
