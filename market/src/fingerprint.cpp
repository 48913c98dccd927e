// SPDX-License-Identifier: MIT
#include "fingerprint.h"

#include <QCryptographicHash>
#include <span>

namespace holdwise {

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

QString FingerprintOf(const std::map<QString, QByteArray>& digests) {
  QCryptographicHash hash(QCryptographicHash::Sha256);
  for (const auto& [name, digest] : digests) hash.addData(name.toUtf8() + '\0' + digest);
  return QString::fromLatin1(hash.result().toHex());
}

}  // namespace holdwise
