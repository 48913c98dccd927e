// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <QWidget>
#include <functional>

namespace holdwise {

/// A page that says why the terminal cannot show its views yet and what to do about it, with one button to try again.
class NoticePage : public QWidget {
 public:
  /// @param title    one line
  /// @param text     what is the matter and what to do; shown as it stands, can be copied
  /// @param commands command lines to copy; may be empty
  NoticePage(const QString& title, const QString& text, const QString& commands, std::function<void()> tryAgain);
};

/// Text of the two commands that make a data folder at that place.
[[nodiscard]] QString DataFolderCommands(const QString& dataFolder);

}  // namespace holdwise
