// SPDX-License-Identifier: MIT
#pragma once
#include <QTimer>
#include <functional>

#include "calc/download_trigger.h"
#include "calc_fixture.h"

namespace holdwise {

class Trigger : public CalcDialog {
 protected:
  /// Runs once the dialog has asked for its files.
  void WhenShown(const std::function<void()>& action) {
    timer_.disconnect();  // what waited for a dialog that did not come waits no longer
    QObject::connect(&timer_, &QTimer::timeout, [this, action] {
      if (!frmCalc2 || RateDown()->Requests().empty()) return;
      timer_.stop();
      action();
    });
    timer_.start(1);
  }
  QTimer timer_;
};

}  // namespace holdwise
