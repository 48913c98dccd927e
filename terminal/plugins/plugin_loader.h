// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <QStringList>
#include <vector>

#include "holdwise/sdk/host.h"

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
  explicit PluginLoader(Host& host) : host_(host) {}
  ~PluginLoader();
  PluginLoader(const PluginLoader&) = delete;
  PluginLoader& operator=(const PluginLoader&) = delete;

  /// Folder searched: HOLDWISE_PLUGIN_DIR, else ../lib/holdwise beside the program's folder.
  [[nodiscard]] static QString Folder();
  /// Loads every *.so of the folder in alphabetical order: entry functions by name, Initialize, name and version,
  /// GetPlugInEnter. What could not be loaded or refused to start is told in Problems; the others go on.
  void LoadAll(const QString& folder);
  /// GetPlugInExit and Finalize of each plug-in, last loaded first. Called by the destructor too.
  void EndAll();

  [[nodiscard]] const std::vector<LoadedPlugin>& Plugins() const { return plugins_; }
  /// Texts for the user, in order; empty when at least one library was found and all of them run.
  [[nodiscard]] const QStringList& Problems() const { return problems_; }

 private:
  void Load(const QString& path);

  Host& host_;
  std::vector<LoadedPlugin> plugins_;
  QStringList problems_;
};

}  // namespace holdwise
