// SPDX-License-Identifier: MIT
#pragma once
#include <QByteArray>
#include <QString>
#include <map>
#include <vector>

#include "holdwise/packet/packet_file.h"

namespace holdwise {

/// A file of what the plug-in stores in its database.
struct BaseFile {
  BaseFile() = default;
  /// `fileLimits` must live longer.
  BaseFile(QString fileName, ResultSet rows, const PacketLimits& fileLimits);

  QString name;  ///< inside the data folder
  ResultSet table;
  QByteArray digest;  ///< of the columns' names and types and of the values; null counts as 0 or an empty text
  const PacketLimits* limits = nullptr;
};

/// All of them. Each names the edition, which only all together tell, so they are written when all are there.
class BaseFiles {
 public:
  void Add(BaseFile file);
  /// The fingerprint of what has been added, in whatever order.
  [[nodiscard]] QString Edition() const;
  /// Writes them into a folder that has their folders, and lets go of their tables. Once. Throws what writing throws.
  void Write(const QString& folder, unsigned threads);

 private:
  std::vector<BaseFile> files_;
  std::map<QString, QByteArray> digests_;  // by name
};

}  // namespace holdwise
