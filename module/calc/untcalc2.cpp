// SPDX-License-Identifier: MIT
#include "calc/untcalc2.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QFile>
#include <QFrame>
#include <QGuiApplication>
#include <QLabel>
#include <QScreen>
#include <QShowEvent>
#include <QWindow>
#include <algorithm>

#include "base_data_ingestion.h"
#include "calculation_helpers.h"
#include "common/helpers/edition.h"
#include "common/host/debug_log.h"
#include "common/host/download_role.h"
#include "common/host/host_access.h"
#include "common/host/messages.h"
#include "common/host/theme_colors.h"
#include "common/store/database.h"
#include "holdwise/packet/table_limits.h"
#include "input_lock.h"

namespace holdwise {
namespace {

using calc::Reference;

const QString kUnit = QStringLiteral("Untcalc2");

/// What a receive routine's last argument says.
constexpr int kFromFile = 0;
constexpr int kFromStream = 1;

void LogFileFailure(const QString& routine, const QString& fileName, const std::exception& error) {
  LogFailure(kUnit, routine, fileName + QStringLiteral("：") + QString::fromUtf8(error.what()));
}

int ForwardDateOfHost(int tradingDays) {
  return calc::GetForwardDate(ModuleHost().DataCenter().TradingDates(), ModuleHost().CodeNums().CurrentDate(),
                              tradingDays);
}

QPalette ThemePalette() {
  const IColorSet2& colors = ModuleHost().ColorTheme().Colors();
  QPalette palette;
  palette.setColor(QPalette::Window, colors.ColorOf(theme::kBackground));
  palette.setColor(QPalette::Base, colors.ColorOf(theme::kHighLight2));
  palette.setColor(QPalette::Text, colors.ColorOf(theme::kUnselectedText));
  palette.setColor(QPalette::Highlight, colors.ColorOf(theme::kRowSelect));
  palette.setColor(QPalette::HighlightedText, colors.ColorOf(theme::kSelectedText));
  return palette;
}

/// That which has the keys; while another program has them, the largest that is shown. None in a batch.
QWindow* OwnerWindow() {
  if (QGuiApplication::focusWindow() != nullptr) return QGuiApplication::focusWindow();
  const auto sizeOf = [](const QWindow* window) {
    return window->isVisible() ? window->width() * window->height() : 0;
  };
  QWindow* largest = nullptr;
  for (QWindow* window : QGuiApplication::topLevelWindows())
    if (sizeOf(window) > (largest == nullptr ? 0 : sizeOf(largest))) largest = window;
  return largest;
}

}  // namespace

std::unique_ptr<TfrmCalc2> frmCalc2;

TfrmCalc2::TfrmCalc2() : line_(Database().OpenSession()) {
  BuildForm();
  BuildDownloads();
}

void TfrmCalc2::BuildForm() {
  setWindowTitle(QStringLiteral("投资组合"));
  // Only to be closed: a modal dialog that somebody minimises leaves a terminal that does not answer.
  setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                 Qt::WindowCloseButtonHint);
  setFixedSize(341, 73);
  setPalette(ThemePalette());
  setFont(QFont(QStringLiteral("Tahoma"), 8));
  auto* pnlBackGroup = new QFrame(this);
  pnlBackGroup->setFrameShape(QFrame::NoFrame);
  pnlBackGroup->setGeometry(rect());
  lbl1 = new QLabel(QStringLiteral("正在进行计算,请稍候....."), pnlBackGroup);
  lbl1->move(96, 13);
  lbl1->adjustSize();
  rzprgrsbr1 = new QProgressBar(pnlBackGroup);
  rzprgrsbr1->setGeometry(16, 35, 310, 21);
  rzprgrsbr1->setAlignment(Qt::AlignCenter);
  rzprgrsbr1->setAccessibleName(QStringLiteral("计算进度"));
  tmrCalc.setInterval(1);
  connect(&tmrCalc, &QTimer::timeout, this, &TfrmCalc2::tmrCalcTimer);
}

