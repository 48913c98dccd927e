// SPDX-License-Identifier: MIT
#pragma once
#include <QString>

namespace holdwise {

/// One UTF-8 line on standard output, at once; nothing for an empty text. Any thread.
void PrintOut(const QString& text);
/// One UTF-8 line on standard error, at once. Any thread.
void PrintError(const QString& text);

}  // namespace holdwise
