// SPDX-License-Identifier: MIT
#include "plugins/plugin_loader.h"

#include <QCoreApplication>
#include <QDir>
#include <QLibrary>
#include <algorithm>
#include <utility>

#include "process/exception_text.h"

namespace holdwise {
namespace {

struct EntryFunctions {
  InitializeFunction initialize;
  PlugInTextFunction name;
  PlugInTextFunction version;
  PlugInVoidFunction enter;
  PlugInVoidFunction exit;
  PlugInVoidFunction finalize;
};

}  // namespace

PluginLoader::~PluginLoader() {
  EndAll();
}

QString PluginLoader::Folder() {
  QString wanted = qEnvironmentVariable("HOLDWISE_PLUGIN_DIR");
  if (!wanted.isEmpty()) return wanted;
  return QDir::cleanPath(QCoreApplication::applicationDirPath() + QStringLiteral("/../lib/holdwise"));
}

void PluginLoader::LoadAll(const QString& folder, const QStringList& leftOut) {
  const QStringList files = QDir(folder).entryList({QStringLiteral("*.so")}, QDir::Files, QDir::Name);
  if (files.isEmpty()) problems_.append(QStringLiteral("目录“%1”中没有插件。").arg(folder));
  for (const QString& file : files) {
    if (leftOut.contains(file)) {
      problems_.append(
          QStringLiteral("插件“%1”装入时出错，没有采用它：请把它移出目录“%2”，再启动终端。").arg(file, folder));
      continue;
    }
    const auto before = addresses_.Items();
    const std::size_t loaded = plugins_.size();
    try {
      Load(folder + QLatin1Char('/') + file);
    } catch (...) {
      problems_.append(QStringLiteral("插件“%1”启动时出错，没有采用它：%2").arg(file, TextOfCurrentException()));
    }
    if (plugins_.size() == loaded) WithdrawAllBut(before);
  }
}

bool PluginLoader::Open(QLibrary& library, const QString& file) {
  try {
    if (library.load()) return true;
  } catch (...) {
    // It has come through the process's loader, which stays locked: whatever other thread loads, or ends, would wait
    // for ever.
    host_.Debug().WriteLog(
        QStringLiteral("插件“%1”装入时出错：%2。终端重新启动，不采用它。").arg(file, TextOfCurrentException()));
    if (startWithout_) startWithout_(file);
    throw;
  }
  problems_.append(QStringLiteral("插件“%1”不能装入：%2").arg(file, library.errorString()));
  return false;
}

void PluginLoader::Load(const QString& path) {
  const QString file = QFileInfo(path).fileName();
  QLibrary library(path);
  library.setLoadHints(QLibrary::PreventUnloadHint);
  if (!Open(library, file)) return;
  const auto contract = reinterpret_cast<PlugInContractFunction>(library.resolve("GetPlugInContract"));
  const QString foreign = QStringLiteral("“%1”不是本终端的插件：缺少入口函数。").arg(file);
  if (contract == nullptr) {
    problems_.append(foreign);
    return;
  }
  // Another version may have other entry functions.
  if (const int built = contract(); built != kSdkVersion) {
    problems_.append(QStringLiteral("插件“%1”适用于接口版本 %2，本终端的接口版本是 %3：请安装与本终端一起发布的插件。")
                         .arg(file)
                         .arg(built)
                         .arg(kSdkVersion));
    return;
  }
  const EntryFunctions entry{reinterpret_cast<InitializeFunction>(library.resolve("Initialize")),
                             reinterpret_cast<PlugInTextFunction>(library.resolve("GetPlugInName")),
                             reinterpret_cast<PlugInTextFunction>(library.resolve("GetPlugInVersion")),
                             reinterpret_cast<PlugInVoidFunction>(library.resolve("GetPlugInEnter")),
                             reinterpret_cast<PlugInVoidFunction>(library.resolve("GetPlugInExit")),
                             reinterpret_cast<PlugInVoidFunction>(library.resolve("Finalize"))};
  if (!entry.initialize || !entry.name || !entry.version || !entry.enter || !entry.exit || !entry.finalize) {
    problems_.append(foreign);
    return;
  }
  if (!entry.initialize(&host_, kSdkVersion)) {
    problems_.append(QStringLiteral("插件“%1”拒绝启动。").arg(file));
    return;
  }
  LoadedPlugin plugin{file, QString(), entry.exit, entry.finalize};
  bool isEntered = false;
  try {
    plugin.name = QString::fromUtf8(entry.name());
    plugin.version = QString::fromUtf8(entry.version());
    isEntered = true;
    entry.enter();
  } catch (...) {
    if (isEntered) TakeStep(plugin, plugin.exit);
    TakeStep(plugin, plugin.finalize);
    throw;
  }
  plugins_.push_back(std::move(plugin));
}

void PluginLoader::WithdrawAllBut(const std::vector<std::shared_ptr<TAddressItem>>& before) {
  const auto after = addresses_.Items();
  for (const auto& item : after) {
    if (std::find(before.begin(), before.end(), item) == before.end()) addresses_.UnregisterAddressItem(item);
  }
}

void PluginLoader::TakeStep(const LoadedPlugin& plugin, PlugInVoidFunction step) {
  try {
    step();
  } catch (...) {
    host_.Debug().WriteLog(QStringLiteral("插件“%1”结束时出错：%2").arg(plugin.name, TextOfCurrentException()));
  }
}

void PluginLoader::EndAll() {
  while (!plugins_.empty()) {
    const LoadedPlugin plugin = plugins_.back();
    plugins_.pop_back();
    TakeStep(plugin, plugin.exit);
    TakeStep(plugin, plugin.finalize);
  }
}

}  // namespace holdwise
