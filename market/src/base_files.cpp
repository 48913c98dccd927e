// SPDX-License-Identifier: MIT
#include "base_files.h"

#include <QCryptographicHash>
#include <span>
#include <utility>

#include "holdwise/market/reference_tables.h"
#include "parallel_for.h"

namespace holdwise {
namespace {

QByteArray DigestOf(const ResultSet& table) {
  QCryptographicHash hash(QCryptographicHash::Blake2b_256);
  const auto add = [&hash](const auto& numbers) {
    const auto bytes = std::as_bytes(std::span(numbers));
    hash.addData(QByteArrayView(bytes.data(), static_cast<qsizetype>(bytes.size())));
  };
  for (int column = 0; column < table.ColumnCount(); ++column) {
    const ColumnType type = table.TypeOf(column);
    hash.addData(QByteArray::fromStdString(table.ColumnName(column)) + '\0' +
                 QByteArray::number(static_cast<int>(type)));
    if (type == ColumnType::Real) {
      add(table.Reals(column));
    } else if (type != ColumnType::Text) {
      add(table.Integers(column));
    } else {
      for (int row = 0; row < table.RowCount(); ++row)
        hash.addData(QByteArray::fromStdString(table.Utf8At(row, column)) + '\0');
    }
  }
  return hash.result();
}

}  // namespace

BaseFile::BaseFile(QString fileName, std::function<ResultSet()> makeTable, const PacketLimits& fileLimits)
    : name(std::move(fileName)), make(std::move(makeTable)), limits(&fileLimits) {
  const ResultSet table = make();
  digest = DigestOf(table);
  rows = table.RowCount();
}

void BaseFiles::Add(BaseFile file) {
  digests_.emplace(file.name, file.digest);
  files_.push_back(std::move(file));
}

QString BaseFiles::Edition() const {
  QCryptographicHash hash(QCryptographicHash::Sha256);
  for (const auto& [name, digest] : digests_) hash.addData(name.toUtf8() + '\0' + digest);
  return QString::fromLatin1(hash.result().toHex());
}

void BaseFiles::Write(const QString& folder, const QString& edition, unsigned threads) {
  ParallelFor(files_.size(), threads, [&](std::size_t i) {
    BaseFile& file = files_[i];
    ResultSet table = file.make();
    file.make = nullptr;
    NameEdition(table, edition);
    WritePacketFile(folder + u'/' + file.name, table, Durability::Replaceable, *file.limits);
  });
}

}  // namespace holdwise
