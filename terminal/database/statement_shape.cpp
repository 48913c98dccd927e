#include "database/statement_shape.h"

#include <array>
#include <utility>

namespace holdwise::firebird {

enum class StatementShape::Word : std::uint8_t {
  None,
  Alter,
  And,
  Between,
  Block,
  Comment,
  Create,
  Delete,
  Drop,
  Execute,
  From,
  Grant,
  Group,
  Having,
  In,
  Insert,
  Matching,
  Merge,
  Not,
  On,
  Or,
  Order,
  Plan,
  Procedure,
  Recreate,
  Returning,
  Revoke,
  Rows,
  Select,
  Set,
  Union,
  Update,
  Values,
  When,
  Where,
  With,
};

namespace {

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}
bool IsWordStart(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == '$' || static_cast<signed char>(c) < 0;
}
bool IsWordPart(char c) {
  return IsWordStart(c) || IsDigit(c);
}
bool IsBlank(char c) {
  return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v';
}

}  // namespace

StatementShape::Word StatementShape::WordOf(std::string_view text) {
  static constexpr std::array<std::pair<std::string_view, Word>, 35> kWords{{
      {"alter", Word::Alter},
      {"and", Word::And},
      {"between", Word::Between},
      {"block", Word::Block},
      {"comment", Word::Comment},
      {"create", Word::Create},
      {"delete", Word::Delete},
      {"drop", Word::Drop},
      {"execute", Word::Execute},
      {"from", Word::From},
      {"grant", Word::Grant},
      {"group", Word::Group},
      {"having", Word::Having},
      {"in", Word::In},
      {"insert", Word::Insert},
      {"matching", Word::Matching},
      {"merge", Word::Merge},
      {"not", Word::Not},
      {"on", Word::On},
      {"or", Word::Or},
      {"order", Word::Order},
      {"plan", Word::Plan},
      {"procedure", Word::Procedure},
      {"recreate", Word::Recreate},
      {"returning", Word::Returning},
      {"revoke", Word::Revoke},
      {"rows", Word::Rows},
      {"select", Word::Select},
      {"set", Word::Set},
      {"union", Word::Union},
      {"update", Word::Update},
      {"values", Word::Values},
      {"when", Word::When},
      {"where", Word::Where},
      {"with", Word::With},
  }};
  if (text.size() < 2 || text.size() > 9) return Word::None;
  const char first = static_cast<char>(text[0] | 0x20);
  for (const auto& [name, word] : kWords) {
    if (name[0] != first || name.size() != text.size()) continue;
    bool same = true;
    for (std::size_t i = 1; i < name.size() && same; ++i) same = static_cast<char>(text[i] | 0x20) == name[i];
    if (same) return word;
  }
  return Word::None;
}

std::size_t StatementShape::SkipBlank(std::size_t at) const {
  while (at < sql_.size()) {
    if (IsBlank(sql_[at])) {
      ++at;
    } else if (sql_.substr(at, 2) == "--") {
      const std::size_t end = sql_.find('\n', at);
      at = end == std::string_view::npos ? sql_.size() : end + 1;
    } else if (sql_.substr(at, 2) == "/*") {
      const std::size_t end = sql_.find("*/", at + 2);
      at = end == std::string_view::npos ? sql_.size() : end + 2;
    } else {
      break;
    }
  }
  return at;
}

/// The position behind the closing quote, or 0 when it is missing.
std::size_t StatementShape::ReadQuoted(std::size_t at, char quote, bool& doubled) const {
  for (++at;; at += 2) {
    at = sql_.find(quote, at);
    if (at == std::string_view::npos) return 0;
    if (at + 1 >= sql_.size() || sql_[at + 1] != quote) return at + 1;
    doubled = true;
  }
}

/// q'{...}': `at` is the quote. The position behind the closing one, or 0.
std::size_t StatementShape::ReadAlternativeQuoted(std::size_t at) const {
  if (at + 1 >= sql_.size()) return 0;
  static constexpr std::string_view kOpen = "({[<";
  static constexpr std::string_view kClose = ")}]>";
  const std::size_t pair = kOpen.find(sql_[at + 1]);
  const std::array<char, 2> closing{pair == std::string_view::npos ? sql_[at + 1] : kClose[pair], '\''};
  const std::size_t end = sql_.find(std::string_view(closing.data(), closing.size()), at + 2);
  return end == std::string_view::npos ? 0 : end + 2;
}

