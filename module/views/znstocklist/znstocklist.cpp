// SPDX-License-Identifier: MIT
#include "views/znstocklist/znstocklist.h"

#include <QGuiApplication>
#include <QShowEvent>
#include <QVBoxLayout>
#include <QWindow>

#include "common/frames/frame_parts.h"
#include "common/frames/security_links.h"
#include "common/grid/string_grid.h"
#include "common/host/download_role.h"
#include "common/host/event_guard.h"
#include "common/host/remote_files.h"
#include "holdwise/packet/table_limits.h"
#include "pool_rows.h"

namespace holdwise {
namespace {

const QString kUnit = QStringLiteral("Znstocklist");
constexpr QSize kFormSize{760, 480};
constexpr QSize kSmallestSize{520, 240};

}  // namespace

std::unique_ptr<TForm_Stock> Form_Stock;

TForm_Stock::TForm_Stock() {
  BuildForm();
  MakeSkin();
  BuildDownload();
  isPending_ = true;
  InfoAsynDownFileRole1->Request(remote_files::kStockPool);
}

TForm_Stock::~TForm_Stock() = default;

void TForm_Stock::BuildForm() {
  setWindowTitle(QStringLiteral("智能股票池"));
  // Only to be closed: a modal dialog that somebody minimises leaves a terminal that does not answer.
  setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                 Qt::WindowCloseButtonHint);
  strngrd = new TStringGrid(kUnit, QStringLiteral("strngrd"), this);
  strngrd->setAccessibleName(windowTitle());
  header_ = new HeaderStrip(*strngrd, pool::PoolTable(), this);
  strngrd->SetEmptyText(QStringLiteral("正在取得股票池…"));
  strngrd->setFocusPolicy(Qt::StrongFocus);
  strngrd->OnSelectCell = [this](int, int row) { return strngrdSelectCell(row); };
  strngrd->OnClientWidthChanged = [this](int) { header_->FitColumns(); };
  auto* rows = StackedIn(*this);
  rows->addWidget(header_);
  rows->addWidget(strngrd, 1);
  setMinimumSize(kSmallestSize);
  resize(kFormSize);
}

void TForm_Stock::BuildDownload() {
  InfoAsynDownFileRole1 = MakeFileDownload(QStringLiteral("InfoAsynDownFileRole1"));
  const auto handle = [this](const QString& routine, auto&& body) {
    isPending_ = false;
    if (!GuardEvent(kUnit, routine, body)) Miss(QStringLiteral("股票池文件不能读取（原因见日志）"));
  };
  InfoAsynDownFileRole1->OnReciveAFile = [this, handle](const QString& name, int) {
    handle(QStringLiteral("InfoAsynDownFileRole1ReciveAFile"), [&] { InfoAsynDownFileRole1ReciveAFile(name); });
  };
  InfoAsynDownFileRole1->OnReciveStearm = [this, handle](const QString& name, int, const QByteArray& content) {
    handle(QStringLiteral("InfoAsynDownFileRole1ReciveStearm"),
           [&] { InfoAsynDownFileRole1ReciveStearm(name, content); });
  };
  InfoAsynDownFileRole1->OnReciveAFileFail = [this](const QString&, int) {
    isPending_ = false;
    Miss(QStringLiteral("没有取得股票池文件 StockPool.dat"));
  };
}

void TForm_Stock::InfoAsynDownFileRole1ReciveAFile(const QString& fileName) {
  CtrlReciveFile(fileName, {}, 0);
}

void TForm_Stock::InfoAsynDownFileRole1ReciveStearm(const QString& fileName, const QByteArray& content) {
  CtrlReciveFile(fileName, content, 1);
}

void TForm_Stock::CtrlReciveFile(const QString& fileName, const QByteArray& stream, int mode) {
  ClientDataSet1 = ReadReceived(*InfoAsynDownFileRole1, fileName, stream, mode, kSecuritiesLimits);
  pool::ShowPool(ClientDataSet1, *strngrd);
  if (ClientDataSet1.IsEmpty()) strngrd->SetEmptyText(QStringLiteral("股票池中没有股票"));
}

void TForm_Stock::Miss(const QString& problem) {
  strngrd->SetEmptyText(problem + QStringLiteral("。\n请更新数据目录后再打开。"));
}

bool TForm_Stock::strngrdSelectCell(int row) {
  if (row != strngrd->Row() && !strngrd->IsEmpty()) OpenSecurity(strngrd->Cells(pool::kCode, row));
  return true;
}

void TForm_Stock::MakeSkin() {
  SetPanelColor(*this, ThemeBackground());
  header_->ApplyTheme();
}

void TForm_Stock::ShowModal() {
  exec();
}

void TForm_Stock::showEvent(QShowEvent* event) {
  QDialog::showEvent(event);
  if (event->spontaneous()) return;
  // The form has no owner; without this it might open behind the terminal's window.
  if (windowHandle() != nullptr) windowHandle()->setTransientParent(QGuiApplication::focusWindow());
}

void TForm_Stock::resizeEvent(QResizeEvent* event) {
  QDialog::resizeEvent(event);
  header_->FitColumns();
}

}  // namespace holdwise
