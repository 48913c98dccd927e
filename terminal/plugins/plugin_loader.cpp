// SPDX-License-Identifier: MIT
#include "plugins/plugin_loader.h"

#include <QCoreApplication>
#include <QDir>
#include <QLibrary>
#include <algorithm>
#include <exception>
#include <utility>

namespace holdwise {
namespace {

/// A plug-in may throw anything.
QString TextOfCurrentException() {
  try {
    throw;
  } catch (const std::exception& error) {
    return QString::fromUtf8(error.what());
  } catch (...) {
    return QStringLiteral("原因不明");
  }
}

}  // namespace

PluginLoader::~PluginLoader() {
  EndAll();
}

QString PluginLoader::Folder() {
  QString wanted = qEnvironmentVariable("HOLDWISE_PLUGIN_DIR");
  if (!wanted.isEmpty()) return wanted;
  return QDir::cleanPath(QCoreApplication::applicationDirPath() + QStringLiteral("/../lib/holdwise"));
}

void PluginLoader::LoadAll(const QString& folder) {
  const QStringList files = QDir(folder).entryList({QStringLiteral("*.so")}, QDir::Files, QDir::Name);
  if (files.isEmpty()) problems_.append(QStringLiteral("目录“%1”中没有插件。").arg(folder));
  for (const QString& file : files) {
    try {
      Load(folder + QLatin1Char('/') + file);
    } catch (...) {
      problems_.append(QStringLiteral("插件“%1”启动时出错，没有采用它：%2").arg(file, TextOfCurrentException()));
    }
  }
}

void PluginLoader::Load(const QString& path) {
  const QString file = QFileInfo(path).fileName();
  QLibrary library(path);
  library.setLoadHints(QLibrary::PreventUnloadHint);
  if (!library.load()) {
    problems_.append(QStringLiteral("插件“%1”不能装入：%2").arg(file, library.errorString()));
    return;
  }
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
  const auto initialize = reinterpret_cast<InitializeFunction>(library.resolve("Initialize"));
  const auto name = reinterpret_cast<PlugInTextFunction>(library.resolve("GetPlugInName"));
  const auto version = reinterpret_cast<PlugInTextFunction>(library.resolve("GetPlugInVersion"));
  const auto enter = reinterpret_cast<PlugInVoidFunction>(library.resolve("GetPlugInEnter"));
  const auto exit = reinterpret_cast<PlugInVoidFunction>(library.resolve("GetPlugInExit"));
  const auto finalize = reinterpret_cast<PlugInVoidFunction>(library.resolve("Finalize"));
  if (!initialize || !name || !version || !enter || !exit || !finalize) {
    problems_.append(foreign);
    return;
  }
  if (!initialize(&host_, kSdkVersion)) {
    problems_.append(QStringLiteral("插件“%1”拒绝启动。").arg(file));
    return;
  }
  LoadedPlugin plugin{QString::fromUtf8(name()), QString::fromUtf8(version()), exit, finalize};
  Enter(plugin, enter);
  plugins_.push_back(std::move(plugin));
}

void PluginLoader::Enter(const LoadedPlugin& plugin, PlugInVoidFunction enter) {
  const auto before = addresses_.Items();
  try {
    enter();
  } catch (...) {
    End(plugin);
    const auto after = addresses_.Items();
    for (const auto& item : after) {
      if (std::find(before.begin(), before.end(), item) == before.end()) addresses_.UnregisterAddressItem(item);
    }
    throw;
  }
}

void PluginLoader::End(const LoadedPlugin& plugin) {
  for (const PlugInVoidFunction step : {plugin.exit, plugin.finalize}) {
    try {
      step();
    } catch (...) {
      host_.Debug().WriteLog(QStringLiteral("插件“%1”结束时出错：%2").arg(plugin.name, TextOfCurrentException()));
    }
  }
}

void PluginLoader::EndAll() {
  while (!plugins_.empty()) {
    const LoadedPlugin plugin = plugins_.back();
    plugins_.pop_back();
    End(plugin);
  }
}

}  // namespace holdwise
