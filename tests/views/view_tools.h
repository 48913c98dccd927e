// SPDX-License-Identifier: MIT
#pragma once
#include <QLabel>
#include <QLineEdit>
#include <QTest>

#include "common/grid/string_grid.h"

/// What the tests of several views do to their parts.
namespace holdwise::test {

/// Replaces what stands in an entry, key by key.
inline void Retype(QLineEdit& entry, const QString& text) {
  entry.setFocus();
  entry.selectAll();
  QTest::keyClick(&entry, Qt::Key_Backspace);
  QTest::keyClicks(&entry, text);
}

/// What stands in the middle of an empty grid.
inline QString EmptyText(const TStringGrid& grid) {
  for (const QLabel* label : grid.viewport()->findChildren<QLabel*>())
    if (label->isVisible()) return label->text();
  return {};
}

}  // namespace holdwise::test
