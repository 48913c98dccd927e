// SPDX-License-Identifier: MIT
#include "process/settings_file.h"

#include <QFile>
#include <QSettings>
#include <QUtf8StringView>
#include <algorithm>

namespace holdwise {
namespace {

/// What QSettings writes is UTF-8, and every line is empty, a section or has a "=". It would take anything else, too,
/// and lose it.
bool IsSettingsText(const QByteArray& text) {
  if (!QUtf8StringView(text).isValidUtf8()) return false;
  for (const QByteArray& line : text.split('\n')) {
    const QByteArray trimmed = line.trimmed();
    const bool isPlain = std::all_of(trimmed.begin(), trimmed.end(),
                                     [](char one) { return one == '\t' || static_cast<unsigned char>(one) >= ' '; });
    const bool isLine =
        trimmed.isEmpty() || trimmed.startsWith('[') || trimmed.startsWith(';') || trimmed.contains('=');
    if (!isPlain || !isLine) return false;
  }
  return true;
}

/// Not readable, too large for settings, or what no settings file holds.
bool IsDamaged(const QString& path) {
  constexpr qint64 kMostBytes = 1 << 20;
  QFile file(path);
  if (!file.exists()) return false;
  return !file.open(QIODevice::ReadOnly) || file.size() > kMostBytes || !IsSettingsText(file.readAll()) ||
         QSettings(path, QSettings::IniFormat).status() != QSettings::NoError;
}

const QString kDataSetting = QStringLiteral("data");

}  // namespace

QString SettingsFileOf(const QString& workFolder) {
  return workFolder + QStringLiteral("/settings.ini");
}

void RememberDataFolder(QSettings& settings, const QString& folder) {
  settings.setValue(kDataSetting, folder);
}

QString RememberedDataFolder(const QSettings& settings) {
  return settings.value(kDataSetting).toString();
}

void CarrySettings(const QString& fromFolder, const QString& toFolder) {
  if (IsDamaged(SettingsFileOf(toFolder))) return;
  const QSettings from(SettingsFileOf(fromFolder), QSettings::IniFormat);
  QSettings to(SettingsFileOf(toFolder), QSettings::IniFormat);
  for (const QString& key : from.allKeys())
    if (key != kDataSetting) to.setValue(key, from.value(key));
}

QString SetAsideIfDamaged(const QString& path) {
  if (!IsDamaged(path)) return {};
  const QString kept = path + QStringLiteral(".damaged");
  QFile::remove(kept);
  const QString fate = QFile::rename(path, kept) ? QStringLiteral("它改名保留为“%1”").arg(kept)
                                                 : QStringLiteral("它也不能改名，这次的设置可能不会保存");
  return QStringLiteral("设置文件“%1”已损坏，没有采用，窗口按默认设置打开；%2。").arg(path, fate);
}

}  // namespace holdwise
