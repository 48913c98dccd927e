// SPDX-License-Identifier: MIT
#include "transfer/view_exporter.h"

#include <QApplication>
#include <QBuffer>
#include <QDir>
#include <QEvent>
#include <QFile>
#include <QPixmap>
#include <QRegularExpression>
#include <QWidget>
#include <algorithm>
#include <exception>
#include <utility>

#include "holdwise/packet/csv_result_set.h"
#include "holdwise/packet/error.h"
#include "holdwise/packet/packet_file.h"

namespace holdwise {
namespace {

constexpr int kLookMilliseconds = 50;
// A view that has just been shown may start its work only from the event loop: one quiet look is not enough.
constexpr int kQuietLooksAtView = 3;
constexpr int kQuietLooksAtPortfolio = 1;
/// A selected portfolio is there for a few milliseconds: to paint each of them costs more than to write it, and nobody
/// can read them.
constexpr int kPaintMilliseconds = 100;

const QString kInputsName = QStringLiteral("inputs");

void RemoveFile(const QString& path) {
  if (!QFile::remove(path) && QFile::exists(path))
    throw Error(ErrorCategory::Io, QStringLiteral("以前导出的文件“%1”不能删除。").arg(path).toStdString());
}

const QString& InForce(const ViewCatalogue::Input& input) {
  return input.inForce.isEmpty() ? input.value : input.inForce;
}

/// Grid names and portfolio ids become parts of file names.
QString FileNamePart(QString text) {
  for (QChar& character : text)
    if (character == QLatin1Char('/') || character < QLatin1Char(' ')) character = QLatin1Char('_');
  return text;
}

/// A spreadsheet runs what begins like a formula. A leading apostrophe keeps it from that; numbers and dashes stay.
QString Harmless(const QString& cell) {
  static const QString kRun = QStringLiteral("=+-@\t\r");
  static const QRegularExpression kPlain(
      QRegularExpression::anchoredPattern(QStringLiteral("[+-]?[0-9][0-9,]*(\\.[0-9]+)?([eE][+-]?[0-9]+)?%?|-+")));
  if (cell.isEmpty() || !kRun.contains(cell.front()) || kPlain.match(cell).hasMatch()) return cell;
  return QLatin1Char('\'') + cell;
}

}  // namespace

void PutBackInputs(ViewCatalogue& views, const std::vector<ViewCatalogue::Input>& former) {
  const auto present = [&views](const QString& name) {
    const auto inputs = views.Inputs();
    const auto one = std::find_if(inputs.begin(), inputs.end(),
                                  [&name](const ViewCatalogue::Input& input) { return input.name == name; });
    return one == inputs.end() ? ViewCatalogue::Input() : *one;
  };
  for (const ViewCatalogue::Input& input : former) {
    const ViewCatalogue::Input now = present(input.name);
    const QString& wanted = InForce(input);
    if (now.value != wanted || InForce(now) != wanted) views.SetInput(input.name, wanted);
  }
  // What had been typed or chosen and not applied, once what was applied is in force again.
  for (const ViewCatalogue::Input& input : former)
    if (present(input.name).value != input.value) views.PutInput(input.name, input.value);
}

QByteArray GridToCsv(const GridText& grid) {
  QStringList headings;
  for (int column = 0; column < grid.titles.size(); ++column) {
    const QString& title = grid.titles[column];
    headings.append(CsvField(title.isEmpty() ? QStringLiteral("#%1").arg(column) : Harmless(title)));
  }
  QString text = headings.join(QLatin1Char(',')) + QLatin1Char('\n');
  for (const QStringList& row : grid.rows) {
    QStringList fields;
    for (const QString& cell : row) fields.append(CsvField(Harmless(cell)));
    text += fields.join(QLatin1Char(',')) + QLatin1Char('\n');
  }
  return text.toUtf8();
}

ViewExporter::ViewExporter(ViewCatalogue& views, QWidget& picture, int settleMilliseconds)
    : views_(views), picture_(picture), settleMilliseconds_(settleMilliseconds) {
  connect(&look_, &QTimer::timeout, this, [this] { Look(); });
}

ViewExporter::~ViewExporter() {
  PaintAlways();
}

void ViewExporter::Start(const QString& folder, std::vector<ViewInput> inputs, bool isSimulated) {
  folder_ = folder;
  inputs_ = std::move(inputs);
  isSimulated_ = isSimulated;
  left_ = views_.List();
  std::stable_partition(left_.begin(), left_.end(), [this](const ViewCatalogue::View& view) {
    return std::any_of(inputs_.begin(), inputs_.end(),
                       [&view](const ViewInput& input) { return input.frameId == view.frameId; });
  });
  std::reverse(left_.begin(), left_.end());
  shownBefore_ = views_.Current();
  KeepPlace();
  qApp->installEventFilter(this);
  QTimer::singleShot(0, this, [this] {
    if (!QDir().mkpath(folder_)) return Finish(QStringLiteral("目录“%1”不能建立。").arg(folder_));
    NextView();
  });
}

bool ViewExporter::IsKeptOff(const QObject* watched) const {
  // Dialogs of the view stay usable: the view may be waiting for an answer.
  const auto* widget = qobject_cast<const QWidget*>(watched);
  if (widget == nullptr || widget->window() != picture_.window()) return false;
  return std::none_of(spared_.begin(), spared_.end(),
                      [widget](const QWidget* part) { return part == widget || part->isAncestorOf(widget); });
}

bool ViewExporter::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Shortcut) {
    // Sent by the application. Its receiver may be any object below the widget that it is for.
    const QObject* owner = watched;
    while (owner != nullptr && !owner->isWidgetType()) owner = owner->parent();
    return owner == &picture_ || (owner != nullptr && picture_.isAncestorOf(static_cast<const QWidget*>(owner)));
  }
  if (!event->spontaneous()) return false;
  switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
    case QEvent::ContextMenu:
      return IsKeptOff(watched);
    default:
      return false;
  }
}

