// SPDX-License-Identifier: MIT
#pragma once
#include <QString>

/// A security's code as the module stores it and as the host knows it. User-interface thread.
namespace holdwise {

/// The last six characters of a code, all of it when it is shorter.
[[nodiscard]] QString GetCodeCNum(const QString& code);
/// The host's code number of a code: "1" and its six digits, except that a code the host knows as fund or bond, an
/// index and the empty text stay as they are. Needs the module's host.
[[nodiscard]] QString GetCodeNum(const QString& code);
/// The same as a number, as the data centre takes it; 0 for what is no number.
[[nodiscard]] int CodeNumberOf(const QString& code);

}  // namespace holdwise
