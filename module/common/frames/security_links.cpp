// SPDX-License-Identifier: MIT
#include "common/frames/security_links.h"

#include <algorithm>

#include "common/host/codes.h"
#include "common/host/host_access.h"
#include "common/series/shared_objects.h"

namespace holdwise {

void SecurityLinks::MouseMove(const QPoint& position) {
  const GridCell cell = grid_.MouseToCell(position);
  const bool isLinkColumn = std::find(columns_.begin(), columns_.end(), cell.column) != columns_.end();
  const bool isOverText = isLinkColumn && !grid_.IsEmpty() && grid_.TextBox(cell).contains(position);
  grid_.SetHandCursor(isOverText);
  hovered_ = isOverText ? cell : GridCell{};
  if (isLinkColumn) grid_.RedrawCell(cell);
}

void SecurityLinks::MouseDown(const QPoint& position) {
  MouseMove(position);  // rows may have changed under a resting mouse
  const GridCell cell = grid_.MouseToCell(position);
  if (cell.IsNone() || hovered_.IsNone()) return;
  const QString code = grid_.Cells(columns_.front(), cell.row);
  hovered_ = {};
  OpenSecurity(code);
}

QString NameOrDelisted(const QString& code) {
  const QString name = ModuleHost().CodeNums().NameOf(code);
  return name.isEmpty() ? QStringLiteral("已退市") : name;
}

void OpenSecurity(const QString& code) {
  ModuleHost().CodeNums().SetCurrentCode(GetCodeNum(code));
  g_Timer->start();
}

}  // namespace holdwise
