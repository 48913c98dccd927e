// SPDX-License-Identifier: MIT
#pragma once
#include <memory>

#include "common/frames/view_frame.h"

class QComboBox;
class QLabel;

namespace holdwise {

class EntryBar;
class EntryField;
class HoldingsPanel;
class PortfolioList;
struct GridCell;

namespace stress {
struct SharedProfit;
struct Scenario;
}  // namespace stress

/// "压力测试": what an assumed move of a reference index does to every saved portfolio and to the holdings of the
/// selected one. The figures are those of the expected-value object as the last accepted move left them; choosing
/// another index shows nothing new until a move is applied. A failing statement throws out of the handlers.
class TFrm_YLCS : public TViewFrame {
 public:
  /// Opens with a move of 0. The shared objects must exist and live longer.
  explicit TFrm_YLCS(QWidget* parent = nullptr);
  ~TFrm_YLCS() override;

  /// Goes back to a move of 0, unless one has been typed: then it shows what is in force. Applying keeps the typed one
  /// typed.
  void DoInit_() override;
  /// "ComboBox11": the index ("1", "399001" or "399300"); setting it applies a move of 0. "Edit1": the move in percent.
  [[nodiscard]] std::vector<ViewCatalogue::Input> Inputs() const override;
  QString SetInput(const QString& name, const QString& value) override;
  /// What is chosen or typed then counts as typed: the move in force stays.
  QString PutInput(const QString& name, const QString& value) override;
  [[nodiscard]] ViewNotice Notice() const override;

 private:
  void InitAppear();
  void ComboBox11Change(int place);
  /// Apply.
  void Label3Click();
  /// Reset.
  void Label4Click();
  bool Edit1KeyPress(QChar key);
  void ReflashData();
  void ShowHoldings(int row);

  /// Sets the move and notes in failure_ why it could not be computed.
  void Compute(double move);
  /// Computes the entry's move and shows it. @return what to tell the user when nothing is shown; bound_ says more
  QString Apply();
  /// After a refused move: the one before it, into the entry too. The grids stay.
  void TakeBack();
  void TableCame();
  /// Which security bounds moves like that one; empty for none.
  [[nodiscard]] static QString BoundTextOf(double move);
  void NoteSharedProfits();
  /// Hint for a cell of the holdings.
  [[nodiscard]] QString HintOf(const GridCell& cell) const;

  EntryBar* bar_;
  EntryField* Edit1 = nullptr;
  QComboBox* ComboBox11 = nullptr;
  QComboBox* ComboBox1 = nullptr;
  QLabel* shown_ = nullptr;  ///< which scenario the grids show
  PortfolioList* list_;
  HoldingsPanel* holdings_;
  std::unique_ptr<stress::Scenario> scenario_;  ///< what the grids show
  std::vector<stress::SharedProfit> sharedProfits_;
  bool isEdited_ = false;
  QString failure_;    ///< why the last computation of this view did not reach its end; empty when it did
  QString takenBack_;  ///< which move a risk file that came late has refused; empty once another is applied
  QString bound_;      ///< which security refused the move that was applied last; empty when none did
};

}  // namespace holdwise
