// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <QStringList>
#include <QWidget>
#include <vector>

class QLabel;

namespace holdwise {

/// A sum under a grid.
struct Total {
  QString text;
  bool isSigned = false;  ///< a rise or a fall
  QString remark = {};  ///< what has to be known of it, as of a cell of the grid: a mark, and the text under the mouse

  bool operator==(const Total&) const = default;
};

/// A strip below a grid with sums of what stands above it, each with its title. It is no row: nothing selects, copies
/// or exports it. User-interface thread only.
class TotalsStrip : public QWidget {
  Q_OBJECT
 public:
  static constexpr int kHeight = 26;  ///< pixels

  TotalsStrip(const QStringList& titles, QWidget* parent);

  /// One for each title, in their order; none empties the strip.
  void Show(const std::vector<Total>& totals);
  /// What is summed, before the sums.
  void SetCaption(const QString& caption);
  /// The sums as they are drawn.
  [[nodiscard]] QStringList Texts() const;
  void ApplyTheme();

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  struct Place {
    QLabel* title;
    QLabel* value;
  };
  void Fill();

  QLabel* caption_;
  std::vector<Place> places_;
  std::vector<Total> totals_;
};

}  // namespace holdwise
