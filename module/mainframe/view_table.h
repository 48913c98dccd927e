#pragma once
#include <functional>
#include <memory>
#include <span>

#include "common/view_frame.h"

namespace holdwise {

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
