// SPDX-License-Identifier: MIT
#pragma once
#include <QObject>
#include <set>

class QSettings;
class QSplitter;

namespace holdwise {

/// Remembers where the user has dragged the splitters of the application to, those that have an object name. User
/// interface thread.
class SplitterMemory : public QObject {
 public:
  /// From now on a splitter that is shown gets its remembered place. The settings outlive the memory.
  explicit SplitterMemory(QSettings& settings);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Restore(QSplitter& splitter) const;
  void Follow(QSplitter& splitter);

  QSettings& settings_;
  std::set<QObject*> followed_;
};

}  // namespace holdwise
