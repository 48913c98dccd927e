// SPDX-License-Identifier: MIT
#include "mainframe/view_table.h"

#include <algorithm>

#include "views/fxjl/fxjl.h"
#include "views/yjfj/yjfj.h"
#include "views/ylcs/ylcs.h"
#include "views/zhbx/zhbx.h"
#include "views/znpz/znpz.h"
#include "views/ztpj/ztpj.h"
#include "views/zxpz/zxpz.h"

namespace holdwise {
namespace {

template <typename View>
std::unique_ptr<TViewFrame> Make() {
  return std::make_unique<View>();
}

constexpr TFigureBasis kAllPrices{StoredUsed::Closes, PricesUsed::LatestAndCloses};
constexpr TFigureBasis kFiguresAndPrices{StoredUsed::FiguresWithRate, PricesUsed::Latest};
constexpr TFigureBasis kFigures{StoredUsed::Figures, PricesUsed::None};
/// The view itself says when there is no rate.
constexpr TFigureBasis kFiguresPricesAndIndex{StoredUsed::Figures, PricesUsed::Latest, true};
/// The view itself says what it lacks.
constexpr TFigureBasis kNoneOfThem{StoredUsed::None, PricesUsed::None};

}  // namespace

const std::array<TNodeData, 10> Nodes = {{
    {1000, 0, QStringLiteral("资产配置")},
    {1001, 1000, QStringLiteral("智能配置"), &Make<TFrm_ZNPZ>, false, RestsOn::Nothing},
    {1002, 1000, QStringLiteral("自选配置"), &Make<TFrm_ZXPZ>, false, RestsOn::Unsaved, kFigures},
    {2000, 0, QStringLiteral("组合跟踪")},
    {2001, 2000, QStringLiteral("组合表现"), &Make<TFrm_ZHBX>, true, RestsOn::Saved, kAllPrices},
    {2002, 2000, QStringLiteral("风险计量"), &Make<TFrm_FXJL>, false, RestsOn::Saved},
    {2003, 2000, QStringLiteral("压力测试"), &Make<TFrm_YLCS>, false, RestsOn::Saved, kNoneOfThem},
    {3000, 0, QStringLiteral("组合评价")},
    {3001, 3000, QStringLiteral("总体评价"), &Make<TFrM_ZTPJ>, true, RestsOn::Saved, kFiguresAndPrices},
    {3002, 3000, QStringLiteral("业绩分解"), &Make<TFrm_YJFJ>, true, RestsOn::Saved, kFiguresPricesAndIndex},
}};

const TNodeData* FindNode(int id) {
  const auto* const node = std::find_if(Nodes.begin(), Nodes.end(), [id](const auto& one) { return one.Id == id; });
  return node == Nodes.end() ? nullptr : node;
}

const TNodeData* FindView(int frameId) {
  const TNodeData* node = FindNode(frameId);
  return node == nullptr || node->make == nullptr ? nullptr : node;
}

}  // namespace holdwise
