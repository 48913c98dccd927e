// SPDX-License-Identifier: MIT
// A saved portfolio is taken back into the editor as an unsaved copy.
#include <gtest/gtest.h>

#include <QApplication>
#include <QContextMenuEvent>
#include <QMenu>

#include "common/store/database.h"
#include "common/store/portfolio_copy.h"
#include "injecting_user_data.h"
#include "performance_view_fixture.h"

namespace holdwise::test {
namespace {

class PerformanceCopy : public PerformanceView {
 protected:
  ~PerformanceCopy() override { bench.CloseMainFrame(); }  // it stands on `injecting`
  QStringList Headers() {
    return bench.database.Lines(QStringLiteral(
        "select COMNAME,ZHFG,ZSCLOSEPRICE,MBSYL,FC,BETA,ISFINISHED,EDITDATE,SAVEFLAG from alg_commain order by ID"));
  }
  void Prepare() {
    AddTwo();
    bench.database.Service().Execute(QStringLiteral("SET GENERATOR ALG_ROWID_MAIN TO 10"));
    bench.database.Service().Execute(QStringLiteral("SET GENERATOR ALG_ROWID_DETAIL TO 100"));
    bench.database.Service().Execute(
        QStringLiteral("update alg_commain set ZHFG='成长', ZSCLOSEPRICE=3000.5, FC=0.5, BETA=1.5 where ID = 2"));
  }
  /// Opens the context menu of a row with the right mouse button and chooses the entry of that text.
  bool Choose(int row, const QString& text) {
    const QPoint at = portfolios->CellRect(0, row).center();
    QTest::mouseClick(portfolios->viewport(), Qt::RightButton, {}, at);
    QContextMenuEvent event(QContextMenuEvent::Mouse, at, portfolios->viewport()->mapToGlobal(at));
    QApplication::sendEvent(portfolios->viewport(), &event);
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    if (menu == nullptr) return false;
    for (QAction* action : menu->actions()) {
      if (action->text() != text) continue;
      menu->setActiveAction(action);
      QTest::keyClick(menu, Qt::Key_Return);
      return true;
    }
    menu->close();
    return false;
  }
  InjectingUserData injecting{bench.database.Service()};
};

const QString kEntry = QStringLiteral("复制到自选配置");

TEST_F(PerformanceCopy, TheEntryMakesAnUnsavedCopyAndSaysItsName) {
  Prepare();
  Open();
  const QStringList before = Headers();
  ASSERT_TRUE(Choose(0, kEntry));
  const std::vector<ScriptedMessageBoxes::Call> said = {
      {QStringLiteral("组合“进取”已复制为“进取-副本”，请到“自选配置”中修改。"), QStringLiteral("提示"), 0, 128}};
  EXPECT_EQ(bench.host.messageBoxes.calls, said);
  EXPECT_EQ(Headers(), before + QStringList{QStringLiteral("进取-副本 成长 3000.5 0 0 0 0 2024-05-22 0")});
  EXPECT_EQ(bench.database.Lines(
                QStringLiteral("select SecuCode,PZSL,PZBL,BUYPRICE from alg_comdetail where MAINID = 11 order by ID")),
            bench.database.Lines(
                QStringLiteral("select SecuCode,PZSL,PZBL,BUYPRICE from alg_comdetail where MAINID = 2 order by ID")));
  EXPECT_EQ(portfolios->RowCount(), 2) << "the saved ones";
}

TEST_F(PerformanceCopy, EachCopyHasANameOfItsOwn) {
  Prepare();
  Open();
  ASSERT_TRUE(Choose(1, kEntry));
  ASSERT_TRUE(Choose(1, kEntry));
  EXPECT_EQ(bench.database.Lines(QStringLiteral("select COMNAME from alg_commain where SAVEFLAG = 0 order by ID")),
            List({"稳健-副本", "稳健-副本2"}));
}

TEST_F(PerformanceCopy, AnEmptyListOffersNothing) {
  Open();
  EXPECT_FALSE(Choose(0, kEntry));
}

TEST_F(PerformanceCopy, APortfolioThatIsGoneIsSaid) {
  Prepare();
  Open();
  bench.database.Service().Execute(QStringLiteral("delete from alg_commain where ID = 2"));
  ASSERT_TRUE(Choose(0, kEntry));
  EXPECT_EQ(bench.host.messageBoxes.calls.back().text, QStringLiteral("组合“进取”已不存在，没有复制。"));
}

TEST_F(PerformanceCopy, AFailingStatementIsSaidAndNothingIsStored) {
  Prepare();
  Open();
  const QStringList before = Headers();
  FDBServer = &injecting;
  constexpr int kCalls = 7;  // start, name, free name, id, holdings, header, commit
  for (int number = 0; number < kCalls; ++number) {
    for (const auto kind : {FailurePlan::Kind::Throws, FailurePlan::Kind::Refuses}) {
      injecting.plan.FailCall(number, kind);
      ASSERT_TRUE(Choose(0, kEntry));
      EXPECT_TRUE(injecting.plan.HasFailed()) << number;
      EXPECT_TRUE(bench.host.messageBoxes.calls.back().text.startsWith(QStringLiteral("组合“进取”没有复制：")));
      EXPECT_EQ(Headers(), before) << number;
      EXPECT_EQ(bench.database.Lines(QStringLiteral("select count(*) from alg_comdetail")), List({"4"})) << number;
      EXPECT_FALSE(injecting.InTransaction());
    }
  }
  injecting.plan.FailCall(kCalls);
  ASSERT_TRUE(Choose(0, kEntry));
  EXPECT_FALSE(injecting.plan.HasFailed());
}

TEST_F(PerformanceCopy, TheNameStaysWithinFortyCharactersAndLosesItsQuotes) {
  UserDataServices& service = bench.database.Service();
  service.Execute(QStringLiteral("SET GENERATOR ALG_ROWID_MAIN TO 10"));
  service.Execute(QStringLiteral("SET GENERATOR ALG_ROWID_DETAIL TO 100"));
  bench.AddPortfolio(1, QStringLiteral("𠮷").repeated(40), {{1600000, 1, 1, 1}});
  bench.AddPortfolio(2, QStringLiteral("it''s"), {{1600000, 1, 1, 1}});
  EXPECT_EQ(CopyToEditor(service, 1), QStringLiteral("𠮷").repeated(37) + QStringLiteral("-副本"));
  EXPECT_EQ(CopyToEditor(service, 1), QStringLiteral("𠮷").repeated(36) + QStringLiteral("-副本2"));
  EXPECT_EQ(CopyToEditor(service, 2), QStringLiteral("its-副本"));
  bench.AddPortfolio(3, QStringLiteral("e\u0301").repeated(40), {{1600000, 1, 1, 1}});
  EXPECT_EQ(CopyToEditor(service, 3), QStringLiteral("e\u0301").repeated(37) + QStringLiteral("-副本"));
  EXPECT_EQ(CopyToEditor(service, 99), QString());
  EXPECT_FALSE(service.InTransaction());
}

}  // namespace
}  // namespace holdwise::test
