// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "holdwise/market/csv_table.h"
#include "holdwise/market/proposals.h"

namespace holdwise {

/// What a data folder is made from. File and folder names; empty optional ones are not read.
struct BuildOptions {
  QString barsFolder;  ///< daily bars: a folder with one CSV file a stock or with files of many (one a date), or a file
  QString indicesFolder;   ///< the same of the three indices
  QString securitiesFile;  ///< security master
  QString industriesFile;  ///< optional: industries of those that have none in the security master
  QString factorsPlace;    ///< optional: a file or folder of factors for bars as traded (ReadFactors)
  QString datesFile;       ///< optional: trading dates; without it the dates of the index bars
  QString ratesFile;       ///< optional: deposit rates; without it the benchmark one-year rate
  QString quotesFile;  ///< optional: prices; without it, and for what it lacks, the last two closes (twice the last one
                       ///< where the last trading date has no bar)
  QString estimatesFile;  ///< optional: estimate values of stocks; without it there are none
  QString accountsFile;   ///< optional: earnings and net assets a share; without it those of the old folder stay
  QString outFolder;
  int currentDate = 0;  ///< YYYYMMDD, the market's current date; 0 = last date of the index bars
  int days = 250;       ///< trading days in the window, at least 1
  bool isSimulated = false;
  bool mayReplaceOtherKind = false;  ///< a simulated market may take the place of a real one, and the other way round
  unsigned threads = 0;              ///< 0 = as many as the machine runs at once
  ProposalOptions proposals;
};

/// What was done.
struct BuildSummary {
  int securities = 0;  ///< in the security master
  int series = 0;      ///< statistics files written, without the one of the indices
  std::int64_t rows = 0;
  std::int64_t rejectedLines = 0;
  int rejectedFiles = 0;
  int suspended = 0;  ///< stocks without a trade on the market's last trading date: their price is the last close
  int currentDate = 0;
  int proposals = 0;                ///< candidate portfolios written
  std::vector<QString> remarks;     ///< Chinese: who is in the stock pool, and which candidates there are not
  std::vector<QString> understood;  ///< Chinese: what was taken for what, and what the bars are like, one line each
  std::vector<QString> brief;       ///< the part of it that a person reads after every build
  std::vector<QString> advice;      ///< Chinese: what looks wrong in the bars and what to do; none when nothing does
  double seconds = 0;
};

/// Both may be empty. Called on the thread of BuildDataFolder (rejections, warnings) or on any one thread at a time
/// (progress).
struct BuildObserver {
  std::function<void(const Rejection&)> onRejection;
  std::function<void(const Rejection&)> onWarning;  ///< of what was used and looks wrong
  std::function<void(int done, int total)> onProgress;
};

/// Makes the data folder (docs/data-folder.md). Lines that cannot be used are reported and left out; a file of bars of
/// which no line can be used is left out whole. The folder is replaced at the very end in one step; other files that
/// the old folder holds (accounts.dat, groups.dat) move on into the new one. A market too small to propose portfolios
/// of is no error: the summary's remarks say so. Stops with an Error, leaving the old folder as it is, when a named
/// file or folder is missing or unreadable, an index is missing, or nothing is left to write; Error(Refused) too when
/// the folder holds data of the other kind (simulated or not) and may not be replaced, or an option of the proposals is
/// outside its range.
BuildSummary BuildDataFolder(const BuildOptions& options, const BuildObserver& observer = {});

/// What a build has made of its files, for the next one: of a file of one stock's bars that has not been touched since,
/// of which list date and factors are the same, in a market whose indices, trading dates, rates and options are the
/// same, all that is made of it; of factor files what they hold; the proposals while their stocks are the same. As much
/// as a build holds at its peak, some 15 KB a stock. One build at a time; not thread-safe.
class BuildMemory {
 public:
  BuildMemory();
  ~BuildMemory();
  BuildMemory(const BuildMemory&) = delete;
  BuildMemory& operator=(const BuildMemory&) = delete;

  struct Work;
  [[nodiscard]] Work& GetWork() { return *work_; }

 private:
  std::unique_ptr<Work> work_;
};

/// The same, byte for byte, in less time after a build with the same memory. An Error leaves the memory usable.
BuildSummary BuildDataFolder(const BuildOptions& options, const BuildObserver& observer, BuildMemory& memory);

/// Reads what BuildDataFolder would, with the same errors and reports, and writes nothing: `outFolder` is not looked
/// at. No usable bars of any stock are no Error here: the summary's `series` is 0.
BuildSummary CheckInputs(const BuildOptions& options, const BuildObserver& observer = {});

}  // namespace holdwise
