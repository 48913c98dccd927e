// SPDX-License-Identifier: MIT
#pragma once
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "bus/market_connection.h"
#include "datacentre/market_data.h"
#include "pages/notice_page.h"
#include "parts/place_watch.h"
#include "parts/process_parts.h"
#include "theme/theme_services.h"
#include "window/main_window.h"
#include "window/message_boxes.h"
#include "window/splitter_memory.h"
#include "window/urgent_notice.h"

namespace holdwise {

/// What stands in the way of the views, and what can be done about it.
struct Obstacle {
  QString title;
  QString text;
  QString commands;                   ///< command lines that help; may be empty
  std::function<void()> tryAgain;     ///< of the last button; the page may be taken away by it
  std::vector<NoticeChoice> choices;  ///< the buttons before it: ways to a data folder, or none
  QString advice{};                   ///< what these are good for
};

/// The window with its colours and its message boxes. Without a window system (a batch) it is made all the same, and
/// messages go to standard error. User-interface thread.
class WindowSide {
 public:
  /// Makes the window, hidden, with the colours of the command line or of the settings. `process` must outlive it.
  WindowSide(ProcessParts& process, WindowActions actions);
  /// Remembers where the window stood.
  ~WindowSide();
  WindowSide(const WindowSide&) = delete;
  WindowSide& operator=(const WindowSide&) = delete;

  [[nodiscard]] MainWindow& Window() { return window_; }
  [[nodiscard]] ThemeServices& Theme() { return theme_; }
  /// Questions and notices: boxes, or lines on standard error in a batch.
  [[nodiscard]] MessageBoxService& Messages();

  /// Switches the colours and remembers them for the next start.
  void SetTheme(ThemeKind kind);
  /// The same for the colours of what rises and falls.
  void SetRiseFall(RiseFall choice);
  /// Called after the window has taken over other colours.
  std::function<void()> OnThemeChanged;

  /// Makes what the first picture will need of the window system and the fonts; the window stays hidden.
  void Prepare();
  /// Shows the page of the help menu with version, licence and where everything is; `plugins`: those that run.
  void ShowAbout(const QString& plugins);
  /// Brings the window to the user's eyes; nothing in a batch.
  void Raise();

  /// Says what stands in the way, on standard error and in the log, and makes the page for it, which also says when it
  /// still does; null in a batch. Takes the page of ShowObstacle away.
  [[nodiscard]] std::unique_ptr<QWidget> MakeObstacle(Obstacle obstacle);
  /// The same, and shows the page while there are no addresses.
  void ShowObstacle(Obstacle obstacle);
  static constexpr int kNothingChosen = -1;
  /// What has to be answered before the terminal goes on: a line on standard error and in the log and, unless in a
  /// batch, a page over the window with a button for each choice. @return the number of the one that was pressed;
  /// kNothingChosen when the page was closed, the terminal is to end, or in a batch
  [[nodiscard]] int Choose(const QString& title, const QString& text, const QStringList& choices);
  /// Nothing stands in the way any more.
  void ClearObstacle();
  /// Says in title and status bar which market is shown, and from now on whether its prices are the latest.
  void ShowMarket(const MarketData& data, MarketConnection& connection);
  /// Says from now on when the work folder or the file of the database is gone, in a notice whose button calls
  /// `saveElsewhere`.
  void FollowPlaces(std::function<void()> saveElsewhere);
  /// What FollowPlaces has found missing; empty while nothing is.
  [[nodiscard]] QString PlaceProblem() const { return places_ ? places_->Problem() : QString(); }

 private:
  void ApplyTheme();
  void ShowBus(bool isConnected);

  ProcessParts& process_;
  ThemeServices theme_;
  MessageBoxes messageBoxes_;
  PrintedMessages printedMessages_;
  MainWindow window_;
  std::optional<SplitterMemory> splitters_;  ///< none in a batch
  QString bus_ = QStringLiteral("没有连接");
  std::unique_ptr<QWidget> obstacle_;
  QString obstacleTitle_;             ///< of what stands in the way; empty: nothing does
  std::optional<PlaceWatch> places_;  ///< from FollowPlaces on
  std::unique_ptr<UrgentNotice> notice_;
};

}  // namespace holdwise
