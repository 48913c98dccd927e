// SPDX-License-Identifier: MIT
#pragma once
#include "factor_files.h"
#include "kept.h"
#include "kept_proposals.h"
#include "market_inputs.h"
#include "stock_figures.h"

namespace holdwise {

struct MadeStock {
  MarketInputs::StockBars bars;  // as Report wants them
  StockFigures figures;
};

struct BuildMemory::Work {
  KeptFactorFiles factorFiles;
  MarketBasis basis;  // of all stocks
  Kept<StockSource, MadeStock> stocks;
  KeptProposals proposals;
};

}  // namespace holdwise
