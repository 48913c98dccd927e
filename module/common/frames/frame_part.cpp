// SPDX-License-Identifier: MIT
#include "common/frames/frame_part.h"

#include <QScrollBar>

#include "common/grid/string_grid.h"

namespace holdwise {
namespace {

const QString kRow = QStringLiteral("row");
const QString kScrolled = QStringLiteral("scrolled");

}  // namespace

QVariantMap PlaceIn(const TStringGrid& grid) {
  return {{kRow, grid.Row()}, {kScrolled, grid.verticalScrollBar()->value()}};
}

void PutPlaceIn(TStringGrid& grid, const QVariantMap& place) {
  const int row = place.value(kRow, grid.Row()).toInt();
  if (row != grid.Row() && !grid.IsEmpty()) grid.SelectCell(0, row);
  grid.BringIntoView(grid.Row());  // lays the rows out: before that there may be nothing to scroll
  grid.verticalScrollBar()->setValue(place.value(kScrolled).toInt());
}

bool FramePart::SelectPortfolio(const QString& /*portfolioId*/) {
  return false;
}

}  // namespace holdwise
