// SPDX-License-Identifier: MIT
#pragma once
#include <cstdint>
#include <memory>

#include "common/frames/view_frame.h"

namespace holdwise {

class EditorBand;
class PortfolioBand;

namespace editor {
class Deletion;
enum class TitleMode;
struct PortfolioDraft;
}  // namespace editor

/// "自选配置": above, a portfolio is named, picked together and confirmed; below, those that are not saved yet, with
/// what the selected one holds. A failing statement that no routine here answers throws out of the handlers.
class TFrm_ZXPZ : public TViewFrame {
 public:
  /// The shared objects must exist and live longer.
  explicit TFrm_ZXPZ(QWidget* parent = nullptr);
  ~TFrm_ZXPZ() override;

  /// Reads the list again; what is being edited stays.
  void DoInit_() override;
  void FrameResize() override;
  /// The portfolio above, from its first character or stock on.
  [[nodiscard]] QString Unstored() const override;

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  void InitAppear();
  void SetLabelCaption(editor::TitleMode mode);
  void ReflashData();
  void UpdateGrid_();
  void ClearAppear_();

  /// Confirm.
  void Label1Click();
  /// Says what is wrong with the name and gives it the focus; false when something is.
  bool IsNameFit(const QString& name);
  /// Stores the draft. @return the row of the list that it will have; -1 when nothing was stored
  int CreateFrom(const editor::PortfolioDraft& draft);
  int RewriteFrom(const editor::PortfolioDraft& draft);
  /// Asks whether two portfolios shall have the name; it gets the focus unless the user agrees.
  bool AgreesToShare(const QString& name);
  void ShowWritten(const QString& name, int row);

  void SavePortfolio(int row);
  void DeletePortfolio(int row);
  void ModifyPortfolio(int row);

  [[nodiscard]] bool IsModifying() const;
  void SetModifying(bool modifying);
  [[nodiscard]] QString NameIn(int row) const;

  EditorBand* editor_;
  PortfolioBand* portfolios_;
  std::int64_t currentId_ = 0;  ///< of the portfolio being modified
  int modifiedRow_ = 0;         ///< its row in the list
  /// While the user is asked. It ends with the view, before the portfolios are written out.
  std::unique_ptr<editor::Deletion> deletion_;
};

}  // namespace holdwise
