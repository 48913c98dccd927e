// SPDX-License-Identifier: MIT
#include "allocation_files.h"

#include <algorithm>

#include "common/host/remote_files.h"
#include "holdwise/packet/number_text.h"
#include "holdwise/packet/table_limits.h"

namespace holdwise::allocation {
namespace {

// A name that is too long is no reason to lose the other candidates.
constexpr PacketLimits kListLimits = LimitsOf({.rows = 1000, .rowTextBytes = 16'384});
constexpr PacketLimits kLimits = LimitsOf({.rows = 10'000, .rowTextBytes = 1024});
constexpr qsizetype kLongestName = 100;  // characters
constexpr QChar kMark = u'_';

QString Quoted(const QString& name) {
  constexpr qsizetype kShown = 40;
  QString shown = name.left(kShown);
  for (QChar& character : shown)
    if (!character.isPrint()) character = u'?';
  return QStringLiteral("“%1%2”").arg(shown, name.size() > kShown ? QStringLiteral("…") : QString());
}

}  // namespace

QString CandidateListFile(int stockCount) {
  return remote_files::kFolder + QStringLiteral("zh_") + QString::number(stockCount) + QStringLiteral(".dat");
}

bool IsComposition(const QString& name) {
  const auto first = name.indexOf(kMark);
  return first >= 0 && name.indexOf(kMark, first + 1) >= 0;
}

QString ProblemOfFileName(const QString& name) {
  const auto refuse = [&](const char* why) {
    return QStringLiteral("成分股文件名%1%2，没有采用").arg(Quoted(name), QString::fromUtf8(why));
  };
  if (name.isEmpty()) return QStringLiteral("候选组合没有成分股文件名");
  if (name.size() > kLongestName) return refuse("太长");
  const bool isPlain = std::all_of(
      name.begin(), name.end(), [](QChar one) { return one.isPrint() && one != u'/' && one != u'\\' && one != u':'; });
  if (!isPlain || name.contains(QStringLiteral(".."))) return refuse("不是单纯的文件名");
  if (!IsComposition(name)) return refuse("中没有两个“_”，不是成分股文件的名称");
  return {};
}

std::vector<Candidate> CandidatesIn(const ResultSet& list) {
  const int style = list.Column("ZHFG");
  const int target = list.Column("MBSYL");
  const int variance = list.Column("FC");
  const int beta = list.Column("BETA");
  const int file = list.Column("FILENAME");
  std::vector<Candidate> candidates;
  candidates.reserve(static_cast<std::size_t>(list.RowCount()));
  for (int row = 0; row < list.RowCount(); ++row) {
    candidates.push_back({list.TextAt(row, style), list.RealAt(row, target), list.RealAt(row, variance),
                          list.RealAt(row, beta), list.TextAt(row, file)});
  }
  return candidates;
}

std::vector<Part> PartsIn(const ResultSet& composition) {
  const int code = composition.Column("SecuCode");
  const int weight = composition.Column("PZBL");
  std::vector<Part> parts;
  for (int row = 0; row < composition.RowCount(); ++row) {
    const double value = composition.RealAt(row, weight);
    if (value < 0 || value > 1) {
      throw Error(ErrorCategory::Refused, QStringLiteral("第 %1 行的比例 %2 不在 0 到 1 之间")
                                              .arg(row + 1)
                                              .arg(composition.TextAt(row, weight))
                                              .toStdString());
    }
    if (composition.IsNull(row, code))
      throw Error(ErrorCategory::Refused, QStringLiteral("第 %1 行没有股票代码").arg(row + 1).toStdString());
    parts.push_back({composition.TextAt(row, code), composition.TextAt(row, weight), value});
  }
  return parts;
}

QStringList CapitalTableIn(const ResultSet& table) {
  const int count = table.Column("StockCount");
  const int limit = table.Column("StockMoney");
  QStringList entries;
  for (int row = 0; row < table.RowCount(); ++row)
    entries << table.TextAt(row, count) + QLatin1Char(',') + table.TextAt(row, limit);
  return entries;
}

QStringList CodesIn(const ResultSet& pool) {
  const int code = pool.Column("SecuCode");
  QStringList codes;
  for (int row = 0; row < pool.RowCount(); ++row) codes << pool.TextAt(row, code);
  return codes;
}

ResultSet ReadCandidateList(const QString& path) {
  return ReadPacketFile(path, kListLimits);
}

ResultSet ReadAllocationFile(const QString& path) {
  return ReadPacketFile(path, kLimits);
}

}  // namespace holdwise::allocation
