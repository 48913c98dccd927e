// SPDX-License-Identifier: MIT
#include "window/quick_entry.h"

#include <QApplication>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QSignalBlocker>
#include <QTableWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

namespace holdwise {
namespace {

constexpr int kMostTyped = 16;
constexpr std::size_t kMostFound = 10;
constexpr int kDistanceFromEdge = 24;
constexpr int kWidth = 320;
enum Column { kCode, kName, kOwn, kColumns };

bool TakesText(const QWidget* widget) {
  return widget != nullptr && (widget->testAttribute(Qt::WA_InputMethodEnabled) || widget->inherits("QComboBox"));
}

bool IsPlainCharacter(const QKeyEvent& key) {
  const QString text = key.text();
  if (text.size() != 1 || (key.modifiers() & ~(Qt::KeypadModifier | Qt::ShiftModifier)) != Qt::NoModifier) return false;
  const char16_t character = text.at(0).toUpper().unicode();
  return (character >= u'0' && character <= u'9') || (character >= u'A' && character <= u'Z');
}

}  // namespace

QuickEntry::QuickEntry(QWidget* window, QuickEntryActions actions)
    : QFrame(window),
      actions_(std::move(actions)),
      text_(new QLineEdit(this)),
      list_(new QTableWidget(0, kColumns, this)),
      hint_(new QLabel(this)) {
  MakeLayout();
  hide();
  connect(text_, &QLineEdit::textChanged, this, [this] { ShowFound(); });
  connect(list_, &QTableWidget::currentCellChanged, this, [this] { TellWhatEnterDoes(); });
  connect(list_, &QTableWidget::cellClicked, this, [this](int row, int column) {
    if (column == kOwn)
      ToggleOwn(row);
    else
      Choose();
  });
  text_->installEventFilter(this);
  qApp->installEventFilter(this);
}

void QuickEntry::MakeLayout() {
  setFrameShape(QFrame::Box);  // drawn below
  setAutoFillBackground(true);
  setFixedWidth(kWidth);
  text_->setMaxLength(kMostTyped);
  text_->setPlaceholderText(QStringLiteral("代码、名称或拼音首字母"));
  text_->setAccessibleName(QStringLiteral("查找股票"));
  list_->setAccessibleName(QStringLiteral("找到的股票"));
  list_->setFocusPolicy(Qt::NoFocus);  // the keys stay with the text
  list_->setSelectionBehavior(QAbstractItemView::SelectRows);
  list_->setSelectionMode(QAbstractItemView::SingleSelection);
  list_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  list_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  list_->setShowGrid(false);
  list_->setFrameShape(QFrame::NoFrame);
  list_->verticalHeader()->hide();
  list_->horizontalHeader()->hide();
  list_->horizontalHeader()->setSectionResizeMode(kCode, QHeaderView::ResizeToContents);
  list_->horizontalHeader()->setSectionResizeMode(kName, QHeaderView::Stretch);
  list_->horizontalHeader()->setSectionResizeMode(kOwn, QHeaderView::ResizeToContents);
  hint_->setWordWrap(true);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(text_);
  layout->addWidget(list_);
  layout->addWidget(hint_);
}

void QuickEntry::paintEvent(QPaintEvent* /*event*/) {
  // The style takes a frame's colour from the window's, from which it hardly differs on a dark one.
  QPainter painter(this);
  painter.setPen(palette().color(QPalette::PlaceholderText));
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void QuickEntry::SetCaptureEnabled(bool enabled) {
  isEnabled_ = enabled;
  if (!enabled) hide();
}

bool QuickEntry::eventFilter(QObject* watched, QEvent* event) {
  if (watched == text_ && event->type() == QEvent::FocusOut) hide();
  if (watched == parent() && event->type() == QEvent::Resize && isVisible()) Place();
  if (event->type() != QEvent::KeyPress) return false;
  const auto& key = *static_cast<QKeyEvent*>(event);
  if (watched == text_) return HandleKey(key);
  if (!Opens(watched, key)) return false;
  Open(key.text());
  return true;
}

bool QuickEntry::Opens(const QObject* watched, const QKeyEvent& key) const {
  const auto* target = qobject_cast<const QWidget*>(watched);
  return isEnabled_ && !isVisible() && IsPlainCharacter(key) && target != nullptr && target->window() == window() &&
         QApplication::activeModalWidget() == nullptr && !TakesText(QApplication::focusWidget());
}

bool QuickEntry::HandleKey(const QKeyEvent& key) {
  switch (key.key()) {
    case Qt::Key_Escape:
      hide();
      if (cameFrom_ != nullptr) cameFrom_->setFocus();
      return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      if (key.modifiers().testFlag(Qt::ControlModifier))
        ToggleOwn(list_->currentRow());
      else
        Choose();
      return true;
    case Qt::Key_Up:
    case Qt::Key_Down: {
      const int row = list_->currentRow() + (key.key() == Qt::Key_Down ? 1 : -1);
      if (row >= 0 && row < list_->rowCount()) list_->selectRow(row);
      return true;
    }
    default:
      return false;
  }
}

void QuickEntry::Open(const QString& first) {
  if (!search_) search_.emplace(actions_.makeSearch());
  cameFrom_ = QApplication::focusWidget();
  {
    // The same text again would not be told: the window, and the user's own stocks, may have changed all the same.
    const QSignalBlocker quiet(text_);
    text_->setText(first);
  }
  ShowFound();
  show();
  raise();
  text_->setFocus();
  text_->setCursorPosition(static_cast<int>(first.size()));
}

void QuickEntry::Place() {
  const QWidget* window = parentWidget();
  const int length = list_->verticalHeader()->length();
  setFixedWidth(std::min(kWidth, window->width()));
  list_->setFixedHeight(length);
  adjustSize();
  if (height() > window->height() && !found_.empty()) {
    const int row = length / static_cast<int>(found_.size());
    const int rows = (length - height() + window->height()) / row;
    list_->setFixedHeight(std::max(rows, 1) * row);
    adjustSize();
    list_->scrollToItem(list_->item(list_->currentRow(), kCode));
  }
  move(std::max(0, window->width() - width() - kDistanceFromEdge),
       std::max(0, window->height() - height() - 2 * kDistanceFromEdge));
}

void QuickEntry::ShowFound() {
  found_ = search_->Find(text_->text(), kMostFound);
  list_->setRowCount(static_cast<int>(found_.size()));
  for (int row = 0; row < list_->rowCount(); ++row) {
    const SecurityEntry& entry = *found_[static_cast<std::size_t>(row)];
    list_->setItem(row, kCode, new QTableWidgetItem(entry.code));
    list_->setItem(row, kName, new QTableWidgetItem(entry.name));
    ShowOwn(row);
  }
  if (!found_.empty()) list_->selectRow(0);
  list_->setVisible(!found_.empty());
  TellWhatEnterDoes();
  Place();
}

void QuickEntry::ShowOwn(int row) {
  const int codeNumber = found_[static_cast<std::size_t>(row)]->codeNumber;
  const QString mark = !actions_.canBeOwn(codeNumber) ? QString()
                       : actions_.isOwn(codeNumber)   ? QStringLiteral("★ 自选")
                                                      : QStringLiteral("☆ 自选");
  list_->setItem(row, kOwn, new QTableWidgetItem(mark));
}

void QuickEntry::TellWhatEnterDoes() {
  const SecurityEntry* entry = Selected();
  if (entry == nullptr) {
    hint_->setText(QStringLiteral("没有这只股票"));
    return;
  }
  QString hint = QStringLiteral("Enter 分时走势");
  if (actions_.canBeOwn(entry->codeNumber))
    hint += actions_.isOwn(entry->codeNumber) ? QStringLiteral(" · Ctrl+Enter 移出自选")
                                              : QStringLiteral(" · Ctrl+Enter 加入自选");
  hint_->setText(hint);
}

const SecurityEntry* QuickEntry::Selected() const {
  const int row = list_->currentRow();
  return row >= 0 && row < static_cast<int>(found_.size()) ? found_[static_cast<std::size_t>(row)] : nullptr;
}

void QuickEntry::Choose() {
  const SecurityEntry* entry = Selected();
  if (entry == nullptr) return;
  hide();
  if (cameFrom_ != nullptr) cameFrom_->setFocus();  // so that it can have the keyboard back on return
  actions_.choose(entry->codeNumber);
}

void QuickEntry::ToggleOwn(int row) {
  if (row < 0 || row >= static_cast<int>(found_.size())) return;
  const int codeNumber = found_[static_cast<std::size_t>(row)]->codeNumber;
  if (!actions_.canBeOwn(codeNumber)) return;
  actions_.toggleOwn(codeNumber);
  ShowOwn(row);
  TellWhatEnterDoes();
}

}  // namespace holdwise
