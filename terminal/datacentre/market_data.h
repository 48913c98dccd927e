// SPDX-License-Identifier: MIT
#pragma once
#include <QObject>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "holdwise/packet/thread_annotations.h"
#include "holdwise/sdk/codenum.h"
#include "holdwise/sdk/datacenter.h"
#include "holdwise/sdk/services.h"

namespace holdwise {

/// Quote of one security; prices in yuan (points for an index), `previousClose` 0 = none.
struct CodedQuote {
  int codeNumber = 0;
  NowData now;
};

/// The market as a data folder (docs/data-folder.md) describes it: security master, trading dates, current data,
/// groups. Load, ReloadQuotes, ApplyQuotes and the signals belong to the user-interface thread; the const functions may
/// be called from any thread. The services handed in must outlive it.
class MarketData final : public QObject, public CodeNumServices, public TDataCenter {
  Q_OBJECT

 public:
  MarketData(ClockService& clock, DebugServers& log, TLocatDBOper& localDatabase);
  ~MarketData() override;

  /// Reads the whole folder; call once, before anything else uses the object. Throws an Error whose text names the
  /// file: NotFound (missing), Io (unreadable), Corrupt (damaged, empty, wrong columns), Refused (values that cannot
  /// be: a code twice, an impossible date, a price not above zero; quotes that name another edition than market.dat).
  /// Rows of quotes, accounts and groups about
  /// securities that the master does not know are skipped; their number is logged. The optional files (accounts,
  /// groups) are left out whole when they cannot be used: see Notices.
  void Load(const QString& folder);
  /// Reads quotes.dat and the edition again. Throws like Load and keeps the earlier quotes; Error(Refused) too when the
  /// folder now stands at another date, of which this object takes nothing: see LaterDate. Emits QuotesChanged.
  void ReloadQuotes();
  /// The date (YYYY-MM-DD) at which the last ReloadQuotes found the folder, if it is later than that of the data, which
  /// stay as they are: a new object has to load it. Empty otherwise.
  [[nodiscard]] QString LaterDate() const;
  /// Takes over current data as they arrive; quotes of unknown securities are ignored. Emits QuotesChanged.
  void ApplyQuotes(const std::vector<CodedQuote>& quotes);
  /// Replaces group "OptionalStock" by the user's own list: a text file (UTF-8 or GB18030) with one six-digit code a
  /// line, in order. A missing file, and one that cannot be read, changes nothing; a line that is no known stock's code
  /// or repeats one is left out. Never throws an Error: see Notices.
  void LoadOptionalStocks(const QString& path);
  /// Adds a stock to group "OptionalStock", at its end, or takes it out, and writes the user's own list to the path of
  /// LoadOptionalStocks, which has been called. Other lines of the file stay. Nothing happens when the stock is unknown
  /// or when that is how it is. Throws Error(Io), (Corrupt), (Refused) when the list cannot be read or written; the
  /// group stays as it was then.
  void SetOptionalStock(int codeNumber, bool isMember);
  /// What the optional files of the last Load and LoadOptionalStocks hold that is not used, a text a file, in Chinese
  /// and with what to do, for the window to show; empty when all is used. The same stands in the log.
  [[nodiscard]] const QStringList& Notices() const { return notices_; }

  /// Folder of the last Load; empty before.
  [[nodiscard]] QString Folder() const { return folder_; }
  /// Simulated market: its prices move and it counts as open at any time.
  [[nodiscard]] bool IsSimulated() const { return simulated_; }
  /// Beijing time in seconds since midnight on the data's own date, when that is a trading day; none on another day.
  [[nodiscard]] std::optional<int> SecondOfTradingDay() const;
  /// Current data of all securities and indices that have some, indices first, then by code number.
  [[nodiscard]] std::vector<CodedQuote> Quotes() const;

  // CodeNumServices. Six digits always mean a stock or one of 399001 and 399300, so "000001" is stock 1000001; the
  // composite index is "1".
  [[nodiscard]] bool IsFundOrBond(const QString& code) const override;
  [[nodiscard]] bool IsKnownSecurity(const QString& code) const override;
  [[nodiscard]] bool IsIndex(const QString& code) const override;
  [[nodiscard]] bool IsCodeNumber(const QString& text) const override;
  [[nodiscard]] bool IsShanghaiStock(const QString& codeNumber) const override;
  [[nodiscard]] bool IsShenzhenStock(const QString& codeNumber) const override;
  [[nodiscard]] QString NameOf(const QString& code) const override;
  [[nodiscard]] QString InitialsOf(int codeNumber) const override;
  [[nodiscard]] QString IndustryOf(int codeNumber) const override;
  [[nodiscard]] int MarketTypeOf(const QString& code) const override;
  [[nodiscard]] std::vector<int> CodeNumbersOf(int category) const override;
  [[nodiscard]] int CurrentDate() const override { return currentDate_; }
  void SetCurrentCode(const QString& code) override;
  [[nodiscard]] QString CurrentCode() const override;

