// SPDX-License-Identifier: MIT
#pragma once
#include <functional>

#include "holdwise/sdk/database.h"

namespace holdwise::calc {

/// Called now and then during a long loop, inside the transaction: may repaint, must not let events run.
using Step = std::function<void()>;

/// Make the two reference tables hold exactly the rows of a file, in one transaction. A file without rows changes
/// nothing. A field that is missing or is not of its type, or a statement that fails: an Error, and the table keeps its
/// rows. Null stays null; texts are stored as they are.

/// "InterestRate.Dat": fourteen columns of the same names as the table's.
void ReplaceInterestRates(DatabaseStatements& database, const ResultSet& file, const Step& step = {});
/// "GZ.dat": SECUCODE, ID, PRICE. Of several rows with one SECUCODE the first is stored; an empty PRICE is 0, a
/// negative one is refused; CTIME is 19910101 in every row, whatever the file says (intended).
void ReplaceEstimateValues(DatabaseStatements& database, const ResultSet& file, const Step& step = {});

}  // namespace holdwise::calc
