// SPDX-License-Identifier: MIT
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
/// before it goes. The services are the host's; references stay valid that long, and each call of one function gives
/// the same. Which threads may use a service is said with it. These functions may be called from any thread, those that
/// make something only on the user-interface thread; they throw nothing and never return null.
class Host {
 public:
  virtual ~Host() = default;
  /// Navigation: the plug-in's pages are registered here.
  virtual AddressServices& Addresses() = 0;
  /// The security master.
  virtual CodeNumServices& CodeNums() = 0;
  /// The work area in which frames are shown.
  virtual PlugSystemInfo& System() = 0;
  /// The local database. It may be opened after Initialize, but before the first address is entered; until then every
  /// statement is Error(Refused).
  virtual UserDataServices& UserData() = 0;
  /// The debug log.
  virtual DebugServers& Debug() = 0;
  /// The keyboard capture of the host's quick entry.
  virtual KeyCodeServices& KeyCodes() = 0;
  /// Dates, quotes and account figures.
  virtual TDataCenter& DataCenter() = 0;
  /// Colours and pictures of the theme.
  virtual ColorThemeServices& ColorTheme() = 0;
  /// Messages to the user.
  virtual MessageBoxService& MessageBoxes() = 0;
  /// The wall clock.
  virtual ClockService& Clock() = 0;
  /// Work-data folder, absolute, with "/" at the end. It exists and can be written.
  [[nodiscard]] virtual QString SysWorkDataPath() const = 0;
  /// A new role on the message bus, the caller's; it must be destroyed before Finalize returns, as the two below.
  [[nodiscard]] virtual std::unique_ptr<TDSBAsynDataDownRole> MakeDataDownRole() = 0;
  /// A new download role, the caller's.
  [[nodiscard]] virtual std::unique_ptr<TDSBAsynDownFileRole> MakeDownFileRole() = 0;
  /// A new title frame without parent, the caller's.
  [[nodiscard]] virtual std::unique_ptr<TFrmQMTitle> MakeTitleFrame() = 0;
};

/// Version of these headers. A host and a plug-in of different versions have nothing to say to each other.
inline constexpr int kSdkVersion = 8;

/// The functions a plug-in library exports with C linkage, in the order a host calls them: GetPlugInContract, which is
/// kSdkVersion as the library was built with and the only one that is called when it is not the host's; Initialize,
/// GetPlugInName and GetPlugInVersion (UTF-8, static storage), GetPlugInEnter, ..., GetPlugInExit, Finalize. The
/// library stays loaded. All on the user-interface thread. What one of them throws the host reports; a plug-in whose
/// GetPlugInEnter fails is ended in order at once, what it has registered goes, and the host does without it.
using PlugInContractFunction = int (*)();                         ///< GetPlugInContract; throws nothing
using InitializeFunction = bool (*)(Host* host, int sdkVersion);  ///< false: refused (version or null), nothing is kept
using PlugInTextFunction = const char* (*)();                     ///< GetPlugInName, GetPlugInVersion; never null
using PlugInVoidFunction = void (*)();                            ///< GetPlugInEnter, GetPlugInExit, Finalize

}  // namespace holdwise
