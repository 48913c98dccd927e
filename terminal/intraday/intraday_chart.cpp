// SPDX-License-Identifier: MIT
#include "intraday/intraday_chart.h"

#include <QGraphicsLayout>
#include <QKeyEvent>
#include <QtCharts/QAreaSeries>
#include <QtCharts/QChart>
#include <QtCharts/QLineSeries>
#include <QtCharts/QValueAxis>
#include <algorithm>
#include <utility>

namespace holdwise {
namespace {

constexpr int kMinuteSeconds = 60;
/// Of a bar's minute nothing is drawn at either end, so that bars stand apart.
constexpr int kBarGapSeconds = 8;

/// A line one point wide whatever the scale: a wider one costs ten times as much to draw.
QPen ThinPen(const QColor& color, Qt::PenStyle style = Qt::SolidLine) {
  QPen pen(color, 1, style);
  pen.setCosmetic(true);
  return pen;
}

QLineSeries* AddLine(QChart& chart, const QString& name, QValueAxis* x, QValueAxis* y) {
  auto* line = new QLineSeries;
  line->setName(name);
  chart.addSeries(line);
  line->attachAxis(x);
  line->attachAxis(y);
  return line;
}

QAreaSeries* AddBars(QChart& chart, const QString& name, QValueAxis* x, QValueAxis* y) {
  auto* bars = new QAreaSeries;
  auto* upper = new QLineSeries(bars);
  bars->setUpperSeries(upper);
  bars->setName(name);
  bars->setPen(Qt::NoPen);
  chart.addSeries(bars);
  bars->attachAxis(x);
  bars->attachAxis(y);
  return bars;
}

QValueAxis* AddAxis(QChart& chart, Qt::Alignment side) {
  auto* axis = new QValueAxis;
  axis->setVisible(false);  // the scales are painted by chart_painter
  chart.addAxis(axis, side);
  return axis;
}

}  // namespace

IntradayChart::IntradayChart(QWidget* parent) : QChartView(new QChart, parent) {
  chart()->legend()->hide();
  chart()->setBackgroundVisible(false);
  chart()->setMargins({});
  chart()->layout()->setContentsMargins(0, 0, 0, 0);
  times_ = AddAxis(*chart(), Qt::AlignBottom);
  prices_ = AddAxis(*chart(), Qt::AlignLeft);
  volumes_ = AddAxis(*chart(), Qt::AlignRight);
  times_->setRange(0, kDaySeconds);
  rising_ = AddBars(*chart(), QStringLiteral("成交量（涨）"), times_, volumes_);
  falling_ = AddBars(*chart(), QStringLiteral("成交量（跌）"), times_, volumes_);
  previousClose_ = AddLine(*chart(), QStringLiteral("昨收"), times_, prices_);
  averageLine_ = AddLine(*chart(), QStringLiteral("均价"), times_, prices_);
  price_ = AddLine(*chart(), QStringLiteral("价格"), times_, prices_);
  setFrameShape(QFrame::NoFrame);
  setRenderHint(QPainter::Antialiasing);
  setMouseTracking(true);
  setFocusPolicy(Qt::StrongFocus);
  setAccessibleName(QStringLiteral("分时图"));
}

void IntradayChart::SetData(IntradayData day) {
  data_ = std::move(day);
  average_ = AverageOf(data_.ticks, data_.hasShares);
  bars_ = MinuteBars(data_.ticks);
  scale_ = ScaleFor(data_.ticks, average_.points, data_.previousClose);
  Place();
  if (cross_) PutCross(cross_->second);
}

void IntradayChart::SetColors(const LineColors& colors) {
  colors_ = colors;
  setBackgroundBrush(colors.ground);
  price_->setPen(ThinPen(colors.price));
  averageLine_->setPen(ThinPen(colors.average));
  previousClose_->setPen(ThinPen(colors.previousClose, Qt::DashLine));
  rising_->setBrush(colors.rise);
  falling_->setBrush(colors.fall);
  viewport()->update();
}

void IntradayChart::Place() {
  const QFontMetricsF metrics(font());
  const QSizeF size = viewport()->size();
  const double width = std::max({metrics.horizontalAdvance(PriceText(scale_.High())),
                                 metrics.horizontalAdvance(QStringLiteral("+10.00%")),
                                 metrics.horizontalAdvance(QStringLiteral("8888.88"))});
  layout_ = LayOut(size, width, metrics.height(), scale_);
  chart()->setPlotArea(layout_.plot);
  const PlotRange prices = PriceRange(layout_, scale_);
  prices_->setRange(prices.low, prices.high);
  const PlotRange volumes = VolumeRange(layout_, static_cast<double>(MostTraded(bars_)));
  volumes_->setRange(volumes.low, volumes.high);
  FillSeries();
  FillBars();
  viewport()->update();
}

void IntradayChart::FillSeries() {
  QList<QPointF> points;
  for (const Tick& tick : ThinnedOut(data_.ticks, static_cast<int>(layout_.plot.width())))
    points.append({static_cast<double>(tick.second), static_cast<double>(tick.price)});
  if (!points.isEmpty() && data_.now && *data_.now > points.constLast().x())
    points.append({static_cast<double>(*data_.now), points.constLast().y()});
  price_->replace(points);
  points.clear();
  for (const AveragePoint& point : average_.points) points.append({static_cast<double>(point.second), point.price});
  averageLine_->replace(points);
  points.clear();
  if (data_.previousClose > 0) {
    const auto close = static_cast<double>(data_.previousClose);
    points = {{0, close}, {kDaySeconds, close}};
  }
  previousClose_->replace(points);
}

void IntradayChart::FillBars() {
  QList<QPointF> rising, falling;
  for (const MinuteBar& bar : bars_) {
    if (bar.volume <= 0) continue;
    const double left = bar.minute * kMinuteSeconds + kBarGapSeconds;
    const double right = (bar.minute + 1) * kMinuteSeconds - kBarGapSeconds;
    const auto top = static_cast<double>(bar.volume);
    (bar.close < bar.before ? falling : rising) += {{left, 0}, {left, top}, {right, top}, {right, 0}};
  }
  rising_->upperSeries()->replace(rising);
  falling_->upperSeries()->replace(falling);
}

void IntradayChart::drawBackground(QPainter* painter, const QRectF& rect) {
  QChartView::drawBackground(painter, rect);
  PaintGrid(*painter, layout_, scale_, colors_);
}

void IntradayChart::drawForeground(QPainter* painter, const QRectF& /*rect*/) {
  painter->setFont(font());
  PaintLabels(*painter, layout_, scale_, data_.previousClose, MostTraded(bars_), colors_);
  if (cross_) PaintCross(*painter, layout_, scale_, data_.previousClose, *cross_, colors_);
}

void IntradayChart::resizeEvent(QResizeEvent* event) {
  QChartView::resizeEvent(event);
  Place();
}

void IntradayChart::mouseMoveEvent(QMouseEvent* event) {
  if (layout_.plot.contains(event->position()))
    PutCross(layout_.Axis().SecondAt(event->position().x()));
  else
    PutCross(std::nullopt);
}

void IntradayChart::leaveEvent(QEvent* event) {
  QChartView::leaveEvent(event);
  PutCross(std::nullopt);
}

void IntradayChart::keyPressEvent(QKeyEvent* event) {
  const int step = event->key() == Qt::Key_Left ? -kMinuteSeconds : event->key() == Qt::Key_Right ? kMinuteSeconds : 0;
  if (step == 0 || data_.ticks.empty()) return QWidget::keyPressEvent(event);  // Escape is for the page
  const int from = cross_ ? cross_->second : data_.ticks.back().second;
  PutCross(std::clamp(from + step, data_.ticks.front().second, data_.ticks.back().second));
}

void IntradayChart::PutCross(std::optional<int> second) {
  const Tick* tick = second ? TickAt(data_.ticks, *second) : nullptr;
  const bool wasThere = cross_.has_value();
  cross_.reset();
  if (tick != nullptr) {
    const auto price = static_cast<double>(tick->price);
    cross_ = CrossValues{*second, price, QString()};
    QStringList words{TimeText(*second, true), QStringLiteral("价 ") + PriceText(price)};
    const auto after = std::find_if(average_.points.rbegin(), average_.points.rend(),
                                    [&](const AveragePoint& point) { return point.second <= *second; });
    if (after != average_.points.rend()) words.append(QStringLiteral("均 ") + PriceText(after->price));
    if (data_.previousClose > 0)
      words.append(QStringLiteral("涨跌 ") + PercentText(PercentOf(price, data_.previousClose)));
    const auto bar =
        std::find_if(bars_.begin(), bars_.end(), [&](const MinuteBar& one) { return one.minute == MinuteOf(*second); });
    if (bar != bars_.end() && bar->volume >= 0) words.append(QStringLiteral("量 ") + VolumeText(bar->volume));
    cross_->text = words.join(QStringLiteral("  "));
  }
  if (wasThere || cross_) viewport()->update();
}

}  // namespace holdwise
