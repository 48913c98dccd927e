// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QLibrary>
#include <QLineEdit>
#include <QTest>
#include <QTimer>

#include "common/frames/frame_parts.h"
#include "common/grid/string_grid.h"
#include "common/host/host_access.h"
#include "common/series/shared_objects.h"
#include "download_settings.h"
#include "plugin/holdwise_addr_item.h"
#include "plugin/untpluginterface.h"
#include "view_bench.h"

namespace holdwise::test {
namespace {

const QString kZnpz = QStringLiteral("QMTL\\TZZH\\ZNPZ.dat");

class Plugin : public testing::Test {
 protected:
  Plugin() { bench.host.system.workArea.show(); }
  ~Plugin() override {
    item.reset();
    SetModuleHost(&bench.host);
  }
  [[nodiscard]] std::shared_ptr<ScriptedDownFile> Download() const {
    return bench.host.DownFile(QStringLiteral("FInfoDown"));
  }
  ViewBench bench;
  std::unique_ptr<THoldwiseAddrItem> item = std::make_unique<THoldwiseAddrItem>();
};

TEST_F(Plugin, TheItemIntroducesItself) {
  EXPECT_EQ(item->Name(), QStringLiteral("投资组合"));
  EXPECT_EQ(item->Number(), 0xFFFF);
  EXPECT_TRUE(item->IsListed());
  EXPECT_FALSE(item->GetIsWorkState());
}

TEST_F(Plugin, TheSmartAllocationFileIsAskedForOnce) {
  ExpectFileDownload(Download()->Settings(), QStringLiteral("FInfoDown"));
  EXPECT_EQ(Download()->Requests(), std::vector<QString>{kZnpz});
  item->EnterAddress({});
  item->LeaveAddress();
  item->EnterAddress({});
  EXPECT_EQ(Download()->Requests().size(), 1U);
}

TEST_F(Plugin, NothingIsMadeBeforeTheFirstEnterAndOnlyOnceAfterIt) {
  EXPECT_TRUE(bench.host.titleFrames.empty());
  item->EnterAddress({});
  ASSERT_EQ(bench.host.titleFrames.size(), 1U);
  ScriptedTitleFrame* title = bench.host.titleFrames.front();
  auto* mainFrame = title->findChild<QSplitter*>();
  ASSERT_NE(mainFrame, nullptr);
  EXPECT_EQ(title->captionText, QStringLiteral("投资组合"));
  EXPECT_EQ(title->layoutKind, 0);
  EXPECT_TRUE(item->GetIsWorkState());
  item->LeaveAddress();
  item->EnterAddress({});
  EXPECT_EQ(bench.host.titleFrames.size(), 1U);
  EXPECT_EQ(title->findChildren<QTreeWidget*>().size(), 1);
  EXPECT_EQ(bench.host.system.shown.size(), 2U);
}

TEST_F(Plugin, EveryViewIsLaidOutAgainOnEnter) {
  item->EnterAddress(QStringLiteral("Skip风险计量"));
  item->EnterAddress(QStringLiteral("Skip组合表现"));
  ScriptedTitleFrame* title = bench.host.titleFrames.front();
  const auto grids = title->findChildren<TStringGrid*>();
  ASSERT_EQ(grids.size(), 6) << "of the view shown at the start, too";
  std::vector<int> before;
  for (TStringGrid* grid : grids) {
    before.push_back(grid->ColWidth(0));
    grid->SetColWidths(std::vector<int>(static_cast<std::size_t>(grid->ColCount()), 3));
    ASSERT_NE(grid->ColWidth(0), before.back());
  }
  item->EnterAddress({});
  for (std::size_t index = 0; index < before.size(); ++index) {
    EXPECT_EQ(grids[static_cast<qsizetype>(index)]->ColWidth(0), before[index]) << index;
  }
}

TEST_F(Plugin, LeavingDetachesTheFrameAndStopsThePrices) {
  bench.AddPortfolio(1, QStringLiteral("甲"), {{1600000, 100, 1, 9}});
  item->EnterAddress({});
  EXPECT_TRUE(item->GetIsWorkState());
  item->LeaveAddress();
  EXPECT_FALSE(item->GetIsWorkState());
  EXPECT_EQ(bench.host.titleFrames.front()->parentWidget(), nullptr);
  EXPECT_EQ(bench.PriceRole()->Commands().back(), QStringLiteral("1|01600000"));
  item->EnterAddress({});
  EXPECT_TRUE(item->GetIsWorkState());
  EXPECT_EQ(bench.PriceRole()->Commands().back(), QStringLiteral("0|01600000"));
}

TEST_F(Plugin, PricesAreRenewedAfterASecondEnterToo) {
  bench.AddPortfolio(1, QStringLiteral("甲"), {{1600000, 100, 1, 9}});
  item->EnterAddress(QStringLiteral("Skip组合表现"));
  item->LeaveAddress();
  item->EnterAddress({});
  bench.DeliverPrices({{QStringLiteral("600000"), {1000, 2}}});
  const auto sent = bench.PriceRole()->Commands().size();
  QTest::qWait(3200);
  EXPECT_EQ(bench.PriceRole()->Commands().size(), sent + 2);
}

TEST_F(Plugin, LeavingBeforeEnteringDoesNothing) {
  item->LeaveAddress();
  item->ChangeColorTheme();
  EXPECT_FALSE(item->GetIsWorkState());
}

TEST_F(Plugin, AnUnknownParameterMakes600000TheCurrentSecurity) {
  for (const char* parameter : {"", "基金", "999999", "Ski", "skip组合表现"}) {
    bench.host.codeNums.currentCode.clear();
    item->EnterAddress(QString::fromUtf8(parameter));
    EXPECT_EQ(bench.host.codeNums.currentCode, QStringLiteral("600000")) << parameter;
  }
}

TEST_F(Plugin, AKnownSecurityOrIndexLeavesTheCurrentOne) {
  for (const char* parameter : {"600519", "000001", "399300"}) {
    item->EnterAddress(QString::fromUtf8(parameter));
    EXPECT_TRUE(bench.host.codeNums.setCodes.empty()) << parameter;
  }
}

TEST_F(Plugin, SkipAndACaptionShowThatView) {
  item->EnterAddress(QStringLiteral("Skip组合表现"));
  EXPECT_EQ(item->Views()->Current(), 2001);
  EXPECT_TRUE(bench.host.codeNums.setCodes.empty());
}

TEST_F(Plugin, SkipAloneOrWithAnUnknownCaptionStaysWhereItIs) {
  item->EnterAddress(QStringLiteral("Skip组合表现"));
  item->EnterAddress(QStringLiteral("Skip"));
  EXPECT_EQ(item->Views()->Current(), 2001);
  item->EnterAddress(QStringLiteral("Skip没有这个"));
  EXPECT_EQ(item->Views()->Current(), 2001);
  EXPECT_TRUE(bench.host.codeNums.setCodes.empty());
}

TEST_F(Plugin, TheTitleFrameFollowsTheSplitter) {
  item->EnterAddress({});
  ScriptedTitleFrame* title = bench.host.titleFrames.front();
  auto* splitter = title->findChild<QSplitter*>();
  EXPECT_EQ(title->moved, std::vector<QSplitter*>{splitter}) << "laid out once on enter";
  title->painted.clear();
  (void)splitter->grab();
  EXPECT_FALSE(title->painted.empty());
  EXPECT_EQ(title->painted.front(), splitter);
  // A person drags the handle.
  QSplitterHandle* handle = splitter->handle(1);
  const QPoint at = handle->rect().center();
  QTest::mousePress(handle, Qt::LeftButton, {}, at);
  QTest::mouseMove(handle, at + QPoint(40, 0));
  QTest::mouseRelease(handle, Qt::LeftButton, {}, at + QPoint(40, 0));
  EXPECT_GT(title->moved.size(), 1U);
}

TEST_F(Plugin, AFailureOnEnterIsLoggedAndNothingElse) {
  bench.host.SetUserData(bench.host.fakeUserData);  // knows no statement
  item->EnterAddress({});
  ASSERT_FALSE(bench.host.debug.Lines().empty());
  EXPECT_TRUE(bench.host.debug.Lines().back().startsWith(
      QStringLiteral("Holdwise.bpl->untmainfrm->EnterAddress 发生错误!错误信息:")));
  EXPECT_TRUE(bench.host.messageBoxes.calls.empty());
}

TEST_F(Plugin, AThemeChangeReachesTitleFrameAndViews) {
  item->EnterAddress(QStringLiteral("Skip组合表现"));
  MessageSpy spy(*item->Views()->Frame());
  item->ChangeColorTheme();
  EXPECT_EQ(bench.host.titleFrames.front()->themeRefreshes, 1);
  EXPECT_EQ(spy.Count(FrameMessage::ChangeSkin), 1);
}

TEST_F(Plugin, TheItemTakesItsFramesAndItsDownloadWithIt) {
  item->EnterAddress(QStringLiteral("Skip组合表现"));
  const auto download = Download();
  item.reset();
  EXPECT_TRUE(bench.host.titleFrames.front().isNull());
  EXPECT_EQ(g_NowPrice, nullptr);
  EXPECT_FALSE(download->IsAlive());
}

TEST_F(Plugin, TheCatalogueIsEmptyBeforeTheFirstEnter) {
  ViewCatalogue* views = item->Views();
  EXPECT_TRUE(views->List().empty());
  EXPECT_FALSE(views->Show(2001));
  EXPECT_EQ(views->Current(), 0);
  EXPECT_EQ(views->Frame(), nullptr);
  EXPECT_TRUE(views->Grids().empty());
  EXPECT_FALSE(views->IsSettled());
  EXPECT_FALSE(views->SelectPortfolio(QStringLiteral("1")));
  views->DataChanged();
}

TEST_F(Plugin, TheCatalogueVisitsViewsAndReadsTheirGrids) {
  bench.AddPortfolio(7, QStringLiteral("甲"), ThreeHoldings());
  bench.AddPortfolio(8, QStringLiteral("乙"), {{1600000, 200, 1, 9}});
  item->EnterAddress({});
  ViewCatalogue* views = item->Views();
  ASSERT_FALSE(views->List().empty());
  EXPECT_EQ(views->List().front().frameId, 1001);
  EXPECT_EQ(views->List().front().caption, QStringLiteral("智能配置"));
  EXPECT_FALSE(views->Show(2000));
  EXPECT_FALSE(views->Show(4711));
  ASSERT_TRUE(views->Show(2001));
  EXPECT_EQ(views->Current(), 2001);
  const auto holdings = views->HoldingsGrid();
  EXPECT_EQ(holdings.gridName, QStringLiteral("StringGrid1"));
  EXPECT_EQ(holdings.portfolioIds, QStringList({QStringLiteral("8"), QStringLiteral("7")}));
  ASSERT_EQ(views->Grids().size(), 2U);
  EXPECT_EQ(views->Grids()[1].rows.size(), 1U);
  EXPECT_TRUE(views->SelectPortfolio(QStringLiteral("7")));
  EXPECT_EQ(views->Grids()[1].rows.size(), 3U);
  EXPECT_FALSE(views->SelectPortfolio(QStringLiteral("9")));
}

TEST_F(Plugin, SettledWaitsForTheDownloadToo) {
  item->EnterAddress({});
  for (const char* role : {"InfoAsynDownFileRole1", "InfoAsynDownFileRole2"}) {
    const auto download = bench.host.DownFile(QString::fromLatin1(role));
    EXPECT_FALSE(item->Views()->IsSettled()) << role;
    download->Fail(download->Pending().front(), TDSBAsynDownFileRole::kNotFound);
  }
  QTest::qWait(1100);
  EXPECT_FALSE(item->Views()->IsSettled());
  Download()->Fail(kZnpz, TDSBAsynDownFileRole::kNotFound);
  EXPECT_TRUE(item->Views()->IsSettled());
}

TEST_F(Plugin, UnfinishedPortfoliosAreAShortcoming) {
  EXPECT_EQ(item->Views()->Shortcoming(), QString());
  bench.AddPortfolio(7, QStringLiteral("甲"), ThreeHoldings());
  item->EnterAddress({});
  EXPECT_EQ(item->Views()->Shortcoming(), QString());
  bench.AddPortfolio(8, QStringLiteral("乙"), ThreeHoldings());
  bench.AddPortfolio(9, QStringLiteral("丙"), ThreeHoldings(), 0);
  bench.database.Service().Execute(QStringLiteral("update alg_commain set ISFINISHED = 0 where ID > 7"));
  // The one that is still being edited does not count.
  EXPECT_TRUE(item->Views()->Shortcoming().startsWith(QStringLiteral("1 个组合的风险数据没有算完")));
  EXPECT_EQ(item->Views()->Progress(), 0);
}

TEST_F(Plugin, ARiskFileThatDoesNotComeIsAShortcomingWhereThereArePortfolios) {
  item->EnterAddress({});
  ASSERT_TRUE(item->Views()->Show(2002));
  bench.host.DownFile(QStringLiteral("FInfoAsynDownFileRole"))
      ->Fail(QStringLiteral("QMTL\\TZZH\\风险计量\\SH.dat"), TDSBAsynDownFileRole::kNotFound);
  EXPECT_EQ(item->Views()->Shortcoming(), QString());
  bench.AddPortfolio(7, QStringLiteral("甲"), ThreeHoldings());
  EXPECT_TRUE(item->Views()->Shortcoming().startsWith(QStringLiteral("风险文件没有取得")));
}

TEST_F(Plugin, WhatAVisitedViewLacksIsSaidAlsoWhenAnotherOneIsShown) {
  bench.AddPortfolio(7, QStringLiteral("甲"), {{1600000, 100, 1, 9}});
  item->EnterAddress({});
  const auto saysRate = [this] {
    return item->Views()->Incomplete().filter(QStringLiteral("没有一年期定期存款利率")).size();
  };
  EXPECT_EQ(saysRate(), 0) << "no view with a rate was visited";
  ASSERT_TRUE(item->Views()->Show(3001));
  ASSERT_TRUE(item->Views()->Show(3002));
  ASSERT_TRUE(item->Views()->Show(2002));
  EXPECT_EQ(saysRate(), 1) << "two views, one line";
}

TEST_F(Plugin, ChangedDataIsReadAgain) {
  item->EnterAddress(QStringLiteral("Skip组合表现"));
  ViewCatalogue* views = item->Views();
  EXPECT_TRUE(views->Grids()[0].rows.empty());
  bench.AddPortfolio(3, QStringLiteral("丙"), {{1600000, 200, 1, 9}});
  views->DataChanged();
  EXPECT_FALSE(views->IsSettled());
  EXPECT_TRUE(g_UserValue->GetUserValuesStringList()->Has(QStringLiteral("3"))) << "nobody reads what was before";
  ASSERT_TRUE(QTest::qWaitFor([&] { return views->Grids()[0].rows.size() == 1; }));
  EXPECT_EQ(bench.PriceRole()->Commands(), std::vector<QString>{QStringLiteral("0|01600000")});
  EXPECT_FALSE(views->IsSettled());
}

/// Each of them takes long with a thousand portfolios.
TEST_F(Plugin, ChangedDataAreReadInSeveralTurnsOfTheEventLoop) {
  item->EnterAddress(QStringLiteral("Skip风险计量"));
  ViewCatalogue* views = item->Views();
  bench.AddPortfolio(3, QStringLiteral("丙"), {{1600000, 200, 1, 9}});
  ASSERT_EQ(bench.database.Service().Execute(QStringLiteral("update alg_commain set ISFINISHED = 0")), 1);
  auto* strip = bench.host.titleFrames.front()->findChild<TitleStrip*>();
  const QString notice = strip->Notice().text();
  MessageSpy spy(*views->Frame());
  QStringList turns;
  QTimer pulse;
  QObject::connect(&pulse, &QTimer::timeout, &pulse, [&] {
    turns << QStringLiteral("%1 %2").arg(spy.Count(FrameMessage::Init)).arg(strip->Notice().text() != notice);
  });
  pulse.start(0);
  views->DataChanged();
  ASSERT_TRUE(QTest::qWaitFor([&] { return !turns.isEmpty() && turns.last() == QStringLiteral("1 1"); }));
  turns.removeDuplicates();
  EXPECT_EQ(turns, QStringList({"0 0", "1 0", "1 1"}));
}

TEST_F(Plugin, DataThatChangedJustBeforeTheAddressIsLeftAreReadWhenItIsEnteredAgain) {
  item->EnterAddress(QStringLiteral("Skip组合表现"));
  ViewCatalogue* views = item->Views();
  MessageSpy spy(*views->Frame());
  bench.AddPortfolio(3, QStringLiteral("丙"), {{1600000, 200, 1, 9}});
  views->DataChanged();
  item->LeaveAddress();
  QTest::qWait(50);
  EXPECT_EQ(spy.Count(FrameMessage::Init), 0);
  EXPECT_TRUE(bench.PriceRole()->Commands().empty());
  item->EnterAddress({});
  EXPECT_EQ(spy.Count(FrameMessage::Init), 1);
  EXPECT_EQ(bench.PriceRole()->Commands(), std::vector<QString>{QStringLiteral("0|01600000")});
}

TEST_F(Plugin, TheCatalogueNamesWhatIsBeingMadeInAnyView) {
  EXPECT_EQ(item->Views()->Unstored(), QStringList()) << "before the first enter";
  item->EnterAddress(QStringLiteral("Skip自选配置"));
  auto* name = item->Views()->Frame()->findChild<QLineEdit*>(QStringLiteral("RzEdit1"));
  ASSERT_NE(name, nullptr);
  EXPECT_EQ(item->Views()->Unstored(), QStringList());
  name->setText(QStringLiteral("新组合"));
  item->EnterAddress(QStringLiteral("Skip组合表现"));
  EXPECT_EQ(item->Views()->Unstored(), QStringList{QStringLiteral("自选配置里的组合“新组合”还没有存")});
}

TEST_F(Plugin, DataThatChangedWhileTheAddressWasLeftIsReadWhenItIsEnteredAgain) {
  item->EnterAddress(QStringLiteral("Skip组合表现"));
  ViewCatalogue* views = item->Views();
  MessageSpy spy(*views->Frame());
  item->LeaveAddress();
  bench.AddPortfolio(3, QStringLiteral("丙"), {{1600000, 200, 1, 9}});
  views->DataChanged();
  EXPECT_EQ(spy.Count(FrameMessage::Init), 0);
  EXPECT_TRUE(bench.PriceRole()->Commands().empty());
  EXPECT_TRUE(views->Grids()[0].rows.empty());
  item->EnterAddress({});
  EXPECT_EQ(spy.Count(FrameMessage::Init), 1);
  EXPECT_EQ(bench.PriceRole()->Commands(), std::vector<QString>{QStringLiteral("0|01600000")});
  ASSERT_EQ(views->Grids()[0].rows.size(), 1U);
  EXPECT_EQ(views->Grids()[0].rows[0][0], QStringLiteral("丙"));
  item->LeaveAddress();
  item->EnterAddress({});
  EXPECT_EQ(spy.Count(FrameMessage::Init), 1) << "nothing has changed since";
}

class EntryFunctions : public testing::Test {
 protected:
  ~EntryFunctions() override { SetModuleHost(nullptr); }
  ScriptedHost host;
};

TEST_F(EntryFunctions, AnotherVersionAndNoHostAreRefused) {
  EXPECT_FALSE(Untpluginterface::Initialize(&host, kSdkVersion + 1));
  EXPECT_FALSE(Untpluginterface::Initialize(nullptr, kSdkVersion));
  EXPECT_TRUE(Untpluginterface::Initialize(&host, kSdkVersion));
}

TEST_F(EntryFunctions, TheDatabaseIsAdvisedOnceAtLoad) {
  EXPECT_FALSE(Untpluginterface::Initialize(&host, kSdkVersion + 1));
  EXPECT_TRUE(host.fakeUserData.advice.empty());
  EXPECT_TRUE(Untpluginterface::Initialize(&host, kSdkVersion));
  Untpluginterface::GetPlugInEnter();
  ASSERT_EQ(host.fakeUserData.advice.size(), 1U);
  EXPECT_FALSE(host.fakeUserData.advice.front().empty());
  EXPECT_EQ(host.fakeUserData.Log(), std::vector<QString>()) << "it need not be open yet";
  Untpluginterface::Finalize();
}

TEST_F(EntryFunctions, EnterRegistersAndExitTakesBack) {
  ASSERT_TRUE(Untpluginterface::Initialize(&host, kSdkVersion));
  Untpluginterface::GetPlugInExit();
  EXPECT_TRUE(host.addresses.items.empty());
  Untpluginterface::GetPlugInEnter();
  ASSERT_EQ(host.addresses.items.size(), 1U);
  const std::weak_ptr<TAddressItem> item = host.addresses.items.front();
  Untpluginterface::GetPlugInExit();
  EXPECT_TRUE(host.addresses.items.empty());
  EXPECT_FALSE(item.expired()) << "the module holds it until it is finalised";
  Untpluginterface::Finalize();
  EXPECT_TRUE(item.expired());
}

TEST(PluginLibrary, ExportsPlainAndQualifiedNames) {
  QLibrary library(qEnvironmentVariable("HOLDWISE_BIN") + QStringLiteral("/../lib/holdwise/Holdwise.so"));
  ASSERT_TRUE(library.load()) << library.errorString().toStdString();
  const auto name = reinterpret_cast<PlugInTextFunction>(library.resolve("GetPlugInName"));
  const auto version = reinterpret_cast<PlugInTextFunction>(library.resolve("GetPlugInVersion"));
  const auto initialize = reinterpret_cast<InitializeFunction>(library.resolve("Initialize"));
  const auto contract = reinterpret_cast<PlugInContractFunction>(library.resolve("GetPlugInContract"));
  ASSERT_TRUE(name != nullptr && version != nullptr && initialize != nullptr && contract != nullptr);
  EXPECT_EQ(contract(), kSdkVersion);
  EXPECT_STREQ(name(), "投资组合");
  EXPECT_STREQ(version(), "1.0.0.0");
  ScriptedHost host;
  EXPECT_FALSE(initialize(&host, kSdkVersion + 1));
  EXPECT_TRUE(initialize(&host, kSdkVersion));
  for (const char* plain : {"GetPlugInEnter", "GetPlugInExit"}) {
    const auto call = reinterpret_cast<PlugInVoidFunction>(library.resolve(plain));
    ASSERT_NE(call, nullptr) << plain;
    call();
  }
  EXPECT_TRUE(host.addresses.items.empty());
  const auto finalize = reinterpret_cast<PlugInVoidFunction>(library.resolve("Finalize"));
  ASSERT_NE(finalize, nullptr);
  finalize();
  // The names of the functions inside their namespace, as the compiler writes them.
  for (const char* qualified : {"_ZN16Untpluginterface13GetPlugInNameEv", "_ZN16Untpluginterface16GetPlugInVersionEv",
                                "_ZN16Untpluginterface14GetPlugInEnterEv", "_ZN16Untpluginterface13GetPlugInExitEv",
                                "_ZN16Untpluginterface8FinalizeEv"}) {
    EXPECT_NE(library.resolve(qualified), nullptr) << qualified;
  }
}

}  // namespace
}  // namespace holdwise::test
