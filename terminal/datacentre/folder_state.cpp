// SPDX-License-Identifier: MIT
#include "folder_state.h"

#include <sys/stat.h>

#include <QDir>
#include <QFile>

namespace holdwise {
namespace {

/// Folders of a data folder lie three deep; whoever points us at a whole disk does not get it walked.
constexpr int kDeepest = 5;
constexpr int kMostFolders = 256;
constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;

}  // namespace

FileIdentity IdentityOf(const QString& path) {
  struct stat status = {};
  if (::stat(QFile::encodeName(path).constData(), &status) != 0) return {};
  return {status.st_dev, status.st_ino, status.st_size,
          status.st_mtim.tv_sec * kNanosecondsPerSecond + status.st_mtim.tv_nsec};
}

bool SubfolderState::Look() {
  const FileIdentity before = state_.identity;
  looked_ = 0;
  const bool isBelowChanged = LookAt(root_, state_, 0);
  return isBelowChanged || before.device != state_.identity.device || before.number != state_.identity.number;
}

bool SubfolderState::LookAt(const QString& path, Folder& folder, int depth) {
  if (++looked_ > kMostFolders) return false;
  const FileIdentity now = IdentityOf(path);
  bool isChanged = false;
  if (now != folder.identity) {
    folder.identity = now;
    isChanged = ListChildren(path, folder) || depth > 0;  // the root's own files come and go
  }
  if (depth == kDeepest) return isChanged;
  for (auto& [name, child] : folder.children) {
    if (LookAt(path + QLatin1Char('/') + name, child, depth + 1)) isChanged = true;
  }
  return isChanged;
}

/// True when there are other ones than before; what is known of those that stay is kept.
bool SubfolderState::ListChildren(const QString& path, Folder& folder) {
  std::map<QString, Folder> children;
  bool isChanged = false;
  for (const QString& name : QDir(path).entryList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks)) {
    const auto known = folder.children.find(name);
    isChanged = isChanged || known == folder.children.end();
    children[name] = known != folder.children.end() ? std::move(known->second) : Folder{};
  }
  isChanged = isChanged || children.size() != folder.children.size();
  folder.children = std::move(children);
  return isChanged;
}

}  // namespace holdwise
