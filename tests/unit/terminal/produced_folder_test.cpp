// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <map>
#include <random>

#include "bus/embedded_market.h"
#include "holdwise/market/data_folder_builder.h"
#include "holdwise/market/market_rules.h"
#include "holdwise/packet/dates.h"
#include "market_data_fixture.h"

// What the producer writes the terminal reads, over random valid inputs.

namespace holdwise {
namespace {

constexpr int kSeeds = 60;

struct Price {
  double price = 0;
  double previousClose = 0;
};

/// Inputs of the producer, all of them valid, and what the terminal must say of them.
class RandomInputs {
 public:
  RandomInputs(const QString& folder, std::uint64_t seed) : folder_(folder), random_(seed) {
    MakeDates();
    for (const int index : kIndexNumbers) {
      WriteBars(QStringLiteral("indices/%1.csv").arg(index), index, Bars(0, false));
    }
    MakeStocks();
    if (Chance(2)) Write(QStringLiteral("rates.csv"), "date,one_year,demand\n2015-10-24,1.50,0.35\n");
    if (Chance(2)) MakeQuotes();
    if (Chance(2)) MakeEstimates();
    if (Chance(2)) MakeDatesFile();
  }

  [[nodiscard]] BuildOptions Options() {
    BuildOptions options;
    options.barsFolder = folder_ + QStringLiteral("/bars");
    options.indicesFolder = folder_ + QStringLiteral("/indices");
    options.securitiesFile = folder_ + QStringLiteral("/securities.csv");
    const auto optional = [this](const char* name) {
      const QString path = folder_ + QLatin1Char('/') + QString::fromUtf8(name);
      return QFile::exists(path) ? path : QString();
    };
    options.datesFile = optional("dates.csv");
    options.ratesFile = optional("rates.csv");
    options.quotesFile = optional("quotes.csv");
    options.estimatesFile = optional("estimates.csv");
    options.outFolder = folder_ + QStringLiteral("/out");
    options.days = Whole(1, 60);
    options.isSimulated = Chance(3);
    return options;
  }
  [[nodiscard]] int LastDate() const { return dates_.back(); }
  [[nodiscard]] const std::map<int, Price>& Expected() const { return expected_; }
  [[nodiscard]] const std::vector<std::string>& Stocks() const { return stocks_; }

 private:
  struct Day {
    int date = 0;
    double close = 0;
  };

