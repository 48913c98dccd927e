// SPDX-License-Identifier: MIT
#pragma once
#include <QThreadPool>
#include <memory>

#include "files/file_source.h"

namespace holdwise {

/// Files of a folder on this machine, read on worker threads. Files reached through a link that leaves the folder are
/// refused; anything but a regular file, and one above the limit, is unreadable.
class LocalFolderSource final : public FileSource {
 public:
  explicit LocalFolderSource(const QString& folder, qint64 maxBytes = 256LL << 20);
  /// Waits a moment for reads under way; one that hangs (a network folder that does not answer) is left behind.
  ~LocalFolderSource() override;
  [[nodiscard]] std::unique_ptr<Fetch> Start(const QString& path, bool mayCompress,
                                             std::function<void(FetchResult)> done) override;

 private:
  QString folder_;
  qint64 maxBytes_;
  std::unique_ptr<QThreadPool> pool_;
};

}  // namespace holdwise
