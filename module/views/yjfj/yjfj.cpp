// SPDX-License-Identifier: MIT
#include "views/yjfj/yjfj.h"

#include "common/charts/step_chart_part.h"
#include "common/frames/portfolio_list.h"
#include "common/frames/risk_table_link.h"
#include "common/series/deposit_rate.h"
#include "common/store/database.h"
#include "common/store/statements.h"
#include "decomposition_layout.h"
#include "decomposition_rows.h"

namespace holdwise {
namespace {

const QString kUnit = QStringLiteral("Yjfj");

}  // namespace

TFrm_YJFJ::TFrm_YJFJ(QWidget* parent)
    : TViewFrame(kUnit, parent),
      list_(new PortfolioList({.unit = kUnit,
                               .statement = sql::kSavedPortfolios,
                               .columns = decomposition::PortfolioTable(),
                               .keyColumn = decomposition::kId,
                               .emptyText = NoSavedPortfolios},
                              this)),
      chart_(new StepChartPart(kUnit, QStringLiteral("RzPanel5"), this)) {
  AddParts(*list_, PortfolioList::kHeight, *chart_);
  list_->OnFill = [this](const ResultSet& portfolios) {
    decomposition::ShowPortfolios(portfolios, rate_.value_or(0), list_->Grid());
  };
  list_->OnShow = [this](int) { chart_->update(); };
  chart_->OnRead = [this] { return decomposition::ChartOf(list_->Grid(), list_->Grid().Row()); };
  chart_->OnHint = [this](int bar) { return decomposition::HintOf(list_->Grid(), list_->Grid().Row(), bar); };
  FollowRiskTable(*this, kUnit, *list_);
  msg_changeskin();
}

void TFrm_YJFJ::ReflashData() {
  rate_ = OneYearDepositRate(Database());
  list_->ReflashData();
  notice_ = {};
  SendFrameMessage(*this, FrameMessage::ReflashNowPrice);
}

void TFrm_YJFJ::ReflashNowPrice() {
  if (!list_->Grid().IsEmpty()) notice_ = decomposition::RefreshPortfolios(list_->Grid());
  chart_->update();
}

ViewNotice TFrm_YJFJ::Notice() const {
  ViewNotice notice{{}, {}, notice_.lacking};
  QStringList awaited{notice_.awaited};
  if (!rate_ && !list_->Grid().IsEmpty()) awaited.prepend(WithoutDepositRate());
  awaited.removeAll(QString());
  notice.awaited = awaited.join(QLatin1Char('\n'));
  notice.Add(notice_.hint);
  return notice;
}

}  // namespace holdwise
