#include "app/terminal.h"

#include <QDir>
#include <QElapsedTimer>
#include <QSocketNotifier>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <exception>
#include <utility>

#include "app/terminal_application.h"
#include "holdwise/packet/error.h"
#include "pages/host_pages.h"
#include "pages/notice_page.h"
#include "process/background_thread.h"
#include "process/print.h"
#include "process/signal_guard.h"
#include "process/start_trace.h"
#include "transfer/import.h"
#include "transfer/import_report.h"
#include "window/dialogs.h"

namespace holdwise {
namespace {

const QString kThemeSetting = QStringLiteral("theme");
const QString kGeometrySetting = QStringLiteral("geometry");
constexpr int kNotice = 128;
constexpr int kProgressMilliseconds = 100;
constexpr std::chrono::milliseconds kLatestGoOn{500};
constexpr std::uint16_t kSecurityPageNumber = 1;
constexpr std::uint16_t kToolbarPageNumber = 2;
constexpr std::uint16_t kLogPageNumber = 3;

TerminalApplication& Application() {
  return *static_cast<TerminalApplication*>(QCoreApplication::instance());
}

QString TextOf(const std::exception& error) {
  return QString::fromUtf8(error.what());
}

ThemeKind FirstTheme(const Options& options, const QSettings& settings) {
  if (options.command.theme) return *options.command.theme;
  return ThemeKindFromName(settings.value(kThemeSetting).toString()).value_or(ThemeKind::Dark);
}

QString MadeLogFolder(const QString& workFolder) {
  QString folder = workFolder + QStringLiteral("/log");
  QDir().mkpath(folder);
  return folder;
}

}  // namespace

void LateDatabase::DoQuery(const QString& sql, ResultSet& resultSet) {
  if (database_ == nullptr) throw Error(ErrorCategory::Refused, "数据库还没有打开");
  resultSet = database_->Query(sql);
}

Terminal::Terminal(Options options, DatabaseOpener openDatabase)
    : options_(std::move(options)),
      openDatabase_(std::move(openDatabase)),
      log_(MadeLogFolder(options_.workFolder) + QStringLiteral("/terminal.log"), clock_),
      settings_(options_.workFolder + QStringLiteral("/settings.ini"), QSettings::IniFormat),
      theme_(FirstTheme(options_, settings_), log_),
      addresses_(log_) {
  Application().SetLog(&log_);
}

Terminal::~Terminal() {
  End();
  Application().SetLog(nullptr);
}

int Terminal::Run() {
  QSocketNotifier signalNotifier(signal_guard::Descriptor(), QSocketNotifier::Read);
  QObject::connect(&signalNotifier, &QSocketNotifier::activated, &signalNotifier, [this, &signalNotifier] {
    signalNotifier.setEnabled(false);
    // A batch that is cut short has not done what it was asked for.
    if (options_.IsBatch()) PrintError(QStringLiteral("收到结束信号，导出没有完成。"));
    QCoreApplication::exit(options_.IsBatch() ? 1 : 0);
  });
  if (options_.command.theme) settings_.setValue(kThemeSetting, ThemeKindName(theme_.Kind()));
  QApplication::setPalette(theme_.WindowPalette());
  theme_.OnChanged = [this] { ApplyTheme(); };
  StartLoadingMarket();
  MakeWindow();
  // The engine is still opening its file; everything that can do without it comes first.
  isReady_ = OpenMarket();
  if (!isReady_ && options_.IsBatch()) return 1;
  PrepareWindow();
  if (!OpenDatabase()) return 1;
  runner_ = std::make_unique<CommandRunner>(Targets());
  handOver_ = std::make_unique<HandOverServer>(options_.workFolder);
  handOver_->OnCommand = [this](const Command& command, HandOverServer::Answer answer) {
    if (const QString conflict = ConflictOf(command, options_); !conflict.isEmpty()) return answer({conflict, 1});
    runner_->Run(command, std::move(answer));
  };
  if (isReady_ && !options_.command.address.isEmpty() && addresses_.Find(options_.command.address) == nullptr) {
    PrintError(QStringLiteral("holdwise-terminal：没有地址“%1”。").arg(options_.command.address));
    return CommandRunner::kUnknownAddressExitCode;
  }
  // Shown first: the window system gets to work while the page is made. Nothing is painted before the event loop runs.
  window_->show();
  if (isReady_) EnterFirstPage();
  // A minimised window paints nothing.
  QTimer::singleShot(kLatestGoOn, window_.get(), [this] { GoOn(); });
  return QApplication::exec();
}

void Terminal::End() {
  exporter_.reset();
  handOver_.reset();
  runner_.reset();
  if (window_ != nullptr && !options_.IsBatch()) settings_.setValue(kGeometrySetting, window_->saveGeometry());
  addresses_.LeaveCurrent();
  plugins_.reset();
  addresses_.OnListChanged = nullptr;
  addresses_.OnEntered = nullptr;
}

MessageBoxService& Terminal::Messages() {
  if (options_.IsBatch()) return printedMessages_;
  return messageBoxes_;
}

bool Terminal::OpenDatabase() {
  try {
    userData_ = openDatabase_();
  } catch (const std::exception& error) {
    log_.WriteLog(QStringLiteral("数据库不能打开：%1").arg(TextOf(error)));
    const QString text = QStringLiteral("数据库“%1”不能打开。\n%2").arg(options_.database, TextOf(error));
    PrintError(text);
    if (!options_.IsBatch()) messageBoxes_.Vex_MessageBox(text, QStringLiteral("Holdwise"), 0, kNotice);
    return false;
  }
  localDatabase_.Attach(*userData_);
  return true;
}

void Terminal::MakeWindow() {
  WindowActions actions;
  actions.importPortfolios = [this] { ImportFromMenu(); };
  actions.exportViews = [this] { ExportFromMenu(); };
  actions.setTheme = [this](ThemeKind kind) { SetTheme(kind); };
  actions.goTo = [this](const QString& address) { (void)GoTo(address, QString()); };
  window_ = std::make_unique<MainWindow>(theme_, std::move(actions));
  if (!options_.IsBatch()) window_->restoreGeometry(settings_.value(kGeometrySetting).toByteArray());
  window_->ShowThemeKind(theme_.Kind());
  window_->SetDatabase(options_.database);
  window_->SetBusState(false);
  window_->Area().OnFirstPaint = [this] {
    TraceFirstPaint();
    GoOn();
  };
  messageBoxes_.SetWindow(window_.get());
  addresses_.OnEntered = [this](const QString& name) { window_->SetCurrentAddress(name); };
  addresses_.OnListChanged = [this] {
    QStringList names;
    for (const auto& item : addresses_.Items()) names.append(item->Name());
    window_->SetAddresses(names, addresses_.ListedNames());
  };
}

void Terminal::StartLoadingMarket() {
  market_ = std::make_unique<MarketData>(clock_, log_, localDatabase_);
  // Nobody else knows the market before OpenMarket has waited for this.
  marketLoading_ = std::async(std::launch::async, [this] {
    StepBehindTheWindow();
    market_->Load(options_.dataFolder);
  });
}

void Terminal::PrepareWindow() {
  window_->winId();  // makes the window, though it stays hidden
  QFont titles = QApplication::font();
  titles.setBold(true);
  (void)QFontMetrics(titles).horizontalAdvance(window_->windowTitle());  // reads the bold font's file
}

bool Terminal::OpenMarket() {
  try {
    marketLoading_.get();
    market_->LoadOptionalStocks(options_.workFolder + QStringLiteral("/optional_stocks.txt"));
    quickEntry_ = std::make_unique<QuickEntry>(window_.get(), *market_);
    const HostParts parts{addresses_, window_->Area(), *quickEntry_, Messages(), theme_,
                          log_,       clock_,          userData_,    *market_};
    host_ = std::make_unique<TerminalHost>(parts, options_.workFolder);
  } catch (const std::exception& error) {
    ShowObstacle(QStringLiteral("没有可用的行情数据"), TextOf(error), DataFolderCommands(options_.dataFolder));
    quickEntry_.reset();
    market_.reset();
    return false;
  }
  obstacle_.reset();
  quickEntry_->OnChosen = [this](const QString& code) {
    market_->SetCurrentCode(code);
    (void)GoTo(QStringLiteral("分时走势"), QString());
  };
  window_->SetSimulated(market_->IsSimulated());
  window_->SetDataDate(market_->CurrentDateText());
  window_->SetQuotesProblem({});
  window_->SetBusState(false);
  QObject::connect(&host_->Bus(), &MessageBus::ConnectionStateChanged, window_.get(),
                   [this](MessageBus::State state) { window_->SetBusState(state == MessageBus::State::Connected); });
  QObject::connect(&host_->Market(), &EmbeddedMarket::QuotesChanged, window_.get(),
                   [this](const QString& problem) { window_->SetQuotesProblem(problem); });
  AddHostPages();
  return LoadPlugins();
}

void Terminal::AddHostPages() {
  const auto add = [this](const QString& name, std::uint16_t number, bool isListed, std::unique_ptr<QWidget> page,
                          HostPageAddress::Show show) {
    addresses_.RegisterAddressItem(
        std::make_shared<HostPageAddress>(name, number, isListed, std::move(page), window_->Area(), std::move(show)));
  };
  auto security = std::make_unique<SecurityPage>(*market_, theme_);
  auto* securityPage = security.get();
  add(QStringLiteral("分时走势"), kSecurityPageNumber, true, std::move(security),
      [securityPage](const QString& parameter) { securityPage->SetParameter(parameter); });
  auto toolbar = std::make_unique<ToolbarPage>();
  auto* toolbarPage = toolbar.get();
  add(QStringLiteral("工具条"), kToolbarPageNumber, true, std::move(toolbar),
      [toolbarPage](const QString& parameter) { toolbarPage->SetParameter(parameter); });
  add(QStringLiteral("日志"), kLogPageNumber, false, std::make_unique<LogPage>(log_), {});
}

bool Terminal::LoadPlugins() {
  plugins_ = std::make_unique<PluginLoader>(*host_);
  plugins_->LoadAll(PluginLoader::Folder());
  for (const QString& problem : plugins_->Problems()) log_.WriteLog(problem);
  for (const LoadedPlugin& plugin : plugins_->Plugins())
    log_.WriteLog(QStringLiteral("插件“%1”%2 已装入").arg(plugin.name, plugin.version));
  window_->SetPortfolioActionsEnabled(PortfolioAddress() != nullptr);
  if (!plugins_->Plugins().empty()) {
    for (const QString& problem : plugins_->Problems()) PrintError(problem);
    return true;
  }
  ShowObstacle(QStringLiteral("没有可用的插件"), plugins_->Problems().join(QLatin1Char('\n')), QString());
  return false;
}

void Terminal::ShowObstacle(const QString& title, const QString& text, const QString& commands) {
  log_.WriteLog(title + QStringLiteral("：") + text);
  QString advice = text;
  if (!commands.isEmpty())
    advice += QStringLiteral("\n\n下面两条命令生成一份模拟行情；自己的日线数据也用第二条命令转换。");
  PrintError(title + QStringLiteral("：") + advice + (commands.isEmpty() ? QString() : QLatin1Char('\n') + commands));
  if (options_.IsBatch()) return;
  obstacle_ = std::make_unique<NoticePage>(title, advice, commands, [this] {
    // Leaves the button's own handler first: what follows removes the page.
    QTimer::singleShot(0, window_.get(), [this] { TryAgain(); });
  });
  window_->Area().ShowFrame(obstacle_.get());
}

void Terminal::TryAgain() {
  plugins_.reset();
  const auto items = addresses_.Items();
  for (const auto& item : items) addresses_.UnregisterAddressItem(item);
  host_.reset();
  quickEntry_.reset();
  StartLoadingMarket();
  isReady_ = OpenMarket();
  if (!isReady_) return;
  EnterFirstPage();
  GoOn();
}

void Terminal::EnterFirstPage() {
  QString address = options_.command.address;
  const TAddressItem* portfolios = PortfolioAddress();
  if (address.isEmpty() && portfolios != nullptr) address = portfolios->Name();
  if (!address.isEmpty()) (void)GoTo(address, options_.command.parameter);
}

void Terminal::GoOn() {
  if (!isReady_ || std::exchange(hasGoneOn_, true)) return;
  host_->ConnectBus();
  RunFirstCommand();
}

void Terminal::RunFirstCommand() {
  Command command = options_.command;
  if (command.importFile.isEmpty() && command.exportFolder.isEmpty()) return;
  command.address.clear();  // entered already
  command.theme.reset();
  runner_->Run(command, [this](const HandOverAnswer& answer) {
    if (answer.exitCode == 0) PrintOut(answer.text);
    if (answer.exitCode != 0) PrintError(answer.text);
    if (options_.IsBatch())
      QCoreApplication::exit(answer.exitCode);
    else if (answer.exitCode != 0)
      ShowReport(window_.get(), QStringLiteral("导入组合"), answer.text);
  });
}

CommandTargets Terminal::Targets() {
  CommandTargets targets;
  targets.setTheme = [this](ThemeKind kind) { SetTheme(kind); };
  targets.goTo = [this](const QString& address, const QString& parameter) { return GoTo(address, parameter); };
  targets.importPortfolios = [this](const QString& file) { return Import(file); };
  targets.exportViews = [this](const QString& folder, const HandOverServer::Answer& answer) { Export(folder, answer); };
  targets.raise = [this] {
    if (options_.IsBatch()) return;
    if (window_->isMinimized()) window_->showNormal();
    window_->raise();
    window_->activateWindow();
  };
  return targets;
}

void Terminal::SetTheme(ThemeKind kind) {
  settings_.setValue(kThemeSetting, ThemeKindName(kind));
  settings_.sync();
  theme_.SetKind(kind);
}

void Terminal::ApplyTheme() {
  QApplication::setPalette(theme_.WindowPalette());
  window_->ShowThemeKind(theme_.Kind());
  addresses_.ChangeColorTheme();
}

bool Terminal::GoTo(const QString& address, const QString& parameter) {
  return addresses_.GotoAddress(address, parameter);
}

TAddressItem* Terminal::PortfolioAddress() const {
  const auto& items = addresses_.Items();
  const auto item = std::find_if(items.begin(), items.end(), [](const auto& one) { return one->Views() != nullptr; });
  return item == items.end() ? nullptr : item->get();
}

ViewCatalogue* Terminal::EnterViews() {
  TAddressItem* item = PortfolioAddress();
  if (item == nullptr) return nullptr;
  if (addresses_.Current() != item) (void)GoTo(item->Name(), QString());
  return item->Views();
}

HandOverAnswer Terminal::Import(const QString& file) {
  // Entering the page first lets the plug-in put back its own saved portfolios before others are added.
  ViewCatalogue* views = EnterViews();
  if (views == nullptr) return {QStringLiteral("没有投资组合页面，不能导入。"), 1};
  QElapsedTimer sincePainted;
  sincePainted.start();
  const ImportProgress progress = [this, &sincePainted](int done, int total) {
    if (sincePainted.elapsed() >= kProgressMilliseconds) {
      window_->ShowProgress(done, total);
      sincePainted.restart();
    }
    return !signal_guard::Requested();
  };
  HandOverAnswer answer;
  try {
    const ImportResult result =
        ImportPortfoliosFromFile(file, {*userData_, *market_, *market_, market_->Folder()}, progress);
    answer = AnswerOf(file, result);
  } catch (const std::exception& error) {
    answer = {QStringLiteral("没有导入：%1").arg(TextOf(error)), 1};
  }
  window_->ShowProgress(0, 0);
  log_.WriteLog(answer.text);
  if (answer.exitCode == 0) views->DataChanged();
  return answer;
}

void Terminal::Export(const QString& folder, const HandOverServer::Answer& answer) {
  ViewCatalogue* views = EnterViews();
  if (views == nullptr) return answer({QStringLiteral("没有投资组合页面，不能导出。"), 1});
  window_->Tell(QStringLiteral("正在导出…"));
  exporter_ = std::make_unique<ViewExporter>(*views, window_->Area());
  exporter_->OnDone = [this, folder, answer](const QString& problem) {
    exporter_.release()->deleteLater();
    const HandOverAnswer done = problem.isEmpty() ? HandOverAnswer{QStringLiteral("已导出到“%1”。").arg(folder), 0}
                                                  : HandOverAnswer{QStringLiteral("导出没有完成：%1").arg(problem), 1};
    log_.WriteLog(done.text);
    window_->Tell(done.text);
    answer(done);
  };
  exporter_->Start(folder);
}

void Terminal::ImportFromMenu() {
  const QString file = AskForFile(window_.get());
  if (file.isEmpty()) return;
  Command command;
  command.importFile = file;
  runner_->Run(command, [this](const HandOverAnswer& answer) {
    ShowReport(window_.get(), QStringLiteral("导入组合"), answer.text);
  });
}

void Terminal::ExportFromMenu() {
  const QString folder = AskForFolder(window_.get());
  if (folder.isEmpty()) return;
  Command command;
  command.exportFolder = folder;
  runner_->Run(command, [this](const HandOverAnswer& answer) {
    if (answer.exitCode != 0) ShowReport(window_.get(), QStringLiteral("导出"), answer.text);
  });
}

}  // namespace holdwise
