// SPDX-License-Identifier: MIT
#include "database/statements/statement_shape.h"

namespace holdwise::firebird {

bool StatementShape::IsSymbol(std::size_t index, char symbol) const {
  return index < tokens_.size() && tokens_[index].type == TokenType::Symbol && tokens_[index].symbol == symbol;
}

bool StatementShape::IsWord(std::size_t index, Word word) const {
  return index < tokens_.size() && tokens_[index].word == word;
}

StatementKind StatementShape::KindOfTokens() const {
  if (tokens_.empty()) return StatementKind::Plain;
  switch (tokens_[0].word) {
    case Word::Select:
    case Word::With:
      return StatementKind::Select;
    case Word::Insert:
    case Word::Update:
    case Word::Delete:
    case Word::Merge:
      return StatementKind::Change;
    case Word::Execute:
      return IsWord(1, Word::Procedure) ? StatementKind::Change : StatementKind::Plain;
    case Word::Alter:
    case Word::Comment:
    case Word::Create:
    case Word::Drop:
    case Word::Grant:
    case Word::Recreate:
    case Word::Revoke:
      return StatementKind::Definition;
    default:
      return StatementKind::Plain;
  }
}

StatementShape::Clause StatementShape::ClauseOfBracket(std::size_t index, Clause outer) const {
  if (index == 0) return Clause::Other;
  const Token& previous = tokens_[index - 1];
  if (previous.type == TokenType::Symbol) return previous.symbol == '(' ? outer : Clause::Other;
  switch (previous.word) {
    case Word::Values:
      return Clause::StoredValues;
    case Word::In:
      return outer == Clause::Condition ? Clause::ComparedValues : Clause::Other;
    case Word::And:
    case Word::Or:
    case Word::Not:
    case Word::On:
    case Word::Where:
    case Word::Having:
      return outer;
    default:
      return index == 3 && IsWord(0, Word::Execute) && IsWord(1, Word::Procedure) ? Clause::StoredValues
                                                                                  : Clause::Other;
  }
}

StatementShape::Clause StatementShape::ClauseAfter(Word word, Clause clause) {
  switch (word) {
    case Word::Select:
      return Clause::SelectList;
    case Word::Set:
      return Clause::Assignments;
    case Word::Where:
    case Word::Having:
    case Word::On:
      return Clause::Condition;
    case Word::From:
    case Word::Group:
    case Word::Matching:
    case Word::Order:
    case Word::Plan:
    case Word::Returning:
    case Word::Rows:
    case Word::Union:
    case Word::When:
      return Clause::Other;
    default:
      return clause;
  }
}

bool StatementShape::EndsValue(std::size_t index) const {
  if (index >= tokens_.size()) return true;
  const Token& token = tokens_[index];
  if (token.type == TokenType::Symbol) return token.symbol == ')' || token.symbol == ',' || token.symbol == ';';
  switch (token.word) {
    case Word::And:
    case Word::Or:
    case Word::Where:
    case Word::Having:
    case Word::Group:
    case Word::Order:
    case Word::Plan:
    case Word::Returning:
    case Word::Rows:
    case Word::Union:
      return true;
    default:
      return false;
  }
}

/// The token where the literal at `index` begins, its sign included when that is no subtraction.
std::size_t StatementShape::WithSign(std::size_t index) const {
  if (tokens_[index].type != TokenType::Number || index < 2) return index;
  if (!IsSymbol(index - 1, '-') && !IsSymbol(index - 1, '+')) return index;
  if (tokens_[index - 1].end != tokens_[index].begin) return index;
  const std::size_t before = index - 2;
  const bool opens = IsSymbol(before, '(') || IsSymbol(before, ',') || IsSymbol(before, '=') ||
                     IsWord(before, Word::Between) || IsWord(before, Word::And);
  return opens ? index - 1 : index;
}

bool StatementShape::StandsAlone(std::size_t first, std::size_t index, Clause clause) const {
  if (first == 0) return false;
  const std::size_t before = first - 1;
  switch (clause) {
    case Clause::StoredValues:
    case Clause::ComparedValues:
      return (IsSymbol(before, '(') || IsSymbol(before, ',')) && (IsSymbol(index + 1, ')') || IsSymbol(index + 1, ','));
    case Clause::Assignments:
      return IsSymbol(before, '=') && EndsValue(index + 1);
    case Clause::Condition:
      if (IsSymbol(before, '=')) return EndsValue(index + 1);
      if (IsWord(before, Word::Between)) return IsWord(index + 1, Word::And);
      if (IsWord(before, Word::And) && before >= 2 && EndsValue(index + 1)) {
        const TokenType low = tokens_[before - 1].type;
        if (low != TokenType::Number && low != TokenType::Quoted) return false;
        const std::size_t lowFirst = WithSign(before - 1);
        return lowFirst > 0 && IsWord(lowFirst - 1, Word::Between);
      }
      return false;
    case Clause::Other:
    case Clause::SelectList:
      return false;
  }
  return false;
}

/// Reads a literal of the same form as `literal` into it. The position behind it, or 0 when there is none.
std::size_t StatementShape::ReadLiteral(std::size_t at, Literal& literal) const {
  const std::size_t begin = at;
  std::size_t end = 0;
  if (at >= sql_.size()) return 0;
  if (literal.quoted) {
    literal.doubledQuotes = false;
    if (sql_[at] == '\'') end = ReadQuoted(sql_, at, '\'', literal.doubledQuotes);
    if (end != 0) literal.text = sql_.substr(begin + 1, end - begin - 2);
    return end;
  }
  if (sql_[at] == '-' || sql_[at] == '+') ++at;
  // A digit right behind a word would belong to it.
  const bool isDigit = at < sql_.size() && IsDigit(sql_[at]) && (at > begin || at == 0 || !IsWordPart(sql_[at - 1]));
  const bool isPoint = at + 1 < sql_.size() && sql_[at] == '.' && IsDigit(sql_[at + 1]);
  bool plain = false;
  if (isDigit || isPoint) end = ReadNumber(sql_, at, plain);
  if (!plain) return 0;
  literal.text = sql_.substr(begin, end - begin);
  return end;
}

/// What stands before and behind a literal that was taken out makes it one, whatever its value: the same text around
/// literals of the same form is the same shape. False leaves the literals as they happen to be.
bool StatementShape::ReadLikeLast() {
  std::size_t at = 0;
  std::size_t behindLast = 0;
  for (std::size_t i = 0; i < literals_.size(); ++i) {
    const std::size_t length = places_[i] - behindLast;
    if (sql_.compare(at, length, text_, behindLast, length) != 0) return false;
    at = ReadLiteral(at + length, literals_[i]);
    if (at == 0) return false;
    behindLast = places_[i] + 1;
  }
  return !literals_.empty() && sql_.substr(at) == std::string_view(text_).substr(behindLast);
}

void StatementShape::Read(std::string_view sql) {
  sql_ = sql;
  if (!ReadLikeLast()) ReadWhole();
}

void StatementShape::ReadWhole() {
  literals_.clear();
  places_.clear();
  text_.clear();
  SplitStatement(sql_, tokens_);
  kind_ = KindOfTokens();
  if (kind_ != StatementKind::Select && kind_ != StatementKind::Change) {
    text_ = sql_;
    return;
  }
  // An unnamed procedure call without brackets, "execute procedure P 1,2", keeps its literals in the text.
  clauses_.assign(1, Clause::Other);
  std::size_t copied = 0;
  for (std::size_t i = 0; i < tokens_.size(); ++i) {
    const Token& token = tokens_[i];
    if (token.type == TokenType::Word) {
      clauses_.back() = ClauseAfter(token.word, clauses_.back());
      continue;
    }
    if (token.type == TokenType::Symbol) {
      if (token.symbol == '(') clauses_.push_back(ClauseOfBracket(i, clauses_.back()));
      if (token.symbol == ')' && clauses_.size() > 1) clauses_.pop_back();
      continue;
    }
    const Clause clause = clauses_.back();
    const std::size_t first = WithSign(i);
    if (!StandsAlone(first, i, clause)) continue;
    const std::size_t begin = tokens_[first].begin;
    text_.append(sql_, copied, begin - copied);
    places_.push_back(text_.size());
    text_ += '?';
    copied = token.end;
    const bool quoted = token.type == TokenType::Quoted;
    const std::string_view spelling = sql_.substr(begin, token.end - begin);
    literals_.push_back({quoted ? spelling.substr(1, spelling.size() - 2) : spelling, quoted, token.doubledQuotes,
                         clause == Clause::StoredValues || clause == Clause::Assignments});
  }
  text_.append(sql_, copied);
}

}  // namespace holdwise::firebird
