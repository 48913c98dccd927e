// SPDX-License-Identifier: MIT
#include "base_files.h"

#include <utility>

#include "fingerprint.h"
#include "holdwise/market/reference_tables.h"
#include "parallel_for.h"

namespace holdwise {
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
  return FingerprintOf(digests_);
}

void BaseFiles::Write(const QString& folder, const QString& edition, unsigned threads) const {
  ParallelFor(files_.size(), threads, [&](std::size_t i) {
    const BaseFile& file = files_[i];
    ResultSet table = file.make();
    NameEdition(table, edition);
    WritePacketFile(folder + u'/' + file.name, table, Durability::Replaceable, *file.limits);
  });
}

}  // namespace holdwise