void TfrmCalc2::BuildDownloads() {
  DownBasicData = MakeStreamDownload(QStringLiteral("DownBasicData"));
  infsyndwnflrlDown = MakeStreamDownload(QStringLiteral("infsyndwnflrlDown"));
  infsyndwnflrl = MakeStreamDownload(QStringLiteral("infsyndwnflrl"));

  const auto connectDownload = [this](TDSBAsynDownFileRole& role, auto take, auto file, auto stream, auto fail) {
    const QString routine = &role == DownBasicData.get()       ? QStringLiteral("BasicDataRecv")
                            : &role == infsyndwnflrlDown.get() ? QStringLiteral("DownRecv2")
                                                               : QStringLiteral("flrlRecv1");
    role.OnReciveAFile = [=, this](const QString& name, int code) {
      if (take(name)) Handle(routine, name, [&] { (this->*file)(name, code); });
    };
    role.OnReciveStearm = [=, this](const QString& name, int code, const QByteArray& content) {
      if (take(name)) Handle(routine, name, [&] { (this->*stream)(name, code, content); });
    };
    role.OnReciveAFileFail = [=, this](const QString& name, int code) {
      if (take(name)) Handle(routine, name, [&] { (this->*fail)(name, code); });
    };
  };
  connectDownload(
      *DownBasicData, [this](const QString& name) { return driver_.TakeBaseEvent(name); },
      &TfrmCalc2::DownBasicDataReciveAFile, &TfrmCalc2::DownBasicDataReciveStearm,
      &TfrmCalc2::DownBasicDataReciveAFileFail);
  connectDownload(
      *infsyndwnflrlDown, [this](const QString&) { return driver_.TakeReferenceEvent(Reference::InterestRate); },
      &TfrmCalc2::infsyndwnflrlDownReciveAFile, &TfrmCalc2::infsyndwnflrlDownReciveStearm,
      &TfrmCalc2::infsyndwnflrlDownReciveAFileFail);
  connectDownload(
      *infsyndwnflrl, [this](const QString&) { return driver_.TakeReferenceEvent(Reference::EstimateValue); },
      &TfrmCalc2::infsyndwnflrlReciveAFile, &TfrmCalc2::infsyndwnflrlReciveStearm,
      &TfrmCalc2::infsyndwnflrlReciveAFileFail);
}

void TfrmCalc2::ShowModal() {
  QEventLoop loop;
  connect(this, &QDialog::finished, &loop, &QEventLoop::quit);
  if (const QWindow* owner = OwnerWindow(); owner != nullptr) PlaceOver(*owner);
  show();
  QPointer<QWindow> leaving;
  {
    InputLock lock(*this);
    lock.OnClose = [this, &leaving](const QPointer<QWindow>& window) {
      if (AgreesToClose()) leaving = window;
    };
    loop.exec();
  }
  // Once whoever waits for the dialog has gone on. Not a call queued to the window, which would hand it to its widget.
  if (leaving != nullptr) {
    QTimer::singleShot(0, qApp, [leaving] {
      if (leaving != nullptr) leaving->close();
    });
  }
  if (failure_) std::rethrow_exception(std::exchange(failure_, nullptr));
}

void TfrmCalc2::PlaceOver(const QWindow& owner) {
  const QRect screen = owner.screen()->availableGeometry();
  // Its frame will be as thick as the owner's.
  QRect place(QPoint(), size().grownBy(owner.frameMargins()));
  place.moveCenter(owner.frameGeometry().center());
  move(std::max(screen.left(), std::min(place.left(), screen.right() + 1 - place.width())),
       std::max(screen.top(), std::min(place.top(), screen.bottom() + 1 - place.height())));
}

bool TfrmCalc2::AgreesToClose() {
  if (std::exchange(isAsking_, true)) return false;
  const bool isAgreed =
      Agrees(QStringLiteral("风险计算还没有完成。现在关闭吗？\n组合都在，没有算完的下次打开时再计算。"));
  isAsking_ = false;
  if (isAgreed && isVisible()) reject();
  return isAgreed;
}

void TfrmCalc2::reject() {
  isGivenUp_ = true;
  QDialog::reject();
}

void TfrmCalc2::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  if (event->spontaneous()) return;
  // The dialog has no owner; without this it might open behind the terminal's window.
  if (windowHandle() != nullptr) windowHandle()->setTransientParent(QGuiApplication::focusWindow());
  // Not at once: closing a dialog that is just being shown would leave exec() waiting for ever.
  QMetaObject::invokeMethod(this, &TfrmCalc2::FormShow, Qt::QueuedConnection);
}

