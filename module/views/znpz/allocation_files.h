// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <QStringList>
#include <vector>

#include "holdwise/packet/result_set.h"

/// The files that proposals come in. Names are remote names. Pure but for the reading, any thread. A table that lacks a
/// column or holds a value that cannot be is Error(NotFound) or Error(Refused).
namespace holdwise::allocation {

[[nodiscard]] QString CandidateListFile(int stockCount);

/// Does the name belong to a composition? Then there is another "_" behind the first one. A name with a single "_" is
/// that of a candidate list.
[[nodiscard]] bool IsComposition(const QString& name);
/// Why a composition file cannot be asked for by the name that a candidate list gives, for the log; empty when it can:
/// a plain name that is a composition's and stays in the folder.
[[nodiscard]] QString ProblemOfFileName(const QString& name);

/// One proposed portfolio.
struct Candidate {
  QString style;
  double targetReturn = 0;  ///< fraction
  double variance = 0;
  double beta = 0;
  QString fileName;
};
[[nodiscard]] std::vector<Candidate> CandidatesIn(const ResultSet& list);

/// One holding of a candidate.
struct Part {
  QString code;        ///< as the file has it
  QString weightText;  ///< the weight as text
  double weight = 0;   ///< fraction of the capital, 0 to 1
};
[[nodiscard]] std::vector<Part> PartsIn(const ResultSet& composition);

/// The entries of a capital table, as StockCountBy takes them.
[[nodiscard]] QStringList CapitalTableIn(const ResultSet& table);

/// Codes of the stock pool, in order.
[[nodiscard]] QStringList CodesIn(const ResultSet& pool);

/// Reads a received file of these kinds; one that holds more than such a file ever can is Error(Refused).
[[nodiscard]] ResultSet ReadCandidateList(const QString& path);
[[nodiscard]] ResultSet ReadAllocationFile(const QString& path);

}  // namespace holdwise::allocation
