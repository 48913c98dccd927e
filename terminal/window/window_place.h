// SPDX-License-Identifier: MIT
#pragma once
#include <QByteArray>

class QWidget;

namespace holdwise {

/// Puts a window, which is not shown yet, where QWidget::saveGeometry found it. Of a size that nobody can work in, or
/// larger than the screen, it keeps its own, in the middle of the screen. What is no geometry changes nothing.
void RestorePlace(QWidget& window, const QByteArray& saved);

}  // namespace holdwise
