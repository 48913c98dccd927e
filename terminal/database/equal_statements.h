#pragma once
#include <string_view>

namespace holdwise::firebird {

/// The engine evaluates a condition "in (select ...)" anew for every row it looks at, however few rows the inner select
/// has. For the shapes (see StatementShape) of the statements on these tables where that counts: a statement with the
/// same parameters, columns and rows, in the order asked for, that starts from the inner select. Every other shape
/// comes back as it is.
[[nodiscard]] std::string_view EqualStatement(std::string_view shape);

}  // namespace holdwise::firebird
