// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <functional>
#include <vector>

#include "common/frames/frame_part.h"
#include "common/grid/grid_picks.h"
#include "common/grid/string_grid.h"
#include "views/zxpz/holding_row.h"

class QComboBox;
class QLabel;
class QPushButton;

namespace holdwise {

class EntryField;
class HoldingsEditor;
class StockKeypad;

/// Where the stocks of a portfolio are picked: the source, a list of its stocks, narrowed by the code field as digits
/// are typed and by the search field as any characters of a name or their initials are, a keypad for the code field,
/// and the button that adds the chosen stocks to the holdings. Stocks picked with Ctrl held are known by identity: they
/// stay picked while the list is narrowed, until they have been added. What an event throws goes to the debug log.
/// User-interface thread only.
class StockPicker : public FramePart {
 public:
  /// Places in the source's choice.
  enum Source : int { kOwnGroup, kAllShares };

  /// The holdings live longer. The list is empty until SelectSource.
  StockPicker(HoldingsEditor& holdings, QWidget* parent);

  QComboBox* RzComboBox1;
  TStringGrid* StringGrid2;
  EntryField* RzEdit3;
  StockKeypad* RzPanel7;  ///< hidden at first
  QPushButton* SpeedButton1;
  QPushButton* btnAdd;
  EntryField* Search;  ///< narrows by characters of the name, their pinyin initials, or the code

  /// Chooses a source and loads its stocks (RzComboBox1Change). Another place than the two changes nothing.
  void SelectSource(int place);
  /// Reads the stocks of the chosen source again, all of them shown that the code and search fields let through;
  /// forgets the picked ones and closes the holdings' edit box.
  void RzComboBox1Change();
  /// Makes the list's first shown row current, if there is one, and gives the list the focus.
  void FocusFirstVisible();
  /// Adds the picked stocks, shown or not, or, when none is picked, the selected rows that are shown. Messages say what
  /// was refused. Unless the limit ended it, no stock is picked afterwards.
  void Label4Click();
  void ForgetPicked() { picks_.Clear(); }

  /// Takes the keyboard from the host's quick entry, and gives it back: what every entry of the view does when it gets
  /// and loses the focus.
  static void RzEdit3Enter();
  static void RzEdit3Exit();

  /// Widgets in the order in which Tab visits them.
  [[nodiscard]] std::vector<QWidget*> TabOrder() const;

  [[nodiscard]] const RowPicks& PickedStocks() const noexcept { return picks_.Rows(); }

  void ApplyTheme() override;
  void Fit() override;

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  enum Column : int { kCode, kName, kColumns };

  [[nodiscard]] std::vector<QWidget*> Controls() const;
  void InitLayout();
  void InitList();
  void InitEntries();
  void InitButtons();
  void ShowStocks(const std::vector<HoldingRow>& stocks);
  void RzEdit3Change();
  void RzPanel11Click(const QString& caption);
  /// Enter in one of the fields.
  void AddFrom(EntryField& field);
  /// An arrow key in one of the fields.
  void WalkList(int key, Qt::KeyboardModifiers modifiers);
  /// The stocks of those rows from top to bottom, without price and quantity.
  [[nodiscard]] std::vector<HoldingRow> StocksIn(const std::function<bool(int row)>& isMeant) const;
  [[nodiscard]] std::vector<HoldingRow> Selected() const;
  /// False when the limit ended it or the view has gone while a message waited.
  bool Add(const std::vector<HoldingRow>& stocks);
  void PlaceKeypad();

  HoldingsEditor& holdings_;
  QLabel* sourceLabel_;
  GridPicks picks_;
  struct SearchForms {
    QString name;
    QStringList readings;
  };
  std::vector<SearchForms> searchForms_;  ///< one a row, from the first search on
};

}  // namespace holdwise
