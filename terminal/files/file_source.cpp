// SPDX-License-Identifier: MIT
#include "files/file_source.h"

#include <QStringList>
#include <algorithm>

namespace holdwise {
namespace {

bool IsForbidden(QChar c) {
  return c.unicode() < 0x20 || c.unicode() == 0x7f || c == u':';
}

}  // namespace

QString MapRemoteName(const QString& remoteName) {
  if (!remoteName.isValidUtf16() || std::any_of(remoteName.begin(), remoteName.end(), IsForbidden)) return {};
  QString path = remoteName;
  path.replace(u'\\', u'/');
  for (const QString& part : path.split(u'/')) {  // an absolute path begins with an empty part
    if (part.isEmpty() || part == QLatin1String(".") || part == QLatin1String("..")) return {};
  }
  return path;
}

}  // namespace holdwise
