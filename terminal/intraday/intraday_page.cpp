// SPDX-License-Identifier: MIT
#include "intraday/intraday_page.h"

#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QVBoxLayout>
#include <cmath>

#include "holdwise/packet/code_numbers.h"
#include "holdwise/packet/number_text.h"
#include "intraday/day_words.h"

namespace holdwise {
namespace {

constexpr int kMargin = 12;
constexpr int kFillMilliseconds = 50;
constexpr int kTitlePixels = 20, kPricePixels = 26, kChangePixels = 16, kFigurePixels = 14;
constexpr int kFigureRows = 2;
enum FigureNumber : std::size_t { kOpen, kPreviousClose, kHigh, kLow, kVolume, kAmount, kFigures };
const QString kUnknown = QStringLiteral("—");

QLabel* MakeLabel(int pixels, bool isBold) {
  auto* label = new QLabel;
  QFont font = label->font();
  font.setPixelSize(pixels);
  font.setBold(isBold);
  label->setFont(font);
  label->setTextFormat(Qt::PlainText);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  label->setFocusPolicy(Qt::NoFocus);
  return label;
}

void SetTextColor(QLabel& label, const QColor& color) {
  QPalette palette = label.palette();
  palette.setColor(QPalette::WindowText, color);
  label.setPalette(palette);
}

std::int64_t Hundredths(double price) {
  return std::llround(price * 100);
}

}  // namespace

IntradayPage::IntradayPage(MarketData& market, const ThemeServices& theme, TickRecorder& recorder)
    : market_(market),
      theme_(theme),
      recorder_(recorder),
      title_(MakeLabel(kTitlePixels, true)),
      price_(MakeLabel(kPricePixels, true)),
      change_(MakeLabel(kChangePixels, true)),
      notice_(MakeLabel(kFigurePixels - 1, false)),
      chart_(new IntradayChart) {
  MakeLayout();
  setFocusProxy(chart_);
  // Several of these come with one reply.
  fillSoon_.setSingleShot(true);
  fillSoon_.setInterval(kFillMilliseconds);
  fillSoon_.callOnTimeout(this, [this] { Fill(); });
  const auto soon = [this] {
    if (isVisible() && !fillSoon_.isActive()) fillSoon_.start();
  };
  connect(&market, &MarketData::QuotesChanged, this, soon);
  connect(&recorder, &TickRecorder::Changed, this, soon);
  connect(&market, &MarketData::CurrentCodeChanged, this, [this] {
    if (isVisible()) ChooseSecurity();
  });
}

void IntradayPage::MakeLayout() {
  // The name that a screen reader says stays the text: the figure itself.
  title_->setAccessibleDescription(QStringLiteral("股票"));
  price_->setAccessibleDescription(QStringLiteral("现价"));
  change_->setAccessibleDescription(QStringLiteral("涨跌"));
  title_->setObjectName(QStringLiteral("title"));
  price_->setObjectName(QStringLiteral("price"));
  change_->setObjectName(QStringLiteral("change"));
  notice_->setObjectName(QStringLiteral("notice"));
  notice_->setWordWrap(true);
  auto* figures = new QGridLayout;
  figures->setHorizontalSpacing(8);
  figures->setVerticalSpacing(2);
  const char* names[kFigures] = {"今开", "昨收", "最高", "最低", "成交量", "成交额"};
  for (int place = 0; place < static_cast<int>(kFigures); ++place) {
    Figure figure{MakeLabel(kFigurePixels, false), MakeLabel(kFigurePixels, false)};
    figure.name->setText(QString::fromUtf8(names[place]));
    figure.value->setObjectName(QString::fromUtf8(names[place]));
    figure.value->setAccessibleDescription(QString::fromUtf8(names[place]));
    const int column = place / kFigureRows * 3;
    figures->addWidget(figure.name, place % kFigureRows, column, Qt::AlignLeft);
    figures->addWidget(figure.value, place % kFigureRows, column + 1, Qt::AlignRight);
    figures->setColumnMinimumWidth(column + 2, 12);
    figures_.push_back(figure);
  }
  auto* head = new QHBoxLayout;
  head->setSpacing(20);
  head->addWidget(title_);
  head->addWidget(price_);
  head->addWidget(change_);
  head->addStretch(1);
  head->addLayout(figures);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin / 2);
  layout->setSpacing(6);
  layout->addLayout(head);
  layout->addWidget(notice_);
  layout->addWidget(chart_, 1);
}

void IntradayPage::SetParameter(const QString& parameter) {
  if (market_.IsKnownSecurity(parameter) || market_.IsIndex(parameter)) market_.SetCurrentCode(parameter);
}

void IntradayPage::showEvent(QShowEvent* /*event*/) {
  ChooseSecurity();
  setFocus();
}

void IntradayPage::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange && isVisible()) Fill();
}

