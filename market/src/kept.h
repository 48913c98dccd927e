// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <map>
#include <memory>
#include <utility>

namespace holdwise {

/// What was made of files, by their paths, with all that each was made of. Reading alone is thread-safe.
template <typename Source, typename Made>
class Kept {
 public:
  /// What was made of just this; null when nothing was.
  [[nodiscard]] std::shared_ptr<const Made> Find(const QString& path, const Source& source) const {
    const auto found = made_.find(path);
    return found != made_.end() && found->second.first == source ? found->second.second : nullptr;
  }
  void Add(const QString& path, Source source, std::shared_ptr<const Made> made) {
    made_.insert_or_assign(path, std::pair(std::move(source), std::move(made)));
  }

 private:
  std::map<QString, std::pair<Source, std::shared_ptr<const Made>>> made_;
};

}  // namespace holdwise
