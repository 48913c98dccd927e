// SPDX-License-Identifier: MIT
#pragma once
#include <QHash>
#include <QString>
#include <QStringView>
#include <memory>
#include <vector>

namespace holdwise {

/// Ordered lines name=value; names are compared exactly and are unique. A value type: a copy is cheap as long as only
/// values change afterwards. Not synchronised: share it between threads only as const. An index outside the list is a
/// list-index error, Error(Refused).
class TNameValueList {
 public:
  /// Replaces the value of an existing name in its place, or appends a line.
  void Set(const QString& name, const QString& value);
  void SetValueAt(int index, const QString& value);
  /// Empty when the name is absent.
  [[nodiscard]] QString ValueOf(QStringView name) const;
  [[nodiscard]] bool Has(QStringView name) const { return IndexOfName(name) >= 0; }
  /// -1 when absent.
  [[nodiscard]] int IndexOfName(QStringView name) const;
  [[nodiscard]] int Count() const noexcept { return static_cast<int>(lines_.size()); }
  [[nodiscard]] const QString& NameAt(int index) const;
  [[nodiscard]] const QString& ValueAt(int index) const;
  /// Later lines move up.
  void DeleteAt(int index);
  void Clear();
  void Reserve(int count);

 private:
  struct Line {
    QString name;
    QString value;
  };
  [[nodiscard]] const Line& LineAt(int index) const;

  std::vector<Line> lines_;
  QHash<QString, int> positions_;
};

/// A list as it stood when it was asked for; later changes make a new one.
using TNameValueSnapshot = std::shared_ptr<const TNameValueList>;

}  // namespace holdwise
