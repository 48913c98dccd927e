// SPDX-License-Identifier: MIT
#include "portfolio_name.h"

#include <QTextBoundaryFinder>

#include "holdwise/packet/characters.h"

namespace holdwise::editor {
bool IsNameKey(QChar key) {
  constexpr char16_t kFirstBeyondAscii = 0x80;
  static const QString kMarks = QStringLiteral("\b()-_");
  const bool isLetter = (key >= u'A' && key <= u'Z') || (key >= u'a' && key <= u'z');
  const bool isDigit = key >= u'0' && key <= u'9';
  return isLetter || isDigit || kMarks.contains(key) || key.unicode() >= kFirstBeyondAscii;
}

void LimitName(QString& name, int& caret) {
  while (!FitsAsName(name)) {
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, name);
    finder.setPosition(caret > 0 ? caret : name.size());
    const auto end = finder.position();
    const auto start = finder.toPreviousBoundary();
    if (start < 0 || start >= end) return;
    name.remove(start, end - start);
    caret = static_cast<int>(start);
  }
}

QString NameProblem(const QString& name) {
  if (name.contains(u'\'')) return QStringLiteral("组合名称不能含有单引号 ' ，请改名后再确定");
  if (HasInvisible(name)) return QStringLiteral("组合名称含有换行、制表符等看不见的字符，请删去后再确定");
  return {};
}

QValidator::State NameLimit::validate(QString& input, int& caret) const {
  LimitName(input, caret);
  return Acceptable;
}

}  // namespace holdwise::editor
