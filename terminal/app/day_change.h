// SPDX-License-Identifier: MIT
#pragma once
#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QTimer>
#include <functional>
#include <memory>
#include <vector>

#include "holdwise/sdk/catalogue.h"
#include "parts/market_side.h"
#include "parts/page_side.h"
#include "parts/process_parts.h"
#include "parts/window_side.h"

namespace holdwise {

/// Where the user is, for pages that are made anew.
struct PagePlace {
  QString address;  ///< empty: none
  QString parameter;
  int view = 0;  ///< 0: none is shown
  std::vector<ViewCatalogue::Input> inputs;
  QByteArray inView;  ///< where the user had got to in the view
  QString code;       ///< the current security
};
[[nodiscard]] PagePlace PlaceOf(const PageSide& pages, const MarketData& data);
/// Goes there, as far as it is still there.
void ReturnTo(const PagePlace& place, PageSide& pages, MarketData& data);

/// What a change of day is made of; all outlives it. Market and pages are null while the data folder cannot be used.
struct DayChangeParts {
  ProcessParts& process;
  WindowSide& window;
  const std::unique_ptr<MarketSide>& market;
  const std::unique_ptr<PageSide>& pages;
};

/// Has the data of a later date taken when the data folder of the running terminal holds them: once the user has been
/// quiet for a moment, nothing is under way and nothing would be lost, else on the window's button, after a question
/// when something would be lost. Not in a batch, which ends with the data it began with. User-interface thread.
class DayChange : public QObject {
 public:
  explicit DayChange(const DayChangeParts& parts);

  /// Is a command being carried out?
  std::function<bool()> isBusy;
  /// Puts the data of the folder in the place of the market, and other pages in that of the pages. Throws what keeps it
  /// from that: everything is as before then.
  std::function<void()> take;

  /// The market is another one.
  void Follow();
  /// The user wants it now.
  void TakeAsked();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Look();
  void Wait(const QString& date);
  [[nodiscard]] QString WaitsFor() const;
  [[nodiscard]] bool IsDisturbing() const;
  void Take();

  DayChangeParts parts_;
  QString date_;     ///< that waits; empty: none
  QString problem_;  ///< why it could not be taken, as last said
  QTimer look_;
  QElapsedTimer quiet_;
};

}  // namespace holdwise
