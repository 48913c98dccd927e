// SPDX-License-Identifier: MIT
#pragma once
#include <cstdint>
#include <span>

#include "database/statements/statement_shape.h"

namespace holdwise::firebird {

/// A parameter as the engine describes it.
struct Parameter {
  unsigned type = 0;     ///< SQL_... of the engine, without the null bit
  int scale = 0;         ///< of exact numbers: -2 for two decimals
  unsigned length = 0;   ///< bytes
  unsigned charSet = 0;  ///< of texts
  unsigned offset = 0;   ///< of the value in the message
  unsigned nullOffset = 0;
};

/// Writes the literal into the message of a statement, in the parameter's type. A stored literal that the parameter
/// cannot hold as it stands (no number, a fraction or too large for a whole number, an impossible date, a text too
/// long) throws Error(Refused) naming it, and so does a compared literal that is no such value.
/// False: the literal compares by rules of the engine (a text longer than its column, a number with a text) or the
/// parameter's type is not one that is bound here; the statement has to run with its literals in place.
[[nodiscard]] bool BindLiteral(const Literal& literal, const Parameter& parameter, std::span<unsigned char> message);

}  // namespace holdwise::firebird
