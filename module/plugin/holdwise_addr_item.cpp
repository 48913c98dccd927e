// SPDX-License-Identifier: MIT
#include "holdwise_addr_item.h"

#include <QVBoxLayout>

#include "common/host/debug_log.h"
#include "common/host/download_role.h"
#include "common/host/host_access.h"
#include "common/host/remote_files.h"

namespace holdwise {
namespace {

QString AddressName() {
  return QStringLiteral("投资组合");
}

constexpr std::uint16_t kAddressNumber = 0xFFFF;
constexpr int kFirstLayout = 0;

}  // namespace

THoldwiseAddrItem::THoldwiseAddrItem() : TAddressItem(AddressName(), kAddressNumber, QString(), false, true) {
  byteFlag_ = 0;
  FInfoDown = MakeFileDownload(QStringLiteral("FInfoDown"));
  RequestSmartAllocation();
}

THoldwiseAddrItem::~THoldwiseAddrItem() {
  FInfoDown.reset();
  titleFrame_.reset();
}

void THoldwiseAddrItem::RequestSmartAllocation() {
  // Nobody works on the file here; the catalogue only has to know that the answer is still out.
  FInfoDown->OnReciveAFile = [this](const QString&, int) { catalogue_.SetDownloadPending(false); };
  FInfoDown->OnReciveAFileFail = [this](const QString&, int) { catalogue_.SetDownloadPending(false); };
  catalogue_.SetDownloadPending(true);
  FInfoDown->Request(remote_files::kCapitalTable);
}

void THoldwiseAddrItem::MakeFrames() {
  if (!titleFrame_) {
    titleFrame_ = ModuleHost().MakeTitleFrame();
    titleFrame_->SetCaptionText(AddressName());
    titleFrame_->SetLayoutKind(kFirstLayout);
  }
  if (!mainFrame_.isNull()) return;
  QWidget* panel = titleFrame_->ClientPanel();
  auto mainFrame = std::make_unique<TMainFrm>();
  if (panel->layout() == nullptr) {
    auto* layout = new QVBoxLayout(panel);
    layout->setContentsMargins(0, 0, 0, 0);
  }
  mainFrame_ = mainFrame.get();
  panel->layout()->addWidget(mainFrame.release());
  catalogue_.SetMainFrame(mainFrame_);
  FrameSplitter& splitter = mainFrame_->Splitter1();
  TFrmQMTitle* title = titleFrame_.get();
  QObject::connect(&splitter, &QSplitter::splitterMoved, title,
                   [title, &splitter] { title->SplitterMoved(&splitter); });
  splitter.OnPaint = [title, &splitter] { title->SplitterPaint(&splitter); };
}

void THoldwiseAddrItem::EnterAddress(const QString& parameter) {
  try {
    MakeFrames();
    mainFrame_->InitProc();
    ModuleHost().System().ShowFrame(titleFrame_.get());
    titleFrame_->SplitterMoved(&mainFrame_->Splitter1());
    for (TViewFrame* frame : mainFrame_->FrameList()) frame->FrameResize();
    Interpret(parameter);
  } catch (...) {
    LogCurrentException(QStringLiteral("untmainfrm"), QStringLiteral("EnterAddress"));
  }
}

void THoldwiseAddrItem::Interpret(const QString& parameter) {
  const QString skip = QStringLiteral("Skip");
  if (parameter.startsWith(skip)) {
    QTreeWidgetItem* node = mainFrame_->dxTL().FindCaption(parameter.mid(skip.size()));
    if (node != nullptr) mainFrame_->dxTL().GoTo(node);
    return;
  }
  CodeNumServices& codes = ModuleHost().CodeNums();
  if (codes.IsKnownSecurity(parameter) || codes.IsIndex(parameter)) return;
  codes.SetCurrentCode(QStringLiteral("600000"));
}

void THoldwiseAddrItem::LeaveAddress() {
  if (titleFrame_) titleFrame_->setParent(nullptr);
  if (!mainFrame_.isNull()) mainFrame_->FinalProc();
  TAddressItem::LeaveAddress();
}

bool THoldwiseAddrItem::GetIsWorkState() const {
  return titleFrame_ && titleFrame_->parentWidget() != nullptr && !mainFrame_.isNull() &&
         mainFrame_->parentWidget() != nullptr;
}

void THoldwiseAddrItem::ChangeColorTheme() {
  TAddressItem::ChangeColorTheme();
  if (titleFrame_) titleFrame_->RefreshTheme();
  if (!mainFrame_.isNull()) mainFrame_->MakeSkin();
}

}  // namespace holdwise