void ViewExporter::Look() {
  if (isGivenUp_) return Finish(QStringLiteral("已取消，目录“%1”中的文件不全。").arg(folder_));
  const bool isSettled = window_ ? window_->IsSettled() : views_.IsSettled();
  settledLooks_ = isSettled ? settledLooks_ + 1 : 0;
  look_.setInterval(kLookMilliseconds);
  if (const int progress = views_.Progress(); progress != progress_) {
    progress_ = progress;
    waiting_.restart();
  }
  if (settledLooks_ < quietLooks_) {
    if (!isSettled) PaintAlways();  // it may take long
    if (waiting_.elapsed() > settleMilliseconds_)
      Finish(QStringLiteral("%1 在 %2 秒内没有进展（原因见日志）。").arg(waitingFor_).arg(settleMilliseconds_ / 1000));
    return;
  }
  look_.stop();
  try {
    (this->*whenSettled_)();
  } catch (const std::exception& error) {
    Finish(QString::fromUtf8(error.what()));
  }
}

void ViewExporter::Wait(void (ViewExporter::*whenSettled)(), int quietLooks, const QString& forWhat) {
  whenSettled_ = whenSettled;
  quietLooks_ = quietLooks;
  waitingFor_ = forWhat;
  settledLooks_ = 0;
  waiting_.start();
  look_.start(quietLooks == kQuietLooksAtPortfolio ? 0 : kLookMilliseconds);
}

void ViewExporter::NextView() {
  if (left_.empty()) {
    windowsLeft_ = views_.Windows();
    return NextWindow();
  }
  view_ = left_.back();
  left_.pop_back();
  if (!views_.Show(view_.frameId)) return Finish(QStringLiteral("视图“%1”不能打开。").arg(view_.caption));
  Wait(&ViewExporter::SetInputs, kQuietLooksAtView, QStringLiteral("视图“%1”").arg(view_.caption));
}

