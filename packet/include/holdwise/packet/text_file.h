// SPDX-License-Identifier: MIT
#pragma once
#include <QByteArray>
#include <QString>
#include <cstdint>

/// Texts as people have them: UTF-8 with or without byte-order mark, or GB18030.
namespace holdwise {

/// Whole content of a file as UTF-8 without byte-order mark: valid UTF-8 is taken as such; everything else must be
/// valid GB18030 and plainly so: Chinese as people write it. UTF-8 with damaged characters, other encodings such as
/// Big5, and the rare short text that could be either (a byte-order mark decides): Error(Corrupt). A short text of
/// another double-byte encoding whose bytes all mean common Chinese characters cannot be told. Missing:
/// Error(NotFound); unreadable: Error(Io); above `maxBytes`: Error(Refused).
[[nodiscard]] QByteArray ReadTextFile(const QString& path, std::int64_t maxBytes = 512LL << 20);
/// The same for bytes at hand.
[[nodiscard]] QByteArray ToUtf8Text(const QByteArray& bytes);

/// The text with every character that is not seen but changes what is (control characters, direction marks, line
/// separators, zero widths) as "\x" and its hexadecimal digits, two at least.
[[nodiscard]] QString ControlsShown(QStringView text);
/// A text from outside as it stands in a message: ControlsShown; of more than 400 characters the first 400 and "…".
[[nodiscard]] QString ShownText(const QString& text);

}  // namespace holdwise
