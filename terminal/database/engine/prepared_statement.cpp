// SPDX-License-Identifier: MIT
#include "database/engine/prepared_statement.h"

namespace holdwise::firebird {

namespace {

constexpr unsigned kDialect = 3;
constexpr unsigned kNullBit = 1;
constexpr char16_t kAction[] = u"语句执行失败";

/// Closes the cursor at the end of its scope; errors on the way out of another error are of no use to anybody.
class Cursor {
 public:
  Cursor(Status& status, Firebird::IResultSet* rows) : status_(status), rows_(rows) {}
  ~Cursor() {
    if (!rows_) return;
    try {
      Close();
    } catch (const Firebird::FbException&) {
      rows_.reset();
    }
  }
  Cursor(const Cursor&) = delete;
  Cursor& operator=(const Cursor&) = delete;
  [[nodiscard]] bool Fetch(std::vector<unsigned char>& message) {
    return rows_->fetchNext(status_.Get(), message.data()) == Firebird::IStatus::RESULT_OK;
  }
  void Close() {
    rows_->close(status_.Get());
    static_cast<void>(rows_.release());  // the engine has freed it
  }

 private:
  Status& status_;
  Handle<Firebird::IResultSet> rows_;
};

}  // namespace

PreparedStatement::PreparedStatement(Status& status, Firebird::IAttachment& attachment, Transaction& transaction,
                                     std::string_view sql)
    : status_(status), attachment_(attachment) {
  Guarded(kAction, [&] {
    statement_.reset(attachment.prepare(status.Get(), &transaction.Get(), static_cast<unsigned>(sql.size()), sql.data(),
                                        kDialect, Firebird::IStatement::PREPARE_PREFETCH_METADATA));
    const unsigned type = statement_->getType(status.Get());
    if (type == isc_info_sql_stmt_start_trans || type == isc_info_sql_stmt_commit ||
        type == isc_info_sql_stmt_rollback) {
      throw Error(ErrorCategory::Refused, "事务不能用语句开始或结束");
    }
    hasCursor_ = (statement_->getFlags(status.Get()) & Firebird::IStatement::FLAG_HAS_CURSOR) != 0;
    input_.reset(statement_->getInputMetadata(status.Get()));
    output_.reset(statement_->getOutputMetadata(status.Get()));
    inputMessage_.resize(input_->getMessageLength(status.Get()));
    outputMessage_.resize(output_->getMessageLength(status.Get()));
    for (unsigned i = 0; i < input_->getCount(status.Get()); ++i) {
      parameters_.push_back({input_->getType(status.Get(), i) & ~kNullBit, input_->getScale(status.Get(), i),
                             input_->getLength(status.Get(), i), input_->getCharSet(status.Get(), i),
                             input_->getOffset(status.Get(), i), input_->getNullOffset(status.Get(), i)});
    }
    reader_ = RowReader(status, *output_);
  });
}

bool PreparedStatement::Bind(const std::vector<Literal>& literals) {
  for (std::size_t i = 0; i < parameters_.size(); ++i) {
    if (!BindLiteral(literals[i], parameters_[i], inputMessage_)) return false;
  }
  return true;
}

Firebird::IMessageMetadata* PreparedStatement::InputFormat() const {
  return parameters_.empty() ? nullptr : input_.get();
}

void PreparedStatement::Execute(Transaction& transaction) {
  Guarded(kAction, [&] {
    if (!hasCursor_) {
      statement_->execute(status_.Get(), &transaction.Get(), InputFormat(), inputMessage_.data(),
                          outputMessage_.empty() ? nullptr : output_.get(), outputMessage_.data());
      return;
    }
    Cursor cursor(status_, statement_->openCursor(status_.Get(), &transaction.Get(), InputFormat(),
                                                  inputMessage_.data(), output_.get(), 0));
    while (cursor.Fetch(outputMessage_)) {
    }
    cursor.Close();
  });
}

ResultSet PreparedStatement::Read(Transaction& transaction, int maxRows) {
  return Guarded(kAction, [&] {
    ResultSet rows = reader_.EmptyResult();
    if (!hasCursor_) {
      statement_->execute(status_.Get(), &transaction.Get(), InputFormat(), inputMessage_.data(),
                          outputMessage_.empty() ? nullptr : output_.get(), outputMessage_.data());
      if (!outputMessage_.empty() && maxRows > 0)
        reader_.Append(outputMessage_, status_, attachment_, transaction, rows);
      return rows;
    }
    Cursor cursor(status_, statement_->openCursor(status_.Get(), &transaction.Get(), InputFormat(),
                                                  inputMessage_.data(), output_.get(), 0));
    while (rows.RowCount() < maxRows && cursor.Fetch(outputMessage_)) {
      reader_.Append(outputMessage_, status_, attachment_, transaction, rows);
    }
    cursor.Close();
    return rows;
  });
}

}  // namespace holdwise::firebird
