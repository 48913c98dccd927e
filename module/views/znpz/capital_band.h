// SPDX-License-Identifier: MIT
#pragma once
#include <functional>

#include "common/frames/frame_part.h"

class QPushButton;

namespace holdwise {

class CapitalSlider;
class EntryBar;
class EntryField;

/// The upper band of the smart allocation: the slider, and below it the entry of the capital with its button and a
/// quiet line about what the proposals are. User-interface thread only.
class CapitalBand : public FramePart {
 public:
  static constexpr int kHeight = 225;  ///< pixels

  explicit CapitalBand(QWidget* parent);

  EntryField* Edit1;  ///< the capital, in ten-thousands of yuan
  QPushButton* btnSetting;
  CapitalSlider* Slider;

  /// The button, or Enter in the entry.
  std::function<void()> OnConfigure;
  /// Number of stocks for a capital, in words; shown above the ramp while it is typed or dragged.
  std::function<QString(double capital)> OnCaption;

  void ApplyTheme() override;

 private:
  bool Edit1KeyPress(QChar key);
  void Configure();

  EntryBar* bar_;
};

}  // namespace holdwise
