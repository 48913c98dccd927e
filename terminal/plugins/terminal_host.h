#pragma once
#include <memory>

#include "bus/embedded_market.h"
#include "datacentre/local_database.h"
#include "datacentre/market_data.h"
#include "files/local_folder_source.h"
#include "holdwise/sdk/host.h"
#include "pages/address_registry.h"
#include "process/debug_log.h"
#include "theme/theme_services.h"

namespace holdwise {

class SystemClock : public ClockService {
 public:
  [[nodiscard]] QDateTime Now() const override { return QDateTime::currentDateTime(); }
};

/// What the terminal has before its data are loaded; everything outlives the host.
struct HostParts {
  AddressRegistry& addresses;
  PlugSystemInfo& system;
  KeyCodeServices& keyCodes;
  MessageBoxService& messageBoxes;
  ThemeServices& theme;
  DebugServers& debug;
  ClockService& clock;
  const std::unique_ptr<UserDataServices>& userData;  ///< filled before the first page is entered
  MarketData& market;                                 ///< loaded
};

/// The services of this terminal, handed to the plug-ins. User-interface thread.
class TerminalHost : public Host {
 public:
  /// @param workFolder absolute, without "/" at the end
  TerminalHost(const HostParts& parts, const QString& workFolder);

  AddressServices& Addresses() override { return parts_.addresses; }
  CodeNumServices& CodeNums() override { return parts_.market; }
  PlugSystemInfo& System() override { return parts_.system; }
  UserDataServices& UserData() override { return *parts_.userData; }
  DebugServers& Debug() override { return parts_.debug; }
  KeyCodeServices& KeyCodes() override { return parts_.keyCodes; }
  TDataCenter& DataCenter() override { return parts_.market; }
  ColorThemeServices& ColorTheme() override { return parts_.theme; }
  MessageBoxService& MessageBoxes() override { return parts_.messageBoxes; }
  ClockService& Clock() override { return parts_.clock; }
  [[nodiscard]] QString SysWorkDataPath() const override { return workFolder_ + QLatin1Char('/'); }
  [[nodiscard]] std::unique_ptr<TDSBAsynDataDownRole> MakeDataDownRole() override;
  [[nodiscard]] std::unique_ptr<TDSBAsynDownFileRole> MakeDownFileRole() override;
  [[nodiscard]] std::unique_ptr<TFrmQMTitle> MakeTitleFrame() override;

  [[nodiscard]] MessageBus& Bus() { return embedded_.Bus(); }
  [[nodiscard]] EmbeddedMarket& Market() { return embedded_; }
  /// Connects the bus, unless it is connected.
  void ConnectBus();

 private:
  HostParts parts_;
  QString workFolder_;
  EmbeddedMarket embedded_;
  LocalFolderSource files_;
};

}  // namespace holdwise
