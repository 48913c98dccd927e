// SPDX-License-Identifier: MIT
#include "files/local_folder_source.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include "background.h"
#include "holdwise/sdk/download.h"

namespace holdwise {
namespace {

using Code = TDSBAsynDownFileRole::Code;

constexpr int kLongestWaitAtEnd = 500;  // ms

FetchResult ReadInside(const QString& folder, const QString& path, qint64 maxBytes) {
  const QString root = QFileInfo(folder).canonicalFilePath();
  if (root.isEmpty()) return {Code::kNotFound, {}};
  const QString full = QFileInfo(QDir(root).filePath(path)).canonicalFilePath();  // links resolved; empty when missing
  if (full.isEmpty()) return {Code::kNotFound, {}};
  if (!full.startsWith(root + QLatin1Char('/'))) return {Code::kRefused, {}};
  if (!QFileInfo(full).isFile()) return {Code::kUnreadable, {}};
  QFile file(full);
  if (!file.open(QIODevice::ReadOnly) || file.size() > maxBytes) return {Code::kUnreadable, {}};
  QByteArray content = file.read(maxBytes + 1);  // a file that grows meanwhile stays within the limit too
  if (file.error() != QFileDevice::NoError || content.size() > maxBytes) return {Code::kUnreadable, {}};
  return {Code::kOk, std::move(content)};
}

class LocalFetch final : public Fetch {
 public:
  LocalFetch(QThreadPool& pool, std::function<FetchResult()> read, std::function<void(FetchResult)> done)
      : work_(pool, std::move(read), std::move(done)) {}

 private:
  BackgroundWork<FetchResult> work_;
};

}  // namespace

LocalFolderSource::LocalFolderSource(const QString& folder, qint64 maxBytes)
    : folder_(folder), maxBytes_(maxBytes), pool_(std::make_unique<QThreadPool>()) {}

LocalFolderSource::~LocalFolderSource() {
  pool_->clear();
  // A pool cannot be destroyed while a thread of its works, and the system may never let that thread go.
  if (!pool_->waitForDone(kLongestWaitAtEnd)) (void)pool_.release();
}

std::unique_ptr<Fetch> LocalFolderSource::Start(const QString& path, bool /*mayCompress*/,
                                                std::function<void(FetchResult)> done) {
  return std::make_unique<LocalFetch>(
      *pool_, [folder = folder_, path, limit = maxBytes_] { return ReadInside(folder, path, limit); }, std::move(done));
}

}  // namespace holdwise