// What an input asks for (a file) has to be there before the next one is set, as a person would wait for it.
void ViewExporter::SetInputs() {
  KeepPlace();
  const auto isOfView = [this](const ViewInput& input) { return input.frameId == view_.frameId; };
  const auto next = std::find_if(inputs_.begin(), inputs_.end(), isOfView);
  if (next == inputs_.end()) return WriteView();
  const ViewInput input = *next;
  inputs_.erase(next);
  KeepInputs();
  const QString problem = views_.SetInput(input.name, input.value);
  if (problem.isEmpty())
    return Wait(&ViewExporter::SetInputs, kQuietLooksAtView, QStringLiteral("视图“%1”").arg(view_.caption));
  problems_ << QStringLiteral("视图“%1”没有导出：%2").arg(view_.caption, problem);
  notWritten_ << QStringLiteral("%1.png").arg(view_.frameId);
  gridNames_.insert(kInputsName);
  for (const GridText& grid : views_.Grids()) gridNames_.insert(FileNamePart(grid.name));
  inputs_.erase(std::remove_if(inputs_.begin(), inputs_.end(), isOfView), inputs_.end());
  NextView();
}

void ViewExporter::KeepInputs() {
  if (!former_.empty() && former_.back().frameId == view_.frameId) return;
  if (auto inputs = views_.Inputs(); !inputs.empty()) former_.push_back({view_.frameId, std::move(inputs)});
}

void ViewExporter::RestoreInputs() {
  for (const auto& [frameId, inputs] : std::exchange(former_, {})) {
    if (views_.Current() != frameId && !views_.Show(frameId)) continue;
    PutBackInputs(views_, inputs);
    RestorePlace();
  }
}

void ViewExporter::KeepPlace() {
  if (const int view = views_.Current(); view != 0) places_.emplace(view, views_.Place());
}

void ViewExporter::RestorePlace() {
  if (const auto place = places_.find(views_.Current()); place != places_.end()) views_.PutPlace(place->second);
}

void ViewExporter::WritePicture(QWidget& picture, const QString& name, const QString& caption) {
  QByteArray png;
  QBuffer buffer(&png);
  buffer.open(QIODevice::WriteOnly);
  if (!picture.grab().save(&buffer, "PNG"))
    throw Error(ErrorCategory::Io, QStringLiteral("视图“%1”的图片不能生成。").arg(caption).toStdString());
  WriteFileAtomically(folder_ + QLatin1Char('/') + name + QStringLiteral(".png"), png, Durability::Replaceable);
}

void ViewExporter::NextWindow() {
  window_.reset();
  if (windowsLeft_.isEmpty()) return WroteAll();
  windowName_ = FileNamePart(windowsLeft_.first());
  window_ = views_.MakeWindow(windowsLeft_.takeFirst());
  if (window_ == nullptr) return Finish(QStringLiteral("窗口“%1”不能打开。").arg(windowName_));
  Wait(&ViewExporter::WriteWindow, kQuietLooksAtView, QStringLiteral("窗口“%1”").arg(windowName_));
}

void ViewExporter::WriteWindow() {
  WritePicture(window_->Frame(), windowName_, window_->Frame().windowTitle());
  for (const GridText& grid : window_->Grids())
    WriteGrid(windowName_ + QLatin1Char('-') + FileNamePart(grid.name), grid);
  NextWindow();
}

void ViewExporter::WriteView() {
  const QString name = QString::number(view_.frameId);
  WritePicture(picture_, name, view_.caption);
  for (const GridText& grid : views_.Grids()) {
    gridNames_.insert(FileNamePart(grid.name));
    WriteGrid(name + QLatin1Char('-') + FileNamePart(grid.name), grid);
  }
  WriteInputs();
  const ViewCatalogue::Holdings holdings = views_.HoldingsGrid();
  followingGrid_ = holdings.gridName;
  portfoliosLeft_ = holdings.gridName.isEmpty() ? QStringList() : holdings.portfolioIds;
  NextPortfolio();
}

void ViewExporter::PaintAlways() {
  if (!std::exchange(isPaintedSeldom_, false)) return;
  picture_.setUpdatesEnabled(true);
}

void ViewExporter::PaintSeldom() {
  if (isPaintedSeldom_ && painted_.elapsed() < kPaintMilliseconds) return;
  PaintAlways();
  picture_.repaint();
  painted_.start();
  picture_.setUpdatesEnabled(false);
  isPaintedSeldom_ = true;
}