void IntradayPage::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape && OnReturn) return OnReturn();
  QWidget::keyPressEvent(event);
}

int IntradayPage::CodeNumber() const {
  const QString code = market_.CurrentCode();
  if (code.isEmpty()) return 0;
  const int number = static_cast<int>(IntegerOr(code));
  return code.size() == 6 && !market_.IsIndex(code) ? kStockBase + number : number;
}

void IntradayPage::ChooseSecurity() {
  if (const int codeNumber = CodeNumber(); codeNumber != 0) recorder_.LookAt(codeNumber);
  Fill();
}

void IntradayPage::Fill() {
  if (!isVisible()) return;
  colors_ = LineColorsOf(theme_);
  chart_->SetColors(colors_);
  const int codeNumber = CodeNumber();
  if (codeNumber == 0) {
    title_->setText(QStringLiteral("还没有选定股票"));
    notice_->setText(QStringLiteral("在组合的表格中单击一只股票的代码或名称，或直接键入代码、名称的拼音首字母。"));
  } else {
    title_->setText(
        QStringLiteral("%1  %2").arg(SixDigits(codeNumber % kStockBase), market_.NameOf(QString::number(codeNumber))));
  }
  const bool isIndex = IsIndexNumber(codeNumber);
  const NowData now = isIndex ? market_.IndexNowData(codeNumber) : market_.StockNowData(codeNumber);
  const std::vector<Tick>& ticks = recorder_.TicksOf(codeNumber);
  FillHead(now, recorder_.DayOf(codeNumber), ticks);
  FillPicture(now);
  if (codeNumber == 0) return;
  const DayFacts facts{market_.CurrentDateText(),
                       market_.IsSimulated(),
                       isIndex,
                       now.currentPrice > 0,
                       recorder_.LastSecond(),
                       recorder_.DayOf(codeNumber).volume,
                       recorder_.HasLostItsPlace(codeNumber),
                       recorder_.IsSaved()};
  notice_->setText(WordsOfDay(facts, ticks, chart_->Average().kind).join(QStringLiteral(" · ")));
  notice_->setToolTip(HintOfDay(ticks));
}

void IntradayPage::FillHead(const NowData& now, const DaySoFar& day, const std::vector<Tick>& ticks) {
  const bool hasPrice = now.currentPrice > 0;
  const bool hasChange = hasPrice && now.previousClose > 0;
  const double change = hasChange ? now.currentPrice - now.previousClose : 0;
  price_->setText(hasPrice ? FormatFixed(now.currentPrice, 2) : QStringLiteral("— 无行情"));
  change_->setText(hasChange ? QStringLiteral("%1%2  %3")
                                   .arg(change > 0 ? QStringLiteral("+") : QString(), FormatFixed(change, 2),
                                        PercentText(change / now.previousClose * 100))
                             : QString());
  for (QLabel* label : {price_, change_}) SetTextColor(*label, ChangeColor(colors_, change));
  const DayRange range = RangeOfDay(day, ticks);
  const std::int64_t close = Hundredths(now.previousClose);
  const auto price = [&](std::size_t place, std::int64_t hundredths) {
    if (hundredths < 0) return SetFigure(place, kUnknown);
    SetFigure(place, PriceText(static_cast<double>(hundredths)),
              close > 0 ? static_cast<double>(hundredths - close) : 0);
  };
  price(kOpen, range.open);
  price(kHigh, range.high);
  price(kLow, range.low);
  const QString since = range.isWhole ? QString() : QStringLiteral("(%1起)").arg(TimeText(ticks.front().second));
  figures_[kHigh].name->setText(QStringLiteral("最高") + since);
  figures_[kLow].name->setText(QStringLiteral("最低") + since);
  SetFigure(kPreviousClose, close > 0 ? PriceText(static_cast<double>(close)) : kUnknown);
  SetFigure(kVolume, VolumeText(day.volume));
  SetFigure(kAmount, AmountText(day.amount));
}

void IntradayPage::FillPicture(const NowData& now) {
  const int codeNumber = CodeNumber();
  IntradayData shown;
  shown.ticks = recorder_.TicksOf(codeNumber);
  shown.previousClose = Hundredths(now.previousClose);
  shown.hasShares = !IsIndexNumber(codeNumber);
  if (recorder_.IsFollowed(codeNumber)) shown.now = recorder_.LastSecond();
  shown.price = Hundredths(now.currentPrice);
  const DayRange range = RangeOfDay(recorder_.DayOf(codeNumber), shown.ticks);
  shown.known = {range.open, range.high, range.low};
  chart_->SetData(std::move(shown));
}

void IntradayPage::SetFigure(std::size_t place, const QString& value, double change) {
  figures_[place].value->setText(value);
  SetTextColor(*figures_[place].value, ChangeColor(colors_, change));
}

}  // namespace holdwise
