#include "mainframe/view_table.h"

#include <algorithm>
#include <array>

#include "views/fxjl/fxjl.h"
#include "views/zhbx/zhbx.h"

namespace holdwise {

const std::array<TNodeData, 10> Nodes = {{
    {1000, 0, QStringLiteral("资产配置")},
    {1001, 1000, QStringLiteral("智能配置")},
    {1002, 1000, QStringLiteral("自选配置")},
    {2000, 0, QStringLiteral("组合跟踪")},
    {2001, 2000, QStringLiteral("组合表现")},
    {2002, 2000, QStringLiteral("风险计量")},
    {2003, 2000, QStringLiteral("压力测试")},
    {3000, 0, QStringLiteral("组合评价")},
    {3001, 3000, QStringLiteral("总体评价")},
    {3002, 3000, QStringLiteral("业绩分解")},
}};

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
