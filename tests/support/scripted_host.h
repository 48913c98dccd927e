// SPDX-License-Identifier: MIT
#pragma once
#include <QPointer>
#include <QTemporaryDir>
#include <QWidget>
#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <vector>

#include "fake_user_data.h"
#include "holdwise/sdk/host.h"
#include "scripted_roles.h"

namespace holdwise {

/// One security of the scripted host.
struct ScriptedSecurity {
  QString code;  ///< six digits
  QString name;
  QString industry;
  int market = 1;  ///< 1 Shanghai, 2 Shenzhen
  NowData nowData;
  bool isFundOrBond = false;
};

class ScriptedAddresses final : public AddressServices {
 public:
  void RegisterAddressItem(std::shared_ptr<TAddressItem> item) override;
  void UnregisterAddressItem(const std::shared_ptr<TAddressItem>& item) override;
  /// Recorded only; true for the names in `known` and for registered items.
  bool GotoAddress(const QString& name, const QString& parameter) override;

  std::vector<std::shared_ptr<TAddressItem>> items;
  std::vector<std::pair<QString, QString>> gone;  ///< name and parameter of every GotoAddress
  std::set<QString> known = {QStringLiteral("分时走势"), QStringLiteral("工具条")};
};

/// Code numbers as the contract has them; securities and indices from the test. Set up before other threads read.
class ScriptedCodeNums final : public CodeNumServices {
 public:
  bool IsFundOrBond(const QString& code) const override;
  bool IsKnownSecurity(const QString& code) const override;
  bool IsIndex(const QString& code) const override;
  bool IsCodeNumber(const QString& text) const override;
  bool IsShanghaiStock(const QString& codeNumber) const override;
  bool IsShenzhenStock(const QString& codeNumber) const override;
  QString NameOf(const QString& code) const override;
  QString InitialsOf(int codeNumber) const override;
  QString IndustryOf(int codeNumber) const override;
  int MarketTypeOf(const QString& code) const override;
  std::vector<int> CodeNumbersOf(int category) const override;
  int CurrentDate() const override { return currentDate; }
  void SetCurrentCode(const QString& code) override;
  QString CurrentCode() const override { return currentCode; }

  void Add(const ScriptedSecurity& security);
  [[nodiscard]] const ScriptedSecurity* Find(const QString& code) const;

  std::map<int, QString> initials;  ///< by code number
  int currentDate = 20240529;
  QString currentCode;
  std::vector<QString> setCodes;  ///< every SetCurrentCode

 private:
  std::map<QString, ScriptedSecurity> securities_;  // by six digits
};

class ScriptedSystem final : public PlugSystemInfo {
 public:
  /// Shows the frame inside `workArea`, filling it.
  void ShowFrame(QWidget* frame) override;
  void RefreshWorkArea(QWidget* part) override;

  QWidget workArea;
  std::vector<QPointer<QWidget>> shown;
  std::vector<QPointer<QWidget>> refreshed;
};

class ScriptedDebug final : public DebugServers {
 public:
  void WriteLog(const QString& text) override;
  [[nodiscard]] std::vector<QString> Lines() const;
  void TellFailure(const QString& text) override;
  /// What the user was told.
  [[nodiscard]] std::vector<QString> Failures() const;
  void TellOutcome(const QString& text) override;
  /// What the user was told that was no failure.
  [[nodiscard]] std::vector<QString> Outcomes() const;
  void TellOngoing(const QString& text) override;
  /// What the user was told that goes on, its end as an empty text.
  [[nodiscard]] std::vector<QString> Ongoing() const;

 private:
  mutable std::mutex lock_;
  std::vector<QString> lines_;
  std::vector<QString> failures_;
  std::vector<QString> outcomes_;
  std::vector<QString> ongoing_;
};

class ScriptedKeyCodes final : public KeyCodeServices {
 public:
  void SetCaptureEnabled(bool enabled) override { calls.push_back(enabled); }
  /// Whether the host has the keyboard now.
  [[nodiscard]] bool IsCaptureOn() const { return calls.empty() || calls.back(); }
  std::vector<bool> calls;
};

/// Set up before other threads read.
class ScriptedDataCenter final : public TDataCenter {
 public:
  ScriptedDataCenter(const ScriptedCodeNums& codeNums, TLocatDBOper& localDatabase)
      : codeNums_(codeNums), localDatabase_(localDatabase) {}
  QString CurrentDateText() const override { return currentDateText; }
  QString DataEdition() const override { return dataEdition; }
  const std::vector<int>& TradingDates() const override { return tradingDates; }
  NowData StockNowData(int codeNumber) const override;
  NowData IndexNowData(int indexNumber) const override;
  std::optional<AccountInfo> StockAccountInfo(int codeNumber) const override;
  std::vector<int> GetGroupCodeNumList(const QString& groupName) const override;
  bool IsOpen() const override { return isOpen; }
  unsigned BusMarketId(int marketType) const override;
  TLocatDBOper& LocalDatabase() override { return localDatabase_; }

  QString currentDateText = QStringLiteral("2024-05-29");
  QString dataEdition;
  std::vector<int> tradingDates;
  std::map<int, NowData> indices;
  std::map<int, AccountInfo> accounts;
  std::map<QString, std::vector<int>> groups;
  std::map<int, unsigned> busMarketIds = {{1, 101}, {2, 102}};
  std::atomic<bool> isOpen = true;

