// SPDX-License-Identifier: MIT
#include "data_switch.h"

#include <QFileInfo>
#include <QSettings>
#include <QTimer>
#include <exception>
#include <utility>

#include "datacentre/market_data.h"
#include "holdwise/packet/error.h"
#include "process/settings_file.h"
#include "process/work_folder.h"
#include "window/dialogs.h"

namespace holdwise {
namespace {

const QString kFolderTitle = QStringLiteral("选择数据目录");
const QString kDemoTitle = QStringLiteral("模拟行情");

/// With its full stop.
QString SentenceOf(const std::exception& error) {
  const QString text = QString::fromUtf8(error.what());
  return text.endsWith(QStringLiteral("。")) ? text : text + QStringLiteral("。");
}

/// Of the folder with the user's own data, whichever this process is for.
QString OwnFolderOf(const Options& options) {
  return options.IsDemo() ? options.ownFolder : options.workFolder;
}

}  // namespace

DataSwitch::DataSwitch(ProcessParts& process, DatabaseSide& database, WindowSide& window, DataTargets targets)
    : process_(process),
      database_(database),
      window_(window),
      targets_(std::move(targets)),
      demo_(OwnFolderOf(process.Asked())),
      maker_(window) {
  maker_.isDisturbing = targets_.isDisturbing;
  maker_.onMade = [this] { DemoMade(); };
  window_.Window().SetDemo(IsDemo());
}

std::vector<NoticeChoice> DataSwitch::Choices() {
  NoticeChoice choose{QStringLiteral("选择数据目录(&O)…"), [this] { ChooseFolder(); }};
  if (!IsDemo()) return {{QStringLiteral("试用模拟行情(&D)"), [this] { SwitchDemo(); }}, std::move(choose)};
  return {{QStringLiteral("重新生成模拟行情(&D)"), [this] { MakeDemo(); }},
          {QStringLiteral("回到自己的数据(&B)"), [this] { SwitchDemo(); }},
          std::move(choose)};
}

QString DataSwitch::Advice() const {
  if (IsDemo()) {
    return QStringLiteral(
        "试用的模拟行情不能用了。按“重新生成模拟行情”，就在原处再生成一份，在其中新建的组合都还在；"
        "按“回到自己的数据”或“选择数据目录…”离开模拟行情。");
  }
  const QString demo =
      demo_.IsMade()
          ? QStringLiteral("按“试用模拟行情”，打开已经生成的那份虚构行情，在其中新建的组合都还在。")
          : QStringLiteral(
                "第一次使用：按“试用模拟行情”，就在这里生成一份虚构的行情并打开，在其中新建的组合与自己的分开保存。");
  return demo + QStringLiteral("已有数据目录的，按“选择数据目录…”。两者下次启动仍有效，以后都可以在“文件”菜单里改。");
}

bool DataSwitch::IsFree() {
  const QString busy = targets_.busyWith();
  if (busy.isEmpty()) return true;
  ShowReport(&window_.Window(), kFolderTitle, QStringLiteral("%1。请等它结束，再试一次。").arg(busy));
  return false;
}

void DataSwitch::SwitchDemo() {
  // Leaves the handler of the menu or the button first.
  QTimer::singleShot(0, &window_.Window(), [this] {
    if (!IsFree()) return;
    if (IsDemo()) return GoBack({});
    if (demo_.IsMade()) return OpenDemo();
    MakeDemo();
  });
}

void DataSwitch::MakeDemo() {
  maker_.Make(demo_.Market(), process_.Asked().workFolder);
}

void DataSwitch::DemoMade() {
  if (IsDemo()) return targets_.tryAgain();
  OpenDemo();
}

void DataSwitch::OpenDemo() {
  if (!targets_.mayLeave()) return window_.Window().Tell(QStringLiteral("模拟行情可以用“文件→试用模拟行情”打开。"));
  try {
    const Options there = demo_.WayThere();
    demo_.Choose(process_.Asked());
    LeaveFor(there);
  } catch (const Error& error) {
    ShowReport(&window_.Window(), kDemoTitle, QStringLiteral("没有打开模拟行情：%1").arg(SentenceOf(error)));
  }
}

void DataSwitch::GoBack(const QString& folder) {
  if (!targets_.mayLeave()) return;
  try {
    Options back = demo_.WayBack();
    if (!folder.isEmpty()) Remember(folder, back);
    demo_.Leave();
    LeaveFor(std::move(back));
  } catch (const Error& error) {
    ShowReport(&window_.Window(), kDemoTitle, QStringLiteral("没有离开模拟行情：%1").arg(SentenceOf(error)));
  }
}

void DataSwitch::LeaveFor(Options next) {
  next.simulationSpeed = process_.Asked().simulationSpeed;
  wanted_ = std::move(next);
  targets_.leave();
}

void DataSwitch::ChooseFolder() {
  const QString folder = AskForDataFolder(&window_.Window());
  // Leaves the handler of the menu or the button first: what follows may remove the page.
  if (!folder.isEmpty()) QTimer::singleShot(0, &window_.Window(), [this, folder] { Open(folder); });
}

void DataSwitch::Require(const QString& folder) {
  if (demo_.IsMade() && QFileInfo(folder).canonicalFilePath() == QFileInfo(demo_.Market()).canonicalFilePath()) {
    throw Error(ErrorCategory::Refused,
                "这是试用的模拟行情，它有自己的组合：请用“文件→试用模拟行情”打开它，不要当作自己的数据目录");
  }
  if (!IsDemo()) return;  // opening it looks at it
  MarketData data(process_.Clock(), process_.Log(), database_);
  data.Load(folder);
}

void DataSwitch::Open(const QString& folder) {
  if (!IsFree()) return;
  try {
    Require(folder);
    if (!IsDemo()) return targets_.openFolder(folder);
  } catch (const std::exception& error) {
    const QString text = QStringLiteral("目录“%1”不能用，什么都没有改变。\n\n%2").arg(folder, SentenceOf(error));
    process_.Log().WriteLog(text);
    return ShowReport(&window_.Window(), kFolderTitle, text);
  }
  GoBack(folder);
}

void DataSwitch::Remember(const QString& folder, Options& back) {
  if (WorkFolderLock::IsHeld(back.workFolder))
    throw Error(ErrorCategory::Busy, "自己的数据已在另一个终端窗口里打开，请在那个窗口里选择数据目录");
  if (const QString problem = SetAsideIfDamaged(SettingsFileOf(back.workFolder)); !problem.isEmpty())
    process_.Log().WriteLog(problem);
  QSettings own(SettingsFileOf(back.workFolder), QSettings::IniFormat);
  RememberDataFolder(own, folder);
  own.sync();
  if (own.status() != QSettings::NoError) {
    throw Error(ErrorCategory::Io,
                QStringLiteral("设置文件“%1”不能写入，请检查磁盘空间和权限").arg(own.fileName()).toStdString());
  }
  // The command line that it was opened with last named another one.
  if (!back.command.dataFolder.isEmpty()) back.command.dataFolder = folder;
}

}  // namespace holdwise
