// SPDX-License-Identifier: MIT
#pragma once
#include <QPointer>
#include <QTimer>

#include "holdwise/sdk/catalogue.h"
#include "intraday/tick_recorder.h"
#include "pages/address_registry.h"
#include "parts/database_side.h"
#include "parts/market_side.h"
#include "parts/process_parts.h"
#include "parts/window_side.h"
#include "plugins/plugin_loader.h"
#include "plugins/terminal_host.h"
#include "window/quick_entry.h"

namespace holdwise {

/// Everything that is shown in the window: the addresses, the host's own pages and the plug-ins with theirs.
/// User-interface thread.
class PageSide {
 public:
  /// The market is open; the database may be opened later, before the first page of a plug-in is entered. All must
  /// outlive it.
  PageSide(ProcessParts& process, DatabaseSide& database, MarketSide& market, WindowSide& window);
  /// Leaves the page, ends the plug-ins, takes the addresses out of the window.
  ~PageSide();
  PageSide(const PageSide&) = delete;
  PageSide& operator=(const PageSide&) = delete;

  /// Loads the plug-ins; what went wrong is logged and, when there are views all the same, printed. False when no
  /// plug-in has brought views.
  [[nodiscard]] bool LoadPlugins();
  /// Texts for the user about plug-ins that do not run; not empty when there are no views.
  [[nodiscard]] const QStringList& Problems() const { return problems_; }
  /// Makes the page that says why there are no views an address beside the others; null: nothing happens.
  void AddObstacle(std::unique_ptr<QWidget> page);
  /// Enters it; false when there is none.
  bool GoToObstacle();

  /// Is there an address of exactly that name? None before LoadPlugins but those of the host's own pages.
  [[nodiscard]] bool HasAddress(const QString& name) const;
  /// Enters an address; empty: the one with views, if there is one. False when there is no such address. Without a
  /// parameter the views begin, at their first time, with the remembered one.
  [[nodiscard]] bool GoTo(const QString& address, const QString& parameter);
  /// Name of the address that is entered; empty when none is.
  [[nodiscard]] QString CurrentAddress() const;
  /// Name and version of each plug-in that runs, in a line.
  [[nodiscard]] QString PluginNames() const;
  /// Remembers which page is shown, if it has a tab, and which view was shown last.
  void RememberPage(QSettings& settings) const;
  /// Goes there again; false, and nothing happens, when there is no such page.
  [[nodiscard]] bool GoToRemembered(const QSettings& settings);
  /// What a user is working on in the views and has not stored, a line each.
  [[nodiscard]] QStringList Unstored() const;
  /// Enters the address with views unless it is entered; null when there is none.
  [[nodiscard]] ViewCatalogue* EnterViews();
  /// The address with views; null when no plug-in has one.
  [[nodiscard]] TAddressItem* ViewAddress() const;
  /// The entered address; null when none.
  [[nodiscard]] const TAddressItem* Current() const { return addresses_.Current(); }
  /// What it was entered with.
  [[nodiscard]] const QString& Parameter() const { return addresses_.Parameter(); }
  /// Is a security's code being typed into the window's quick entry?
  [[nodiscard]] bool IsTyping() const { return quickEntry_.isVisible(); }
  /// Tells the views that the data folder may hold now what was missing before. Nothing happens before they have been
  /// entered.
  void DataFolderChanged();
  /// Tells every page that the colours have changed.
  void ChangeColorTheme();

 private:
  void AddHostPages(MarketData& data);
  void AddIntradayPage(MarketData& data);
  /// Goes back to where the security's page was opened from, with the keyboard where it was.
  void ReturnFrom(const QString& page, const MarketData& data);
  [[nodiscard]] QuickEntryActions QuickActions(MarketData& data);
  /// Has the window say what of the views' figures is incomplete, unless they are being got ready.
  void LookForIncomplete();

  ProcessParts& process_;
  WindowSide& window_;
  TickRecorder recorder_;
  AddressRegistry addresses_;
  QString cameFrom_;  ///< address before the current one
  QPointer<QWidget> keyboardWas_;
  QuickEntry quickEntry_;
  TerminalHost host_;
  PluginLoader plugins_;
  QStringList problems_;
  QTimer incomplete_;
};

}  // namespace holdwise
