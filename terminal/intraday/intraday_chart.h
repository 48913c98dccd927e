// SPDX-License-Identifier: MIT
#pragma once
#include <QtCharts/QChartView>
#include <optional>

#include "intraday/chart_painter.h"

class QLineSeries;
class QValueAxis;

namespace holdwise {

/// What is drawn of a security's day.
struct IntradayData {
  std::vector<Tick> ticks;
  std::int64_t previousClose = 0;       ///< hundredths; 0: none
  bool hasShares = true;                ///< false for an index
  std::optional<int> now;               ///< second of trading up to which the last price is known to hold
  std::int64_t price = Tick::kUnknown;  ///< the last one that is known: stands at `now` while there are no ticks
  std::vector<std::int64_t> known;      ///< other prices of the day, for the scale; below 1: unknown
};

/// The day's picture: price line, line of the previous close, average line, bars of volume, scales, and a crosshair
/// that follows the mouse and, with the keyboard, the arrow keys. User-interface thread.
class IntradayChart final : public QChartView {
 public:
  explicit IntradayChart(QWidget* parent = nullptr);

  void SetData(IntradayData day);
  void SetColors(const LineColors& colors);
  [[nodiscard]] const AverageLine& Average() const { return average_; }
  /// Where the crosshair is; null when it is not shown.
  [[nodiscard]] const CrossValues* Cross() const { return cross_ ? &*cross_ : nullptr; }
  [[nodiscard]] std::span<const BarPlace> Bars() const { return barPlaces_; }
  [[nodiscard]] const ChartLayout& Places() const { return layout_; }
  [[nodiscard]] const PriceScale& Scale() const { return scale_; }

 protected:
  void drawBackground(QPainter* painter, const QRectF& rect) override;
  void drawForeground(QPainter* painter, const QRectF& rect) override;
  void resizeEvent(QResizeEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void Place();
  void FillSeries();
  void PutCross(std::optional<int> wanted);

  IntradayData data_;
  AverageLine average_;
  std::vector<MinuteBar> bars_;
  std::vector<BarPlace> barPlaces_;
  PriceScale scale_{0, 1};
  ChartLayout layout_;
  LineColors colors_;
  std::optional<QPointF> dot_;  ///< the only known price: no line shows it
  std::optional<CrossValues> cross_;
  QValueAxis* times_;
  QValueAxis* prices_;
  QLineSeries* price_;
  QLineSeries* averageLine_;
  QLineSeries* previousClose_;
};

}  // namespace holdwise
