// SPDX-License-Identifier: MIT
#pragma once
#include <QPixmap>

namespace holdwise {

/// Picture of the button that deletes a portfolio: a bin, 20 x 20 pixels, its surroundings transparent. Painted:
/// reading a picture file would load every picture plug-in of Qt in the middle of the start.
/// @param isPressed the filled one, for the row whose button is held down
[[nodiscard]] QPixmap DeletePicture(bool isPressed);

}  // namespace holdwise
