// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <array>
#include <memory>

#include "common/frames/view_frame.h"
#include "common/series/missing_prices.h"

namespace holdwise {

/// Which portfolios a view rests on: when there are none of them, nothing is calculated for it.
enum class RestsOn {
  Nothing,  ///< the view is never calculated for
  Unsaved,  ///< those still being edited
  Saved
};

/// One entry of the navigation tree, and the view it shows.
struct TNodeData {
  int Id = 0;
  int ParentId = 0;  ///< 0 for a top-level node
  QString Text;
  std::unique_ptr<TViewFrame> (*make)() = nullptr;  ///< null for a group
  bool isLive = false;                              ///< prices are in it: it is told when they were read again
  RestsOn restsOn = RestsOn::Saved;
  TFigureBasis basis{};  ///< what of it is lacking is said on the page
};

/// The navigation tree, parents before children. A view is one row here and one folder of its own.
extern const std::array<TNodeData, 10> Nodes;

/// The node with that id; null when there is none.
[[nodiscard]] const TNodeData* FindNode(int id);
/// The same when it has a view; null otherwise.
[[nodiscard]] const TNodeData* FindView(int frameId);

}  // namespace holdwise
