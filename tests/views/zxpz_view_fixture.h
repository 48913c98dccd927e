// SPDX-License-Identifier: MIT
#pragma once
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QToolTip>

#include "common/store/database.h"
#include "injecting_user_data.h"
#include "portfolio_view_fixture.h"
#include "views/zxpz/editor_band.h"
#include "views/zxpz/editor_layout.h"
#include "views/zxpz/holdings_editor.h"
#include "views/zxpz/portfolio_band.h"
#include "views/zxpz/zxpz.h"

namespace holdwise::test {

/// The portfolio editor in a main frame. The machine's date is 2024-06-03, the market's 2024-05-29; what is written is
/// calculated by nobody: `downloads` counts how often it would be.
class EditorView : public PortfolioViewTest {
 protected:
  using Edited = holdwise::HoldingRow;  ///< not the stored row that the bench knows by that name
  using Call = ScriptedMessageBoxes::Call;
  EditorView() : PortfolioViewTest(1002) {
    bench.host.clock.now = QDateTime(QDate(2024, 6, 3), QTime(10, 0));
    bench.host.dataCenter.indices[1] = {3111.0249, 3100};
  }
  ~EditorView() override { bench.CloseMainFrame(); }  // it stands on `injecting`
  void OpenEditor(int width = 1000) {
    Open(width);
    QApplication::setActiveWindow(&bench.host.system.workArea);
    frame->OnDownData = [this] {
      ++downloads;
      if (onDownload) onDownload();
    };
  }
  /// Two unsaved portfolios with figures and a saved one.
  void AddThree() {
    bench.AddPortfolio(1, QStringLiteral("稳健"), {{1600000, 200, 0.6, 9.5}, {1000001, 100, 0.4, 12}}, 0);
    bench.AddPortfolio(2, QStringLiteral("已保存"), {{1600519, 5, 1, 1800}}, 1);
    bench.AddPortfolio(3, QStringLiteral("进取"), ThreeHoldings(), 0);
    Run(QStringLiteral("update alg_commain set MBSYL = 0.12345, FC = 0.00012345678, BETA = 0.98765475 where ID = 3"));
    Run(QStringLiteral("SET GENERATOR ALG_ROWID_MAIN TO 10"));
    Run(QStringLiteral("SET GENERATOR ALG_ROWID_DETAIL TO 100"));
  }
  void OpenWithThree(int width = 1000) {
    AddThree();
    OpenEditor(width);
  }
  void Run(const QString& statement) { bench.database.Service().Execute(statement); }
  [[nodiscard]] QStringList Headers() {
    return bench.database.Lines(
        QStringLiteral("select ID,COMNAME,ZSCLOSEPRICE,EDITDATE,SAVEFLAG from alg_commain order by ID"));
  }
  [[nodiscard]] QStringList HoldingsOf(int id) {
    return bench.database.Lines(
        QStringLiteral("select SecuCode,PZSL,BUYPRICE from alg_comdetail where MAINID = %1 order by ID").arg(id));
  }
  [[nodiscard]] QStringList Tables() {
    return Headers() +
           bench.database.Lines(QStringLiteral("select MAINID,SecuCode,PZSL,BUYPRICE from alg_comdetail order by ID"));
  }

  [[nodiscard]] EditorBand& Band() const {
    return *static_cast<EditorBand*>(frame->findChild<QWidget*>(QStringLiteral("RzPanel1")));
  }
  [[nodiscard]] HoldingsEditor& Holdings() const { return *Band().Holdings; }
  [[nodiscard]] QLineEdit& Name() const { return *frame->findChild<QLineEdit*>(QStringLiteral("RzEdit1")); }
  [[nodiscard]] QPushButton& Ok() const { return *Band().btnOK; }
  [[nodiscard]] bool IsModifying() const { return Ok().text() == QStringLiteral("修 改"); }

  static Edited Holding(const char* code, const char* price, const char* quantity) {
    return {QString::fromLatin1(code), QStringLiteral("名"), QString::fromLatin1(price), QString::fromLatin1(quantity)};
  }
  static std::vector<Edited> TwoRows() { return {Holding("600000", "10.00", "100"), Holding("000001", "12.5", "200")}; }
  /// What is to be confirmed stands in the editor, as if typed and added.
  void Fill(const QString& name, const std::vector<Edited>& rows) const {
    Name().setText(name);
    Holdings().SetRows(rows);
  }
  void Confirm() const { QTest::mouseClick(&Ok(), Qt::LeftButton); }
  [[nodiscard]] const std::vector<Call>& Messages() const { return bench.host.messageBoxes.calls; }
  static Call Notice(const char* text) { return {QString::fromUtf8(text), QStringLiteral("提示"), 0, 128}; }
  static Call Question() { return {QStringLiteral("确认删除当前组合?"), QStringLiteral("询问"), 1, 32}; }

  /// As the user left it: nothing written, nothing lost.
  void ExpectUntouched(const QString& name, const std::vector<Edited>& rows, const QStringList& tables) {
    EXPECT_EQ(Name().text(), name);
    EXPECT_EQ(Holdings().Rows(), rows);
    EXPECT_EQ(Tables(), tables);
    EXPECT_EQ(downloads, 0);
  }

  enum Link : int { kSave, kDelete, kModify };
  /// The middle of a picture: 20 pixels each, 2 pixels from the cell's edges and from each other.
  [[nodiscard]] QPoint LinkPlace(Link link, int row) const {
    const QRect cell = portfolios->CellRect(editor::kOperation, row);
    return {cell.left() + 2 + 22 * link + 10, cell.top() + 12};
  }
  void MoveTo(Link link, int row) const { QTest::mouseMove(portfolios->viewport(), LinkPlace(link, row)); }
  void Press(Link link, int row) const {
    MoveTo(link, row);
    QTest::mouseClick(portfolios->viewport(), Qt::LeftButton, {}, LinkPlace(link, row));
  }
  /// The statements of the module go through the plan from here on.
  void Inject() { FDBServer = &injecting; }

  int downloads = 0;
  std::function<void()> onDownload;
  InjectingUserData injecting{bench.database.Service()};
};

}  // namespace holdwise::test
