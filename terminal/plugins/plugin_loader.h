// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <QStringList>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "holdwise/sdk/host.h"
#include "pages/address_registry.h"

class QLibrary;

namespace holdwise {

/// One plug-in that has been loaded and entered. Its library is never unloaded.
struct LoadedPlugin {
  QString name;
  QString version;
  PlugInVoidFunction exit = nullptr;
  PlugInVoidFunction finalize = nullptr;
};

/// Loads plug-ins and ends them in reverse order. User-interface thread.
class PluginLoader {
 public:
  /// @param addresses    the host's; both outlive the loader
  /// @param startWithout what to do when a library has thrown while it was loaded, after which this process cannot go
  ///                     on: begins it anew with the file in `leftOut`, and does not come back. Unset: it goes on.
  PluginLoader(Host& host, AddressRegistry& addresses, std::function<void(const QString& file)> startWithout = {})
      : host_(host), addresses_(addresses), startWithout_(std::move(startWithout)) {}
  ~PluginLoader();
  PluginLoader(const PluginLoader&) = delete;
  PluginLoader& operator=(const PluginLoader&) = delete;

  /// Folder searched: HOLDWISE_PLUGIN_DIR, else ../lib/holdwise beside the program's folder.
  [[nodiscard]] static QString Folder();
  /// Loads every *.so of the folder in alphabetical order: the contract's version before any other entry function is
  /// looked for or called, those by name, Initialize, name and version, GetPlugInEnter. What is of another version,
  /// could not be loaded, refused to start, threw, or is in `leftOut` (names of files) is left out and told in
  /// Problems, with its addresses gone; the others go on.
  void LoadAll(const QString& folder, const QStringList& leftOut = {});
  /// GetPlugInExit and Finalize of each plug-in, last loaded first. Called by the destructor too.
  void EndAll();

  [[nodiscard]] const std::vector<LoadedPlugin>& Plugins() const { return plugins_; }
  /// Texts for the user, in order; empty when at least one library was found and all of them run.
  [[nodiscard]] const QStringList& Problems() const { return problems_; }

 private:
  void Load(const QString& path);
  [[nodiscard]] bool Open(QLibrary& library, const QString& file);
  /// Takes out the addresses that have come since.
  void WithdrawAllBut(const std::vector<std::shared_ptr<TAddressItem>>& before);
  /// GetPlugInExit or Finalize; what it throws is logged.
  void TakeStep(const LoadedPlugin& plugin, PlugInVoidFunction step);

  Host& host_;
  AddressRegistry& addresses_;
  std::function<void(const QString& file)> startWithout_;
  std::vector<LoadedPlugin> plugins_;
  QStringList problems_;
};

}  // namespace holdwise
