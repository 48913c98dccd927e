// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <exception>

namespace holdwise {

/// Writes a guarded routine's failure to the host's debug log, in the one form the support people search for:
/// "Holdwise.bpl->unit->Routine 发生错误!错误信息:" and the text. Any thread.
void LogFailure(const QString& unit, const QString& routine, const QString& text);
/// Is it an Error that may go away by itself (no space, no file, no connection, a lock)? Pure.
[[nodiscard]] bool IsPassing(const std::exception& error);
/// The same for the exception being handled; to be called inside a catch block. Of one that the user can do something
/// about or wait for (no space, no file, no connection, a lock, a refused value) the host is told, too, for the user to
/// see.
void LogCurrentException(const QString& unit, const QString& routine);

/// Writes to the host's debug log that the user has deleted a portfolio, with its name, and tells the user how it comes
/// back. Any thread.
void LogDeletion(const QString& portfolioName);

}  // namespace holdwise
