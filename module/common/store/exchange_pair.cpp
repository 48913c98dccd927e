// SPDX-License-Identifier: MIT
#include "exchange_pair.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUuid>
#include <algorithm>

#include "common/host/host_access.h"
#include "common/store/statements.h"
#include "holdwise/packet/atomic_file.h"
#include "holdwise/packet/error.h"
#include "holdwise/packet/packet_file.h"

namespace holdwise::exchange {
namespace {

const QString kDetail = QStringLiteral("TZZHDetail.dat");
const QString kMerge = QStringLiteral("TZZHMerge.dat");
const QString kOwner = QStringLiteral("TZZHOwner.txt");
const QString kKept = QStringLiteral(".kept");
const QString kBad = QStringLiteral(".bad");

QString InFolder(const QString& name) {
  return ModuleHost().SysWorkDataPath() + name;
}

/// A file of a pair that is still being replaced.
QString NewName(const QString& path) {
  return path + QStringLiteral(".new");
}

bool IsThere(const QString& path) {
  const QFileInfo info(path);
  return info.isSymLink() || (info.exists() && !info.isDir());
}

/// Puts the new pair in the place of the old one. The detail file goes first, so a new merge file that stands alone
/// means that the pair was complete and only its second half is not in place yet.
void PlaceNewPair() {
  RenameFileAtomically(NewName(DetailPath()), DetailPath(), Durability::Lasting);
  RenameFileAtomically(NewName(MergePath()), MergePath(), Durability::Lasting);
}

void WriteNewPair(const ResultSet& holdings, const ResultSet& portfolios) {
  WritePacketFile(NewName(DetailPath()), holdings, Durability::Lasting);
  try {
    WritePacketFile(NewName(MergePath()), portfolios, Durability::Lasting);
  } catch (...) {
    // The merge file first: left alone it would pass for the second half of a complete pair.
    QFile::remove(NewName(MergePath()));
    if (!IsThere(NewName(MergePath()))) QFile::remove(NewName(DetailPath()));
    throw;
  }
}

QString DatedName(const QString& path, const QString& time, const QString& ending) {
  return path + QLatin1Char('.') + time + ending;
}

/// A time that no kept file has yet.
QString FreeTime(const QString& ending) {
  return FreeTimeText(ModuleHost().Clock().Now(), [&ending](const QString& time) {
    return IsThere(DatedName(DetailPath(), time, ending)) || IsThere(DatedName(MergePath(), time, ending));
  });
}

void RemoveOldest(const QString& name, const QString& ending) {
  constexpr qsizetype kMostKept = 10;
  QDir folder(ModuleHost().SysWorkDataPath());
  const QStringList files = folder.entryList({name + QStringLiteral(".*") + ending}, QDir::Files, QDir::Name);
  for (qsizetype oldest = 0; oldest < files.size() - kMostKept; ++oldest) folder.remove(files[oldest]);
}

void RemoveOldest(const QString& ending) {
  for (const QString& name : {kDetail, kMerge}) RemoveOldest(name, ending);
}

/// Relative inside the work-data folder, so that it stays true when that is copied or moved.
QString PlaceIn(const QString& path) {
  const QString folder = QDir(ModuleHost().SysWorkDataPath()).canonicalPath() + QLatin1Char('/');
  const QString whole = QFileInfo(path).canonicalFilePath();
  return whole.startsWith(folder) ? whole.mid(folder.size()) : path;
}

}  // namespace

QString DetailPath() {
  return InFolder(kDetail);
}

QString MergePath() {
  return InFolder(kMerge);
}

bool HasAny() {
  return IsThere(DetailPath()) || IsThere(MergePath());
}

void RequireBoth() {
  for (const QString& path : {DetailPath(), MergePath()}) {
    if (!IsThere(path)) throw Error(ErrorCategory::NotFound, (path + QStringLiteral("：文件不存在")).toStdString());
  }
}

void FinishInterruptedSave() {
  const bool hasDetail = IsThere(NewName(DetailPath()));
  const bool hasMerge = IsThere(NewName(MergePath()));
  if (hasDetail && hasMerge) {
    PlaceNewPair();
  } else if (hasMerge) {
    RenameFileAtomically(NewName(MergePath()), MergePath(), Durability::Lasting);
  } else if (hasDetail) {
    QFile::remove(NewName(DetailPath()));
  }
}

QString Replace(const ResultSet& holdings, const ResultSet& portfolios, bool keepsEarlier) {
  QString time;
  if (keepsEarlier && HasAny()) {
    // Before the new pair is written: once that is complete, an interruption puts it in place.
    time = FreeTime(kKept);
    for (const QString& path : {DetailPath(), MergePath()}) {
      if (IsThere(path)) AddFileName(path, DatedName(path, time, kKept));
    }
    FlushFolder(ModuleHost().SysWorkDataPath());
  }
  try {
    WriteNewPair(holdings, portfolios);
  } catch (...) {
    for (const QString& path : {DetailPath(), MergePath()}) QFile::remove(DatedName(path, time, kKept));
    throw;
  }
  PlaceNewPair();
  if (!time.isEmpty()) RemoveOldest(kKept);
  return time;
}

QString SetAside() {
  QString time = FreeTime(kBad);
  for (const QString& path : {DetailPath(), MergePath()}) {
    if (IsThere(path)) RenameFileAtomically(path, DatedName(path, time, kBad), Durability::Lasting);
  }
  RemoveOldest(kBad);
  return time;
}

Identity IdentityOf(DatabaseStatements& database) {
  if (database.Count(sql::kCountIdentityTables) != 1) return {};
  const ResultSet rows = database.Query(sql::kIdentity);
  if (rows.IsEmpty()) return {};
  return {rows.TextAt(0, rows.Column("ID")), PlaceIn(rows.TextAt(0, rows.Column("PLACE")))};
}

Identity OwnerOfPair() {
  QFile file(InFolder(kOwner));
  if (!file.open(QIODevice::ReadOnly)) {
    if (!IsThere(file.fileName())) return {};
    throw Error(ErrorCategory::Io, QStringLiteral("%1：%2").arg(file.fileName(), file.errorString()).toStdString());
  }
  constexpr qint64 kLongest = 8192;
  const QStringList lines = QString::fromUtf8(file.read(kLongest)).split(QLatin1Char('\n'));
  // What was not written here says nothing.
  if (QUuid::fromString(lines.value(0)).isNull() || lines.size() < 2) return {};
  return {lines[0], lines[1]};
}

void NoteOwner(const Identity& database) {
  const Identity noted = OwnerOfPair();
  if (!database.IsKnown() || (noted.id == database.id && noted.place == database.place)) return;
  const QString text = database.id + QLatin1Char('\n') + database.place + QLatin1Char('\n');
  WriteFileAtomically(InFolder(kOwner), text.toUtf8(), Durability::Lasting);
}

bool IsOfAnother(const Identity& owner, const Identity& database) {
  if (!owner.IsKnown() || !database.IsKnown() || owner.place == database.place) return false;
  if (owner.id != database.id) return true;
  return QFileInfo(QDir(ModuleHost().SysWorkDataPath()), owner.place).isFile();
}

}  // namespace holdwise::exchange
