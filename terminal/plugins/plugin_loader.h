// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <QStringList>
#include <vector>

#include "holdwise/sdk/host.h"
#include "pages/address_registry.h"

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
  /// `addresses` are the host's. Both outlive it.
  PluginLoader(Host& host, AddressRegistry& addresses) : host_(host), addresses_(addresses) {}
  ~PluginLoader();
  PluginLoader(const PluginLoader&) = delete;
  PluginLoader& operator=(const PluginLoader&) = delete;

  /// Folder searched: HOLDWISE_PLUGIN_DIR, else ../lib/holdwise beside the program's folder.
  [[nodiscard]] static QString Folder();
  /// Loads every *.so of the folder in alphabetical order: the contract's version before any other entry function is
  /// looked for or called, those by name, Initialize, name and version, GetPlugInEnter. What is of another version,
  /// could not be loaded, refused to start or threw is left out and told in Problems, with its addresses gone; the
  /// others go on.
  void LoadAll(const QString& folder);
  /// GetPlugInExit and Finalize of each plug-in, last loaded first. Called by the destructor too.
  void EndAll();

  [[nodiscard]] const std::vector<LoadedPlugin>& Plugins() const { return plugins_; }
  /// Texts for the user, in order; empty when at least one library was found and all of them run.
  [[nodiscard]] const QStringList& Problems() const { return problems_; }

 private:
  void Load(const QString& path);
  void Enter(const LoadedPlugin& plugin, PlugInVoidFunction enter);
  void End(const LoadedPlugin& plugin);

  Host& host_;
  AddressRegistry& addresses_;
  std::vector<LoadedPlugin> plugins_;
  QStringList problems_;
};

}  // namespace holdwise
