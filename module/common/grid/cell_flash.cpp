// SPDX-License-Identifier: MIT
#include "cell_flash.h"

#include <algorithm>
#include <vector>

namespace holdwise {

CellFlash::CellFlash() {
  clock_.start();
  timer_.setSingleShot(true);
  timer_.setTimerType(Qt::PreciseTimer);
  QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { TakeAwayOld(); });
}

void CellFlash::Light(int column, int row, int sign) {
  lit_[{column, row}] = {sign, clock_.elapsed() + kLength.count()};
  if (!timer_.isActive()) timer_.start(kLength);
}

int CellFlash::SignOf(int column, int row) const {
  const auto found = lit_.find({column, row});
  return found == lit_.end() ? 0 : found->second.sign;
}

void CellFlash::TakeAwayOld() {
  const qint64 now = clock_.elapsed();
  std::vector<std::pair<int, int>> old;
  qint64 next = 0;
  for (const auto& [cell, lit] : lit_) {
    if (lit.end <= now)
      old.push_back(cell);
    else
      next = next == 0 ? lit.end : std::min(next, lit.end);
  }
  for (const auto& [column, row] : old) {
    PutOut(column, row);
    if (OnOver) OnOver(column, row);
  }
  if (next > 0) timer_.start(std::chrono::milliseconds(next - now));
}

}  // namespace holdwise
