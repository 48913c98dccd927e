// SPDX-License-Identifier: MIT
#include "portfolio_name.h"

#include <QTextBoundaryFinder>
#include <algorithm>

#include "holdwise/packet/characters.h"

namespace holdwise::editor {
namespace {

/// Pasted, they would make a name that cannot be told from another one or read back from a file.
bool IsInvisible(char32_t character) {
  constexpr char32_t kJoiner = 0x200D;  // inside emoji
  switch (QChar::category(character)) {
    case QChar::Other_Control:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
      return true;
    case QChar::Other_Format:
      return character != kJoiner;
    default:
      return false;
  }
}

}  // namespace

bool IsNameKey(QChar key) {
  return key == u'\b' || IsNameCharacter(key);
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
  const auto characters = name.toUcs4();
  if (std::any_of(characters.begin(), characters.end(), IsInvisible))
    return QStringLiteral("组合名称含有换行、制表符等看不见的字符，请删去后再确定");
  return {};
}

QValidator::State NameLimit::validate(QString& input, int& caret) const {
  LimitName(input, caret);
  return Acceptable;
}

}  // namespace holdwise::editor
