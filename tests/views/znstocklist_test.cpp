// SPDX-License-Identifier: MIT
// The stock pool list, opened by the link in the main frame's title bar.
#include "views/znstocklist/znstocklist.h"

#include <QTimer>

#include "accessible_names.h"
#include "mainframe_fixture.h"
#include "znpz_fixture.h"

namespace holdwise::test {
namespace {

const QString kPool = kRemote + QStringLiteral("StockPool.dat");

class StockPool : public MainFrame {
 protected:
  StockPool() {
    bench.host.dataCenter.accounts[1600000] = {10500, 201234, 0};
    bench.host.dataCenter.accounts[1600519] = {-500, 0, 0};
  }
  ~StockPool() override { bench.CloseMainFrame(); }

  [[nodiscard]] static QByteArray Pool() {
    return PoolFile({{"600000", 11.255}, {"000001", 13}, {"600519", 1800.5}, {"300750", 200}});
  }
  [[nodiscard]] std::shared_ptr<ScriptedDownFile> Role() const {
    return bench.host.DownFile(QStringLiteral("InfoAsynDownFileRole1"));
  }
  /// Clicks the link; `whileOpen` runs in the form, which is closed after it.
  void OpenByLink(const std::function<void()>& whileOpen) {
    bool hasRun = false;
    QTimer timer;
    timer.setSingleShot(true);
    QObject::connect(&timer, &QTimer::timeout, [&] {
      ASSERT_TRUE(Form_Stock);
      hasRun = true;
      whileOpen();
      if (Form_Stock) Form_Stock->close();
    });
    timer.start(50);
    QTest::mouseClick(LabelWith(QStringLiteral("智能股票池")), Qt::LeftButton);
    EXPECT_TRUE(hasRun);
    EXPECT_FALSE(Form_Stock);
  }
  [[nodiscard]] static TStringGrid& Grid() { return *Form_Stock->findChild<TStringGrid*>(QStringLiteral("strngrd")); }
};

TEST_F(StockPool, EveryControlOfTheFormHasAName) {
  Open();
  OpenByLink([&] {
    Role()->WriteAndReceive(kPool, Pool());
    int named = 0;
    EXPECT_EQ(UnnamedControls(*Form_Stock, named).join('\n').toStdString(), "");
    EXPECT_EQ(named, 1) << "the list";
  });
}

TEST_F(StockPool, TheLinkOpensTheFormWhichAsksForThePool) {
  Open();
  OpenByLink([&] {
    EXPECT_TRUE(Form_Stock->isModal());
    EXPECT_EQ(Form_Stock->windowTitle(), "智能股票池");
    EXPECT_EQ(Role()->Requests(), std::vector<QString>{kPool});
    EXPECT_FALSE(Form_Stock->IsSettled());
    Role()->WriteAndReceive(kPool, Pool());
    EXPECT_TRUE(Form_Stock->IsSettled());
    EXPECT_EQ(Grid().ToGridText().titles,
              QStringList({"代码", "名称", "日期", "估值", "昨收", "每股收益", "每股净资产"}));
    EXPECT_EQ(RowOf(Grid(), 0), QStringList({"600000", "浦发银行", "2024-05-29", "11.26", "9.80", "1.05", "20.12"}));
    EXPECT_EQ(RowOf(Grid(), 1), QStringList({"000001", "平安银行", "2024-05-29", "13.00", "", "", ""}))
        << "no account figures";
    EXPECT_EQ(RowOf(Grid(), 2),
              QStringList({"600519", "贵州茅台", "2024-05-29", "1800.50", "1700.00", "-0.05", "0.00"}));
    EXPECT_EQ(RowOf(Grid(), 3), QStringList({"300750", "", "2024-05-29", "200.00", "", "", ""}));
  });
}

TEST_F(StockPool, WhatIsNotShownForWantOfAccountFiguresSaysWhy) {
  Open();
  OpenByLink([&] {
    Role()->WriteAndReceive(kPool, Pool());
    for (const int column : {4, 5, 6}) {
      EXPECT_TRUE(Grid().RemarkOf({column, 1}).contains("--accounts")) << column;
      EXPECT_EQ(Grid().RemarkOf({column, 0}), "") << column;
    }
    EXPECT_EQ(Grid().TextWidth({4, 1}), Grid().fontMetrics().horizontalAdvance(QStringLiteral("—")))
        << "a dash is drawn";
    EXPECT_EQ(Grid().RemarkOf({3, 1}), "");
  });
}

TEST_F(StockPool, TheLinkIsAHandAndWorksWithTheKeyboardToo) {
  Open();
  QLabel* link = LabelWith(QStringLiteral("智能股票池"));
  EXPECT_EQ(link->cursor().shape(), Qt::PointingHandCursor);
  QApplication::setActiveWindow(&bench.host.system.workArea);
  link->setFocus(Qt::TabFocusReason);
  EXPECT_TRUE(link->font().underline());
  int opened = 0;
  for (const auto key : {Qt::Key_Return, Qt::Key_Space}) {
    QTimer::singleShot(50, [&] {
      opened += Form_Stock ? 1 : 0;
      if (Form_Stock) Form_Stock->close();
    });
    QTest::keyClick(link, key);
  }
  EXPECT_EQ(opened, 2);
}

TEST_F(StockPool, AnotherRowOpensItsSecurityTheSameOneDoesNot) {
  Open();
  OpenByLink([&] {
    Role()->WriteAndReceive(kPool, Pool());
    auto& set = bench.host.codeNums.setCodes;
    EXPECT_TRUE(set.empty()) << "filling opens nothing";
    Click(Grid(), 0, 0);
    EXPECT_TRUE(set.empty()) << "the current row";
    Click(Grid(), 3, 1);
    EXPECT_EQ(set, std::vector<QString>{"1000001"});
    Click(Grid(), 3, 1);
    EXPECT_EQ(set.size(), 1U);
    Grid().setFocus();
    QTest::keyClick(&Grid(), Qt::Key_Down);
    EXPECT_EQ(set.back(), "1600519");
    QTest::qWait(30);
    EXPECT_EQ(bench.host.addresses.gone.back().first, "分时走势");
  });
}

TEST_F(StockPool, ItMayComeAsAStream) {
  Open();
  OpenByLink([&] {
    Role()->ReceiveStream(kPool, Pool());
    EXPECT_EQ(Grid().RowCount(), 4);
  });
}

TEST_F(StockPool, WhatIsMissingOrDamagedIsSaid) {
  Open();
  OpenByLink([&] {
    EXPECT_EQ(EmptyText(Grid()), "正在取得股票池…");
    Role()->Fail(kPool, TDSBAsynDownFileRole::kNotFound);
    EXPECT_EQ(EmptyText(Grid()), "没有取得股票池文件 StockPool.dat。\n请更新数据目录后再打开。");
  });
  OpenByLink([&] {
    Role()->WriteAndReceive(kPool, "no packet");
    EXPECT_EQ(EmptyText(Grid()), "股票池文件不能读取（原因见日志）。\n请更新数据目录后再打开。");
    EXPECT_TRUE(bench.host.debug.Lines().back().startsWith(
        "Holdwise.bpl->Znstocklist->InfoAsynDownFileRole1ReciveAFile 发生错误!错误信息:"));
  });
  OpenByLink([&] {
    Role()->WriteAndReceive(kPool, PoolFile({}));
    EXPECT_EQ(EmptyText(Grid()), "股票池中没有股票");
  });
}

TEST_F(StockPool, ItFollowsTheThemeAndItsWidth) {
  Open();
  OpenByLink([&] {
    Role()->WriteAndReceive(kPool, Pool());
    bench.host.theme.Switch();
    bench.mainFrame->MakeSkin();
    EXPECT_EQ(Grid().Colors().evenRow, bench.host.theme.ColorOf("KTR_HighLightColor1"));
    EXPECT_EQ(Grid().Colors().selectedRow, bench.host.theme.ColorOf("Qm_GridRowSelectColor"));
    Form_Stock->resize(900, 500);
    QTest::qWait(20);
    int width = 0;
    for (int column = 0; column < 7; ++column) width += Grid().ColWidth(column);
    EXPECT_EQ(width, Grid().ClientWidth());
    int titles = 0;
    for (const QLabel* label : Form_Stock->findChildren<QLabel*>()) {
      if (label->text() != "估值") continue;
      ++titles;
      EXPECT_FALSE(label->toolTip().isEmpty());
    }
    EXPECT_EQ(titles, 1);
  });
}

TEST_F(StockPool, TheMainFrameMayGoWhileItIsOpen) {
  Open();
  QTimer::singleShot(50, [&] { bench.CloseMainFrame(); });
  QLabel* link = LabelWith(QStringLiteral("智能股票池"));
  link->setFocus();
  // Not a click, whose second half would reach a widget that is gone.
  QKeyEvent press(QEvent::KeyPress, Qt::Key_Return, {}, "\r");
  QApplication::sendEvent(link, &press);
  EXPECT_EQ(bench.mainFrame, nullptr);
  EXPECT_FALSE(Form_Stock);
}

}  // namespace
}  // namespace holdwise::test
