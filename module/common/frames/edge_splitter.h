// SPDX-License-Identifier: MIT
#pragma once
#include <QSplitter>

namespace holdwise {

class FramePart;

/// Two parts, one above the other, that touch: the edge between them is no pixel high, but can be grabbed anywhere in
/// what the upper part leaves blank at its bottom, where the mouse also finds a bar that says so. User-interface thread
/// only.
class EdgeSplitter : public QSplitter {
 public:
  EdgeSplitter(FramePart& upper, FramePart& lower, QWidget* parent);

 protected:
  QSplitterHandle* createHandle() override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void FitGrip();

  FramePart& upper_;
};

}  // namespace holdwise
