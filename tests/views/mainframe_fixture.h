// SPDX-License-Identifier: MIT
#pragma once
#include <gtest/gtest.h>

#include <QLabel>

#include "view_bench.h"

namespace holdwise::test {

inline constexpr int kPerformance = 2001;
inline constexpr int kRisk = 2002;
inline constexpr int kSmartAllocation = 1001;

class MainFrame : public testing::Test {
 protected:
  void Open(int width = 1000) { bench.OpenMainFrame(width); }
  [[nodiscard]] QLabel* LabelWith(const QString& text) const {
    for (QLabel* label : bench.mainFrame->findChildren<QLabel*>()) {
      if (label->text() == text) return label;
    }
    return nullptr;
  }
  ViewBench bench;
};

}  // namespace holdwise::test
