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

QStringList TempDatabase::Lines(const QString& query, QChar separator, const QString& null) {
  const ResultSet rows = Service().Query(query);
  QStringList lines;
  for (int row = 0; row < rows.RowCount(); ++row) {
    QStringList cells;
    for (int column = 0; column < rows.ColumnCount(); ++column)
      cells << (rows.IsNull(row, column) ? null : rows.TextAt(row, column));
    lines << cells.join(separator);
  }
  return lines;
}

}  // namespace holdwise::test
