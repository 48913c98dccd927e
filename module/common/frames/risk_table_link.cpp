// SPDX-License-Identifier: MIT
#include "common/frames/risk_table_link.h"

#include "common/frames/holdings_panel.h"
#include "common/frames/portfolio_list.h"
#include "common/host/event_guard.h"
#include "common/series/shared_objects.h"

namespace holdwise {
namespace {

const QString& CurrentIndexName() {
  return IndexNames()[g_AllStockData->CurrentType()];
}

}  // namespace

void FollowRiskTable(TViewFrame& view, const QString& unit, PortfolioList& list) {
  const auto readNotice = [unit, &view] {
    GuardEvent(unit, QStringLiteral("NoticeChanged"), [&view] {
      if (view.OnNoticeChanged) view.OnNoticeChanged();
    });
  };
  QObject::connect(g_AllStockData.get(), &TAllStockData::TableArrived, &view, [unit, readNotice, &view, &list] {
    GuardEvent(unit, QStringLiteral("ReflashData"), [&view, &list] {
      list.Reload(list.Grid().Row());
      SendFrameMessage(view, FrameMessage::ReflashNowPrice);
    });
    readNotice();
  });
  QObject::connect(g_AllStockData.get(), &TAllStockData::TableFailed, &view, readNotice);
}

ViewNotice RiskTableNotice() {
  if (!g_AllStockData->LacksCurrentTable()) return {};
  const QString text = (g_AllStockData->IsCurrentFileOfOtherEdition() ? QStringLiteral("%1的风险文件不属于当前数据")
                                                                      : QStringLiteral("没有取得%1的风险文件"))
                           .arg(CurrentIndexName());
  return {text, text + QStringLiteral("，成分股的风险系数没有显示。数据恢复后再次打开本页即可。"), {}};
}

void ShowReferenceIndex(HoldingsPanel& holdings) {
  holdings.SetNotice(QStringLiteral("风险系数的参考指数：%1").arg(CurrentIndexName()),
                     QStringLiteral("在“压力测试”页选择参考指数；上方各组合的系数总是相对上证指数。"));
}

}  // namespace holdwise
