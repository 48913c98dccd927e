// SPDX-License-Identifier: MIT
#include "window/quick_entry.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QTableWidget>
#include <QTest>
#include <memory>
#include <set>

#include "accessible_names.h"

namespace holdwise {
namespace {

class QuickEntryTest : public testing::Test {
 protected:
  QuickEntryTest() {
    window_.setCentralWidget(new QWidget);
    window_.centralWidget()->setFocusPolicy(Qt::StrongFocus);
    QuickEntryActions actions;
    actions.makeSearch = [this] {
      ++searches_;
      return SecuritySearch({{1600000, "600000", "浦发银行", "P F Y HX"},
                             {1600036, "600036", "招商银行", "Z S Y HX"},
                             {1600519, "600519", "贵州茅台", "G Z M T"},
                             {1, "000001", "上证指数", "S Z Z S"}});
    };
    actions.choose = [this](int codeNumber) { chosen_.push_back(codeNumber); };
    actions.isOwn = [this](int codeNumber) { return own_.contains(codeNumber); };
    actions.canBeOwn = [](int codeNumber) { return codeNumber != 1; };
    actions.toggleOwn = [this](int codeNumber) {
      if (own_.erase(codeNumber) == 0) own_.insert(codeNumber);
    };
    entry_ = std::make_unique<QuickEntry>(&window_, std::move(actions));
    window_.resize(600, 500);
    window_.show();
    window_.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window_));
    window_.centralWidget()->setFocus();
  }
  static void Type(const QString& keys) {
    for (const QChar key : keys) QTest::keyClick(QApplication::focusWidget(), key.toLatin1());
  }
  static void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(QApplication::focusWidget(), key, modifiers);
  }
  [[nodiscard]] QTableWidget& List() const { return *entry_->findChild<QTableWidget*>(); }
  [[nodiscard]] QStringList Codes() const {
    QStringList codes;
    for (int row = 0; row < List().rowCount(); ++row) codes += List().item(row, 0)->text();
    return codes;
  }
  [[nodiscard]] QString Hint() const { return entry_->findChild<QLabel*>()->text(); }
  void Click(int row, int column) const {
    QTest::mouseClick(List().viewport(), Qt::LeftButton, {}, List().visualItemRect(List().item(row, column)).center());
  }

  QMainWindow window_;
  std::unique_ptr<QuickEntry> entry_;
  int searches_ = 0;
  std::vector<int> chosen_;
  std::set<int> own_;
};

TEST_F(QuickEntryTest, DigitsOpenItAndEnterChooses) {
  EXPECT_EQ(searches_, 0) << "nothing is made before it is used";
  Type("600519");
  EXPECT_TRUE(entry_->isVisible());
  EXPECT_EQ(Codes(), QStringList{"600519"});
  Press(Qt::Key_Return);
  EXPECT_EQ(chosen_, std::vector<int>{1600519});
  EXPECT_FALSE(entry_->isVisible());
  Type("1");
  EXPECT_EQ(searches_, 1);
}

TEST_F(QuickEntryTest, LettersOpenItAndTheArrowKeysSelect) {
  Type("yx");
  EXPECT_EQ(Codes(), (QStringList{"600000", "600036"}));
  Press(Qt::Key_Up);
  EXPECT_EQ(List().currentRow(), 0) << "the first stays the first";
  Press(Qt::Key_Down);
  Press(Qt::Key_Down);
  EXPECT_EQ(List().currentRow(), 1) << "and the last the last";
  Press(Qt::Key_Enter);
  EXPECT_EQ(chosen_, std::vector<int>{1600036});
}

TEST_F(QuickEntryTest, CapitalsOpenItButShortcutsDoNot) {
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_G, Qt::ControlModifier);
  EXPECT_FALSE(entry_->isVisible());
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_G, Qt::ShiftModifier);
  EXPECT_EQ(Codes(), QStringList{"600519"});
}

TEST_F(QuickEntryTest, WhatIsNotFoundIsNotChosen) {
  Type("600001");
  EXPECT_EQ(Hint(), "没有这只股票");
  EXPECT_FALSE(List().isVisible());
  Press(Qt::Key_Return);
  Press(Qt::Key_Return, Qt::ControlModifier);
  EXPECT_TRUE(chosen_.empty());
  EXPECT_TRUE(own_.empty());
  EXPECT_TRUE(entry_->isVisible());
  Press(Qt::Key_Escape);
  EXPECT_FALSE(entry_->isVisible());
}

