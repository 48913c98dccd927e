#pragma once
#include <QString>
#include <array>
#include <functional>
#include <memory>
#include <span>

#include "common/frames/view_frame.h"

namespace holdwise {

/// One entry of the navigation tree.
struct TNodeData {
  int Id = 0;
  int ParentId = 0;  ///< 0 for a top-level node
  QString Text;
};

/// The navigation tree, parents before children.
extern const std::array<TNodeData, 10> Nodes;

/// One view of the module.
struct ViewEntry {
  int frameId = 0;  ///< node id of the view
  std::function<std::unique_ptr<TViewFrame>()> make;
};

/// The views of this build. A node without an entry has no view: selecting it changes nothing.
[[nodiscard]] std::span<const ViewEntry> ViewTable();
/// The entry of a frame id; null when there is none.
[[nodiscard]] const ViewEntry* FindView(int frameId);

}  // namespace holdwise
