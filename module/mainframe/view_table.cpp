#include "mainframe/view_table.h"

#include <algorithm>
#include <array>

#include "views/fxjl/fxjl.h"
#include "views/zhbx/zhbx.h"

namespace holdwise {

std::span<const ViewEntry> ViewTable() {
  static const std::array kViews = {
      ViewEntry{2001, [] { return std::make_unique<TFrm_ZHBX>(); }},
      ViewEntry{2002, [] { return std::make_unique<TFrm_FXJL>(); }},
  };
  return kViews;
}

const ViewEntry* FindView(int frameId) {
  const auto views = ViewTable();
  const auto found =
      std::find_if(views.begin(), views.end(), [&](const auto& view) { return view.frameId == frameId; });
  return found == views.end() ? nullptr : &*found;
}

}  // namespace holdwise
