// SPDX-License-Identifier: MIT
#pragma once
#include <QPixmap>

/// Pictures of the buttons that do something to the portfolio of a row, 20 x 20 pixels, their surroundings transparent.
/// Painted: reading a picture file would load every picture plug-in of Qt in the middle of the start. The pressed ones
/// are filled, for the row whose button is held down.
namespace holdwise {

/// A disk.
[[nodiscard]] QPixmap SavePicture(bool isPressed);
/// A bin.
[[nodiscard]] QPixmap DeletePicture(bool isPressed);
/// A pencil.
[[nodiscard]] QPixmap ModifyPicture(bool isPressed);

}  // namespace holdwise
