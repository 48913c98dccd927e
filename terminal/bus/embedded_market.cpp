// SPDX-License-Identifier: MIT
#include "bus/embedded_market.h"

#include <QRandomGenerator>

#include "in_process_bus.h"
#include "simulation_file.h"

namespace holdwise {
namespace {

constexpr int kPriceDecimals = 2;
constexpr int kStepsBetweenKeeping = 30;

std::vector<Quote> ServiceQuotes(const MarketData& data) {
  std::vector<Quote> quotes;
  for (const CodedQuote& coded : data.Quotes()) {
    quotes.push_back({coded.codeNumber, Decimal::FromDouble(coded.now.currentPrice, kPriceDecimals),
                      Decimal::FromDouble(coded.now.previousClose, kPriceDecimals)});
  }
  return quotes;
}

std::optional<std::uint64_t> Seed(const MarketData& data) {
  if (!data.IsSimulated()) return std::nullopt;
  return QRandomGenerator::global()->generate64();
}

}  // namespace

EmbeddedMarket::EmbeddedMarket(MarketData& data, DebugServers& log, const SimulationSetting& simulation)
    : data_(data),
      log_(log),
      stateFile_(simulation.stateFile),
      bus_(std::make_unique<InProcessBus>(Seed(data), simulation.speed)),
      watcher_(data, log) {
  connect(&watcher_, &QuotesWatcher::Reloaded, this, [this] { Tell(ServeQuotes(false)); });
  connect(&watcher_, &QuotesWatcher::Refused, this, &EmbeddedMarket::Tell);
  connect(&watcher_, &QuotesWatcher::FolderChanged, this, &MarketConnection::DataFolderChanged);
  connect(bus_.get(), &InProcessBus::PricesMoved, this, &EmbeddedMarket::FollowSimulation);
}

EmbeddedMarket::~EmbeddedMarket() {
  KeepSimulation();
}

MessageBus& EmbeddedMarket::Bus() {
  return *bus_;
}

void EmbeddedMarket::Connect() {
  if (bus_->ConnectionState() == MessageBus::State::Connected) return;
  if (const QString problem = ServeQuotes(true); !problem.isEmpty()) return Tell(problem);
  if (data_.IsSimulated()) FollowSimulation();
}

QString EmbeddedMarket::QuotesProblem() const {
  return problem_.isEmpty() ? watcher_.MissingNow() : problem_;
}

std::optional<int> EmbeddedMarket::OwnSecondOfDay() const {
  const LiveSimulation* simulation = bus_->Simulation();
  return simulation == nullptr ? std::nullopt : std::optional(simulation->SecondOfDay());
}

void EmbeddedMarket::Tell(const QString& problem) {
  problem_ = problem;
  Q_EMIT QuotesChanged(problem);
}

QString EmbeddedMarket::ServeQuotes(bool isFirst) {
  std::optional<LiveSimulation::State> simulation;
  if (isFirst && data_.IsSimulated() && !stateFile_.isEmpty())
    simulation = ReadSimulation(stateFile_, SimulationIdentity(data_));
  try {
    bus_->SetQuotes(ServiceQuotes(data_), simulation);
    return {};
  } catch (const Error& error) {
    QString problem = QStringLiteral("报价服务没有接受新行情：%1").arg(QString::fromUtf8(error.what()));
    log_.WriteLog(problem);
    return problem;
  }
}

void EmbeddedMarket::FollowSimulation() {
  std::vector<CodedQuote> moved;
  moved.reserve(bus_->Quotes().size());
  for (const Quote& quote : bus_->Quotes()) {
    moved.push_back({quote.codeNumber, {quote.price.ToDouble(), quote.previousClose.ToDouble()}});
  }
  data_.ApplyQuotes(moved);
  if (++stepsToKeep_ >= kStepsBetweenKeeping) KeepSimulation();
}

void EmbeddedMarket::KeepSimulation() {
  stepsToKeep_ = 0;
  const LiveSimulation* simulation = bus_->Simulation();
  if (simulation == nullptr || stateFile_.isEmpty()) return;
  try {
    WriteSimulation(stateFile_, SimulationIdentity(data_), simulation->Now());
  } catch (const Error& error) {
    log_.WriteLog(QStringLiteral("模拟行情的进度没有保存：%1").arg(QString::fromUtf8(error.what())));
    stateFile_.clear();  // once is enough
  }
}

}  // namespace holdwise
