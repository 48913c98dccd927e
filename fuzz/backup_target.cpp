// SPDX-License-Identifier: MIT
#include <algorithm>

#include "backup/portfolio_file.h"
#include "holdwise/packet/error.h"
#include "holdwise/packet/text_file.h"
#include "properties.h"
#include "targets.h"

namespace holdwise::fuzz {
namespace {

void CheckProblems(const backup::ReadFile& read, std::int64_t lines) {
  std::int64_t last = 0;
  for (std::size_t place = 0; place < read.problems.size(); ++place) {
    const backup::FileProblem& problem = read.problems[place];
    Require(!problem.reason.isEmpty(), "a problem has a reason");
    const bool isCount = problem.line == 0 && place + 1 == read.problems.size();
    Require(isCount || (problem.line >= last && problem.line <= lines), "problems name lines of the file, in order");
    last = std::max(last, problem.line);
  }
  Require(read.set == backup::PortfolioSet{}, "nothing of a bad file is used");
}

void CheckAcceptedSet(const backup::ReadFile& read) {
  Require(backup::ProblemsOf(read.set).isEmpty(), "an accepted set is plausible");
  Require(read.lines.size() == read.set.portfolios.size(), "each portfolio has its line");
  const backup::ReadFile again = backup::ReadPortfolioText(backup::PortfolioFileText(read.set));
  Require(again.problems.empty() && again.set == read.set, "what was accepted comes back from a file of it");
}

void Check(const backup::ReadFile& read, std::int64_t lines) {
  if (read.problems.empty())
    CheckAcceptedSet(read);
  else
    CheckProblems(read, lines);
}

}  // namespace

void BackupFile(std::string_view input) {
  QByteArray text;
  try {
    text = ToUtf8Text(Raw(input));
  } catch (const Error&) {  // no text
    return;
  }
  const auto lines = 1 + std::count(text.begin(), text.end(), '\n');
  const backup::ReadFile whole = backup::ReadPortfolioText(text);
  const backup::ReadFile edited = backup::ReadPortfolioText(text, backup::LastLine::MayLack);
  Check(whole, lines);
  Check(edited, lines);
  Require(!whole.problems.empty() || edited.set == whole.set, "a whole file is taken where the last line may lack");
}

}  // namespace holdwise::fuzz
