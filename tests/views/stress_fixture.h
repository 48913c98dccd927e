// SPDX-License-Identifier: MIT
#pragma once
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QToolTip>

#include "common/series/shared_objects.h"
#include "common/store/database.h"
#include "holdwise/packet/packet_file.h"
#include "portfolio_view_fixture.h"
#include "views/ylcs/stress_layout.h"

namespace holdwise::test {

inline const QString kShanghai = QStringLiteral("QMTL\\TZZH\\风险计量\\SH.dat");
inline const QString kShenzhen = QStringLiteral("QMTL\\TZZH\\风险计量\\SZ.dat");
inline const QString kCsi = QStringLiteral("QMTL\\TZZH\\风险计量\\HS.dat");

/// A risk file with the betas of 600000 and 000001.
inline QByteArray Betas(double first = 1.5, double second = 0.5) {
  ResultSet table;
  const int code = table.AddColumn("code", ColumnType::Text);
  const int beta = table.AddColumn("beta", ColumnType::Real);
  for (const auto& [name, value] : {std::pair{"600000", first}, std::pair{"000001", second}}) {
    const int row = table.AppendRow();
    table.SetText(row, code, name);
    table.SetReal(row, beta, value);
  }
  return EncodePacket(table);
}

class StressView : public PortfolioViewTest {
 protected:
  StressView() : PortfolioViewTest(2003) {}
  /// Two portfolios, and the risk file of the first index.
  void OpenWithTwo(int width = 1000) {
    AddTwo();
    Open(width);
    QApplication::setActiveWindow(&bench.host.system.workArea);
    Receive(kShanghai, Betas());
  }
  [[nodiscard]] std::shared_ptr<ScriptedDownFile> Download() const {
    return bench.host.DownFile(QStringLiteral("FInfoAsynDownFileRole"));
  }
  /// Answers every request for that file.
  void Receive(const QString& file, const QByteArray& content) const { Answer(file, &content); }
  void Fail(const QString& file) const { Answer(file, nullptr); }

  [[nodiscard]] QLineEdit& Entry() const { return *frame->findChild<QLineEdit*>(QStringLiteral("Edit1")); }
  [[nodiscard]] QComboBox& Choice(const char* name) const {
    return *frame->findChild<QComboBox*>(QString::fromLatin1(name));
  }
  [[nodiscard]] QPushButton& Button(const char* name) const {
    return *frame->findChild<QPushButton*>(QString::fromLatin1(name));
  }
  void Type(const QString& text) const { Retype(Entry(), text); }
  void Apply(const QString& text) const {
    Type(text);
    QTest::keyClick(&Entry(), Qt::Key_Return);
  }
  void ChooseIndex(int place) const {
    QComboBox& choice = Choice("ComboBox11");
    choice.setFocus();
    while (choice.currentIndex() < place) QTest::keyClick(&choice, Qt::Key_Down);
  }
  /// The label that says what the grids show.
  [[nodiscard]] QString Shown() const {
    for (const QLabel* label : frame->findChildren<QLabel*>())
      if (label->text().startsWith(QStringLiteral("所示"))) return label->text();
    return {};
  }
  [[nodiscard]] QStringList Texts() const {
    QStringList texts;
    for (const TStringGrid* grid : {portfolios, holdings})
      for (int row = 0; row < grid->RowCount(); ++row) texts << RowOf(*grid, row);
    return texts;
  }
  /// The notice in the title strip of the page.
  [[nodiscard]] QLabel& MainNotice() const {
    for (TitleStrip* strip : bench.mainFrame->findChildren<TitleStrip*>())
      if (!frame->isAncestorOf(strip)) return strip->Notice();
    throw std::logic_error("no title strip");
  }

 private:
  void Answer(const QString& file, const QByteArray* content) const {
    while (true) {
      const auto& pending = Download()->Pending();
      if (std::find(pending.begin(), pending.end(), file) == pending.end()) return;
      if (content != nullptr)
        Download()->WriteAndReceive(file, *content);
      else
        Download()->Fail(file, TDSBAsynDownFileRole::kNotFound);
    }
  }
};

}  // namespace holdwise::test
