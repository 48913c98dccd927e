// SPDX-License-Identifier: MIT
#pragma once
#include <QPoint>
#include <utility>
#include <vector>

#include "common/grid/string_grid.h"

namespace holdwise {

/// Makes the code and name texts of a holdings grid links to the host's page of that security. The grid outlives it;
/// its owner hands the grid's mouse events on.
class SecurityLinks {
 public:
  /// `columns`: places of the texts that are links; the first holds the code.
  SecurityLinks(TStringGrid& grid, std::vector<int> columns) : grid_(grid), columns_(std::move(columns)) {}

  /// Over the text itself the hand cursor shows; anywhere else the default cursor.
  void MouseMove(const QPoint& position);
  /// Opens the security of the row under the mouse when a link is there.
  void MouseDown(const QPoint& position);

 private:
  TStringGrid& grid_;
  std::vector<int> columns_;
  GridCell hovered_;
};

/// The host's name of a security; "已退市" when it has none.
[[nodiscard]] QString NameOrDelisted(const QString& code);

/// Makes a security the host's current one and has the host open its intraday chart once the present event is over.
void OpenSecurity(const QString& code);

}  // namespace holdwise
