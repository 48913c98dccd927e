// SPDX-License-Identifier: MIT
#pragma once
#include <QByteArray>
#include <QString>
#include <functional>
#include <map>
#include <vector>

#include "holdwise/packet/packet_file.h"

namespace holdwise {

/// A file of what the plug-in stores in its database. It keeps what its table is made of: the tables of all of them,
/// which wait for the last one, would be too much. Copies share it.
struct BaseFile {
  BaseFile() = default;
  /// `makeTable` gives the same table on every call, from any thread, and is cheap to copy; it is called here too.
  /// `fileLimits` must live longer.
  BaseFile(QString fileName, std::function<ResultSet()> makeTable, const PacketLimits& fileLimits);

  QString name;  ///< inside the data folder
  std::function<ResultSet()> make;
  QByteArray digest;  ///< of the table
  int rows = 0;
  const PacketLimits* limits = nullptr;
};

/// All of them. Each names the edition, which only all together tell, so they are written when all are there.
class BaseFiles {
 public:
  void Add(BaseFile file);
  /// The fingerprint of what has been added, in whatever order.
  [[nodiscard]] QString Edition() const;
  /// Writes them into a folder that has their folders. Throws what writing throws.
  /// @param edition that of all of them
  void Write(const QString& folder, const QString& edition, unsigned threads) const;

 private:
  std::vector<BaseFile> files_;
  std::map<QString, QByteArray> digests_;  // by name
};

}  // namespace holdwise