void TfrmCalc2::done(int result) {
  driver_.Close();
  tmrCalc.stop();
  QDialog::done(result);
}

void TfrmCalc2::FormShow() {
  if (driver_.IsClosed()) return;
  Decisive([this] {
    // Before the first request: files that are replaced while they come are of another edition than this one.
    data_ = calc::CurrentData();
    GetAllSecuCodeAry();
    driver_.Start(codes_, GetProcessBarLen());
    rzprgrsbr1->setRange(0, driver_.TotalParts());
    ShowProgress();
    QPalette palette = lbl1->palette();
    palette.setColor(QPalette::WindowText, ModuleHost().ColorTheme().Colors().ColorOf(theme::kTitleFont));
    lbl1->setPalette(palette);
    GetBasicData();
    if (!driver_.IsClosed()) DownRMBINTERESTRATE();
  });
}

void TfrmCalc2::GetAllSecuCodeAry() {
  codes_ = calc::ReadUnfinishedCodes(Database());
}

std::int64_t TfrmCalc2::GetProcessBarLen() const {
  return calc::CountUnfinishedParts(Database());
}

void TfrmCalc2::GetBasicData() {
  if (!driver_.HasCodes()) {
    tmrCalc.stop();
    done(Rejected);
    return;
  }
  if (const auto remoteName = driver_.NextBaseFile()) {
    DownBasicData->Request(*remoteName);
  } else {
    tmrCalcTimer();
  }
}

void TfrmCalc2::DownRMBINTERESTRATE() {
  driver_.ExpectReference(Reference::InterestRate);
  driver_.ExpectReference(Reference::EstimateValue);
  infsyndwnflrlDown->Request(RemoteNameOf(Reference::InterestRate));
  infsyndwnflrl->Request(RemoteNameOf(Reference::EstimateValue));
}

void TfrmCalc2::tmrCalcTimer() {
  tmrCalc.stop();
  if (!driver_.BeginCalculation()) return;
  Decisive([this] {
    for (const QString& id : calc::ReadUnfinishedPortfolios(Database())) {
      calc::CalculatePortfolio(*line_, id, data_);
      calculated_.append(id);
      driver_.PortfolioHandled();
      ShowProgress();
      QCoreApplication::processEvents();
      if (driver_.IsClosed()) return;
    }
    accept();
  });
}

void TfrmCalc2::BasicDataRecv(const QString& fileName, int /*errorCode*/, const QByteArray& stream, int mode) {
  QCoreApplication::processEvents();
  if (driver_.IsClosed()) return;
  std::exception_ptr unreadable;
  try {
    const PacketLimits& limits = calc::ClassifyBaseData(fileName).isIndex ? kIndexSeriesLimits : kStockSeriesLimits;
    IngestBasicData(fileName, ReadReceived(*DownBasicData, fileName, stream, mode, limits));
  } catch (...) {
    unreadable = std::current_exception();
  }
  driver_.BaseFileHandled();
  ShowProgress();
  GetBasicData();
  if (unreadable) std::rethrow_exception(unreadable);
}

void TfrmCalc2::IngestBasicData(const QString& fileName, const ResultSet& rows) {
  const calc::BaseDataFamily family = calc::ClassifyBaseData(fileName);
  const QString code = family.isIndex ? QStringLiteral("1") : driver_.CurrentCode();
  try {
    calc::IngestBaseData(*line_, rows, family, code, ForwardDateOfHost, data_.edition);
  } catch (const std::exception& error) {
    NoteWhetherItPasses(error);
    LogFileFailure(QStringLiteral("BasicDataRecv"), fileName, error);
  }
}

void TfrmCalc2::DownRecv2(const QString& fileName, int /*errorCode*/, const QByteArray& stream, int mode) {
  ReceiveReference(Reference::InterestRate, *infsyndwnflrlDown, fileName, stream, mode, &calc::ReplaceInterestRates);
}

void TfrmCalc2::flrlRecv1(const QString& fileName, int /*errorCode*/, const QByteArray& stream, int mode) {
  ReceiveReference(Reference::EstimateValue, *infsyndwnflrl, fileName, stream, mode, &calc::ReplaceEstimateValues);
}