  // TDataCenter.
  [[nodiscard]] QString CurrentDateText() const override;
  [[nodiscard]] QString DataEdition() const override;
  [[nodiscard]] const std::vector<int>& TradingDates() const override { return tradingDates_; }
  [[nodiscard]] NowData StockNowData(int codeNumber) const override;
  [[nodiscard]] NowData IndexNowData(int indexNumber) const override;
  [[nodiscard]] std::optional<AccountInfo> StockAccountInfo(int codeNumber) const override;
  [[nodiscard]] std::vector<int> GetGroupCodeNumList(const QString& groupName) const override;
  /// Simulated: always. Otherwise on the data's own date, when it is a trading day, from 9:30 to 11:30 and from 13:00
  /// to 15:00 Beijing time (the end itself excluded).
  [[nodiscard]] bool IsOpen() const override;
  [[nodiscard]] unsigned BusMarketId(int marketType) const override;
  [[nodiscard]] TLocatDBOper& LocalDatabase() override { return localDatabase_; }

 Q_SIGNALS:
  /// Current data were replaced or moved.
  void QuotesChanged();
  /// Somebody set the current security; also when it is the same again.
  void CurrentCodeChanged(const QString& code);

 private:
  /// One stock; the texts stand in `texts_`, the initials behind the name, so that a security costs 20 bytes and these.
  struct Security {
    std::int32_t codeNumber = 0;
    std::uint32_t nameOffset = 0;
    std::uint32_t industryOffset = 0;
    std::uint16_t nameBytes = 0;
    std::uint16_t industryBytes = 0;
    std::uint16_t initialsBytes = 0;
    std::uint8_t market = 0;
    bool aShare = false;
  };
  struct Market {
    int currentDate = 0;
    bool simulated = false;
    QString edition;
  };
  struct Account {
    std::int32_t codeNumber = 0;
    AccountInfo info;
  };

  [[nodiscard]] static Market ReadMarket(const QString& path);
  void SetEdition(const QString& edition);
  void LoadSecurities(const QString& path);
  void LoadTradingDates(const QString& path);
  void LoadOptional(const QString& path, void (MarketData::*load)(const QString&));
  void LoadAccounts(const QString& path);
  void LoadGroups(const QString& path);
  void ReadOptionalStocks(const QString& path);
  void Notice(const QString& text);
  [[nodiscard]] std::vector<CodedQuote> ReadQuotes(const QString& path, const QString& edition) const;
  void LogSkipped(const QString& path, int rows) const;
  [[nodiscard]] int IndexOfSecurity(int codeNumber) const;
  [[nodiscard]] const Security* FindStock(const QString& code) const;
  [[nodiscard]] QString Text(std::uint32_t offset, std::uint16_t bytes) const;
  [[nodiscard]] NowData* Slot(int codeNumber) HOLDWISE_REQUIRES(mutex_);

  ClockService& clock_;
  DebugServers& log_;
  TLocatDBOper& localDatabase_;
  QString folder_;
  QString optionalStocksPath_;
  QStringList notices_;
  int currentDate_ = 0;
  int laterDate_ = 0;  ///< of the folder; 0: not later than the current one
  bool simulated_ = false;
  std::vector<Security> securities_;  ///< by code number
  std::string texts_;
  std::vector<int> tradingDates_;  ///< most recent first
  std::vector<Account> accounts_;  ///< by code number

  mutable SharedMutex mutex_;
  std::vector<NowData> stockQuotes_ HOLDWISE_GUARDED_BY(mutex_);  ///< parallel to securities_
  NowData indexQuotes_[3] HOLDWISE_GUARDED_BY(mutex_);
  std::map<QString, std::vector<int>> groups_ HOLDWISE_GUARDED_BY(mutex_);
  QString edition_ HOLDWISE_GUARDED_BY(mutex_);
  QString currentCode_ HOLDWISE_GUARDED_BY(mutex_);
};

}  // namespace holdwise
