// SPDX-License-Identifier: MIT
#pragma once
#include <QTimer>
#include <QWidget>
#include <functional>
#include <vector>

#include "datacentre/market_data.h"
#include "intraday/intraday_chart.h"
#include "intraday/tick_recorder.h"
#include "theme/theme_services.h"

class QLabel;

namespace holdwise {

/// The current security's day: head line with its figures, what the picture rests on, and the picture, live. A security
/// that is shown is followed from then on. User-interface thread.
class IntradayPage : public QWidget {
 public:
  /// All outlive the page.
  IntradayPage(MarketData& market, const ThemeServices& theme, TickRecorder& recorder);
  /// A known security's or index's code makes it the current one; anything else is ignored.
  void SetParameter(const QString& parameter);
  /// Escape was pressed.
  std::function<void()> OnReturn;

 protected:
  void showEvent(QShowEvent* event) override;
  void changeEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  /// A figure of the head line: its name and its value.
  struct Figure {
    QLabel* name = nullptr;
    QLabel* value = nullptr;
  };
  void MakeLayout();
  [[nodiscard]] int CodeNumber() const;
  void ChooseSecurity();
  void Fill();
  void FillHead(const NowData& now, const DaySoFar& day, const std::vector<Tick>& ticks);
  void FillPicture(const NowData& now);
  void SetFigure(std::size_t place, const QString& value, double change = 0);

  MarketData& market_;
  const ThemeServices& theme_;
  TickRecorder& recorder_;
  LineColors colors_;
  QLabel* title_;
  QLabel* price_;
  QLabel* change_;
  std::vector<Figure> figures_;
  QLabel* notice_;
  IntradayChart* chart_;
  QTimer fillSoon_;
};

}  // namespace holdwise
