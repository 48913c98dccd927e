// SPDX-License-Identifier: MIT
#pragma once
#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QPushButton>
#include <QTest>
#include <memory>
#include <ostream>
#include <vector>

#include "common/frames/frame_parts.h"
#include "common/host/host_access.h"
#include "scripted_host.h"
#include "views/zxpz/holdings_editor.h"

namespace holdwise {

inline void PrintTo(const HoldingRow& row, std::ostream* out) {
  *out << QStringList({row.code, row.name, row.price, row.quantity}).join(QLatin1Char('|')).toStdString();
}
inline void PrintTo(const GridCell& cell, std::ostream* out) {
  *out << "column " << cell.column << ", row " << cell.row;
}

namespace test {

/// A host with seven stocks, a fund and an index of a stock's number, and a shown holdings editor on it.
class EditorTest : public testing::Test {
 protected:
  EditorTest() {
    SetModuleHost(&host);
    Add("600000", "浦发银行", 1, 10);
    Add("600519", "贵州茅台", 1, 1710.5);
    Add("601398", "工商银行", 1, 5.25);
    Add("000001", "平安银行", 2, 12);
    Add("000002", "万 科Ａ", 2, 8);
    Add("300750", "宁德时代", 2, 0);
    Add("002594", "比亚迪", 2, 230.456);
    host.codeNums.Add({QStringLiteral("510300"), QStringLiteral("沪深300ETF"), {}, 3, {4, 4}, true});
    editor = std::make_unique<HoldingsEditor>(nullptr);
    editor->ApplyTheme();
    editor->resize(420, 240);
    Show(*editor);
  }
  ~EditorTest() override {
    editor.reset();
    SetModuleHost(nullptr);
  }
  void Add(const char* code, const char* name, int market, double price) {
    host.codeNums.Add({QString::fromUtf8(code), QString::fromUtf8(name), {}, market, {price, price}});
  }
  static void Show(QWidget& widget) {
    widget.show();
    QApplication::setActiveWindow(&widget);
    QTest::qWait(20);
  }

  [[nodiscard]] TStringGrid& Grid() const { return *editor->StringGrid3; }
  [[nodiscard]] TRzEdit& Edit() const { return *editor->FInplaceEdit; }
  /// So many rows: code 601001, price 11.5, quantity 100; code 601002, price 12.5, quantity 200; ...
  void Fill(int count) const {
    std::vector<HoldingRow> rows;
    for (int row = 1; row <= count; ++row) {
      rows.push_back({QString::number(601000 + row), QStringLiteral("股票%1").arg(row),
                      QStringLiteral("%1.5").arg(10 + row), QString::number(row * 100)});
    }
    editor->SetRows(rows);
  }
  /// Codes less 601000, one a row.
  [[nodiscard]] std::vector<int> Numbers() const {
    std::vector<int> numbers;
    for (const HoldingRow& row : editor->Rows()) numbers.push_back(row.code.toInt() - 601000);
    return numbers;
  }
  [[nodiscard]] QPoint Middle(int column, int row) const { return Grid().CellRect(column, row).center(); }
  void Click(int column, int row, Qt::KeyboardModifiers modifiers = {}) const {
    QTest::mouseClick(Grid().viewport(), Qt::LeftButton, modifiers, Middle(column, row));
  }
  /// A key to whoever has the focus.
  static void Key(int key, Qt::KeyboardModifiers modifiers = {}) {
    QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(key), modifiers);
  }
  static void Type(const QString& text) { QTest::keyClicks(QApplication::focusWidget(), text); }
  /// Presses Ctrl, does it, and lets go.
  template <typename Body>
  static void WithControl(Body body) {
    QWidget* focused = QApplication::focusWidget();
    QTest::keyPress(focused, Qt::Key_Control);
    body();
    QTest::keyRelease(focused, Qt::Key_Control);
  }
  [[nodiscard]] QColor Theme(const char* key) const { return host.theme.ColorOf(QString::fromLatin1(key)); }
  /// The texts of the messages so far.
  [[nodiscard]] QStringList Messages() const {
    QStringList texts;
    for (const auto& call : host.messageBoxes.calls) {
      EXPECT_EQ(call.caption, QStringLiteral("提示"));
      EXPECT_EQ(call.buttons, 0);
      EXPECT_EQ(call.style, 128);
      texts << call.text;
    }
    return texts;
  }

  ScriptedHost host;
  std::unique_ptr<HoldingsEditor> editor;
};

}  // namespace test
}  // namespace holdwise
