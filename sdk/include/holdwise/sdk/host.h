#pragma once
#include <memory>

#include "holdwise/sdk/address.h"
#include "holdwise/sdk/bus.h"
#include "holdwise/sdk/catalogue.h"
#include "holdwise/sdk/codenum.h"
#include "holdwise/sdk/database.h"
#include "holdwise/sdk/datacenter.h"
#include "holdwise/sdk/download.h"
#include "holdwise/sdk/services.h"
#include "holdwise/sdk/theme.h"

namespace holdwise {

/// Everything a host hands to a plug-in. The host outlives the plug-in's objects: it calls GetPlugInExit and Finalize
/// before it goes. References stay valid that long.
class Host {
 public:
  virtual ~Host() = default;
  virtual AddressServices& Addresses() = 0;
  virtual CodeNumServices& CodeNums() = 0;
  virtual PlugSystemInfo& System() = 0;
  virtual UserDataServices& UserData() = 0;
  virtual DebugServers& Debug() = 0;
  virtual KeyCodeServices& KeyCodes() = 0;
  virtual TDataCenter& DataCenter() = 0;
  virtual ColorThemeServices& ColorTheme() = 0;
  virtual MessageBoxService& MessageBoxes() = 0;
  virtual ClockService& Clock() = 0;
  /// Work-data folder, absolute, with "/" at the end.
  [[nodiscard]] virtual QString SysWorkDataPath() const = 0;
  [[nodiscard]] virtual std::unique_ptr<TDSBAsynDataDownRole> MakeDataDownRole() = 0;
  [[nodiscard]] virtual std::unique_ptr<TDSBAsynDownFileRole> MakeDownFileRole() = 0;
  [[nodiscard]] virtual std::unique_ptr<TFrmQMTitle> MakeTitleFrame() = 0;
};

/// Version of these headers; a plug-in refuses a host of another version.
inline constexpr int kSdkVersion = 1;

/// The functions a plug-in library exports with C linkage, in the order a host calls them: Initialize, GetPlugInName
/// and GetPlugInVersion (UTF-8, static storage), GetPlugInEnter, ..., GetPlugInExit, Finalize. The library stays
/// loaded.
using InitializeFunction = bool (*)(Host* host, int sdkVersion);  ///< false: refused (version)
using PlugInTextFunction = const char* (*)();
using PlugInVoidFunction = void (*)();

}  // namespace holdwise
