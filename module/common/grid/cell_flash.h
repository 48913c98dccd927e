// SPDX-License-Identifier: MIT
#pragma once
#include <QElapsedTimer>
#include <QTimer>
#include <chrono>
#include <functional>
#include <map>
#include <utility>

namespace holdwise {

/// Which cells of a grid are lit for a moment because their figures have just risen or fallen. User-interface thread.
class CellFlash {
 public:
  static constexpr std::chrono::milliseconds kLength{600};

  CellFlash();
  CellFlash(const CellFlash&) = delete;
  CellFlash& operator=(const CellFlash&) = delete;

  /// Lights a cell, anew when it is lit already. `sign`: above 0 for a rise, below for a fall.
  void Light(int column, int row, int sign);
  /// A cell that is lit no longer stands for that figure.
  void PutOut(int column, int row) { lit_.erase({column, row}); }
  void PutOutAll() { lit_.clear(); }
  /// What Light was given; 0 for a cell that is not lit.
  [[nodiscard]] int SignOf(int column, int row) const;
  /// The time of a cell is over: it has to be drawn again.
  std::function<void(int column, int row)> OnOver;

 private:
  struct Lit {
    int sign = 0;
    qint64 end = 0;  ///< on clock_
  };
  void TakeAwayOld();

  std::map<std::pair<int, int>, Lit> lit_;  ///< by column and row
  QElapsedTimer clock_;
  QTimer timer_;
};

}  // namespace holdwise
