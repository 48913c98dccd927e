// SPDX-License-Identifier: MIT
#pragma once
#include <QPoint>
#include <QRect>
#include <QSize>

/// Where texts and pictures lie inside a grid cell. Pure; pixels; halves are integers rounded towards zero.
namespace holdwise {

/// Distance of a left-aligned text from the left edge of its cell.
inline constexpr int kTextInset = 2;

/// Box of a text drawn in the middle of its cell; wider than the cell when the text is.
[[nodiscard]] QRect CentredTextBox(const QRect& cell, const QSize& text);
/// Box of a left-aligned text, vertically in the middle.
[[nodiscard]] QRect LeftTextBox(const QRect& cell, const QSize& text);
/// The cell shrunk on each side by half the difference to the picture.
[[nodiscard]] QRect PictureBox(const QRect& cell, const QSize& picture);
/// Does a text with its inset need more than `width` pixels?
[[nodiscard]] bool IsClipped(int textWidth, int width);

}  // namespace holdwise
