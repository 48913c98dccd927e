// SPDX-License-Identifier: MIT
#include "pages/host_pages.h"

#include <QCoreApplication>
#include <QEvent>
#include <QLabel>
#include <QScrollBar>
#include <QVBoxLayout>
#include <utility>

#include "holdwise/packet/number_text.h"

namespace holdwise {
namespace {

constexpr int kPageMargin = 32;

QLabel* AddLabel(QVBoxLayout& layout, int pixelSize, bool isBold) {
  auto* label = new QLabel;
  QFont font = label->font();
  font.setPixelSize(pixelSize);
  font.setBold(isBold);
  label->setFont(font);
  label->setTextFormat(Qt::PlainText);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  layout.addWidget(label);
  return label;
}

void SetTextColor(QLabel& label, const QColor& color) {
  QPalette palette = label.palette();
  palette.setColor(QPalette::WindowText, color);
  label.setPalette(palette);
}

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

SecurityPage::SecurityPage(MarketData& market, const ThemeServices& theme) : market_(market), theme_(theme) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(kPageMargin, kPageMargin, kPageMargin, kPageMargin);
  title_ = AddLabel(*layout, 26, true);
  price_ = AddLabel(*layout, 34, true);
  details_ = AddLabel(*layout, 14, false);
  layout->addStretch(1);
  connect(&market, &MarketData::CurrentCodeChanged, this, [this] { Fill(); });
  connect(&market, &MarketData::QuotesChanged, this, [this] { Fill(); });
}

void SecurityPage::SetParameter(const QString& parameter) {
  parameter_ = parameter;
}

void SecurityPage::showEvent(QShowEvent* /*event*/) {
  Fill();
}

void SecurityPage::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange) Fill();
}

void SecurityPage::Fill() {
  if (!isVisible()) return;
  const QString code = market_.CurrentCode();
  if (code.isEmpty()) {
    title_->setText(QStringLiteral("还没有选定股票"));
    price_->clear();
    details_->setText(QStringLiteral("在组合的表格中单击一只股票的代码或名称，或直接键入代码、名称的拼音首字母。"));
    return;
  }
  title_->setText(
      QStringLiteral("%1  %2").arg(code.right(6).rightJustified(6, QLatin1Char('0')), market_.NameOf(code)));
  const int number = static_cast<int>(IntegerOr(code.size() == 6 ? QStringLiteral("1") + code : code));
  const bool isIndex = market_.IsIndex(code);
  const NowData now = isIndex ? market_.IndexNowData(static_cast<int>(IntegerOr(code))) : market_.StockNowData(number);
  const bool hasPrice = now.currentPrice > 0;
  const double change = hasPrice && now.previousClose > 0 ? now.currentPrice - now.previousClose : 0;
  const double percent = now.previousClose > 0 ? change / now.previousClose * 100 : 0;
  price_->setText(hasPrice ? QStringLiteral("%1    %2 (%3%)")
                                 .arg(FormatFixed(now.currentPrice, 2), FormatFixed(change, 2), FormatFixed(percent, 2))
                           : QStringLiteral("— 无行情"));
  SetTextColor(*price_, theme_.ColorOfChange(change));
  QStringList details;
  if (now.previousClose > 0) details.append(QStringLiteral("昨收：%1").arg(FormatFixed(now.previousClose, 2)));
  if (const QString industry = market_.IndustryOf(number); !industry.isEmpty())
    details.append(QStringLiteral("行业：%1").arg(industry));
  if (!parameter_.isEmpty()) details.append(QStringLiteral("参数：%1").arg(parameter_));
  details_->setText(details.join(QStringLiteral("\n")));
}

ToolbarPage::ToolbarPage() {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(kPageMargin, kPageMargin, kPageMargin, kPageMargin);
  text_ = AddLabel(*layout, 14, false);
  layout->addStretch(1);
}

void ToolbarPage::SetParameter(const QString& parameter) {
  text_->setText(parameter.isEmpty() ? QStringLiteral("没有打开任何工具。")
                                     : QStringLiteral("参数：%1").arg(parameter));
}

LogPage::LogPage(DebugLog& log) : log_(log) {
  setReadOnly(true);
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
