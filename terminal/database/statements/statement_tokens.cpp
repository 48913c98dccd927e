// SPDX-License-Identifier: MIT
#include "database/statements/statement_tokens.h"

#include <array>
#include <utility>

namespace holdwise::firebird {

namespace {

bool IsBlank(char c) {
  return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v';
}

Word WordOf(std::string_view text) {
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

std::size_t SkipBlank(std::string_view sql, std::size_t at) {
  while (at < sql.size()) {
    if (IsBlank(sql[at])) {
      ++at;
    } else if (sql.substr(at, 2) == "--") {
      const std::size_t end = sql.find('\n', at);
      at = end == std::string_view::npos ? sql.size() : end + 1;
    } else if (sql.substr(at, 2) == "/*") {
      const std::size_t end = sql.find("*/", at + 2);
      at = end == std::string_view::npos ? sql.size() : end + 2;
    } else {
      break;
    }
  }
  return at;
}

/// q'{...}': `at` is the quote. The position behind the closing one, or 0.
std::size_t ReadAlternativeQuoted(std::string_view sql, std::size_t at) {
  if (at + 1 >= sql.size()) return 0;
  static constexpr std::string_view kOpen = "({[<";
  static constexpr std::string_view kClose = ")}]>";
  const std::size_t pair = kOpen.find(sql[at + 1]);
  const std::array<char, 2> closing{pair == std::string_view::npos ? sql[at + 1] : kClose[pair], '\''};
  const std::size_t end = sql.find(std::string_view(closing.data(), closing.size()), at + 2);
  return end == std::string_view::npos ? 0 : end + 2;
}

std::size_t ReadSymbol(std::string_view sql, std::size_t at, char& symbol) {
  symbol = sql[at++];
  const char next = at < sql.size() ? sql[at] : '\0';
  if (symbol == '|' && next == '|') return at + 1;
  const bool negated = symbol == '!' || symbol == '^' || symbol == '~';
  if (symbol != '<' && symbol != '>' && symbol != '=' && !(negated && (next == '=' || next == '<' || next == '>'))) {
    return at;
  }
  const bool two = negated || (symbol == '<' && (next == '=' || next == '>')) || (symbol == '>' && next == '=');
  symbol = '=';
  return two ? at + 1 : at;
}

}  // namespace

std::size_t ReadQuoted(std::string_view sql, std::size_t at, char quote, bool& doubled) {
  for (++at;; at += 2) {
    at = sql.find(quote, at);
    if (at == std::string_view::npos) return 0;
    if (at + 1 >= sql.size() || sql[at + 1] != quote) return at + 1;
    doubled = true;
  }
}

std::size_t ReadNumber(std::string_view sql, std::size_t at, bool& plain) {
  const auto digits = [sql](std::size_t from) {
    while (from < sql.size() && IsDigit(sql[from])) ++from;
    return from;
  };
  at = digits(at);
  if (at < sql.size() && sql[at] == '.') at = digits(at + 1);
  if (at < sql.size() && (sql[at] | 0x20) == 'e') {
    std::size_t exponent = at + 1;
    if (exponent < sql.size() && (sql[exponent] == '+' || sql[exponent] == '-')) ++exponent;
    const std::size_t end = digits(exponent);
    if (end > exponent) at = end;
  }
  plain = at >= sql.size() || !IsWordPart(sql[at]);
  while (at < sql.size() && IsWordPart(sql[at])) ++at;
  return at;
}

void SplitStatement(std::string_view sql, std::vector<Token>& tokens) {
  tokens.clear();
  for (std::size_t at = SkipBlank(sql, 0); at < sql.size(); at = SkipBlank(sql, at)) {
    Token token{TokenType::Symbol, Word::None, false, '\0', static_cast<std::uint32_t>(at), 0};
    const char c = sql[at];
    std::size_t end = 0;
    if (IsWordStart(c)) {
      token.type = TokenType::Word;
      end = at + 1;
      while (end < sql.size() && IsWordPart(sql[end])) ++end;
      if (end == at + 1 && (c | 0x20) == 'q' && end < sql.size() && sql[end] == '\'') {
        end = ReadAlternativeQuoted(sql, end);
      } else {
        token.word = WordOf(sql.substr(at, end - at));
      }
    } else if (IsDigit(c) || (c == '.' && at + 1 < sql.size() && IsDigit(sql[at + 1]))) {
      bool plain = false;
      end = ReadNumber(sql, at, plain);
      token.type = plain ? TokenType::Number : TokenType::Word;
    } else if (c == '\'' || c == '"') {
      end = ReadQuoted(sql, at, c, token.doubledQuotes);
      token.type = c == '"' ? TokenType::Word : TokenType::Quoted;
    } else {
      end = ReadSymbol(sql, at, token.symbol);
    }
    if (end == 0) {  // an open quote: the engine will say so
      tokens.clear();
      return;
    }
    token.end = static_cast<std::uint32_t>(end);
    tokens.push_back(token);
    at = end;
  }
}

}  // namespace holdwise::firebird