 private:
  const ScriptedCodeNums& codeNums_;
  TLocatDBOper& localDatabase_;
};

/// Every key has a colour and a picture of its own, in each of two themes.
class ScriptedTheme final : public ColorThemeServices, public IColorSet2, public IImageSet2 {
 public:
  explicit ScriptedTheme(DebugServers& debug);
  const IColorSet2& Colors() const override { return *this; }
  const IImageSet2& Images() const override { return *this; }
  QColor ColorOf(const QString& key) const override;
  std::optional<QColor> FindColor(const QString& key) const override;
  void AssignPicture(const QString& key, QLabel& image) const override;
  QPixmap PictureOf(const QString& key, const QSize& size) const override;
  /// To the other theme and back; telling the plug-in (ChangeColorTheme) is the test's business.
  void Switch();

  std::map<QString, QColor> colors;
  std::function<QPixmap(const QString& key, const QSize& size)> paint;  ///< what is not plain; null: plain

 private:
  DebugServers& debug_;
};

class ScriptedMessageBoxes final : public MessageBoxService {
 public:
  struct Call {
    QString text;
    QString caption;
    int buttons = 0;
    int style = 0;
    bool operator==(const Call&) const = default;
  };
  /// Answers come from the queue; 1 when it is empty.
  int Vex_MessageBox(const QString& text, const QString& caption, int buttons, int style) override;

  std::vector<Call> calls;
  std::vector<int> answers;
  std::function<void()> whileAsking;  ///< runs while the box is open, if set
};

class ScriptedClock final : public ClockService {
 public:
  QDateTime Now() const override { return now; }
  QDateTime now = QDateTime(QDate(2024, 5, 29), QTime(10, 0));
};

/// A caption label over a client panel.
class ScriptedTitleFrame final : public TFrmQMTitle {
 public:
  ScriptedTitleFrame();
  void SetCaptionText(const QString& text) override { captionText = text; }
  void SetLayoutKind(int kind) override { layoutKind = kind; }
  QWidget* ClientPanel() override { return clientPanel_; }
  void RefreshTheme() override { ++themeRefreshes; }
  void SplitterMoved(QSplitter* splitter) override;
  void SplitterPaint(QSplitter* splitter) override;

  QString captionText;
  int layoutKind = -1;
  int themeRefreshes = 0;
  std::vector<QSplitter*> moved;
  std::vector<QSplitter*> painted;

 private:
  QWidget* clientPanel_ = nullptr;
};

/// A host whose services all stand in memory and do what the test says. It knows the three indices and, at first, no
/// security. The work-data folder is a temporary folder of its own.
class ScriptedHost final : public Host {
 public:
  ScriptedHost();

  AddressServices& Addresses() override { return addresses; }
  CodeNumServices& CodeNums() override { return codeNums; }
  PlugSystemInfo& System() override { return system; }
  UserDataServices& UserData() override { return *userData_; }
  DebugServers& Debug() override { return debug; }
  KeyCodeServices& KeyCodes() override { return keyCodes; }
  TDataCenter& DataCenter() override { return dataCenter; }
  ColorThemeServices& ColorTheme() override { return theme; }
  MessageBoxService& MessageBoxes() override { return messageBoxes; }
  ClockService& Clock() override { return clock; }
  QString SysWorkDataPath() const override { return folder_.path() + QLatin1Char('/'); }
  std::unique_ptr<TDSBAsynDataDownRole> MakeDataDownRole() override;
  std::unique_ptr<TDSBAsynDownFileRole> MakeDownFileRole() override;
  std::unique_ptr<TFrmQMTitle> MakeTitleFrame() override;

  /// The database behind UserData() and the data centre's local database; not owned. `fakeUserData` until set.
  void SetUserData(UserDataServices& userData) { userData_ = &userData; }
  /// The scripts of every role made with that component name (download roles: as configured), oldest first.
  [[nodiscard]] std::vector<std::shared_ptr<ScriptedDataDown>> DataDowns(const QString& componentName) const;
  [[nodiscard]] std::vector<std::shared_ptr<ScriptedDownFile>> DownFiles(const QString& componentName) const;
  /// The newest of them; Error(NotFound) when there is none.
  [[nodiscard]] std::shared_ptr<ScriptedDataDown> DataDown(const QString& componentName) const;
  [[nodiscard]] std::shared_ptr<ScriptedDownFile> DownFile(const QString& componentName) const;

  FakeUserData fakeUserData;
  ScriptedAddresses addresses;
  ScriptedCodeNums codeNums;
  ScriptedSystem system;
  ScriptedDebug debug;
  ScriptedKeyCodes keyCodes;

 private:
  class LocalDatabase final : public TLocatDBOper {
   public:
    explicit LocalDatabase(ScriptedHost& host) : host_(host) {}
    void DoQuery(const QString& sql, ResultSet& resultSet) override { resultSet = host_.UserData().Query(sql); }

   private:
    ScriptedHost& host_;
  };
  LocalDatabase localDatabase_;

 public:
  ScriptedDataCenter dataCenter;
  ScriptedTheme theme;
  ScriptedMessageBoxes messageBoxes;
  ScriptedClock clock;
  /// Makes the download roles instead, if set; DownFiles does not know these.
  std::function<std::unique_ptr<TDSBAsynDownFileRole>()> makeDownFileRole;
  /// Title frames made and still alive.
  std::vector<QPointer<ScriptedTitleFrame>> titleFrames;

 private:
  QTemporaryDir folder_;
  UserDataServices* userData_ = &fakeUserData;
  std::vector<std::shared_ptr<ScriptedDataDown>> dataDowns_;
  std::vector<std::shared_ptr<ScriptedDownFile>> downFiles_;
};

}  // namespace holdwise
