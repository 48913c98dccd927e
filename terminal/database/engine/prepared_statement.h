// SPDX-License-Identifier: MIT
#pragma once
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "database/engine/firebird_client.h"
#include "database/engine/literal_binder.h"
#include "database/engine/row_reader.h"
#include "holdwise/packet/result_set.h"

namespace holdwise::firebird {

/// A statement the engine has prepared, with the message its parameters are written to. Belongs to one attachment and
/// must be gone before it is detached.
class PreparedStatement {
 public:
  /// Throws Error(Database) with the engine's words when it cannot be prepared, Error(Refused) when it would start or
  /// end a transaction.
  PreparedStatement(Status& status, Firebird::IAttachment& attachment, Transaction& transaction, std::string_view sql);

  [[nodiscard]] std::size_t ParameterCount() const { return parameters_.size(); }
  /// Writes the literals into the message; false when one of them has to stay in the text (see BindLiteral).
  [[nodiscard]] bool Bind(const std::vector<Literal>& literals);
  /// Runs it and drops the rows, if any.
  void Execute(Transaction& transaction);
  /// Runs it and returns its rows, `maxRows` at most.
  [[nodiscard]] ResultSet Read(Transaction& transaction, int maxRows);

 private:
  [[nodiscard]] Firebird::IMessageMetadata* InputFormat() const;

  Status& status_;
  Firebird::IAttachment& attachment_;
  Handle<Firebird::IStatement> statement_;
  Handle<Firebird::IMessageMetadata> input_;
  Handle<Firebird::IMessageMetadata> output_;
  std::vector<Parameter> parameters_;
  std::vector<unsigned char> inputMessage_;
  std::vector<unsigned char> outputMessage_;
  RowReader reader_;
  bool hasCursor_ = false;
};

}  // namespace holdwise::firebird
