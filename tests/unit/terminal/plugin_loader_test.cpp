// SPDX-License-Identifier: MIT
#include "plugins/plugin_loader.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTableWidget>
#include <QTemporaryDir>

#include "wrapped_host.h"

namespace holdwise::test {
namespace {

/// The scripted host with the terminal's own navigation.
class HostWithAddresses final : public WrappedHost {
 public:
  AddressServices& Addresses() override { return addresses; }
  AddressRegistry addresses{scripted.debug};
};

QString Built(const QString& name) {
  return qEnvironmentVariable("HOLDWISE_BIN") + QStringLiteral("/../lib/") + name;
}

class Loader : public testing::Test {
 protected:
  void Put(const QString& library) {
    ASSERT_TRUE(QFile::copy(Built(library), folder.filePath(QFileInfo(library).fileName()))) << library.toStdString();
  }
  /// What the odd plug-ins wrote down.
  [[nodiscard]] QStringList Called() const {
    const std::vector<QString> lines = host.scripted.debug.Lines();
    return {lines.begin(), lines.end()};
  }

  QTemporaryDir folder;
  HostWithAddresses host;
  PluginLoader loader{host, host.addresses};
};

TEST_F(Loader, AnEmptyFolderIsAProblem) {
  loader.LoadAll(folder.path());
  EXPECT_TRUE(loader.Plugins().empty());
  ASSERT_EQ(loader.Problems().size(), 1);
  EXPECT_TRUE(loader.Problems().front().contains(folder.path()));
}

TEST_F(Loader, TheExampleRunsOnTheContractAlone) {
  host.scripted.codeNums.Add({QStringLiteral("600000"), QStringLiteral("浦发银行"), {}, 1, {11, 10}, false});
  host.scripted.dataCenter.groups[QStringLiteral("OptionalStock")] = {1600000};
  Put(QStringLiteral("examples/OwnStocks.so"));
  loader.LoadAll(folder.path());
  EXPECT_EQ(loader.Problems(), QStringList());
  ASSERT_EQ(loader.Plugins().size(), 1U);
  EXPECT_EQ(loader.Plugins().front().name, QStringLiteral("自选行情"));
  ASSERT_TRUE(host.addresses.GotoAddress(QStringLiteral("自选行情"), {}));
  ASSERT_EQ(host.scripted.titleFrames.size(), 1U);
  const auto* table = host.scripted.titleFrames.front()->findChild<QTableWidget*>();
  ASSERT_NE(table, nullptr);
  ASSERT_EQ(table->rowCount(), 1);
  QStringList cells;
  for (int column = 0; column < table->columnCount(); ++column) cells.append(table->item(0, column)->text());
  EXPECT_EQ(cells, QStringList({QStringLiteral("600000"), QStringLiteral("浦发银行"), QStringLiteral("11.00"),
                                QStringLiteral("10.00%")}));
  loader.EndAll();
  EXPECT_EQ(host.addresses.Find(QStringLiteral("自选行情")), nullptr);
  EXPECT_TRUE(host.scripted.titleFrames.front().isNull()) << "its page is gone before the host is";
}

/// Also when it has not all of this version's entry functions.
TEST_F(Loader, OfAnotherVersionNothingElseIsCalled) {
  const QStringList files{QStringLiteral("Odd1.so"), QStringLiteral("Odd6.so")};
  for (const QString& file : files) Put(QStringLiteral("odd/") + file);
  loader.LoadAll(folder.path());
  EXPECT_TRUE(loader.Plugins().empty());
  ASSERT_EQ(loader.Problems().size(), 2);
  for (int index = 0; index < 2; ++index) {
    const QString& problem = loader.Problems()[index];
    EXPECT_TRUE(problem.contains(files[index])) << problem.toStdString();
    EXPECT_TRUE(problem.contains(QStringLiteral("接口版本 %1，").arg(kSdkVersion + 1))) << problem.toStdString();
  }
  EXPECT_EQ(Called(), QStringList());
}

TEST_F(Loader, OfThisVersionButLackingAnEntryFunctionNothingElseIsCalled) {
  Put(QStringLiteral("odd/Odd7.so"));
  loader.LoadAll(folder.path());
  EXPECT_TRUE(loader.Plugins().empty());
  ASSERT_EQ(loader.Problems().size(), 1);
  EXPECT_TRUE(loader.Problems().front().contains(QStringLiteral("“Odd7.so”不是本终端的插件")));
  EXPECT_EQ(Called(), QStringList());
}

TEST_F(Loader, WhatThrowsIsNamedAndLeftOutAndTheOthersRun) {
  for (int kind = 2; kind <= 5; ++kind) Put(QStringLiteral("odd/Odd%1.so").arg(kind));
  Put(QStringLiteral("examples/OwnStocks.so"));
  loader.LoadAll(folder.path());
  ASSERT_EQ(loader.Problems().size(), 3);
  const QStringList reasons{QStringLiteral("装不上"), QStringLiteral("进不去"), QStringLiteral("原因不明")};
  for (int index = 0; index < 3; ++index) {
    EXPECT_TRUE(loader.Problems()[index].contains(QStringLiteral("Odd%1.so").arg(index + 2)));
    EXPECT_TRUE(loader.Problems()[index].contains(reasons[index])) << loader.Problems()[index].toStdString();
  }
  EXPECT_EQ(Called(), QStringList({"2 Initialize", "3 Initialize", "3 GetPlugInEnter", "3 GetPlugInExit", "3 Finalize",
                                   "4 Initialize", "4 GetPlugInEnter", "4 GetPlugInExit", "4 Finalize", "5 Initialize",
                                   "5 GetPlugInEnter"}))
      << "one that failed to enter is ended in order at once";
  EXPECT_EQ(host.addresses.Find(QStringLiteral("异常插件3")), nullptr);
  EXPECT_EQ(host.addresses.Find(QStringLiteral("异常插件4")), nullptr);
  ASSERT_EQ(loader.Plugins().size(), 2U);
  EXPECT_NE(host.addresses.Find(QStringLiteral("异常插件5")), nullptr);
  EXPECT_NE(host.addresses.Find(QStringLiteral("自选行情")), nullptr);
}

/// Whatever it has got to: its addresses are gone, and what has been initialised is finalised.
TEST_F(Loader, WhatThrowsBeforeItIsEnteredLeavesNothingBehind) {
  for (int kind = 8; kind <= 9; ++kind) Put(QStringLiteral("odd/Odd%1.so").arg(kind));
  loader.LoadAll(folder.path());
  EXPECT_TRUE(loader.Plugins().empty());
  ASSERT_EQ(loader.Problems().size(), 2);
  EXPECT_TRUE(loader.Problems()[0].contains(QStringLiteral("“Odd8.so”启动时出错，没有采用它：装不上")));
  EXPECT_TRUE(loader.Problems()[1].contains(QStringLiteral("“Odd9.so”启动时出错，没有采用它：没有名称")));
  EXPECT_EQ(host.addresses.Find(QStringLiteral("异常插件8")), nullptr);
  EXPECT_EQ(Called(), QStringList({"8 Initialize", "9 Initialize", "9 Finalize"}));
}

TEST_F(Loader, TheEndGoesBackwardsAndOnWhenOneThrows) {
  Put(QStringLiteral("odd/Odd5.so"));
  Put(QStringLiteral("examples/OwnStocks.so"));
  loader.LoadAll(folder.path());
  loader.EndAll();
  const QStringList called = Called();
  ASSERT_EQ(called.size(), 5);
  EXPECT_EQ(called[2], QStringLiteral("5 GetPlugInExit"));
  EXPECT_TRUE(called[3].contains(QStringLiteral("原因不明")));
  EXPECT_EQ(called[4], QStringLiteral("5 Finalize")) << "also after an exit that throws";
  EXPECT_EQ(host.addresses.Find(QStringLiteral("自选行情")), nullptr) << "loaded later, ended earlier";
}

TEST_F(Loader, ALibraryThatIsNoPluginIsNamed) {
  QFile broken(folder.filePath(QStringLiteral("broken.so")));
  ASSERT_TRUE(broken.open(QIODevice::WriteOnly));
  broken.write("not a library");
  broken.close();
  loader.LoadAll(folder.path());
  ASSERT_EQ(loader.Problems().size(), 1);
  EXPECT_TRUE(loader.Problems().front().contains(QStringLiteral("broken.so")));
}

}  // namespace
}  // namespace holdwise::test
