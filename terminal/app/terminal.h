#pragma once
#include <QSettings>
#include <functional>
#include <future>
#include <memory>

#include "app/command_runner.h"
#include "datacentre/market_data.h"
#include "holdwise/sdk/database.h"
#include "pages/address_registry.h"
#include "plugins/plugin_loader.h"
#include "plugins/terminal_host.h"
#include "process/command_line.h"
#include "process/debug_log.h"
#include "process/hand_over.h"
#include "theme/theme_services.h"
#include "transfer/view_exporter.h"
#include "window/main_window.h"
#include "window/message_boxes.h"
#include "window/quick_entry.h"

namespace holdwise {

/// The data centre's way to the local database, which is opened while the data centre is being loaded.
class LateDatabase : public TLocatDBOper {
 public:
  void Attach(DatabaseStatements& database) { database_ = &database; }
  /// Error(Refused) before Attach.
  void DoQuery(const QString& sql, ResultSet& resultSet) override;

 private:
  DatabaseStatements* database_ = nullptr;
};

/// The terminal itself: owns the window, the services and the plug-ins, and carries out what the command line and the
/// user ask for. User-interface thread.
class Terminal {
 public:
  /// Waits for the database that is being opened; throws what opening it threw.
  using DatabaseOpener = std::function<std::unique_ptr<UserDataServices>()>;

  /// The work folder exists and is locked by this process.
  Terminal(Options options, DatabaseOpener openDatabase);
  ~Terminal();
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  /// Starts up, runs until the user, a signal or the end of a batch ends it, and says the exit code.
  int Run();

 private:
  void StartLoadingMarket();
  void MakeWindow();
  /// What the first picture will need of the window system and the fonts.
  void PrepareWindow();
  bool OpenDatabase();
  /// Waits for the data folder and loads the plug-ins; false when the views cannot be shown, which ShowObstacle has
  /// told.
  bool OpenMarket();
  void AddHostPages();
  bool LoadPlugins();
  /// Goes to the page that the command line (or nobody) asked for, before anything is painted: the window's first
  /// picture is that page.
  void EnterFirstPage();
  /// Once, after the first picture: connects the bus and starts the rest of the command, whose progress can be seen
  /// now.
  void GoOn();
  void RunFirstCommand();
  /// Ends what needs the services, in reverse order of the start.
  void End();

  /// What stands in the way of the views: a line on standard error and, in a window, a page with a button.
  void ShowObstacle(const QString& title, const QString& text, const QString& commands);
  void TryAgain();

  [[nodiscard]] CommandTargets Targets();
  void SetTheme(ThemeKind kind);
  void ApplyTheme();
  [[nodiscard]] bool GoTo(const QString& address, const QString& parameter);
  /// The address with views; null when no plug-in has one.
  [[nodiscard]] TAddressItem* PortfolioAddress() const;
  /// Enters that address unless it is entered; null when there is none.
  [[nodiscard]] ViewCatalogue* EnterViews();
  [[nodiscard]] HandOverAnswer Import(const QString& file);
  void Export(const QString& folder, const HandOverServer::Answer& answer);
  void ImportFromMenu();
  void ExportFromMenu();
  [[nodiscard]] MessageBoxService& Messages();

  Options options_;
  DatabaseOpener openDatabase_;
  SystemClock clock_;
  DebugLog log_;
  QSettings settings_;
  ThemeServices theme_;
  MessageBoxes messageBoxes_;
  PrintedMessages printedMessages_;

  std::unique_ptr<UserDataServices> userData_;
  LateDatabase localDatabase_;
  std::unique_ptr<MarketData> market_;
  std::future<void> marketLoading_;  ///< after the market, so that it ends first
  std::unique_ptr<MainWindow> window_;
  std::unique_ptr<QuickEntry> quickEntry_;
  AddressRegistry addresses_;
  std::unique_ptr<QWidget> obstacle_;
  std::unique_ptr<TerminalHost> host_;
  std::unique_ptr<PluginLoader> plugins_;
  std::unique_ptr<CommandRunner> runner_;
  std::unique_ptr<HandOverServer> handOver_;
  std::unique_ptr<ViewExporter> exporter_;
  bool isReady_ = false;
  bool hasGoneOn_ = false;
};

}  // namespace holdwise
