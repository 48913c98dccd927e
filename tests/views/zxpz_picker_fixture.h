// SPDX-License-Identifier: MIT
#pragma once
#include <QComboBox>
#include <QHBoxLayout>
#include <QInputMethodEvent>
#include <stdexcept>

#include "common/frames/entry_bar.h"
#include "view_tools.h"
#include "views/zxpz/stock_keypad.h"
#include "views/zxpz/stock_picker.h"
#include "zxpz_fixture.h"

namespace holdwise::test {

inline const QStringList kAllCodes = {"000001", "000002", "002594", "300750", "600000", "600519", "601398"};

/// The picker beside the holdings it adds to, all A-shares loaded.
class Picker : public EditorTest {
 protected:
  Picker() {
    // No stock of either market: not kept although the service lists it.
    Add("830799", "艾融软件", 3, 20);
    host.dataCenter.groups[QStringLiteral("OptionalStock")] = {1600519, -1,      1000002, 1,
                                                               399001,  1600000, 1999999, 1600519};
    window = std::make_unique<QWidget>();
    picker = new StockPicker(*editor, window.get());
    picker->ApplyTheme();
    auto* layout = new QHBoxLayout(window.get());
    layout->addWidget(picker);
    layout->addWidget(editor.get());
    window->resize(900, 320);
    Show(*window);
    picker->SelectSource(StockPicker::kAllShares);
  }
  ~Picker() override {
    // The window owns both.
    if (window) (void)editor.release();
    window.reset();
  }

  [[nodiscard]] TStringGrid& List() const { return *picker->StringGrid2; }
  [[nodiscard]] EntryField& Code() const { return *picker->RzEdit3; }
  /// Codes of the rows that are shown.
  [[nodiscard]] QStringList Shown() const {
    QStringList codes;
    for (int row = 0; row < List().RowCount(); ++row) {
      if (List().RowHeight(row) > 0 && !List().Cells(0, row).isEmpty()) codes << List().Cells(0, row);
    }
    return codes;
  }
  [[nodiscard]] int RowOf(const char* code) const {
    return static_cast<int>(kAllCodes.indexOf(QString::fromLatin1(code)));
  }
  void ClickStock(const char* code, Qt::KeyboardModifiers modifiers = {}) const {
    QTest::mouseClick(List().viewport(), Qt::LeftButton, modifiers, List().CellRect(1, RowOf(code)).center());
  }
  void TypeCode(const char* digits) const { Retype(Code(), QString::fromLatin1(digits)); }
  /// What a Chinese input method does: composes, then commits.
  void Compose(const QString& letters, const QString& characters) const {
    QInputMethodEvent compose(letters, {});
    QApplication::sendEvent(picker->Search, &compose);
    QInputMethodEvent commit;
    commit.setCommitString(characters);
    QApplication::sendEvent(picker->Search, &commit);
  }
  void PressKey(const QString& caption) const { QTest::mouseClick(&KeyOf(caption), Qt::LeftButton); }
  [[nodiscard]] QLabel& KeyOf(const QString& caption) const {
    for (QLabel* key : picker->RzPanel7->findChildren<QLabel*>()) {
      if (key->text() == caption) return *key;
    }
    throw std::runtime_error("no such key");
  }
  [[nodiscard]] QStringList Held() const {
    QStringList codes;
    for (const HoldingRow& row : editor->Rows()) codes << row.code;
    return codes;
  }
  void PressAdd() const { QTest::mouseClick(picker->btnAdd, Qt::LeftButton); }

  std::unique_ptr<QWidget> window;
  StockPicker* picker = nullptr;
};

}  // namespace holdwise::test
