// SPDX-License-Identifier: MIT
// The name of a portfolio as it is typed, composed and pasted in the editor.
#include <gtest/gtest.h>

#include <QClipboard>
#include <QInputMethodEvent>

#include "views/zxpz/portfolio_name.h"
#include "views/zxpz/stock_picker.h"
#include "zxpz_view_fixture.h"

namespace holdwise::test {
namespace {

using namespace editor;

class EditorName : public EditorView {
 protected:
  /// Key by key; characters that no key has come as the keyboard of their country sends them.
  void Type(const QString& text) {
    for (const QChar character : text)
      QTest::sendKeyEvent(QTest::Click, &Name(), Qt::Key_unknown, QString(character), Qt::NoModifier);
  }
  void Compose(const QString& preedit, const QString& commit) {
    QInputMethodEvent event(preedit, {});
    event.setCommitString(commit);
    QApplication::sendEvent(&Name(), &event);
  }
  void Paste(const QString& text) {
    QApplication::clipboard()->setText(text);
    QTest::keyClick(&Name(), Qt::Key_V, Qt::ControlModifier);
  }
};

TEST_F(EditorName, TakesTheKeysOfANameAndNoOthers) {
  OpenEditor();
  Name().setFocus();
  struct Case {
    const char* before;
    int caret;
    const char* keys;
    const char* after;
  };
  for (const auto& [before, caret, keys, after] :
       {Case{"", 0, "abcXYZ019", "abcXYZ019"}, Case{"", 0, "()-_", "()-_"},
        Case{"", 0, "' \"%;,.\\/+*=@#$&!?<>[]{}|^~`:", ""}, Case{"稳健", 1, "A1", "稳A1健"},
        Case{"稳", 1, "健型（二）", "稳健型（二）"}, Case{"x", 0, "é", "éx"}}) {
    Name().setText(QString::fromUtf8(before));
    Name().setCursorPosition(caret);
    Type(QString::fromUtf8(keys));
    EXPECT_EQ(Name().text(), QString::fromUtf8(after)) << keys;
  }
  QTest::keyClick(&Name(), Qt::Key_Backspace);
  EXPECT_EQ(Name().text(), QStringLiteral("x"));
}

TEST_F(EditorName, EnterGoesToTheStockListsFirstShownRow) {
  OpenEditor();
  Name().setFocus();
  TStringGrid& stocks = *Band().Picker->StringGrid2;
  Band().Picker->RzEdit3->setText(QStringLiteral("600"));
  QTest::keyClick(&Name(), Qt::Key_Return);
  EXPECT_TRUE(stocks.hasFocus());
  EXPECT_EQ(stocks.Row(), stocks.GetVisualTopRow());
  EXPECT_EQ(stocks.Cells(0, stocks.Row()), QStringLiteral("600000"));
  EXPECT_EQ(Name().text(), QString());
}

TEST_F(EditorName, TheHostLeavesTheKeyboardToIt) {
  OpenEditor();
  Ok().setFocus();
  EXPECT_TRUE(bench.host.keyCodes.IsCaptureOn());
  Name().setFocus();
  EXPECT_FALSE(bench.host.keyCodes.IsCaptureOn());
  Ok().setFocus();
  EXPECT_TRUE(bench.host.keyCodes.IsCaptureOn());
}

TEST_F(EditorName, ComposedNamesComeWhole) {
  OpenEditor();
  Name().setFocus();
  Compose(QStringLiteral("wen jian"), {});
  EXPECT_EQ(Name().text(), QString()) << "while it is being composed";
  Compose({}, QStringLiteral("稳健"));
  Compose({}, QStringLiteral("𠮷"));
  EXPECT_EQ(Name().text(), QStringLiteral("稳健𠮷"));
}

TEST_F(EditorName, HoldsFortyCharactersAsAPersonCountsThem) {
  OpenEditor();
  Name().setFocus();
  const QString rare = QStringLiteral("𠮷");  // outside the basic plane
  for (int count = 0; count < 39; ++count) Compose({}, rare);
  Compose({}, QStringLiteral("甲"));
  EXPECT_EQ(Name().text(), rare.repeated(39) + QStringLiteral("甲"));
  QTest::keyClicks(&Name(), QStringLiteral("a"));
  EXPECT_EQ(Name().text(), rare.repeated(39) + QStringLiteral("甲")) << "the 41st";
  Name().clear();
  Paste(QStringLiteral("汉").repeated(60));
  EXPECT_EQ(Name().text(), QStringLiteral("汉").repeated(40));
  Name().setCursorPosition(3);
  QTest::keyClicks(&Name(), QStringLiteral("b"));
  EXPECT_EQ(Name().text(), QStringLiteral("汉").repeated(40));
  EXPECT_EQ(Name().cursorPosition(), 3);
}

TEST_F(EditorName, AFullNameOfRareCharactersIsStored) {
  OpenEditor();
  Fill(QString(), TwoRows());
  Name().setFocus();
  for (int count = 0; count < 45; ++count) Compose({}, QStringLiteral("𠮷"));
  Confirm();
  EXPECT_TRUE(Messages().empty());
  EXPECT_EQ(portfolios->Cells(kName, 0), QStringLiteral("𠮷").repeated(40));
}

TEST_F(EditorName, AFullNameOfMarkedLettersIsStored) {
  OpenEditor();
  Fill(QString(), TwoRows());
  Name().setFocus();
  Paste(QStringLiteral("e\u0301").repeated(45));
  Confirm();
  EXPECT_TRUE(Messages().empty());
  EXPECT_EQ(portfolios->Cells(kName, 0), QStringLiteral("e\u0301").repeated(40));
  EXPECT_EQ(Headers().size(), 1);
}

TEST(PortfolioName, WhatIsPutInGivesWayToWhatIsThere) {
  QString name = QStringLiteral("前") + QStringLiteral("新").repeated(5) + QStringLiteral("后").repeated(38);
  int caret = 6;
  LimitName(name, caret);
  EXPECT_EQ(name, QStringLiteral("前新") + QStringLiteral("后").repeated(38));
  EXPECT_EQ(caret, 2);
}

TEST(PortfolioName, MarksGoWithTheirCharacter) {
  const QString forty = QStringLiteral("a").repeated(39) + QStringLiteral("e\u0301");
  QString name = forty;
  int caret = static_cast<int>(name.size());
  LimitName(name, caret);
  EXPECT_EQ(name, forty);
  name += QStringLiteral("o\u0308");
  caret = static_cast<int>(name.size());
  LimitName(name, caret);
  EXPECT_EQ(name, forty);
}

}  // namespace
}  // namespace holdwise::test
