// SPDX-License-Identifier: MIT
#pragma once
#include <QByteArray>
#include <QString>
#include <functional>
#include <memory>

namespace holdwise {

/// What became of one fetch; `code` is one of TDSBAsynDownFileRole::Code.
struct FetchResult {
  int code = 0;
  QByteArray content;
};

/// A fetch under way. Destroying it gives it up: its answer never comes. It may be destroyed inside its own answer.
class Fetch {
 public:
  virtual ~Fetch() = default;
};

/// Where remote files come from. User-interface thread.
class FileSource {
 public:
  virtual ~FileSource() = default;
  /// Starts to fetch a file and returns at once. `path` is relative with "/" and has passed MapRemoteName. `done` comes
  /// exactly once, on the user-interface thread and never inside Start, unless the fetch is destroyed first.
  [[nodiscard]] virtual std::unique_ptr<Fetch> Start(const QString& path, bool mayCompress,
                                                     std::function<void(FetchResult)> done) = 0;
};

/// Relative path with "/" of a remote name with backslashes (or "/"); capital letters are kept. Empty when refused: an
/// empty name or part, an absolute path, a drive or stream (":"), "." or "..", control characters, lone surrogates.
[[nodiscard]] QString MapRemoteName(const QString& remoteName);

}  // namespace holdwise
