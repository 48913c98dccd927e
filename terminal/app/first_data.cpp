// SPDX-License-Identifier: MIT
#include "first_data.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTimer>
#include <utility>

#include "window/dialogs.h"

namespace holdwise {
namespace {

const QString kTitle = QStringLiteral("模拟行情");
/// Large enough for every view to have something to show, small enough not to be waited for.
const QString kSecurities = QStringLiteral("1000");
const QString kDays = QStringLiteral("400");
const QString kMarket = QStringLiteral("market");

bool IsFree(const QString& folder) {
  const QDir dir(folder);
  return !dir.exists() || dir.isEmpty();
}

}  // namespace

FirstData::FirstData(ProcessParts& process, WindowSide& window, std::function<void()> changed)
    : process_(process), window_(window), changed_(std::move(changed)) {
  connect(&maker_, &QProcess::readyReadStandardError, this, [this] { ShowProgress(); });
  connect(&maker_, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
    if (error == QProcess::FailedToStart)
      End(QStringLiteral("程序“%1”不能启动：%2。").arg(maker_.program(), maker_.errorString()));
  });
  connect(&maker_, &QProcess::finished, this, [this](int exitCode, QProcess::ExitStatus status) {
    if (next_ == nullptr) return;
    if (work_->IsGivenUp()) return End({});
    if (status != QProcess::NormalExit || exitCode != 0) return End(QString::fromUtf8(said_).trimmed());
    (this->*next_)();
  });
}

FirstData::~FirstData() {
  maker_.disconnect(this);
  maker_.kill();
  maker_.waitForFinished();
}

std::vector<NoticeChoice> FirstData::Choices() {
  return {{QStringLiteral("试用模拟行情(&D)"), [this] { MakeDemo(); }},
          {QStringLiteral("选择数据目录(&O)…"), [this] { Choose(); }}};
}

void FirstData::MakeDemo() {
  if (made_) return;
  const QString beside = process_.Asked().workFolder + QStringLiteral("/demo-market");
  folder_ = IsFree(process_.Asked().dataFolder) ? process_.Asked().dataFolder : beside;
  const QString around = QFileInfo(folder_).absolutePath();
  QDir().mkpath(around);
  made_.emplace(around + QStringLiteral("/demo-XXXXXX"));
  work_ = std::make_unique<OngoingWork>(window_.Window(), QStringLiteral("正在生成模拟行情"));
  work_->OnGivenUp = [this] { maker_.kill(); };
  Run({QStringLiteral("simulate"), QStringLiteral("--securities"), kSecurities, QStringLiteral("--days"), kDays,
       QStringLiteral("--seed"), QStringLiteral("1"), QStringLiteral("--out"), made_->filePath(QStringLiteral("csv"))},
      &FirstData::Build);
}

void FirstData::Build() {
  const auto file = [this](const char* name) { return made_->filePath(QStringLiteral("csv/") + QLatin1String(name)); };
  Run({QStringLiteral("build"), QStringLiteral("--bars"), file("bars"), QStringLiteral("--indices"), file("indices"),
       QStringLiteral("--securities"), file("securities.csv"), QStringLiteral("--dates"), file("trading_dates.csv"),
       QStringLiteral("--rates"), file("deposit_rates.csv"), QStringLiteral("--estimates"), file("estimates.csv"),
       QStringLiteral("--simulated"), QStringLiteral("--out"), made_->filePath(kMarket)},
      &FirstData::Open);
}

void FirstData::Open() {
  // What is wanted is just being said in a dialog, or has been said meanwhile.
  if (isChoosing_ || !made_) return;
  // An empty folder gives way.
  const QString made = made_->filePath(kMarket);
  QDir().rmdir(folder_);
  if (!QDir().rename(made, folder_)) return End(QStringLiteral("目录“%1”不能建立。").arg(folder_));
  End({});
  process_.UseDataFolder(folder_);
  changed_();
}

void FirstData::Run(const QStringList& arguments, void (FirstData::*next)()) {
  next_ = next;
  said_.clear();
  maker_.start(QCoreApplication::applicationDirPath() + QStringLiteral("/holdwise-market"), arguments);
}

void FirstData::ShowProgress() {
  static const QRegularExpression count(QStringLiteral("(\\d+)/(\\d+)\\s*$"));
  const QByteArray fresh = maker_.readAllStandardError();
  said_ = (said_ + fresh).right(4096);
  const QRegularExpressionMatch match = count.match(QString::fromUtf8(fresh));
  if (!match.hasMatch()) return;
  const int total = match.captured(2).toInt();
  // Making the bars and making the folder of them are a half each.
  const int before = next_ == &FirstData::Open ? total : 0;
  window_.Window().ShowProgress(before + match.captured(1).toInt(), 2 * total);
}

void FirstData::End(const QString& problem) {
  made_.reset();
  window_.Window().ShowProgress(0, 0);
  if (work_->IsGivenUp()) window_.Window().Tell(QStringLiteral("没有生成模拟行情。"));
  work_.reset();
  if (!problem.isEmpty()) ShowReport(&window_.Window(), kTitle, QStringLiteral("没有生成模拟行情：\n%1").arg(problem));
}

void FirstData::GiveUp() {
  if (!made_) return;
  next_ = nullptr;
  maker_.kill();
  maker_.waitForFinished();
  End({});
}

void FirstData::Choose() {
  isChoosing_ = true;
  const QString folder = AskForDataFolder(&window_.Window());
  isChoosing_ = false;
  // Leaves the button's own handler first: what follows removes the page.
  if (folder.isEmpty()) {
    const bool isMade = made_ && maker_.state() == QProcess::NotRunning;
    if (isMade) QTimer::singleShot(0, this, [this] { Open(); });
    return;
  }
  GiveUp();
  process_.UseDataFolder(folder);
  QTimer::singleShot(0, this, changed_);
}

}  // namespace holdwise
