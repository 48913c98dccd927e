// SPDX-License-Identifier: MIT
#include "work_file.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "holdwise/packet/packet_file.h"
#include "holdwise/sdk/download.h"

namespace holdwise {
namespace {

using Code = TDSBAsynDownFileRole::Code;

constexpr QFileDevice::Permissions kOwnerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;

/// Makes one folder of the way, or checks that the one there does not lead out of the work folder.
int EnterFolder(const QString& root, const QString& folder) {
  const QFileInfo info(folder);
  if (!info.exists() && !info.isSymLink()) {
    if (QDir().mkdir(folder)) {
      QFile::setPermissions(folder, kOwnerOnly | QFileDevice::ExeOwner);
      return Code::kOk;
    }
    // Another download may have made it meanwhile.
    if (!QFileInfo(folder).isDir()) return Code::kUnwritable;
  }
  const QFileInfo found(folder);
  const QString real = found.canonicalFilePath();
  if (real.isEmpty() || !(real + QLatin1Char('/')).startsWith(root + QLatin1Char('/'))) return Code::kRefused;
  return found.isDir() ? Code::kOk : Code::kUnwritable;
}

}  // namespace

int StoreWorkFile(const QString& workFolder, const QString& path, const QByteArray& content) {
  const QString root = QFileInfo(workFolder).canonicalFilePath();
  if (root.isEmpty()) return Code::kUnwritable;
  QStringList parts = path.split(QLatin1Char('/'));
  const QString name = parts.takeLast();
  QString folder = root;
  for (const QString& part : parts) {
    folder += QLatin1Char('/') + part;
    if (const int code = EnterFolder(root, folder); code != Code::kOk) return code;
  }
  const QString target = folder + QLatin1Char('/') + name;
  const QFileInfo info(target);
  if (info.isSymLink()) return Code::kRefused;  // nothing of ours is a link: somebody points elsewhere
  if (info.exists() && !info.isFile()) return Code::kUnwritable;
  try {
    WriteFileAtomically(target, content, Durability::Replaceable);
  } catch (const Error&) {
    return Code::kUnwritable;
  }
  return QFile::setPermissions(target, kOwnerOnly) ? Code::kOk : Code::kUnwritable;
}

}  // namespace holdwise
