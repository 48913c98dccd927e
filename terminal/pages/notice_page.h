// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <QWidget>
#include <functional>
#include <vector>

namespace holdwise {

/// A button of a page and what it does.
struct NoticeChoice {
  QString caption;
  std::function<void()> act;
};

/// A page that says what the user has to know before the terminal can go on and what to do about it.
class NoticePage : public QWidget {
 public:
  /// @param title    one line
  /// @param text     what is the matter and what to do; shown as it stands, can be copied
  /// @param commands command lines to copy, with a button for it; may be empty
  /// @param choices  a button each, in a row
  NoticePage(const QString& title, const QString& text, const QString& commands, std::vector<NoticeChoice> choices);
};

/// Text of the two commands that make a data folder at that place, with the producer where this program is. An
/// application object must be there.
[[nodiscard]] QString DataFolderCommands(const QString& dataFolder);

}  // namespace holdwise