TEST_F(QuickEntryTest, OwnStocksComeAndGo) {
  Type("6005");
  EXPECT_EQ(Hint(), "Enter 分时走势 · Ctrl+Enter 加入自选");
  Press(Qt::Key_Return, Qt::ControlModifier);
  EXPECT_EQ(own_, std::set<int>{1600519});
  EXPECT_TRUE(entry_->isVisible());
  EXPECT_EQ(Hint(), "Enter 分时走势 · Ctrl+Enter 移出自选");
  EXPECT_EQ(List().item(0, 2)->text(), "★ 自选");
  Click(0, 2);
  EXPECT_TRUE(own_.empty());
  EXPECT_EQ(List().item(0, 2)->text(), "☆ 自选");
  EXPECT_TRUE(chosen_.empty());
}

TEST_F(QuickEntryTest, AnIndexIsShownButIsNoStockOfOnesOwn) {
  Type("szz");
  EXPECT_EQ(Codes(), QStringList{"000001"});
  EXPECT_EQ(Hint(), "Enter 分时走势");
  EXPECT_EQ(List().item(0, 2)->text(), "");
  Press(Qt::Key_Return, Qt::ControlModifier);
  EXPECT_TRUE(own_.empty());
  Press(Qt::Key_Return);
  EXPECT_EQ(chosen_, std::vector<int>{1});
}

TEST_F(QuickEntryTest, AClickGoesToTheRow) {
  Type("60");
  ASSERT_EQ(List().rowCount(), 3);
  Click(2, 1);
  EXPECT_EQ(chosen_, std::vector<int>{1600519});
  EXPECT_FALSE(entry_->isVisible());
}

TEST_F(QuickEntryTest, EveryControlHasAName) {
  Type("60");
  int named = 0;
  EXPECT_EQ(test::UnnamedControls(*entry_, named).join('\n').toStdString(), "");
  EXPECT_GE(named, 2) << "the edit box and the list";
}

TEST_F(QuickEntryTest, StaysInsideTheWindow) {
  Type("6");
  EXPECT_TRUE(window_.rect().contains(entry_->geometry()));
  window_.resize(500, 400);
  EXPECT_TRUE(window_.rect().contains(entry_->geometry()));
}

TEST_F(QuickEntryTest, OpenedAgainWithTheSameKeyItIsWhereTheWindowIsNow) {
  Type("6");
  Press(Qt::Key_Escape);
  own_ = {1600000};
  window_.resize(420, 300);
  Type("6");
  EXPECT_TRUE(window_.rect().contains(entry_->geometry()));
  EXPECT_EQ(List().item(0, 2)->text(), "★ 自选") << "and says what has changed meanwhile";
}

TEST_F(QuickEntryTest, InALowWindowItShowsFewerRowsAndAllOfItself) {
  window_.resize(500, 400);
  Type("6");
  const int whole = List().height();
  window_.resize(300, 150);
  EXPECT_TRUE(window_.rect().contains(entry_->geometry()));
  EXPECT_TRUE(entry_->rect().contains(entry_->findChild<QLineEdit*>()->geometry()));
  EXPECT_LT(List().height(), whole);
  Press(Qt::Key_Down);
  Press(Qt::Key_Down);
  EXPECT_TRUE(List().viewport()->rect().contains(List().visualItemRect(List().item(2, 0))));
  window_.resize(500, 400);
  EXPECT_EQ(List().height(), whole);
}

TEST_F(QuickEntryTest, EscapeGivesTheKeyboardBackToWhereItWas) {
  QWidget list(window_.centralWidget());
  list.setFocusPolicy(Qt::StrongFocus);
  list.show();
  list.setFocus();
  Type("6");
  ASSERT_NE(QApplication::focusWidget(), &list);
  Press(Qt::Key_Escape);
  EXPECT_EQ(QApplication::focusWidget(), &list);
}

TEST_F(QuickEntryTest, LeavesKeysToFramesThatSwitchItOffAndToEditBoxes) {
  entry_->SetCaptureEnabled(false);
  Type("6");
  Type("y");
  EXPECT_FALSE(entry_->isVisible());
  entry_->SetCaptureEnabled(true);
  QLineEdit edit(window_.centralWidget());
  edit.show();
  edit.setFocus();
  Type("6x");
  EXPECT_FALSE(entry_->isVisible());
  EXPECT_EQ(edit.text(), "6x");
}

}  // namespace
}  // namespace holdwise
