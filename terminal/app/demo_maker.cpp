// SPDX-License-Identifier: MIT
#include "demo_maker.h"

#include <sys/prctl.h>
#include <unistd.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTimer>
#include <chrono>
#include <csignal>

#include "window/dialogs.h"

namespace holdwise {
namespace {

const QString kTitle = QStringLiteral("模拟行情");
/// Large enough for every view to have something to show, small enough not to be waited for.
const QString kSecurities = QStringLiteral("1000");
const QString kDays = QStringLiteral("400");
const QString kMarket = QStringLiteral("market");
const QString kNotMade = QStringLiteral("没有生成模拟行情：\n%1");

constexpr std::chrono::milliseconds kBetweenLooks{200};

/// No data folder of the user's is called so.
const QString kMadeFolders = QStringLiteral("/demo-making-");

const QRegularExpression& ProgressLine() {
  static const QRegularExpression line(QStringLiteral("(\\d+)/(\\d+)\\s*$"));
  return line;
}

/// That a terminal which was killed has left behind: nobody else makes one in the same work folder.
void RemoveLeftovers(const QString& beside) {
  const QDir place(beside);
  for (const QString& name : place.entryList({kMadeFolders.mid(1) + QLatin1Char('*')}, QDir::Dirs | QDir::NoSymLinks))
    QDir(place.filePath(name)).removeRecursively();
}

}  // namespace

QString ReasonOfMaker(const QByteArray& said) {
  QStringList lines = QString::fromUtf8(said).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
  lines.removeIf([](const QString& line) { return ProgressLine().match(line).hasMatch(); });
  if (!lines.isEmpty()) return lines.join(QLatin1Char('\n')).trimmed();
  return QStringLiteral("生成程序意外结束了，也许内存不够。请再试一次。");
}

DemoMaker::DemoMaker(WindowSide& window) : window_(window) {
  // Ends with this process: nobody would take what it makes.
  maker_.setChildProcessModifier([parent = ::getpid()] {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::getppid() != parent) ::_exit(1);
  });
  connect(&maker_, &QProcess::readyReadStandardError, this, [this] { ShowProgress(); });
  connect(&maker_, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
    if (error == QProcess::FailedToStart)
      End(QStringLiteral("程序“%1”不能启动：%2。").arg(maker_.program(), maker_.errorString()));
  });
  connect(&maker_, &QProcess::finished, this, [this](int exitCode, QProcess::ExitStatus status) {
    if (next_ == nullptr) return;
    if (work_->IsGivenUp()) return End({});
    if (status != QProcess::NormalExit || exitCode != 0) return End(ReasonOfMaker(said_));
    (this->*next_)();
  });
  wait_.setSingleShot(true);
  connect(&wait_, &QTimer::timeout, this, &DemoMaker::PutInPlace);
}

DemoMaker::~DemoMaker() {
  maker_.disconnect(this);
  maker_.kill();
  maker_.waitForFinished();
}

void DemoMaker::Make(const QString& folder, const QString& beside) {
  if (made_) return;
  folder_ = folder;
  RemoveLeftovers(beside);
  made_.emplace(beside + kMadeFolders + QStringLiteral("XXXXXX"));
  if (!made_->isValid()) {
    const QString problem = QStringLiteral("目录“%1”里不能建立目录，请检查磁盘空间和权限。").arg(beside);
    made_.reset();
    return ShowReport(&window_.Window(), kTitle, kNotMade.arg(problem));
  }
  work_ = std::make_unique<OngoingWork>(window_.Window(), QStringLiteral("正在生成模拟行情"));
  work_->OnGivenUp = [this] { maker_.kill(); };
  Run({QStringLiteral("simulate"), QStringLiteral("--securities"), kSecurities, QStringLiteral("--days"), kDays,
       QStringLiteral("--seed"), QStringLiteral("1"), QStringLiteral("--out"), made_->filePath(QStringLiteral("csv"))},
      &DemoMaker::Build);
}

void DemoMaker::Build() {
  const auto file = [this](const char* name) { return made_->filePath(QStringLiteral("csv/") + QLatin1String(name)); };
  Run({QStringLiteral("build"), QStringLiteral("--bars"), file("bars"), QStringLiteral("--indices"), file("indices"),
       QStringLiteral("--securities"), file("securities.csv"), QStringLiteral("--dates"), file("trading_dates.csv"),
       QStringLiteral("--rates"), file("deposit_rates.csv"), QStringLiteral("--estimates"), file("estimates.csv"),
       QStringLiteral("--simulated"), QStringLiteral("--out"), made_->filePath(kMarket)},
      &DemoMaker::PutInPlace);
}

void DemoMaker::PutInPlace() {
  if (work_->IsGivenUp()) return End({});
  if (isDisturbing()) return wait_.start(kBetweenLooks);
  QDir place;
  const QString former = made_->filePath(QStringLiteral("former"));
  place.mkpath(QFileInfo(folder_).path());
  const bool hasFormer = place.rename(folder_, former);
  if (!place.rename(made_->filePath(kMarket), folder_)) {
    if (hasFormer) place.rename(former, folder_);
    return End(QStringLiteral("目录“%1”不能建立，请检查磁盘空间和权限。").arg(folder_));
  }
  End({});
  onMade();
}

void DemoMaker::Run(const QStringList& arguments, void (DemoMaker::*next)()) {
  next_ = next;
  said_.clear();
  maker_.start(QCoreApplication::applicationDirPath() + QStringLiteral("/holdwise-market"), arguments);
}

void DemoMaker::ShowProgress() {
  const QByteArray fresh = maker_.readAllStandardError();
  said_ = (said_ + fresh).right(4096);
  const QRegularExpressionMatch match = ProgressLine().match(QString::fromUtf8(fresh));
  if (!match.hasMatch()) return;
  const int total = match.captured(2).toInt();
  // Making the bars and making the folder of them are a half each.
  const int before = next_ == &DemoMaker::PutInPlace ? total : 0;
  window_.Window().ShowProgress(before + match.captured(1).toInt(), 2 * total);
}

void DemoMaker::End(const QString& problem) {
  wait_.stop();
  made_.reset();
  window_.Window().ShowProgress(0, 0);
  if (work_->IsGivenUp()) window_.Window().Tell(QStringLiteral("没有生成模拟行情。"));
  work_.reset();
  if (!problem.isEmpty()) ShowReport(&window_.Window(), kTitle, kNotMade.arg(problem));
}

void DemoMaker::GiveUp() {
  if (!made_) return;
  next_ = nullptr;
  maker_.kill();
  maker_.waitForFinished();
  End({});
}

}  // namespace holdwise
