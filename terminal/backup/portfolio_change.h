// SPDX-License-Identifier: MIT
#pragma once
#include <QString>

#include "backup/portfolio_set.h"

/// What differs between two states of one portfolio, for a person. Pure.
namespace holdwise::backup {

/// "“稳健”：名称 隐健 → 稳健；600000 数量 301 → 300": what differs, as it is and as it will be, six things at most and
/// then how many more. Texts as ShownText; "无" for what is not there.
[[nodiscard]] QString ChangeText(const SavedPortfolio& now, const SavedPortfolio& then);

}  // namespace holdwise::backup
