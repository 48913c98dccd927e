// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <QValidator>

/// The name of a portfolio as it is typed, composed or pasted. Pure; the validator belongs to the user-interface
/// thread.
namespace holdwise::editor {

/// Does a key with this character (backspace included) get into the name? Enter does not.
[[nodiscard]] bool IsNameKey(QChar key);
/// Takes away what is beyond the limit of a name (FitsAsName), from what stands left of the caret, where it has just
/// been put in; marks that belong to a character go with it. `caret` counts UTF-16 units and follows.
void LimitName(QString& name, int& caret);
/// Why the name cannot be stored; empty when it can. Statements take it as it stands: a single quote would break them.
/// Characters that nobody sees are refused too.
[[nodiscard]] QString NameProblem(const QString& name);

/// Keeps an entry inside the limit, whichever way the text gets in.
class NameLimit : public QValidator {
 public:
  using QValidator::QValidator;
  State validate(QString& input, int& caret) const override;
};

}  // namespace holdwise::editor
