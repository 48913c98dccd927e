// SPDX-License-Identifier: MIT
#include "parts/place_watch.h"

#include <chrono>
#include <utility>

namespace holdwise {
namespace {

constexpr std::chrono::seconds kBetweenLooks{1};

/// Its contents may change, the thing itself may not.
bool IsSame(const FileIdentity& one, const FileIdentity& other) {
  return one.device == other.device && one.number == other.number;
}

}  // namespace

PlaceWatch::PlaceWatch(QString workFolder, QString database)
    : workFolder_(std::move(workFolder)), database_(std::move(database)) {
  QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { Look(); });
}

void PlaceWatch::Start() {
  folderAtStart_ = IdentityOf(workFolder_);
  fileAtStart_ = IdentityOf(database_);
  timer_.start(kBetweenLooks);
}

QString PlaceWatch::Missing() const {
  const QString advice = QStringLiteral(
      "请把它移回原处。移不回来的，请现在就把全部组合另存到别处，再退出终端；之后新做的修改不会被保存。");
  if (!IsSame(IdentityOf(workFolder_), folderAtStart_))
    return QStringLiteral("工作目录 %1 被删除或移走了，或者它所在的磁盘不在了。%2").arg(workFolder_, advice);
  if (fileAtStart_.Exists() && !IsSame(IdentityOf(database_), fileAtStart_))
    return QStringLiteral("数据库文件 %1 被删除或移走了。%2").arg(database_, advice);
  return {};
}

void PlaceWatch::Look() {
  const QString before = std::exchange(problem_, Missing());
  if (before == problem_) return;
  if (problem_.isEmpty()) {
    if (OnBack) OnBack();
  } else if (OnGone) {
    OnGone(problem_);
  }
}

}  // namespace holdwise
