// SPDX-License-Identifier: MIT
#pragma once
#include <QString>

class QSettings;

namespace holdwise {

/// The file of the settings in a work folder.
[[nodiscard]] QString SettingsFileOf(const QString& workFolder);

/// Has the starts to come on that work folder, unless they name one, use this data folder.
void RememberDataFolder(QSettings& settings, const QString& folder);
/// The one remembered so; empty: none.
[[nodiscard]] QString RememberedDataFolder(const QSettings& settings);

/// Makes sure that the file can serve as settings: one that is damaged (not readable, or holds what no settings file
/// holds) is kept beside it under the name with ".damaged", in the place of an earlier one, and the terminal opens as
/// at the first time. @return what the user has to know; empty when the file is well or not there
[[nodiscard]] QString SetAsideIfDamaged(const QString& path);

/// Has the settings of one work folder, as far as they say how the window looks and where it was left, be those of
/// another one too. What cannot be written stays as it was; so does a damaged file, which the start there tells of.
void CarrySettings(const QString& fromFolder, const QString& toFolder);

}  // namespace holdwise
