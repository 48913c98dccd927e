// SPDX-License-Identifier: MIT
#include "address_bar.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

namespace holdwise {
namespace {

constexpr int kHeight = 38;
constexpr int kTabPadding = 18;
constexpr int kLeftMargin = 8;
constexpr int kUnderline = 3;

}  // namespace

AddressBar::AddressBar(const ThemeServices& theme, QWidget* parent) : QWidget(parent), theme_(theme) {
  setFixedHeight(kHeight);
  setMouseTracking(true);
  setFocusPolicy(Qt::TabFocus);
}

void AddressBar::SetNames(const QStringList& names) {
  const QString currentName = names_.value(current_);
  names_ = names;
  SetCurrent(currentName);
}

void AddressBar::SetCurrent(const QString& name) {
  current_ = static_cast<int>(names_.indexOf(name));
  setAccessibleName(QStringLiteral("页签：%1").arg(names_.join(QStringLiteral("、"))));
  setAccessibleDescription(QStringLiteral("当前：%1").arg(name));
  update();
}

QRect AddressBar::TabRect(int index) const {
  int left = kLeftMargin;
  for (int other = 0; other < index; ++other) left += fontMetrics().horizontalAdvance(names_[other]) + 2 * kTabPadding;
  return {left, 0, fontMetrics().horizontalAdvance(names_[index]) + 2 * kTabPadding, height()};
}

int AddressBar::TabAt(const QPoint& point) const {
  for (int index = 0; index < names_.size(); ++index)
    if (TabRect(index).contains(point)) return index;
  return -1;
}

void AddressBar::Choose(int index) {
  if (index >= 0 && index < names_.size() && OnChosen) OnChosen(QString(names_[index]));
}

void AddressBar::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), theme_.Colors().ColorOf(QStringLiteral("ktr_gridtitlebk")));
  painter.fillRect(0, height() - 1, width(), 1, theme_.Colors().ColorOf(QStringLiteral("KTR_BorderColor")));
  for (int index = 0; index < names_.size(); ++index) PaintTab(painter, index);
}

void AddressBar::PaintTab(QPainter& painter, int index) const {
  const QRect tab = TabRect(index);
  const auto color = [this](const char* key) { return theme_.Colors().ColorOf(QString::fromLatin1(key)); };
  const bool isCurrent = index == current_;
  if (isCurrent || index == hovered_) painter.fillRect(tab, color(isCurrent ? "Qm_BGCorlor" : "KTR_HighLightColor2"));
  if (isCurrent)
    painter.fillRect(QRect(tab.left(), 0, tab.width(), kUnderline),
                     color(hasFocus() ? "Grid_ClickTxtColor" : "Section_BigTxtColor"));
  painter.setPen(color(isCurrent ? "Section_BigTxtColor" : "QM_TitleFontColor"));
  painter.drawText(tab, Qt::AlignCenter, names_[index]);
}

void AddressBar::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) Choose(TabAt(event->position().toPoint()));
}

void AddressBar::mouseMoveEvent(QMouseEvent* event) {
  hovered_ = TabAt(event->position().toPoint());
  setCursor(hovered_ >= 0 ? Qt::PointingHandCursor : Qt::ArrowCursor);
  update();
}

void AddressBar::leaveEvent(QEvent* /*event*/) {
  hovered_ = -1;
  update();
}

void AddressBar::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Left)
    Choose(current_ - 1);
  else if (event->key() == Qt::Key_Right)
    Choose(current_ + 1);
  else
    QWidget::keyPressEvent(event);
}

}  // namespace holdwise