void TfrmCalc2::ReceiveReference(Reference reference, const TDSBAsynDownFileRole& role, const QString& fileName,
                                 const QByteArray& stream, int mode, Replace replace) {
  QCoreApplication::processEvents();
  if (driver_.IsClosed()) return;
  if (mode == kFromFile && !QFile::exists(role.LocalPath(fileName))) return;
  const PacketLimits& limits = reference == Reference::InterestRate ? kInterestRateLimits : kSecuritiesLimits;
  try {
    const ResultSet file = ReadReceived(role, fileName, stream, mode, limits);
    if (NamesOtherEdition(file, data_.edition)) {
      throw Error(ErrorCategory::Refused, "是随另一份数据生成的，请重新启动终端，或重新生成数据目录");
    }
    // Only repaints inside the transaction: events let in there would find the database in the middle of it.
    replace(*line_, file, [this] { rzprgrsbr1->repaint(); });
  } catch (const std::exception& error) {
    const QString problem =
        NoteWhetherItPasses(error) ? QStringLiteral("没有存入数据库：%1") : QStringLiteral("不能使用：%1");
    GiveUpReference(reference, problem.arg(QString::fromUtf8(error.what())));
    throw;
  }
  driver_.ReferenceHandled(reference);
  ShowProgress();
  tmrCalcTimer();
}

void TfrmCalc2::GiveUpReference(Reference reference, const QString& problem) {
  const bool isRate = reference == Reference::InterestRate;
  referenceProblem_ =
      (isRate ? QStringLiteral("利率文件 InterestRate.Dat ") : QStringLiteral("估值文件 GZ.dat ")) + problem;
  done(Rejected);
}

void TfrmCalc2::DownBasicDataReciveAFile(const QString& fileName, int errorCode) {
  BasicDataRecv(fileName, errorCode, {}, kFromFile);
}

void TfrmCalc2::DownBasicDataReciveStearm(const QString& fileName, int errorCode, const QByteArray& stream) {
  BasicDataRecv(fileName, errorCode, stream, kFromStream);
}

void TfrmCalc2::DownBasicDataReciveAFileFail(const QString& /*fileName*/, int /*errorCode*/) {
  driver_.BaseFileHandled();
  ShowProgress();
  GetBasicData();
}

void TfrmCalc2::infsyndwnflrlDownReciveAFile(const QString& fileName, int errorCode) {
  DownRecv2(fileName, errorCode, {}, kFromFile);
}

void TfrmCalc2::infsyndwnflrlDownReciveStearm(const QString& fileName, int errorCode, const QByteArray& stream) {
  DownRecv2(fileName, errorCode, stream, kFromStream);
}

void TfrmCalc2::infsyndwnflrlDownReciveAFileFail(const QString& /*fileName*/, int /*errorCode*/) {
  GiveUpReference(Reference::InterestRate, QStringLiteral("没有取得"));
}

void TfrmCalc2::infsyndwnflrlReciveAFile(const QString& fileName, int errorCode) {
  flrlRecv1(fileName, errorCode, {}, kFromFile);
}

void TfrmCalc2::infsyndwnflrlReciveStearm(const QString& fileName, int errorCode, const QByteArray& stream) {
  flrlRecv1(fileName, errorCode, stream, kFromStream);
}

void TfrmCalc2::infsyndwnflrlReciveAFileFail(const QString& /*fileName*/, int /*errorCode*/) {
  GiveUpReference(Reference::EstimateValue, QStringLiteral("没有取得"));
}

void TfrmCalc2::Handle(const QString& routine, const QString& fileName, const std::function<void()>& handler) {
  try {
    handler();
  } catch (const std::exception& error) {
    LogFileFailure(routine, fileName, error);
  }
}

void TfrmCalc2::Decisive(const std::function<void()>& step) {
  try {
    step();
  } catch (...) {
    failure_ = std::current_exception();
    done(Rejected);
  }
}

bool TfrmCalc2::NoteWhetherItPasses(const std::exception& error) {
  const bool passes = IsPassing(error);
  isWorthAnotherTry_ = isWorthAnotherTry_ || passes;
  return passes;
}

void TfrmCalc2::ShowProgress() {
  rzprgrsbr1->setValue(driver_.PartsComplete());
  // The bar itself repaints only when its text changes, which takes several parts of a long run.
  rzprgrsbr1->update();
}

}  // namespace holdwise
