// SPDX-License-Identifier: MIT
#include "holdings/portfolio_rules.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <algorithm>

#include "holdwise/packet/characters.h"
#include "holdwise/packet/code_numbers.h"
#include "holdwise/packet/code_text.h"

namespace holdwise {
namespace {

struct CodeKind {
  const char* start;
  const char* kind;
};
/// The first whose digits the code begins with counts.
constexpr CodeKind kCodeKinds[] = {
    {"200", "B股"},    {"900", "B股"},          {"204", "债券回购"},     {"131", "债券回购"}, {"888", "标准券"},
    {"50", "基金"},    {"51", "基金"},          {"52", "基金"},          {"53", "基金"},      {"55", "基金"},
    {"56", "基金"},    {"58", "基金"},          {"15", "基金"},          {"16", "基金"},      {"18", "基金"},
    {"01", "债券"},    {"02", "债券"},          {"10", "债券"},          {"11", "债券"},      {"12", "债券"},
    {"13", "债券"},    {"03", "权证"},          {"08", "配股"},          {"70", "配股"},      {"7", "申购"},
    {"4", "股转系统"}, {"8", "北京证券交易所"}, {"92", "北京证券交易所"}};

}  // namespace

QString NameProblem(const QString& name) {
  if (name.isEmpty()) return QStringLiteral("组合名称为空");
  if (CharactersOf(name) > kMostNameCharacters) {
    return QStringLiteral("组合名称有%1个字符，最多%2个").arg(CharactersOf(name)).arg(kMostNameCharacters);
  }
  if (!FitsAsName(name)) return QStringLiteral("组合名称中的附加符号太多");
  const auto bad = std::find_if_not(name.begin(), name.end(), IsNameCharacter);
  if (bad == name.end() && HasInvisible(name))
    return QStringLiteral("组合名称“%1”含有换行、制表符等看不见的字符，请删去后再导入").arg(name);
  if (bad == name.end()) return {};
  return QStringLiteral("组合名称“%1”含有不允许的字符“%2”（只允许汉字、字母、数字和 ( ) - _）").arg(name, *bad);
}

QString NameFromFile(const QString& path) {
  QString name;
  for (const QChar character : QFileInfo(path).completeBaseName()) {
    const bool isTaken = IsNameCharacter(character) && !HasInvisible(QString(character));
    if (isTaken || !name.endsWith(QLatin1Char('_'))) name += isTaken ? character : QLatin1Char('_');
  }
  name = FirstCharacters(name, kMostNameCharacters);
  return NameProblem(name).isEmpty() ? name : QStringLiteral("持仓");
}

QString CodeFormProblem(const QString& code) {
  static const QRegularExpression kDigits(QStringLiteral("\\A[0-9]+\\z"));
  if (code.isEmpty()) return QStringLiteral("股票代码为空");
  if (!kDigits.match(code).hasMatch()) return QStringLiteral("股票代码“%1”不是六位数字").arg(code);
  if (code.size() < 6) {
    return QStringLiteral("股票代码“%1”不足六位，前面的0可能被电子表格软件去掉了，请写全六位").arg(code);
  }
  if (code.size() > 6) return QStringLiteral("股票代码“%1”多于六位").arg(code);
  return {};
}

int CodeNumberOf(const QString& sixDigits) {
  return kStockBase + sixDigits.toInt();
}

QString CodeNumberText(const QString& sixDigits) {
  return QString::number(CodeNumberOf(sixDigits));
}

bool IsHeldStock(const QString& sixDigits, const CodeNumServices& codes) {
  const QString codeNumber = CodeNumberText(sixDigits);
  return codes.IsShanghaiStock(codeNumber) || codes.IsShenzhenStock(codeNumber);
}

QString CodeProblem(const QString& code, const CodeNumServices& codes) {
  if (QString problem = CodeFormProblem(code); !problem.isEmpty()) return problem;
  return IsHeldStock(code, codes) ? QString() : QStringLiteral("没有代码为%1的A股股票").arg(code);
}

QString KindOfStranger(const QString& digits) {
  constexpr qsizetype kHongKongDigits = 5;
  if (digits.size() == kHongKongDigits) return QStringLiteral("港股");
  if (IsAShare(digits.toStdString())) return QStringLiteral("行情数据里没有这只股票");
  const auto* const kind = std::find_if(std::begin(kCodeKinds), std::end(kCodeKinds), [&digits](const CodeKind& one) {
    return digits.startsWith(QLatin1String(one.start));
  });
  return kind == std::end(kCodeKinds) ? QStringLiteral("不是沪深A股") : QString::fromUtf8(kind->kind);
}

}  // namespace holdwise
