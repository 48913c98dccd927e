// SPDX-License-Identifier: MIT
#pragma once
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QToolTip>
#include <map>

#include "common/frames/entry_bar.h"
#include "common/series/shared_objects.h"
#include "common/store/database.h"
#include "holdwise/packet/packet_file.h"
#include "injecting_user_data.h"
#include "portfolio_view_fixture.h"
#include "views/znpz/allocation_layout.h"
#include "views/znpz/capital_slider.h"
#include "views/znpz/znpz.h"

namespace holdwise::test {

inline const QString kRemote = QStringLiteral("QMTL\\TZZH\\");

/// One line of a candidate list.
struct CandidateLine {
  const char* style;
  double target;
  double variance;
  double beta;
  QString file;
};
inline QByteArray CandidateList(const std::vector<CandidateLine>& lines) {
  ResultSet table;
  const int style = table.AddColumn("ZHFG", ColumnType::Text);
  for (const char* name : {"MBSYL", "FC", "BETA"}) table.AddColumn(name, ColumnType::Real);
  const int file = table.AddColumn("FILENAME", ColumnType::Text);
  for (const CandidateLine& line : lines) {
    const int row = table.AppendRow();
    table.SetText(row, style, line.style);
    table.SetReal(row, style + 1, line.target);
    table.SetReal(row, style + 2, line.variance);
    table.SetReal(row, style + 3, line.beta);
    table.SetText(row, file, line.file);
  }
  return EncodePacket(table);
}

using WeightedCodes = std::vector<std::pair<const char*, double>>;
inline QByteArray CompositionFile(const WeightedCodes& parts) {
  ResultSet table;
  const int code = table.AddColumn("SecuCode", ColumnType::Text);
  const int weight = table.AddColumn("PZBL", ColumnType::Real);
  for (const auto& [text, value] : parts) {
    const int row = table.AppendRow();
    table.SetText(row, code, text);
    table.SetReal(row, weight, value);
  }
  return EncodePacket(table);
}

inline QByteArray CapitalTable(const std::vector<std::pair<int, double>>& limits) {
  ResultSet table;
  const int count = table.AddColumn("StockCount", ColumnType::Integer);
  const int money = table.AddColumn("StockMoney", ColumnType::Real);
  for (const auto& [stocks, limit] : limits) {
    const int row = table.AppendRow();
    table.SetInteger(row, count, stocks);
    table.SetReal(row, money, limit);
  }
  return EncodePacket(table);
}

/// The same file with a text column more, the same in all rows.
inline QByteArray Naming(const char* column, const char* text, const QByteArray& file) {
  ResultSet table = DecodePacket(file);
  const int added = table.AddColumn(column, ColumnType::Text);
  for (int row = 0; row < table.RowCount(); ++row) table.SetText(row, added, text);
  return EncodePacket(table);
}
/// The same file, naming the edition of the data it was made with.
inline QByteArray MadeWith(const char* edition, const QByteArray& file) {
  return Naming("edition", edition, file);
}

inline QByteArray PoolFile(const std::vector<std::pair<const char*, double>>& estimates) {
  ResultSet table;
  const int code = table.AddColumn("SecuCode", ColumnType::Text);
  const int date = table.AddColumn("CTIme", ColumnType::Text);
  const int price = table.AddColumn("PRICE", ColumnType::Real);
  for (const auto& [text, estimate] : estimates) {
    const int row = table.AppendRow();
    table.SetText(row, code, text);
    table.SetText(row, date, "2024-05-29");
    table.SetReal(row, price, estimate);
  }
  return EncodePacket(table);
}

/// The smart allocation in a main frame, whose first view it is. The machine's date is 2024-06-03, the market's
/// 2024-05-29; the market is closed. Prices: 600000 10.00, 000001 12.00, 600519 1710.00, 000002 8.00.
class AllocationView : public PortfolioViewTest {
 protected:
  using Call = ScriptedMessageBoxes::Call;
  AllocationView() : PortfolioViewTest(1001) {
    bench.host.clock.now = QDateTime(QDate(2024, 6, 3), QTime(10, 0));
    bench.host.dataCenter.isOpen = false;
    bench.host.dataCenter.indices[1] = {3111.0249, 3100};
    // What the files are, until a test says otherwise.
    files[kRemote + "StockPool.dat"] = PoolFile({{"600000", 11.5}, {"000001", 13}});
    files[kRemote + "zh_5.dat"] = TwoCandidates();
    files[kRemote + "zh_5_1.dat"] = CompositionFile({{"600000", 0.25}, {"000001", 0.75}});
    files[kRemote + "zh_5_2.dat"] = CompositionFile({{"000002", 0.4}, {"600519", 0.6}});
  }
  ~AllocationView() override { bench.CloseMainFrame(); }

