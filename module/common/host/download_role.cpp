// SPDX-License-Identifier: MIT
#include "common/host/download_role.h"

#include "common/host/host_access.h"

namespace holdwise {
namespace {

TDSBAsynDownFileRole::Settings QuietSettings(const QString& componentName) {
  TDSBAsynDownFileRole::Settings settings;
  settings.componentName = componentName;
  settings.downWaitStartTime = 500;
  settings.downWaitTimeOut = 20000;
  settings.downFailTips = false;
  settings.downWaitTips = false;
  settings.isCompress = true;
  return settings;
}

std::unique_ptr<TDSBAsynDownFileRole> MakeRole(const TDSBAsynDownFileRole::Settings& settings) {
  auto role = ModuleHost().MakeDownFileRole();
  role->Configure(settings);
  return role;
}

}  // namespace

std::unique_ptr<TDSBAsynDownFileRole> MakeFileDownload(const QString& name) {
  TDSBAsynDownFileRole::Settings settings = QuietSettings(name);
  settings.nameString = name;
  settings.communicationType = 0;
  settings.isStream = false;
  settings.localDirectoryType = 2;
  return MakeRole(settings);
}

std::unique_ptr<TDSBAsynDownFileRole> MakeStreamDownload(const QString& componentName) {
  TDSBAsynDownFileRole::Settings settings = QuietSettings(componentName);
  settings.isStream = true;
  settings.defaultPath = QStringLiteral("\\\\");
  return MakeRole(settings);
}

ResultSet ReadReceived(const TDSBAsynDownFileRole& role, const QString& fileName, const QByteArray& stream, int mode,
                       const PacketLimits& limits) {
  return mode == 1 ? DecodePacket(stream, limits) : ReadPacketFile(role.LocalPath(fileName), limits);
}

}  // namespace holdwise
