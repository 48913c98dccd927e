// SPDX-License-Identifier: MIT
#pragma once
#include <functional>

#include "common/frames/frame_part.h"

class QPushButton;

namespace holdwise {

class EntryBar;
class EntryField;
class HoldingsEditor;
class StockPicker;

/// The upper band of the portfolio editor: the name and the confirm button above, below them the stocks to pick from
/// and the portfolio being built. User-interface thread only.
class EditorBand : public FramePart {
 public:
  static constexpr int kHeight = 270;  ///< pixels

  explicit EditorBand(QWidget* parent);

  EntryField* RzEdit1;  ///< the name, at most 40 characters
  QPushButton* btnOK;
  HoldingsEditor* Holdings;
  StockPicker* Picker;

  /// The confirm button, or Ctrl+Enter anywhere in the band.
  std::function<void()> OnConfirm;

  /// The keyboard goes to the name, and stays there: the host's quick entry does not take it.
  void FocusName();
  /// Widgets in the order in which Tab visits them.
  [[nodiscard]] std::vector<QWidget*> TabOrder() const;

  void ApplyTheme() override;
  void Fit() override;

 private:
  bool RzEdit1KeyPress(QChar key);
  void Confirm();

  EntryBar* bar_;
};

}  // namespace holdwise
