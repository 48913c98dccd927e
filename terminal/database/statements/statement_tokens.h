// SPDX-License-Identifier: MIT
#pragma once
#include <cstdint>
#include <string_view>
#include <vector>

/// The words, numbers, texts and symbols that a statement consists of.
namespace holdwise::firebird {

/// The words that tell what a literal beside them is for.
enum class Word : std::uint8_t {
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

enum class TokenType : std::uint8_t { Word, Number, Quoted, Symbol };

/// Names in double quotes and numbers in forms that only the engine knows, such as 0x1F, are words.
struct Token {
  TokenType type = TokenType::Symbol;
  Word word = Word::None;
  bool doubledQuotes = false;  ///< a quote stands twice inside for each one meant
  char symbol = '\0';          ///< comparison operators of any length are '='
  std::uint32_t begin = 0;
  std::uint32_t end = 0;
};

/// Blanks and comments lie between the tokens. None at all when a quote stays open: the engine will say so.
void SplitStatement(std::string_view sql, std::vector<Token>& tokens);

[[nodiscard]] constexpr bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}
[[nodiscard]] constexpr bool IsWordStart(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == '$' || static_cast<signed char>(c) < 0;
}
/// Does it continue a word?
[[nodiscard]] constexpr bool IsWordPart(char c) {
  return IsWordStart(c) || IsDigit(c);
}
/// `at` is the opening quote. The position behind the closing one, or 0 when it is missing.
[[nodiscard]] std::size_t ReadQuoted(std::string_view sql, std::size_t at, char quote, bool& doubled);
/// The position behind the number at `at`; `plain` is false for forms that only the engine knows.
[[nodiscard]] std::size_t ReadNumber(std::string_view sql, std::size_t at, bool& plain);

}  // namespace holdwise::firebird
