// SPDX-License-Identifier: MIT
#include "stock_keypad.h"

#include <QGridLayout>
#include <QMouseEvent>
#include <QPalette>

#include "common/frames/frame_parts.h"
#include "common/host/host_access.h"
#include "common/host/theme_colors.h"

namespace holdwise {
namespace {

constexpr int kColumns = 4;
constexpr int kWideRow = 3;
constexpr int kMargin = 4;
constexpr QSize kKeySize{40, 24};

/// Four in a row; those of the last row are twice as wide.
const QStringList& Captions() {
  static const QStringList captions = {
      "1",   "2", "3",  StockKeypad::kBackCaption, "4", "5", "6", StockKeypad::kClearCaption, "7", "8", "9",
      "600", "0", "000"};
  return captions;
}

}  // namespace

KeypadKey::KeypadKey(const QString& caption, QWidget* parent) : QLabel(caption, parent) {
  setAlignment(Qt::AlignCenter);
  setFont(DesignFont());
  setMinimumSize(kKeySize);
  setFrameStyle(QFrame::Panel | QFrame::Raised);
  setAutoFillBackground(true);
}

void KeypadKey::mousePressEvent(QMouseEvent* event) {
  event->accept();
  if (event->button() == Qt::LeftButton) setFrameShadow(QFrame::Sunken);
}

void KeypadKey::mouseReleaseEvent(QMouseEvent* event) {
  event->accept();
  if (event->button() != Qt::LeftButton) return;
  setFrameShadow(QFrame::Raised);
  if (rect().contains(event->pos()) && OnClick) OnClick();
}

StockKeypad::StockKeypad(QWidget* parent) : QFrame(parent) {
  setObjectName(QStringLiteral("RzPanel7"));
  setFrameStyle(QFrame::Panel | QFrame::Plain);
  auto* layout = new QGridLayout(this);
  layout->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  layout->setSpacing(kMargin);
  for (const QString& caption : Captions()) {
    auto* key = new KeypadKey(caption, this);
    if (caption == kBackCaption) {
      key->setObjectName(QStringLiteral("RzPanel18"));
      key->setToolTip(QStringLiteral("退格"));
    }
    if (caption == kClearCaption) {
      key->setObjectName(QStringLiteral("RzPanel24"));
      key->setToolTip(QStringLiteral("清空"));
    }
    key->OnClick = [this, caption] {
      if (OnKey) OnKey(caption);
    };
    key->setAccessibleName(key->toolTip());  // its text, where there is none
    const int place = static_cast<int>(keys_.size());
    const int row = place / kColumns;
    const int width = row == kWideRow ? 2 : 1;
    layout->addWidget(key, row, place % kColumns * width, 1, width);
    keys_.push_back(key);
  }
  hide();
}

void StockKeypad::ApplyTheme() {
  const IColorSet2& colors = ModuleHost().ColorTheme().Colors();
  SetPanelColor(*this, ThemeBackground());
  SetTextColor(*this, colors.ColorOf(theme::kBorder));
  for (KeypadKey* key : keys_) {
    const QColor face = colors.ColorOf(theme::kHighLight2);
    QPalette palette(face, face);
    palette.setColor(QPalette::WindowText, colors.ColorOf(theme::kTitleFont));
    key->setPalette(palette);
  }
}

}  // namespace holdwise
