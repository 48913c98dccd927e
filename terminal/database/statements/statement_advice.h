// SPDX-License-Identifier: MIT
#pragma once
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "database/statements/statement_shape.h"
#include "holdwise/sdk/database.h"

namespace holdwise::firebird {

/// What the owners of statements have told about them, by shape (see StatementShape). Not synchronised.
class AdvisedStatements {
 public:
  /// Adds to what is known; the latest advice on a shape counts. Error(Refused), and nothing is taken, when one of the
  /// texts is no select, or when an equal form does not hold the same literals in the same order: its parameters could
  /// not be bound from the statement's.
  void Take(const std::vector<StatementAdvice>& advice);
  /// The text to prepare for statements of that shape: the shape itself when no equal form is known. Valid until the
  /// next Take.
  [[nodiscard]] std::string_view FormToPrepare(std::string_view shape) const;
  /// May rows of a statement of that shape be given again while nothing has been written?
  [[nodiscard]] bool MayBeKept(std::string_view shape) const;

 private:
  struct Advice {
    std::string formToPrepare;  ///< empty: the shape itself
    bool mayBeKept = false;
  };
  struct Hash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
  };
  using Table = std::unordered_map<std::string, Advice, Hash, std::equal_to<>>;
  [[nodiscard]] static Table::value_type ShapesOf(const StatementAdvice& advice);

  Table table_;
};

}  // namespace holdwise::firebird
