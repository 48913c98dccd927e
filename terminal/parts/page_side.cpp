// SPDX-License-Identifier: MIT
#include "parts/page_side.h"

#include <QApplication>
#include <algorithm>
#include <exception>
#include <utility>

#include "holdwise/packet/code_numbers.h"
#include "holdwise/packet/error.h"
#include "intraday/intraday_page.h"
#include "pages/host_pages.h"
#include "process/print.h"
#include "process/start_again.h"

namespace holdwise {
namespace {

const QString kAddressSetting = QStringLiteral("address");
const QString kViewSetting = QStringLiteral("view");
const QString kSecurityPage = QStringLiteral("分时走势");
const QString kToolbarPage = QStringLiteral("工具条");
constexpr int kLookMilliseconds = 10'000;
const QString kObstaclePage = QStringLiteral("插件问题");
constexpr std::uint16_t kObstaclePageNumber = 0;
constexpr std::uint16_t kSecurityPageNumber = 1;
constexpr std::uint16_t kToolbarPageNumber = 2;
constexpr std::uint16_t kLogPageNumber = 3;
constexpr int kAllAShares = 10;  // a category of the code-number service
constexpr qsizetype kCodeDigits = 6;

const QString kOwnStocks = QStringLiteral("OptionalStock");

/// Where the ticks of the day stay; a batch leaves them alone.
QString TickFile(const Options& asked) {
  return asked.IsBatch() ? QString() : asked.workFolder + QStringLiteral("/ticks.dat");
}

/// Stocks before indices, each by code.
std::vector<SecurityEntry> Entries(const MarketData& data) {
  std::vector<int> codeNumbers = data.CodeNumbersOf(kAllAShares);
  codeNumbers.insert(codeNumbers.end(), std::begin(kIndexNumbers), std::end(kIndexNumbers));
  std::vector<SecurityEntry> entries;
  entries.reserve(codeNumbers.size());
  for (const int codeNumber : codeNumbers) {
    const QString number = QString::number(codeNumber);
    entries.push_back({codeNumber, number.rightJustified(kCodeDigits, QLatin1Char('0')).last(kCodeDigits),
                       data.NameOf(number), data.InitialsOf(codeNumber)});
  }
  return entries;
}

}  // namespace

PageSide::PageSide(ProcessParts& process, DatabaseSide& database, MarketSide& market, WindowSide& window)
    : process_(process),
      window_(window),
      recorder_(market.Connection().Bus(), market.Data(), process.Clock(), process.Log(), TickFile(process.Asked())),
      addresses_(process.Log()),
      quickEntry_(&window.Window(), QuickActions(market.Data())),
      host_({addresses_, window.Window().Area(), quickEntry_, window.Messages(), window.Theme(), process.Log(),
             process.Clock(), database, market.Data(), market.Connection().Bus(), market.Files(),
             [this](const TDMessage& request) { recorder_.HearRequest(request); }},
            process.Asked().workFolder),
      plugins_(host_, addresses_, [&process](const QString& file) { StartAgainWithout(file, process.Asked()); }) {
  addresses_.OnEntered = [this](const QString& name) { window_.Window().SetCurrentAddress(name); };
  addresses_.OnLeft = [this](const QString& name) {
    if (name == kToolbarPage) return;  // nobody wants to go back there
    cameFrom_ = name;
    keyboardWas_ = QApplication::focusWidget();
  };
  addresses_.OnListChanged = [this] {
    QStringList names;
    for (const auto& item : addresses_.Items()) names.append(item->Name());
    window_.Window().SetAddresses(names, addresses_.ListedNames());
  };
  AddHostPages(market.Data());
  incomplete_.callOnTimeout(&window.Window(), [this] { LookForIncomplete(); });
  if (process.Asked().IsBatch()) return;
  incomplete_.start(kLookMilliseconds);
  recorder_.Start();
}

QuickEntryActions PageSide::QuickActions(MarketData& data) {
  const auto own = [&data] { return data.GetGroupCodeNumList(kOwnStocks); };
  const auto isOwn = [own](int codeNumber) {
    const std::vector<int> members = own();
    return std::find(members.begin(), members.end(), codeNumber) != members.end();
  };
  QuickEntryActions actions;
  actions.makeSearch = [&data] { return SecuritySearch(Entries(data)); };
  actions.choose = [this, &data](int codeNumber) {
    data.SetCurrentCode(QString::number(codeNumber));
    (void)GoTo(kSecurityPage, QString());
  };
  actions.isOwn = isOwn;
  actions.canBeOwn = [](int codeNumber) { return !IsIndexNumber(codeNumber); };
  actions.toggleOwn = [this, &data, isOwn](int codeNumber) {
    try {
      data.SetOptionalStock(codeNumber, !isOwn(codeNumber));
      recorder_.FollowOwnStocks();
    } catch (const Error& error) {
      process_.Log().TellFailure(QStringLiteral("自选股没有改动。%1").arg(QString::fromUtf8(error.what())));
    }
  };
  return actions;
}

PageSide::~PageSide() {
  window_.Window().SetIncomplete({});
  addresses_.LeaveCurrent();  // a plug-in's page is left before the plug-in is told to end
  addresses_.OnListChanged = nullptr;
  window_.Window().SetAddresses({}, {});
  window_.Window().SetPortfolioActionsEnabled(false);
}

void PageSide::AddHostPages(MarketData& data) {
  const auto add = [this](const QString& name, std::uint16_t number, bool isListed, std::unique_ptr<QWidget> page,
                          HostPageAddress::Show show) {
    addresses_.RegisterAddressItem(std::make_shared<HostPageAddress>(name, number, isListed, std::move(page),
                                                                     window_.Window().Area(), std::move(show)));
  };
  AddIntradayPage(data);
  auto toolbar = std::make_unique<ToolbarPage>();
  auto* toolbarPage = toolbar.get();
  toolbarPage->OnReturn = [this, &data] { ReturnFrom(kToolbarPage, data); };
  add(kToolbarPage, kToolbarPageNumber, true, std::move(toolbar),
      [toolbarPage](const QString& parameter) { toolbarPage->SetParameter(parameter); });
  add(QStringLiteral("日志"), kLogPageNumber, false, std::make_unique<LogPage>(process_.Log()), {});
}

void PageSide::AddIntradayPage(MarketData& data) {
  auto page = std::make_unique<IntradayPage>(data, window_.Theme(), recorder_);
  auto* shown = page.get();
  shown->OnReturn = [this, &data] { ReturnFrom(kSecurityPage, data); };
  addresses_.RegisterAddressItem(std::make_shared<HostPageAddress>(
      kSecurityPage, kSecurityPageNumber, true, std::move(page), window_.Window().Area(),
      [shown](const QString& parameter) { shown->SetParameter(parameter); }));
}

void PageSide::ReturnFrom(const QString& page, const MarketData& data) {
  const QString address = cameFrom_ == page ? QString() : cameFrom_;
  const QPointer<QWidget> keyboard = keyboardWas_;
  // The current security stays what it is: the portfolios' page would choose one of its own.
  if (!GoTo(address, data.CurrentCode())) (void)GoToObstacle();
  if (keyboard != nullptr && keyboard->isVisible()) keyboard->setFocus();
}

bool PageSide::LoadPlugins() {
  plugins_.LoadAll(PluginLoader::Folder(), PluginsLeftOut());
  const bool hasViews = ViewAddress() != nullptr;
  problems_ = plugins_.Problems();
  if (!hasViews && problems_.isEmpty())
    problems_.append(QStringLiteral("目录“%1”中没有投资组合插件。").arg(PluginLoader::Folder()));
  for (const QString& problem : problems_) process_.Log().WriteLog(problem);
  for (const LoadedPlugin& plugin : plugins_.Plugins())
    process_.Log().WriteLog(QStringLiteral("插件“%1”%2 已装入").arg(plugin.name, plugin.version));
  window_.Window().SetPortfolioActionsEnabled(hasViews);
  if (!hasViews) return false;
  for (const QString& problem : problems_) PrintError(problem);
  return true;
}

void PageSide::AddObstacle(std::unique_ptr<QWidget> page) {
  if (page == nullptr) return;
  addresses_.RegisterAddressItem(std::make_shared<HostPageAddress>(kObstaclePage, kObstaclePageNumber, true,
                                                                   std::move(page), window_.Window().Area(), nullptr));
}

bool PageSide::GoToObstacle() {
  return addresses_.GotoAddress(kObstaclePage, QString());
}

void PageSide::LookForIncomplete() {
  TAddressItem* item = ViewAddress();
  if (item == nullptr) return;
  const ViewCatalogue& views = *item->Views();
  // What a calculation under way still lacks is no news, and asking would make its window wait.
  if (views.Current() != 0 && !views.IsSettled()) return;
  try {
    window_.Window().SetIncomplete(views.Incomplete());
  } catch (const std::exception&) {  // said where the same statement serves a view
  }
}

bool PageSide::HasAddress(const QString& name) const {
  return addresses_.Find(name) != nullptr;
}

QString PageSide::CurrentAddress() const {
  const TAddressItem* current = addresses_.Current();
  return current == nullptr ? QString() : current->Name();
}

QString PageSide::PluginNames() const {
  QStringList names;
  for (const LoadedPlugin& plugin : plugins_.Plugins()) names << plugin.name + QLatin1Char(' ') + plugin.version;
  return names.join(QStringLiteral("、"));
}

void PageSide::RememberPage(QSettings& settings) const {
  const TAddressItem* current = addresses_.Current();
  if (current == nullptr) return;
  TAddressItem* withViews = ViewAddress();
  // One without a tab is looked at in passing.
  const TAddressItem* page = current->IsListed() ? current : withViews;
  if (page != nullptr) settings.setValue(kAddressSetting, page->Name());
  if (withViews == nullptr) return;
  const ViewCatalogue& views = *withViews->Views();
  for (const ViewCatalogue::View& view : views.List())
    if (view.frameId == views.Current()) settings.setValue(kViewSetting, view.caption);
}

bool PageSide::GoToRemembered(const QSettings& settings) {
  const TAddressItem* page = addresses_.Find(settings.value(kAddressSetting).toString());
  return page != nullptr && page->IsListed() && GoTo(page->Name(), QString());
}

bool PageSide::GoTo(const QString& address, const QString& parameter) {
  TAddressItem* item = address.isEmpty() ? ViewAddress() : addresses_.Find(address);
  if (item == nullptr) return false;
  // The views begin with the one that was shown last; a batch has nothing to do with what a person has looked at.
  const bool isFirst =
      parameter.isEmpty() && !process_.Asked().IsBatch() && item->Views() != nullptr && item->Views()->List().empty();
  const QString last = isFirst ? process_.Settings().value(kViewSetting).toString() : QString();
  return addresses_.GotoAddress(item->Name(), last.isEmpty() ? parameter : QStringLiteral("Skip") + last);
}

QStringList PageSide::Unstored() const {
  TAddressItem* item = ViewAddress();
  return item == nullptr ? QStringList() : item->Views()->Unstored();
}

TAddressItem* PageSide::ViewAddress() const {
  const auto& items = addresses_.Items();
  const auto item = std::find_if(items.begin(), items.end(), [](const auto& one) { return one->Views() != nullptr; });
  return item == items.end() ? nullptr : item->get();
}

ViewCatalogue* PageSide::EnterViews() {
  TAddressItem* item = ViewAddress();
  if (item == nullptr) return nullptr;
  if (addresses_.Current() != item) (void)GoTo(item->Name(), QString());
  return item->Views();
}

void PageSide::DataFolderChanged() {
  if (TAddressItem* item = ViewAddress(); item != nullptr) item->Views()->DataChanged();
}

void PageSide::ChangeColorTheme() {
  addresses_.ChangeColorTheme();
}

}  // namespace holdwise