void ViewExporter::NextPortfolio() {
  if (portfoliosLeft_.isEmpty()) {
    PaintAlways();
    RestorePlace();
    return NextView();
  }
  PaintSeldom();
  portfolio_ = portfoliosLeft_.takeFirst();
  if (!views_.SelectPortfolio(portfolio_))
    return Finish(QStringLiteral("视图“%1”中没有组合 %2。").arg(view_.caption, portfolio_));
  Wait(&ViewExporter::WritePortfolio, kQuietLooksAtPortfolio,
       QStringLiteral("视图“%1”的组合 %2").arg(view_.caption, portfolio_));
}

void ViewExporter::WritePortfolio() {
  const std::vector<GridText> grids = views_.Grids();
  const auto grid =
      std::find_if(grids.begin(), grids.end(), [this](const GridText& one) { return one.name == followingGrid_; });
  if (grid == grids.end())
    throw Error(ErrorCategory::NotFound,
                QStringLiteral("视图“%1”中没有表格 %2。").arg(view_.caption, followingGrid_).toStdString());
  WriteGrid(QStringLiteral("%1-%2-%3").arg(view_.frameId).arg(FileNamePart(grid->name), FileNamePart(portfolio_)),
            *grid);
  NextPortfolio();
}

void ViewExporter::WriteInputs() {
  GridText table{kInputsName, {QStringLiteral("输入项"), QStringLiteral("控件"), QStringLiteral("值")}, {}, {}};
  for (const ViewCatalogue::Input& input : views_.Inputs())
    table.rows.push_back({input.caption.isEmpty() ? input.name : input.caption, input.name, InForce(input)});
  if (table.rows.empty()) return;
  gridNames_.insert(kInputsName);
  WriteGrid(QStringLiteral("%1-%2").arg(view_.frameId).arg(kInputsName), table);
}

void ViewExporter::WriteGrid(const QString& name, const GridText& grid) {
  const QString file = name + QStringLiteral(".csv");
  WriteFileAtomically(folder_ + QLatin1Char('/') + file, GridToCsv(grid), Durability::Replaceable);
  tables_.insert(file);
}

void ViewExporter::RemoveOld() const {
  static const QRegularExpression kOwnName(QStringLiteral("^\\d+-(.+?)(-\\d+)?\\.csv$"));
  const QDir folder(folder_);
  QStringList old;
  for (const QString& file : folder.entryList({QStringLiteral("*.csv")}, QDir::Files)) {
    const QRegularExpressionMatch match = kOwnName.match(file);
    if (match.hasMatch() && gridNames_.contains(match.captured(1)) && !tables_.contains(file)) old << file;
  }
  for (const QString& file : old + notWritten_) RemoveFile(folder.filePath(file));
}

void ViewExporter::WriteNote() const {
  const QString note = folder_ + QStringLiteral("/模拟行情.txt");
  if (isSimulated_) {
    const QString text =
        QStringLiteral("本目录中的表格和图片出自模拟行情：价格和走势都是虚构的，不是真实市场的数据。\n");
    WriteFileAtomically(note, text.toUtf8(), Durability::Replaceable);
  } else {
    RemoveFile(note);
  }
}

void ViewExporter::WroteAll() {
  for (const ViewInput& input : inputs_)
    problems_ << QStringLiteral("没有编号为 %1 的视图，不能设定“%2”。").arg(input.frameId).arg(input.name);
  RemoveOld();
  WriteNote();
  QStringList lacking = views_.Incomplete();
  if (const QString shortcoming = views_.Shortcoming(); !shortcoming.isEmpty()) lacking.prepend(shortcoming);
  Finish(problems_.join(QLatin1Char('\n')), lacking.join(QLatin1Char('\n')));
}

void ViewExporter::Finish(const QString& problem, const QString& lacking) {
  look_.stop();
  window_.reset();
  PaintAlways();
  qApp->removeEventFilter(this);
  QStringList problems{problem};
  try {
    RestorePlace();  // of a view that it broke off in
    RestoreInputs();
    if (shownBefore_ != 0 && views_.Show(shownBefore_)) RestorePlace();
  } catch (const std::exception& error) {
    problems << QStringLiteral("导出前的输入没有恢复：%1").arg(QString::fromUtf8(error.what()));
  }
  problems.removeAll(QString());
  // The listener may destroy this object.
  const auto done = std::exchange(OnDone, nullptr);
  if (done) done(problems.join(QLatin1Char('\n')), lacking);
}

}  // namespace holdwise
