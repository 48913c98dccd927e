// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <QWidget>
#include <functional>

class QLabel;

namespace holdwise {

class EntryField;

/// A box above a long list: what is typed into it leaves those rows of the list whose names contain it, in any case of
/// letters. Escape empties it. User-interface thread only.
class ListFilter : public QWidget {
  Q_OBJECT
 public:
  static constexpr int kHeight = 30;     ///< pixels
  static constexpr int kLeastRows = 20;  ///< of a list for which it is worth its place

  ListFilter(const QString& unit, QWidget* parent);

  /// The text changed.
  std::function<void()> OnChange;
  /// The user has found what was looked for (Enter, the down key), or gives it up (Escape): the keys go to the list.
  std::function<void()> OnLeave;

  [[nodiscard]] EntryField& Entry() const { return *entry_; }
  [[nodiscard]] QString Text() const;
  /// Does the name belong to what is typed? Every name does to an empty text.
  [[nodiscard]] bool Admits(const QString& name) const;
  void Clear();
  /// Says how many of the list's rows are shown; nothing while all of them are.
  void SetCounts(int shown, int all);
  void ApplyTheme();

 private:
  EntryField* entry_;
  QLabel* counts_;
};

}  // namespace holdwise
