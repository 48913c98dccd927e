// SPDX-License-Identifier: MIT
#pragma once
#include <QApplication>
#include <QContextMenuEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
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

/// Opens a grid's context menu with the right button there, in pixels of its viewport; null when none opens.
inline QMenu* OpenMenu(TStringGrid& grid, const QPoint& at = {5, 5}) {
  QContextMenuEvent open(QContextMenuEvent::Mouse, at, grid.viewport()->mapToGlobal(at));
  QApplication::sendEvent(grid.viewport(), &open);
  return grid.findChild<QMenu*>();
}

/// What stands in the middle of an empty grid.
inline QString EmptyText(const TStringGrid& grid) {
  for (const QLabel* label : grid.viewport()->findChildren<QLabel*>())
    if (label->isVisible()) return label->text();
  return {};
}

}  // namespace holdwise::test
