// SPDX-License-Identifier: MIT
#pragma once
#include <QByteArray>
#include <QString>
#include <vector>

#include "backup/portfolio_set.h"

/// All portfolios as one CSV file: readable in a spreadsheet and taken by the import, whose columns stand first; the
/// others bring everything back whole. UTF-8 with byte-order mark, a line for each holding, a last line with the
/// numbers of portfolios and holdings and a checksum.
namespace holdwise::backup {

/// The file's text. The same set gives the same bytes. Texts that a spreadsheet would run (= + - @ in front) and those
/// that begin with a single quote get a single quote in front, which the reading takes away. A set with problems
/// (ProblemsOf) can be written too, for a person to look at; it does not read back. Pure; any thread.
[[nodiscard]] QByteArray PortfolioFileText(const PortfolioSet& set);

/// A line of a file that cannot be taken, and why (Chinese). Line 0 stands for the file as a whole.
struct FileProblem {
  std::int64_t line = 0;
  QString reason;
};

/// Either `problems` is empty and the set is plausible, or nothing of the file may be used.
struct ReadFile {
  PortfolioSet set;
  std::vector<std::int64_t> lines;    ///< the first line of each of its portfolios
  std::vector<FileProblem> problems;  ///< ascending by line; the first 100 and how many more
};

/// Whether a file may lack its last line: one that was changed by hand and is to be imported, never one to restore.
enum class LastLine { Needed, MayLack };

/// Reads a text back, strictly: heading, every value, every row's portfolio columns alike, numbers and checksum of the
/// last line, and no problem in the set (ProblemsOf). Never throws for its content. Pure; any thread.
[[nodiscard]] ReadFile ReadPortfolioText(const QByteArray& text, LastLine lastLine = LastLine::Needed);

/// Whether the text's heading names the columns of such a file.
[[nodiscard]] bool IsPortfolioText(const QByteArray& text);

/// The set of a file. Error(NotFound, Io) when it cannot be read, Error(Corrupt) naming the bad lines when it cannot be
/// used. Any thread.
[[nodiscard]] PortfolioSet LoadPortfolioFile(const QString& path);

}  // namespace holdwise::backup