/// `plain` is false for forms that only the engine knows, such as 0x1F.
std::size_t StatementShape::ReadNumber(std::size_t at, bool& plain) const {
  const auto digits = [this](std::size_t from) {
    while (from < sql_.size() && IsDigit(sql_[from])) ++from;
    return from;
  };
  at = digits(at);
  if (at < sql_.size() && sql_[at] == '.') at = digits(at + 1);
  if (at < sql_.size() && (sql_[at] | 0x20) == 'e') {
    std::size_t exponent = at + 1;
    if (exponent < sql_.size() && (sql_[exponent] == '+' || sql_[exponent] == '-')) ++exponent;
    const std::size_t end = digits(exponent);
    if (end > exponent) at = end;
  }
  plain = at >= sql_.size() || !IsWordPart(sql_[at]);
  while (at < sql_.size() && IsWordPart(sql_[at])) ++at;
  return at;
}

std::size_t StatementShape::ReadSymbol(std::size_t at, char& symbol) const {
  symbol = sql_[at++];
  const char next = at < sql_.size() ? sql_[at] : '\0';
  if (symbol == '|' && next == '|') return at + 1;
  const bool negated = symbol == '!' || symbol == '^' || symbol == '~';
  if (symbol != '<' && symbol != '>' && symbol != '=' && !(negated && (next == '=' || next == '<' || next == '>'))) {
    return at;
  }
  const bool two = negated || (symbol == '<' && (next == '=' || next == '>')) || (symbol == '>' && next == '=');
  symbol = '=';
  return two ? at + 1 : at;
}

void StatementShape::Split() {
  tokens_.clear();
  for (std::size_t at = SkipBlank(0); at < sql_.size(); at = SkipBlank(at)) {
    Token token{TokenType::Symbol, Word::None, false, '\0', static_cast<std::uint32_t>(at), 0};
    const char c = sql_[at];
    std::size_t end = 0;
    if (IsWordStart(c)) {
      token.type = TokenType::Word;
      end = at + 1;
      while (end < sql_.size() && IsWordPart(sql_[end])) ++end;
      if (end == at + 1 && (c | 0x20) == 'q' && end < sql_.size() && sql_[end] == '\'') {
        end = ReadAlternativeQuoted(end);
      } else {
        token.word = WordOf(sql_.substr(at, end - at));
      }
    } else if (IsDigit(c) || (c == '.' && at + 1 < sql_.size() && IsDigit(sql_[at + 1]))) {
      bool plain = false;
      end = ReadNumber(at, plain);
      token.type = plain ? TokenType::Number : TokenType::Word;
    } else if (c == '\'' || c == '"') {
      end = ReadQuoted(at, c, token.doubledQuotes);
      token.type = c == '"' ? TokenType::Word : TokenType::Quoted;
    } else {
      end = ReadSymbol(at, token.symbol);
    }
    if (end == 0) {  // an open quote: the engine will say so
      tokens_.clear();
      return;
    }
    token.end = static_cast<std::uint32_t>(end);
    tokens_.push_back(token);
    at = end;
  }
}

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
    if (sql_[at] == '\'') end = ReadQuoted(at, '\'', literal.doubledQuotes);
    if (end != 0) literal.text = sql_.substr(begin + 1, end - begin - 2);
    return end;
  }
  if (sql_[at] == '-' || sql_[at] == '+') ++at;
  // A digit right behind a word would belong to it.
  const bool isDigit = at < sql_.size() && IsDigit(sql_[at]) && (at > begin || at == 0 || !IsWordPart(sql_[at - 1]));
  const bool isPoint = at + 1 < sql_.size() && sql_[at] == '.' && IsDigit(sql_[at + 1]);
  bool plain = false;
  if (isDigit || isPoint) end = ReadNumber(at, plain);
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
  Split();
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
