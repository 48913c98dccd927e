// SPDX-License-Identifier: MIT
#include "bus/embedded_market.h"

#include <QRandomGenerator>

#include "in_process_bus.h"

namespace holdwise {
namespace {

constexpr int kPriceDecimals = 2;

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

EmbeddedMarket::EmbeddedMarket(MarketData& data, DebugServers& log)
    : data_(data), log_(log), bus_(std::make_unique<InProcessBus>(Seed(data))), watcher_(data, log) {
  connect(&watcher_, &QuotesWatcher::Reloaded, this, [this] { Tell(ServeQuotes()); });
  connect(&watcher_, &QuotesWatcher::Refused, this, &EmbeddedMarket::Tell);
  connect(&watcher_, &QuotesWatcher::FolderChanged, this, &MarketConnection::DataFolderChanged);
  connect(bus_.get(), &InProcessBus::PricesMoved, this, &EmbeddedMarket::FollowSimulation);
}

EmbeddedMarket::~EmbeddedMarket() = default;

MessageBus& EmbeddedMarket::Bus() {
  return *bus_;
}

void EmbeddedMarket::Connect() {
  if (bus_->ConnectionState() == MessageBus::State::Connected) return;
  if (const QString problem = ServeQuotes(); !problem.isEmpty()) Tell(problem);
}

QString EmbeddedMarket::QuotesProblem() const {
  return problem_.isEmpty() ? watcher_.MissingNow() : problem_;
}

void EmbeddedMarket::Tell(const QString& problem) {
  problem_ = problem;
  Q_EMIT QuotesChanged(problem);
}

QString EmbeddedMarket::ServeQuotes() {
  try {
    bus_->SetQuotes(ServiceQuotes(data_));
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
}

}  // namespace holdwise
