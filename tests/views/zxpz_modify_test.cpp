// SPDX-License-Identifier: MIT
// Modifying a portfolio in the editor: what is brought back, what is refused and asked, what is written.
#include <gtest/gtest.h>

#include "common/frames/entry_bar.h"
#include "views/zxpz/stock_picker.h"
#include "zxpz_view_fixture.h"

namespace holdwise::test {
namespace {

using namespace editor;
using EditorModify = EditorView;

TEST_F(EditorModify, WithoutHoldingsAModificationAsksForStocks) {
  OpenWithThree();
  const QStringList tables = Tables();
  Press(kModify, 0);
  Holdings().ClearRows();
  Confirm();
  EXPECT_EQ(Messages(), std::vector<Call>{Notice("请添加股票到您的组合")});
  EXPECT_TRUE(IsModifying());
  ExpectUntouched(QStringLiteral("稳健"), {}, tables);
}

TEST_F(EditorModify, ModifyingBringsThePortfolioIntoTheEditor) {
  OpenWithThree();
  Press(kModify, 1);
  EXPECT_TRUE(IsModifying());
  EXPECT_EQ(Name().text(), QStringLiteral("进取"));
  EXPECT_EQ(Holdings().Rows(),
            (std::vector<Edited>{
                {QStringLiteral("600000"), QStringLiteral("浦发银行"), QStringLiteral("9"), QStringLiteral("1000")},
                {QStringLiteral("000001"), QStringLiteral("平安银行"), QStringLiteral("12"), QStringLiteral("500")},
                {QStringLiteral("600519"), QStringLiteral("贵州茅台"), QStringLiteral("1800"), QStringLiteral("10")}}));
}

TEST_F(EditorModify, WhatIsBeingMadeIsNamedUntilItIsStored) {
  OpenWithThree();
  EXPECT_EQ(frame->Unstored(), QString());
  Name().setText(QStringLiteral(" "));
  EXPECT_EQ(frame->Unstored(), QString()) << "nothing but a blank";
  Name().setText(QStringLiteral("新组合"));
  EXPECT_EQ(frame->Unstored(), QStringLiteral("自选配置里的组合“新组合”还没有存"));
  Fill({}, TwoRows());
  EXPECT_EQ(frame->Unstored(), QStringLiteral("自选配置里还没有名称的组合没有存"));
  Fill(QStringLiteral("新组合"), TwoRows());
  Confirm();
  EXPECT_EQ(frame->Unstored(), QString());
  Press(kModify, 1);
  EXPECT_EQ(frame->Unstored(), QStringLiteral("自选配置里对组合“进取”的修改还没有存"));
  Confirm();
  EXPECT_EQ(frame->Unstored(), QString());
}

TEST_F(EditorModify, AModificationKeepsTheIdAndTakesTheMarketsDate) {
  OpenWithThree();
  Press(kModify, 0);
  Fill(QStringLiteral("改过"), TwoRows());
  Confirm();
  EXPECT_TRUE(Messages().empty());
  EXPECT_EQ(downloads, 1);
  EXPECT_TRUE(Headers().contains(QStringLiteral("1 改过 3111.02 2024-05-29 0")));
  EXPECT_EQ(HoldingsOf(1), List({"1600000 100 10", "1000001 200 12.5"}));
  EXPECT_FALSE(IsModifying());
  EXPECT_EQ(portfolios->Row(), 0);
  EXPECT_EQ(portfolios->Cells(kName, 0), QStringLiteral("改过"));
  EXPECT_EQ(portfolios->Cells(kCreated, 0), QStringLiteral("2024-05-29")) << "as stored, not the provisional one";
  EXPECT_TRUE(Holdings().GetIshaveData());
}

TEST_F(EditorModify, AModificationMayKeepItsName) {
  OpenWithThree();
  Press(kModify, 1);
  Confirm();
  EXPECT_TRUE(Messages().empty());
  EXPECT_EQ(portfolios->RowCount(), 2);
  EXPECT_EQ(portfolios->Row(), 1);
}

TEST_F(EditorModify, AModificationMayShareANameWhenTheUserAgrees) {
  for (const char* name : {"进取", "已保存"}) {
    OpenWithThree();
    bench.host.messageBoxes.calls.clear();
    Press(kModify, 0);
    Fill(QString::fromUtf8(name), TwoRows());
    Confirm();
    ASSERT_EQ(Messages().size(), 1U) << name;
    const Call asked = Messages().front();
    EXPECT_EQ(asked.caption, QStringLiteral("询问"));
    EXPECT_EQ(asked.buttons, 1);
    EXPECT_EQ(asked.style, 32);
    for (const char* said : {name, "都不能保存", "两个都删除"})
      EXPECT_TRUE(asked.text.contains(QString::fromUtf8(said))) << said;
    EXPECT_FALSE(IsModifying());
    EXPECT_TRUE(Headers().contains(QStringLiteral("1 %1 3111.02 2024-05-29 0").arg(QString::fromUtf8(name))));
    bench.CloseMainFrame();
    ClearPortfolios();
  }
}

TEST_F(EditorModify, AModificationKeepsAllThatWasTypedWhenTheUserWantsNoSharedName) {
  OpenWithThree();
  const QStringList tables = Tables();
  Press(kModify, 0);
  Fill(QStringLiteral("进取"), TwoRows());
  bench.host.messageBoxes.answers = {2};
  Confirm();
  EXPECT_EQ(Messages().size(), 1U);
  EXPECT_TRUE(IsModifying());
  ExpectUntouched(QStringLiteral("进取"), TwoRows(), tables);
  EXPECT_TRUE(Name().hasFocus());
  EXPECT_EQ(Name().selectedText(), QStringLiteral("进取"));
  EXPECT_FALSE(bench.host.keyCodes.IsCaptureOn());
  EXPECT_FALSE(bench.database.Service().InTransaction());
}

TEST_F(EditorModify, TheMainFrameMayGoWhileASharedNameIsAskedAbout) {
  for (const int answer : {1, 2}) {
    OpenWithThree();
    const QStringList tables = Tables();
    Press(kModify, 0);
    Fill(QStringLiteral("进取"), TwoRows());
    bench.host.messageBoxes.answers = {answer};
    bench.host.messageBoxes.whileAsking = [&] { bench.CloseMainFrame(); };
    Confirm();
    EXPECT_EQ(bench.mainFrame, nullptr);
    EXPECT_EQ(Tables(), tables) << answer;
    bench.host.messageBoxes.whileAsking = nullptr;
    ClearPortfolios();
  }
}

// Ctrl+Enter leaves the focus where it is; whoever has it keeps the keyboard.
TEST_F(EditorModify, ARefusalLeavesTheFocusAndTheKeyboardWhereTheyAre) {
  OpenWithThree();
  Press(kModify, 0);
  Inject();
  const std::vector<Edited> one = {Holding("600000", "1", "1")};
  struct Case {
    std::vector<Edited> rows;
    const char* text;
  };
  for (const Case& refused :
       {Case{{}, "请添加股票到您的组合"}, {one, "组合记录数应大于2"}, {TwoRows(), "修改组合失败"}}) {
    for (QWidget* focused : {static_cast<QWidget*>(&Name()), static_cast<QWidget*>(Band().Picker->RzEdit3),
                             static_cast<QWidget*>(Band().Picker->StringGrid2), static_cast<QWidget*>(&Ok())}) {
      bench.host.messageBoxes.calls.clear();
      Fill(QStringLiteral("改过"), refused.rows);
      focused->setFocus();
      injecting.plan.FailCall(0);
      QTest::keyClick(focused, Qt::Key_Return, Qt::ControlModifier);
      EXPECT_EQ(Messages(), std::vector<Call>{Notice(refused.text)});
      EXPECT_TRUE(focused->hasFocus()) << refused.text;
      const bool isEntry = qobject_cast<QLineEdit*>(focused) != nullptr;
      EXPECT_EQ(bench.host.keyCodes.IsCaptureOn(), !isEntry) << refused.text << focused->objectName().toStdString();
    }
  }
}

TEST_F(EditorModify, AFailedModificationIsSaidAndStaysOne) {
  OpenWithThree();
  const QStringList tables = Tables();
  Press(kModify, 0);
  Fill(QStringLiteral("改过"), TwoRows());
  Inject();
  for (int number = 0; number < 8;
       ++number) {  // start, others of the name, two deletions, two holdings, header, commit
    bench.host.messageBoxes.calls.clear();
    injecting.plan.FailCall(number);
    Confirm();
    EXPECT_EQ(Messages(), std::vector<Call>{Notice("修改组合失败")}) << number;
    EXPECT_TRUE(IsModifying());
    ExpectUntouched(QStringLiteral("改过"), TwoRows(), tables);
  }
  bench.host.messageBoxes.calls.clear();
  injecting.plan.FailCall(2, FailurePlan::Kind::Refuses);
  Confirm();
  EXPECT_TRUE(Messages().empty()) << "holdings that cannot be deleted end it in silence";
  EXPECT_TRUE(IsModifying());
  ExpectUntouched(QStringLiteral("改过"), TwoRows(), tables);
}

}  // namespace
}  // namespace holdwise::test
