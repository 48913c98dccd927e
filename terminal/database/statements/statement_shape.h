// SPDX-License-Identifier: MIT
#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "database/statements/statement_tokens.h"

namespace holdwise::firebird {

enum class StatementKind : std::uint8_t {
  Select,      ///< reads rows
  Change,      ///< insert, update, delete, merge, execute procedure
  Plain,       ///< everything that takes no parameters: blocks, SET GENERATOR, what is not understood
  Definition,  ///< changes the schema
};

/// A literal of a statement that can be handed over as a value. Views into the text that was read.
struct Literal {
  std::string_view text;  ///< number with its sign, or what stands between the quotes
  bool quoted = false;
  bool doubledQuotes = false;  ///< a quote stands twice in `text` for each one meant
  bool stored = false;         ///< written to a column or handed to a procedure; otherwise compared
};

/// What statements that differ only in their literals have in common: the text with "?" in the place of every literal
/// that stands alone in a value list, after "=" of an assignment or on the right of a comparison. Literals elsewhere
/// stay in the text. Reads without building anything but its own reused buffers, and quickly when the statement differs
/// from the one before only in its literals; not for sharing between threads.
class StatementShape {
 public:
  /// `sql` must outlive the use of Literals().
  void Read(std::string_view sql);
  [[nodiscard]] const std::string& Text() const { return text_; }
  [[nodiscard]] const std::vector<Literal>& Literals() const { return literals_; }
  [[nodiscard]] StatementKind Kind() const { return kind_; }

 private:
  /// What a pair of brackets, or the statement itself, holds at the moment.
  enum class Clause : std::uint8_t { Other, SelectList, Assignments, Condition, StoredValues, ComparedValues };

  [[nodiscard]] bool ReadLikeLast();
  [[nodiscard]] std::size_t ReadLiteral(std::size_t at, Literal& literal) const;
  void ReadWhole();
  [[nodiscard]] StatementKind KindOfTokens() const;
  [[nodiscard]] Clause ClauseOfBracket(std::size_t index, Clause outer) const;
  [[nodiscard]] static Clause ClauseAfter(Word word, Clause clause);
  [[nodiscard]] bool StandsAlone(std::size_t first, std::size_t index, Clause clause) const;
  [[nodiscard]] bool EndsValue(std::size_t index) const;
  [[nodiscard]] bool IsSymbol(std::size_t index, char symbol) const;
  [[nodiscard]] bool IsWord(std::size_t index, Word word) const;
  [[nodiscard]] std::size_t WithSign(std::size_t index) const;

  std::string_view sql_;
  std::string text_;
  std::vector<Token> tokens_;
  std::vector<Clause> clauses_;
  std::vector<Literal> literals_;
  std::vector<std::size_t> places_;  ///< of the literals' "?" in text_
  StatementKind kind_ = StatementKind::Plain;
};

}  // namespace holdwise::firebird
