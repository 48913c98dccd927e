// SPDX-License-Identifier: MIT
#include "security_names.h"

#include <QRegularExpression>
#include <algorithm>

#include "statement_cells.h"

namespace holdwise {
namespace {

/// Words of a fund's or a bond's name that no stock's has.
constexpr const char* kOtherWords[] = {"混合", "联接", "债券", "纯债", "转债", "定开", "指数", "基金",
                                       "货币", "理财", "ETF",  "LOF",  "QDII", "FOF",  "REIT"};

QString ComparableName(const QString& name) {
  static const QRegularExpression kBlanks(QStringLiteral("\\s"));
  static const QRegularExpression kMarks(QStringLiteral("^(XD|XR|DR|N|C)(?=[^A-Z])|[*]?ST|-?[UWV]+$"));
  if (IsNothing(name)) return {};
  return name.normalized(QString::NormalizationForm_KC).toUpper().remove(kBlanks).remove(kMarks);
}

bool IsBeginning(const QString& left, const QString& right) {
  return left.startsWith(right) || right.startsWith(left);
}

QString ChineseOf(const QString& name) {
  QString chinese;
  std::copy_if(name.begin(), name.end(), std::back_inserter(chinese),
               [](QChar character) { return character.script() == QChar::Script_Han; });
  return chinese;
}

}  // namespace

bool MayBeSameName(const QString& one, const QString& other) {
  return IsBeginning(ComparableName(one), ComparableName(other));
}

bool IsStocksName(const QString& name, const QString& known) {
  constexpr qsizetype kFewest = 3;
  const QString left = ComparableName(name);
  const QString right = ComparableName(known);
  if (left.isEmpty() || right.isEmpty()) return false;
  return left == right || (std::min(left.size(), right.size()) >= kFewest && IsBeginning(left, right));
}

bool IsNameOfOther(const QString& name, const QString& known) {
  const QString left = ComparableName(name);
  const QString right = ComparableName(known);
  if (left.isEmpty() || right.isEmpty()) return false;
  const bool hasOtherWord = std::any_of(std::begin(kOtherWords), std::end(kOtherWords), [&](const char* word) {
    return left.contains(QString::fromUtf8(word)) && !right.contains(QString::fromUtf8(word));
  });
  if (hasOtherWord) return true;
  const QString chinese = ChineseOf(left);
  const QString knownChinese = ChineseOf(right);
  if (chinese.isEmpty() || knownChinese.isEmpty()) return false;
  return std::none_of(chinese.begin(), chinese.end(),
                      [&knownChinese](QChar character) { return knownChinese.contains(character); });
}

}  // namespace holdwise
