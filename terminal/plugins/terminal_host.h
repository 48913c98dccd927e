// SPDX-License-Identifier: MIT
#pragma once
#include <functional>
#include <memory>

#include "bus/message_bus.h"
#include "datacentre/market_data.h"
#include "files/file_source.h"
#include "holdwise/sdk/host.h"
#include "pages/address_registry.h"
#include "theme/theme_services.h"

namespace holdwise {

/// What the services are made of; everything outlives the host.
struct HostParts {
  AddressRegistry& addresses;
  PlugSystemInfo& system;
  KeyCodeServices& keyCodes;
  MessageBoxService& messageBoxes;
  ThemeServices& theme;
  DebugServers& debug;
  ClockService& clock;
  UserDataServices& userData;  ///< open before the first page is entered
  MarketData& market;          ///< loaded
  MessageBus& bus;
  FileSource& files;
  /// Told of what the plug-ins ask prices for; may be empty.
  std::function<void(const TDMessage& request)> onPriceRequest{};
};

/// The services of this terminal, handed to the plug-ins. User-interface thread.
class TerminalHost : public Host {
 public:
  /// @param workFolder absolute, without "/" at the end
  TerminalHost(const HostParts& parts, const QString& workFolder);

  AddressServices& Addresses() override { return parts_.addresses; }
  CodeNumServices& CodeNums() override { return parts_.market; }
  PlugSystemInfo& System() override { return parts_.system; }
  UserDataServices& UserData() override { return parts_.userData; }
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

 private:
  HostParts parts_;
  QString workFolder_;
};

}  // namespace holdwise
