// SPDX-License-Identifier: MIT
#include "plugins/plugin_loader.h"

#include <QCoreApplication>
#include <QDir>
#include <QLibrary>
#include <exception>

namespace holdwise {

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
    } catch (const std::exception& error) {
      problems_.append(QStringLiteral("插件“%1”启动时出错：%2").arg(file, QString::fromUtf8(error.what())));
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
  const auto initialize = reinterpret_cast<InitializeFunction>(library.resolve("Initialize"));
  const auto name = reinterpret_cast<PlugInTextFunction>(library.resolve("GetPlugInName"));
  const auto version = reinterpret_cast<PlugInTextFunction>(library.resolve("GetPlugInVersion"));
  const auto enter = reinterpret_cast<PlugInVoidFunction>(library.resolve("GetPlugInEnter"));
  const auto exit = reinterpret_cast<PlugInVoidFunction>(library.resolve("GetPlugInExit"));
  const auto finalize = reinterpret_cast<PlugInVoidFunction>(library.resolve("Finalize"));
  if (!initialize || !name || !version || !enter || !exit || !finalize) {
    problems_.append(QStringLiteral("“%1”不是插件：缺少入口函数。").arg(file));
    return;
  }
  if (!initialize(&host_, kSdkVersion)) {
    problems_.append(QStringLiteral("插件“%1”拒绝启动：它不适用于本终端的接口版本 %2。").arg(file).arg(kSdkVersion));
    return;
  }
  // From here on the plug-in counts as loaded, so that it is ended in order even when entering it fails.
  plugins_.push_back({QString::fromUtf8(name()), QString::fromUtf8(version()), exit, finalize});
  enter();
}

void PluginLoader::EndAll() {
  while (!plugins_.empty()) {
    const LoadedPlugin plugin = plugins_.back();
    plugins_.pop_back();
    for (const PlugInVoidFunction step : {plugin.exit, plugin.finalize}) {
      try {
        step();
      } catch (const std::exception& error) {
        host_.Debug().WriteLog(
            QStringLiteral("插件“%1”结束时出错：%2").arg(plugin.name, QString::fromUtf8(error.what())));
      }
    }
  }
}

}  // namespace holdwise
