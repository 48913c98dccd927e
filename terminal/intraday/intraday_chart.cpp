// SPDX-License-Identifier: MIT
#include "intraday/intraday_chart.h"

#include <QGraphicsLayout>
#include <QKeyEvent>
#include <QtCharts/QChart>
#include <QtCharts/QLineSeries>
#include <QtCharts/QValueAxis>
#include <algorithm>
#include <utility>

#include "intraday/day_words.h"

namespace holdwise {
namespace {

constexpr int kMinuteSeconds = 60;

constexpr double kLineWidth = 1.5;
/// Of so many points beside each other the line shows the first, lowest, highest and last price.
constexpr int kColumnPoints = 2;

QLineSeries* AddLine(QChart& chart, const QString& name, QValueAxis* x, QValueAxis* y) {
  auto* line = new QLineSeries;
  line->setName(name);
  chart.addSeries(line);
  line->attachAxis(x);
  line->attachAxis(y);
  return line;
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
  times_->setRange(0, kDaySeconds);
  previousClose_ = AddLine(*chart(), QStringLiteral("昨收"), times_, prices_);
  averageLine_ = AddLine(*chart(), QStringLiteral("均价"), times_, prices_);
  price_ = AddLine(*chart(), QStringLiteral("价格"), times_, prices_);
  setFrameShape(QFrame::NoFrame);
  viewport()->setAttribute(Qt::WA_OpaquePaintEvent);  // drawBackground fills it, and once is enough
  setRenderHint(QPainter::Antialiasing);
  setMouseTracking(true);
  setFocusPolicy(Qt::StrongFocus);
  for (QWidget* widget : {static_cast<QWidget*>(this), viewport()}) widget->setAccessibleName(QStringLiteral("分时图"));
}

void IntradayChart::SetData(IntradayData day) {
  data_ = std::move(day);
  average_ = AverageOf(data_.ticks, data_.hasShares);
  bars_ = MinuteBars(data_.ticks);
  data_.known.push_back(data_.price);
  scale_ = ScaleFor(data_.ticks, average_.points, data_.previousClose, data_.known);
  Place();
  if (cross_) PutCross(cross_->second);
}

void IntradayChart::SetColors(const LineColors& colors) {
  colors_ = colors;
  setBackgroundBrush(colors.ground);
  price_->setPen(QPen(colors.price, kLineWidth));
  averageLine_->setPen(QPen(colors.average, kLineWidth));
  previousClose_->setPen(QPen(colors.previousClose, 1, Qt::DashLine));
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
  FillSeries();
  barPlaces_ = BarsIn(layout_, bars_);
  viewport()->update();
}

void IntradayChart::FillSeries() {
  QList<QPointF> points;
  for (const Tick& tick : ThinnedOut(data_.ticks, static_cast<int>(layout_.plot.width()) / kColumnPoints))
    points.append({static_cast<double>(tick.second), static_cast<double>(tick.price)});
  if (!points.isEmpty() && data_.now && *data_.now > points.constLast().x())
    points.append({static_cast<double>(*data_.now), points.constLast().y()});
  if (points.isEmpty() && data_.now && data_.price > 0)
    points.append({static_cast<double>(*data_.now), static_cast<double>(data_.price)});
  price_->replace(points);
  dot_ = points.size() == 1 ? std::optional(points.constFirst()) : std::nullopt;
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

void IntradayChart::drawBackground(QPainter* painter, const QRectF& rect) {
  QChartView::drawBackground(painter, rect);
  PaintGrid(*painter, layout_, scale_, colors_);
  PaintBars(*painter, barPlaces_, colors_);
}

void IntradayChart::drawForeground(QPainter* painter, const QRectF& /*rect*/) {
  painter->setFont(font());
  PaintLabels(*painter, layout_, scale_, data_.previousClose, MostTraded(bars_), colors_);
  if (dot_) PaintDot(*painter, layout_, scale_, static_cast<int>(dot_->x()), dot_->y(), colors_);
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
  if (step == 0 || data_.ticks.empty()) return event->ignore();  // Escape is for the page
  const int from = cross_ ? cross_->second : data_.ticks.back().second;
  PutCross(std::clamp(from + step, data_.ticks.front().second, data_.ticks.back().second));
}

void IntradayChart::PutCross(std::optional<int> wanted) {
  // Not where nothing is known yet.
  std::optional<int> second = wanted;
  if (second && !data_.ticks.empty())
    second = std::min(*second, std::max(data_.ticks.back().second, data_.now.value_or(0)));
  const Tick* tick = second ? TickAt(data_.ticks, *second) : nullptr;
  const bool wasThere = cross_.has_value();
  cross_.reset();
  if (tick != nullptr) {
    const auto price = static_cast<double>(tick->price);
    cross_ = CrossValues{*second, price, WordsOfMoment(*second, data_.ticks, average_.kind, data_.previousClose)};
  }
  if (wasThere || cross_) viewport()->update();
}

}  // namespace holdwise