  static QByteArray TwoCandidates() {
    return CandidateList(
        {{"稳健型", 0.1235, 0.000121, 0.75, "zh_5_1.dat"}, {"进取型", 0.2, 0.000456, 1.25, "zh_5_2.dat"}});
  }

  /// Opens the main frame, which shows the view, and answers what it asks for.
  void OpenAll(int width = 1000) {
    OpenOnly(width);
    Serve();
  }
  /// Opens it and answers nothing.
  void OpenOnly(int width = 1000) {
    bench.OpenMainFrame(width);
    frame = bench.mainFrame->CurFrame();
    ASSERT_NE(frame, nullptr);
    ASSERT_EQ(frame->Tag(), 1001);
    portfolios = frame->findChild<TStringGrid*>(QStringLiteral("strngrd"));
    holdings = frame->findChild<TStringGrid*>(QStringLiteral("StringGrid1"));
    QApplication::setActiveWindow(&bench.host.system.workArea);
    QTest::qWait(20);
  }
  [[nodiscard]] std::shared_ptr<ScriptedDownFile> Role(int number) const {
    return bench.host.DownFiles(QStringLiteral("InfoAsynDownFileRole%1").arg(number)).front();
  }
  /// Answers every request, also those that come of an answer, from `files`.
  void Serve() {
    for (bool isBusy = true; isBusy;) {
      isBusy = false;
      for (const int number : {1, 2}) {
        const auto role = Role(number);
        if (role->Pending().empty()) continue;
        Answer(*role, role->Pending().front());
        isBusy = true;
      }
    }
  }
  void Answer(ScriptedDownFile& role, const QString name) {
    const auto file = files.find(name);
    if (file == files.end())
      role.Fail(name, TDSBAsynDownFileRole::kNotFound);
    else
      role.WriteAndReceive(name, file->second);
  }
  [[nodiscard]] QStringList Asked() const {
    const auto& requests = Role(1)->Requests();
    return {requests.begin(), requests.end()};
  }
  /// Puts a file into the work-data folder, as if it had been downloaded.
  void PutFile(const QString& name, const QByteArray& content) const {
    const QString path = bench.host.SysWorkDataPath() + "QMTL/TZZH/" + name;
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content);
  }

  [[nodiscard]] EntryField& Entry() const { return *frame->findChild<EntryField*>(QStringLiteral("Edit1")); }
  [[nodiscard]] QPushButton& Button() const { return *frame->findChild<QPushButton*>(QStringLiteral("btnSetting")); }
  [[nodiscard]] CapitalSlider& Slider() const { return *frame->findChild<CapitalSlider*>(QStringLiteral("Slider")); }
  /// Replaces what stands in the entry, key by key.
  void Type(const QString& text) const {
    Entry().setFocus();
    Entry().selectAll();
    QTest::keyClick(&Entry(), Qt::Key_Backspace);
    QTest::keyClicks(&Entry(), text);
  }
  void Configure() const { QTest::mouseClick(&Button(), Qt::LeftButton); }
  /// Types a capital, presses the button, answers what is asked for.
  void Apply(const QString& text) {
    Type(text);
    Configure();
    Serve();
  }
  [[nodiscard]] QStringList Shown(const TStringGrid& grid, int columns) const {
    QStringList rows;
    for (int row = 0; row < grid.RowCount(); ++row) rows << RowOf(grid, row).mid(0, columns).join(' ');
    return rows;
  }
  [[nodiscard]] QStringList Parts() const { return Shown(*holdings, 4); }
  void PressSave(int row) const { Click(*portfolios, allocation::kOperation, row); }
  [[nodiscard]] const std::vector<Call>& Boxes() const { return bench.host.messageBoxes.calls; }
  [[nodiscard]] QString LastLog() const {
    return bench.host.debug.Lines().empty() ? QString() : bench.host.debug.Lines().back();
  }
  [[nodiscard]] QStringList Stored(const QString& select) {
    QStringList lines;
    const ResultSet rows = bench.database.Service().Query(select);
    for (int row = 0; row < rows.RowCount(); ++row) {
      QStringList cells;
      for (int column = 0; column < rows.ColumnCount(); ++column) cells << rows.TextAt(row, column);
      lines << cells.join(' ');
    }
    return lines;
  }
  /// The notice over the holdings.
  [[nodiscard]] QLabel& Notice() const {
    for (TitleStrip* strip : frame->findChildren<TitleStrip*>())
      if (strip->parentWidget()->isAncestorOf(holdings)) return strip->Notice();
    throw std::logic_error("no title strip");
  }

  std::map<QString, QByteArray> files;  ///< by remote name
};

}  // namespace holdwise::test
