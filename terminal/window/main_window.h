// SPDX-License-Identifier: MIT
#pragma once
#include <QMainWindow>
#include <functional>
#include <vector>

#include "theme/theme_services.h"
#include "window/work_area.h"

class QActionGroup;
class QLabel;
class QProgressBar;
class QPushButton;
class QToolButton;

namespace holdwise {

class AddressBar;
class StatusSign;

/// What the user can ask for in the window's menus.
struct WindowActions {
  std::function<void()> importPortfolios;
  std::function<void()> exportViews;
  std::function<void()> showHealth;
  std::function<void()> showAbout;
  std::function<void()> exportPortfolios;
  std::function<void()> restorePortfolios;
  std::function<void(ThemeKind)> setTheme;
  std::function<void(RiseFall)> setRiseFall;
  std::function<void(const QString& address)> goTo;
  std::function<void()> takeNewDay;
  std::function<void()> chooseDataFolder;
  std::function<void()> switchDemo;  ///< from the user's own data to the simulated market that is tried out, or back
  std::function<bool()> mayClose;    ///< asked when the window is closed and no work keeps it; unset: it may
};

/// Level of an index; 0 where it is not known.
struct IndexLevel {
  QString name;
  double level = 0;
  double previousClose = 0;
};

/// The window: menus, address tabs, work area, status bar. Only shows and reports; User-interface thread.
class MainWindow : public QMainWindow {
 public:
  /// `theme` must outlive it.
  MainWindow(const ThemeServices& theme, WindowActions actions);

  [[nodiscard]] WorkArea& Area() { return *area_; }
  /// @param addresses all addresses, for the menu; `listed` those with a tab
  void SetAddresses(const QStringList& addresses, const QStringList& listed);
  void SetCurrentAddress(const QString& name);
  /// Import and export need a portfolio page.
  void SetPortfolioActionsEnabled(bool isEnabled);
  /// While there is a text, which stands in the status bar with 取消 beside it, the menus offer nothing but 退出, with
  /// their keys, and no new day is taken.
  void SetOngoing(const QString& text, const QString& hint);
  /// Takes over the colours that the theme has now, and marks the choices in the menu.
  void ShowTheme();
  void SetSimulated(bool isSimulated);
  /// Does the window show the simulated market that is tried out? Then the menu offers the way back.
  void SetDemo(bool isDemo);

  /// How new the prices are; in amber while there is a reason why that is not as it should be, which a click asks for.
  void SetQuotes(const QString& text, const QString& reason);
  /// The three indices, in the order they are shown.
  void SetIndices(const std::vector<IndexLevel>& levels);
  /// Portfolios and views whose figures are incomplete, a line each, listed by a click; an empty list takes the sign
  /// away.
  void SetIncomplete(const QStringList& lines);
  /// Why the quotes shown are not those of the data folder; empty when they are.
  void SetQuotesProblem(const QString& text);
  /// A button with that text for WindowActions::takeNewDay, and what its hint says; an empty text takes it away.
  void OfferNewDay(const QString& text, const QString& hint);
  /// What of the data folder's optional files is not used, a line each; an empty list takes the sign away.
  void SetDataNotices(const QStringList& notices);
  /// What is not well, a line each, for the amber sign in the status bar; an empty list takes it away.
  void SetHealthProblems(const QStringList& problems);
  /// A passing message in the status bar.
  void Tell(const QString& text);
  /// One that stays there until the next; empty: takes itself away.
  void TellOngoing(const QString& text);
  /// One that stays there for a minute: something was not done.
  void TellFailure(const QString& text);
  /// One that stays there for a minute: something was done that can be undone.
  void TellOutcome(const QString& text);
  /// Progress of long work with 取消 beside it, painted at once because the event loop may not run meanwhile; `total` 0
  /// hides both.
  void ShowProgress(int done, int total);
  [[nodiscard]] QPushButton& CancelButton() { return *cancel_; }
  /// Asked first when the window is to be closed, by work that goes on; false keeps it. `isAgreed`: not by the user's
  /// hand but by the program, which has asked already. Unset: there is none.
  std::function<bool(bool isAgreed)> MayClose;

 protected:
  void closeEvent(QCloseEvent* event) override;
  /// Tab goes over the page before it comes to the status bar.
  bool focusNextPrevChild(bool next) override;

 private:
  [[nodiscard]] bool MayLeave(bool isAgreed) const;
  void BuildMenus();
  [[nodiscard]] QMenu* BuildViewMenu();
  void ShowIndices();
  void BuildStatusBar();
  [[nodiscard]] StatusSign* AddSign(const QString& name);

  const ThemeServices& theme_;
  WindowActions actions_;
  AddressBar* bar_ = nullptr;
  WorkArea* area_ = nullptr;
  QList<QMenu*> menus_;
  QAction* switchDemo_ = nullptr;
  QAction* quit_ = nullptr;
  QActionGroup* portfolioActions_ = nullptr;
  QActionGroup* themes_ = nullptr;
  QActionGroup* riseFalls_ = nullptr;
  QMenu* addressMenu_ = nullptr;
  QActionGroup* addressGroup_ = nullptr;
  QPushButton* newDay_ = nullptr;
  QLabel* ongoing_ = nullptr;
  StatusSign* quotes_ = nullptr;
  StatusSign* quotesProblem_ = nullptr;
  StatusSign* dataNotices_ = nullptr;
  StatusSign* health_ = nullptr;
  std::vector<QLabel*> indices_;
  std::vector<IndexLevel> levels_;
  QToolButton* incomplete_ = nullptr;
  QStringList incompleteLines_;
  QString ongoingText_;
  QProgressBar* progress_ = nullptr;
  QPushButton* cancel_ = nullptr;
};

}  // namespace holdwise
