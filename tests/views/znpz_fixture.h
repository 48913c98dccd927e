// SPDX-License-Identifier: MIT
#pragma once
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QToolTip>
#include <map>

#include "allocation_tables.h"
#include "common/frames/entry_bar.h"
#include "common/series/shared_objects.h"
#include "common/store/database.h"
#include "injecting_user_data.h"
#include "portfolio_view_fixture.h"
#include "views/znpz/allocation_layout.h"
#include "views/znpz/capital_slider.h"
#include "views/znpz/znpz.h"

namespace holdwise::test {

inline const QString kRemote = QStringLiteral("QMTL\\TZZH\\");

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
  void Type(const QString& text) const { Retype(Entry(), text); }
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
  /// The notice over the holdings.
  [[nodiscard]] QLabel& Notice() const {
    for (TitleStrip* strip : frame->findChildren<TitleStrip*>())
      if (strip->parentWidget()->isAncestorOf(holdings)) return strip->Notice();
    throw std::logic_error("no title strip");
  }

  std::map<QString, QByteArray> files;  ///< by remote name
};

}  // namespace holdwise::test
