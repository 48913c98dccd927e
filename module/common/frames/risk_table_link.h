// SPDX-License-Identifier: MIT
#pragma once
#include <QString>

#include "common/frames/view_frame.h"

/// What ties a view to the current risk table, against whose index its holdings show figures. User-interface thread.
namespace holdwise {

class HoldingsPanel;
class PortfolioList;

/// When a table has come, shows the selected row of `list` again, has the view compute its live figures (the deviations
/// are read again then) and its notice read again; when one has not, the notice alone. Failures are logged for `unit`.
/// The index-risk object must exist and outlive the view.
void FollowRiskTable(TViewFrame& view, const QString& unit, PortfolioList& list);
/// What the view says while the table did not come; empty when it is there or on its way.
[[nodiscard]] ViewNotice RiskTableNotice();
/// Names the reference index in the title strip over the holdings.
void ShowReferenceIndex(HoldingsPanel& holdings);

}  // namespace holdwise
