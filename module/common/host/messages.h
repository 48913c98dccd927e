// SPDX-License-Identifier: MIT
#pragma once
#include <QString>

/// The host's message boxes as the views use them. Events run while a box is open: whoever asks may be gone afterwards.
/// User-interface thread only.
namespace holdwise {

/// A notice with a button to take note of it.
void Tell(const QString& text, const QString& caption = QStringLiteral("提示"));
/// A question with OK and Cancel. @return was it OK?
[[nodiscard]] bool Agrees(const QString& question);
/// A notice that may be cancelled. @return was it OK?
[[nodiscard]] bool AgreesToNotice(const QString& notice);

}  // namespace holdwise
