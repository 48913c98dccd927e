// SPDX-License-Identifier: MIT
#include "common/frames/frame_part.h"

namespace holdwise {

bool FramePart::SelectPortfolio(const QString& /*portfolioId*/) {
  return false;
}

}  // namespace holdwise
