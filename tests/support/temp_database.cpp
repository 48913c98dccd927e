// SPDX-License-Identifier: MIT
#include "temp_database.h"

#include <QFile>
#include <stdexcept>

namespace holdwise::test {

namespace {

std::unique_ptr<FirebirdUserData> OpenFile(const QString& file) {
  return FirebirdUserData::Open(DatabaseTarget{file, {}, {}}, TempDatabase::LockFolder());
}

/// Made once a process and closed again, so that it can be copied.
QString TemplateFile() {
  static const QTemporaryDir kFolder;
  static const QString kFile = [] {
    QString file = kFolder.filePath(QStringLiteral("template.fdb"));
    OpenFile(file).reset();
    return file;
  }();
  return kFile;
}

}  // namespace

QString TempDatabase::LockFolder() {
  static const QTemporaryDir kFolder;
  return kFolder.path();
}

TempDatabase::TempDatabase(bool opened) {
  if (!QFile::copy(TemplateFile(), File())) throw std::runtime_error("cannot copy the database template");
  if (opened) Open();
}

TempDatabase::~TempDatabase() = default;

FirebirdUserData& TempDatabase::Open() {
  service_.reset();
  service_ = OpenFile(File());
  return *service_;
}

}  // namespace holdwise::test