  int Whole(int least, int most) { return std::uniform_int_distribution<int>(least, most)(random_); }
  bool Chance(int in) { return Whole(1, in) == 1; }
  /// With up to four decimals, as a text that reads back equal.
  QString PriceText(double& value) {
    value = Whole(1, 2'000'000) / (Chance(4) ? 10'000.0 : 100.0);
    return QString::number(value, 'f', 4);
  }
  void Write(const QString& name, const QByteArray& text) const {
    const QString path = folder_ + QLatin1Char('/') + name;
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(file.write(text), text.size());
  }

  void MakeDates() {
    int day = DayNumber(20240105) + Whole(0, 500);
    const int count = Chance(4) ? Whole(1, 3) : Whole(4, 90);
    while (static_cast<int>(dates_.size()) < count) {
      const int date = DateOfDayNumber(day++);
      if (IsWeekday(date)) dates_.push_back(date);
    }
  }
  /// Bars from the `from`th date on; never none. An index has one on the last date.
  std::vector<Day> Bars(std::size_t from, bool hasHoles) {
    std::vector<Day> bars;
    for (std::size_t i = from; i < dates_.size(); ++i) {
      if (hasHoles && Chance(3)) continue;
      bars.push_back({dates_[i], 0});
    }
    if (hasHoles && Chance(4) && bars.size() > 1) bars.resize(bars.size() / 2);  // suspended to the end
    if (bars.empty()) bars.push_back({dates_[from], 0});
    return bars;
  }
  void WriteBars(const QString& name, int codeNumber, std::vector<Day> bars) {
    QByteArray text = "date,close\n";
    for (Day& bar : bars) {
      text += QByteArray::fromStdString(DateText(bar.date)) + ',' + PriceText(bar.close).toLatin1() + '\n';
    }
    Write(name, text);
    const bool isTraded = bars.back().date == dates_.back();
    const double before = bars.size() > 1 ? bars[bars.size() - 2].close : 0;
    expected_[codeNumber] = {bars.back().close, isTraded ? before : bars.back().close};
  }
  void MakeStocks() {
    QByteArray master = "code,name,industry,list_date\n";
    const char* boards[] = {"600", "601", "688", "900", "000", "002", "300", "301", "200", "510"};
    const int count = Whole(1, 12);
    for (int i = 0; i < count; ++i) {
      const QString code =
          QString::fromLatin1(boards[Whole(0, 9)]) + QStringLiteral("%1").arg(i + 2, 3, 10, QLatin1Char('0'));
      stocks_.push_back(code.toStdString());
      master += code.toLatin1() + ",\"名，\"\"" + code.toLatin1() + "\"\"\"," + (Chance(3) ? "" : "银行") + ',' +
                (Chance(3) ? "" : "20200102") + '\n';
      if (i > 0 && Chance(5)) continue;  // no bars at all
      const std::size_t from = Chance(3) ? static_cast<std::size_t>(Whole(0, static_cast<int>(dates_.size()) - 1)) : 0;
      WriteBars(QStringLiteral("bars/%1.csv").arg(code), CodeNumberOfStock(stocks_.back()), Bars(from, Chance(2)));
    }
    Write(QStringLiteral("securities.csv"), master);
  }
  void MakeQuotes() {
    QByteArray text = "code,price,prev_close\n";
    for (const std::string& code : stocks_) {
      if (Chance(4)) continue;
      Price quote;
      const QString price = PriceText(quote.price);
      const QString previousClose = PriceText(quote.previousClose);
      const bool isSuspended = Chance(3);
      const bool isFirstDay = !isSuspended && Chance(4);
      text += QByteArray::fromStdString(code) + ',' + (isSuspended ? QByteArray("0.00") : price.toLatin1()) + ',' +
              (isFirstDay ? QByteArray("0") : previousClose.toLatin1()) + '\n';
      if (isSuspended) quote.price = quote.previousClose;
      if (isFirstDay) quote.previousClose = 0;
      expected_[CodeNumberOfStock(code)] = quote;
    }
    Write(QStringLiteral("quotes.csv"), text);
  }
  void MakeEstimates() {
    QByteArray text = "code,price\n";
    double value = 0;
    for (const std::string& code : stocks_)
      text += QByteArray::fromStdString(code) + ',' + PriceText(value).toLatin1() + '\n';
    Write(QStringLiteral("estimates.csv"), text);
  }
  /// Goes beyond the bars on both sides.
  void MakeDatesFile() {
    QByteArray text = "date\n2023-12-29\n";
    for (const int date : dates_) text += QByteArray::fromStdString(DateText(date)) + '\n';
    Write(QStringLiteral("dates.csv"), text + "2099-12-31\n");
  }

  QString folder_;
  std::mt19937_64 random_;
  std::vector<int> dates_;
  std::vector<std::string> stocks_;
  std::map<int, Price> expected_;
};

class ProducedFolder : public MarketDataTest {
 protected:
  void ExpectRead(const QString& folder, const RandomInputs& inputs) {
    MarketData data(clock_, log_, reader_);
    try {
      data.Load(folder);
    } catch (const Error& error) {
      FAIL() << error.what();
    }
    EXPECT_TRUE(data.Notices().isEmpty()) << data.Notices().join(u'\n').toStdString();
    EXPECT_EQ(data.CurrentDate(), inputs.LastDate());
    EXPECT_EQ(data.TradingDates().front(), inputs.LastDate());
    for (const std::string& code : inputs.Stocks()) {
      const QString text = QString::fromStdString(code);
      EXPECT_EQ(data.NameOf(text), QStringLiteral("名，\"%1\"").arg(text));
    }
    EXPECT_EQ(data.Quotes().size(), inputs.Expected().size());
    for (const auto& [codeNumber, price] : inputs.Expected()) {
      const NowData now = IsIndexNumber(codeNumber) ? data.IndexNowData(codeNumber) : data.StockNowData(codeNumber);
      EXPECT_EQ(now.currentPrice, price.price) << codeNumber;
      EXPECT_EQ(now.previousClose, price.previousClose) << codeNumber;
    }
    EmbeddedMarket market(data, log_);
    QSignalSpy problems(&market, &EmbeddedMarket::QuotesChanged);
    market.Connect();
    EXPECT_EQ(market.Bus().ConnectionState(), MessageBus::State::Connected);
    EXPECT_TRUE(problems.isEmpty());
  }
};

TEST_F(ProducedFolder, IsReadWhateverWentIn) {
  int firstDays = 0;
  int suspended = 0;
  for (int seed = 1; seed <= kSeeds; ++seed) {
    SCOPED_TRACE(seed);
    const QTemporaryDir folder;
    RandomInputs inputs(folder.path(), static_cast<std::uint64_t>(seed));
    const BuildOptions options = inputs.Options();
    std::string rejected;
    BuildObserver observer;
    observer.onRejection = [&](const Rejection& rejection) { rejected += rejection.ToText().toStdString() + '\n'; };
    try {
      BuildDataFolder(options, observer);
    } catch (const Error& error) {
      FAIL() << error.what();
    }
    EXPECT_EQ(rejected, "") << "the inputs are valid";
    ExpectRead(options.outFolder, inputs);
    for (const auto& [codeNumber, price] : inputs.Expected()) {
      if (price.previousClose == 0) ++firstDays;
      if (price.previousClose == price.price) ++suspended;
    }
  }
  EXPECT_GT(firstDays, kSeeds / 3) << "the inputs hold what they are made for";
  EXPECT_GT(suspended, kSeeds);
}

}  // namespace
}  // namespace holdwise
