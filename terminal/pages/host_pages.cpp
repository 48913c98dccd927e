// SPDX-License-Identifier: MIT
#include "pages/host_pages.h"

#include <QCoreApplication>
#include <QEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QVBoxLayout>
#include <utility>

namespace holdwise {
namespace {

constexpr int kPageMargin = 32;
constexpr int kTextPixels = 14;
constexpr int kSpacing = 16;

}  // namespace

HostPageAddress::HostPageAddress(const QString& name, std::uint16_t number, bool isListed,
                                 std::unique_ptr<QWidget> page, PlugSystemInfo& system, Show show)
    : TAddressItem(name, number, QString(), false, isListed),
      page_(std::move(page)),
      system_(system),
      show_(std::move(show)) {}

void HostPageAddress::EnterAddress(const QString& parameter) {
  if (show_) show_(parameter);
  system_.ShowFrame(page_.get());
}

void HostPageAddress::LeaveAddress() {
  page_->setParent(nullptr);
}

void HostPageAddress::ChangeColorTheme() {
  // Also where no colour of the palette has changed.
  QEvent change(QEvent::PaletteChange);
  QCoreApplication::sendEvent(page_.get(), &change);
}

bool HostPageAddress::GetIsWorkState() const {
  return page_->parentWidget() != nullptr;
}

ToolbarPage::ToolbarPage() : text_(new QLabel) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(kPageMargin, kPageMargin, kPageMargin, kPageMargin);
  QFont font = text_->font();
  font.setPixelSize(kTextPixels);
  text_->setFont(font);
  text_->setTextFormat(Qt::PlainText);
  text_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  layout->addWidget(text_);
  layout->setSpacing(kSpacing);
  auto* back = new QPushButton(QStringLiteral("返回(&B)"));
  back->setAutoDefault(false);
  connect(back, &QPushButton::clicked, this, [this] {
    if (OnReturn) OnReturn();
  });
  layout->addWidget(back, 0, Qt::AlignLeft);
  layout->addStretch(1);
  setFocusPolicy(Qt::StrongFocus);
}

void ToolbarPage::SetParameter(const QString& parameter) {
  const QString what =
      parameter.isEmpty() ? QStringLiteral("没有打开任何工具。") : QStringLiteral("参数：%1").arg(parameter);
  text_->setText(what + QStringLiteral("\n\n插件可以在这一页打开它自己的工具；投资组合用不到它。\n"
                                       "按 Esc 或“返回”回到原来的页面。"));
}

void ToolbarPage::showEvent(QShowEvent* /*event*/) {
  setFocus();
}

void ToolbarPage::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape && OnReturn) return OnReturn();
  QWidget::keyPressEvent(event);
}

LogPage::LogPage(DebugLog& log) : log_(log) {
  setReadOnly(true);
  setAccessibleName(QStringLiteral("日志"));
  setFrameShape(QFrame::NoFrame);
  setLineWrapMode(QPlainTextEdit::NoWrap);
  setMaximumBlockCount(DebugLog::kLinesInMemory);
  log_.SetListener([this] {
    if (!isFillQueued_.exchange(true))
      QMetaObject::invokeMethod(
          this, [this] { Fill(); }, Qt::QueuedConnection);
  });
}

LogPage::~LogPage() {
  log_.SetListener({});
}

void LogPage::showEvent(QShowEvent* /*event*/) {
  Fill();
}

void LogPage::Fill() {
  isFillQueued_ = false;
  if (!isVisible()) return;
  setPlainText(log_.Lines().join(QLatin1Char('\n')));
  verticalScrollBar()->setValue(verticalScrollBar()->maximum());
}

}  // namespace holdwise
