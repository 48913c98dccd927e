// SPDX-License-Identifier: MIT
#include "mainframe/navigation_tree.h"

#include <QHeaderView>
#include <QPainter>
#include <QStyledItemDelegate>
#include <QTreeWidgetItemIterator>
#include <algorithm>

#include "common/frames/frame_parts.h"
#include "common/grid/focus_mark.h"
#include "common/grid/grid_painter.h"
#include "common/helpers/drawing.h"
#include "common/host/font.h"
#include "mainframe/view_table.h"

namespace holdwise {
namespace {

constexpr int kRowHeight = 20;
constexpr int kIndentation = 18;
constexpr int kTextGap = 3;

/// Draws a caption: the selected one in its colours, a group in bold.
class NodeDelegate : public QStyledItemDelegate {
 public:
  explicit NodeDelegate(NavigationTree& tree) : QStyledItemDelegate(&tree), tree_(tree) {}

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    const NavigationTree::Colors& colors = tree_.CurrentColors();
    const bool isSelected = option.state.testFlag(QStyle::State_Selected);
    QFont font = option.font;
    font.setBold(!index.parent().isValid());
    painter->save();
    if (isSelected) painter->fillRect(option.rect, colors.selectedRow);
    const bool isAtEdge = !index.parent().isValid();
    if (isSelected && isAtEdge && tree_.hasFocus()) PaintKeyBar(*painter, option.rect, colors.keyBar);
    painter->setFont(font);
    painter->setPen(isSelected ? colors.selectedText : colors.text);
    painter->drawText(option.rect.adjusted(kTextGap, 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                      index.data().toString());
    painter->restore();
  }

  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    return {QStyledItemDelegate::sizeHint(option, index).width(), kRowHeight};
  }

 private:
  NavigationTree& tree_;
};

}  // namespace

NavigationTree::NavigationTree(QWidget* parent) : QTreeWidget(parent) {
  setColumnCount(2);
  setAccessibleName(QStringLiteral("视图"));
  setColumnHidden(dxc_Id, true);
  setTreePosition(dxc_Text);
  setHeaderHidden(true);
  header()->setStretchLastSection(true);
  setItemDelegate(new NodeDelegate(*this));
  setFont(DesignFont());
  setFrameShape(QFrame::NoFrame);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setUniformRowHeights(true);
  setIndentation(kIndentation);
  setRootIsDecorated(false);
  setItemsExpandable(false);
  setExpandsOnDoubleClick(false);
  setEditTriggers(NoEditTriggers);
  setAllColumnsShowFocus(false);
}

void NavigationTree::BuildTree(std::span<const TNodeData> nodes, int highest) {
  setUpdatesEnabled(false);
  clear();
  for (int row = 0; row <= highest && row < static_cast<int>(nodes.size()); ++row) {
    const TNodeData& entry = nodes[static_cast<size_t>(row)];
    QTreeWidgetItem* node = AppendNode(entry.ParentId);
    node->setData(dxc_Id, Qt::DisplayRole, entry.Id);
    node->setText(dxc_Text, entry.Text);
  }
  expandAll();
  setUpdatesEnabled(true);
}

QTreeWidgetItem* NavigationTree::AppendNode(int parentId) {
  QTreeWidgetItem* parent = parentId == 0 ? nullptr : FindId(parentId);
  return parent == nullptr ? new QTreeWidgetItem(this) : new QTreeWidgetItem(parent);
}

int NavigationTree::IdOf(const QTreeWidgetItem* node) {
  return node == nullptr ? 0 : node->data(dxc_Id, Qt::DisplayRole).toInt();
}

QString NavigationTree::CaptionOf(const QTreeWidgetItem* node) {
  return node == nullptr ? QString() : node->text(dxc_Text);
}

QTreeWidgetItem* NavigationTree::FindId(int id) const {
  for (QTreeWidgetItemIterator node(const_cast<NavigationTree*>(this)); *node != nullptr; ++node) {
    if (IdOf(*node) == id) return *node;
  }
  return nullptr;
}

QTreeWidgetItem* NavigationTree::FindCaption(const QString& beginning) const {
  if (beginning.isEmpty()) return nullptr;
  for (QTreeWidgetItemIterator node(const_cast<NavigationTree*>(this)); *node != nullptr; ++node) {
    if (CaptionOf(*node).startsWith(beginning)) return *node;
  }
  return nullptr;
}

void NavigationTree::GoTo(QTreeWidgetItem* node) {
  setCurrentItem(node, dxc_Text);
}

void NavigationTree::SetColors(const Colors& colors) {
  colors_ = colors;
  QPalette area = palette();
  area.setColor(QPalette::Base, colors.background);
  area.setColor(QPalette::Text, colors.font);
  setPalette(area);
  FocusMark& mark = FocusMark::On(*this);
  mark.SetColor(colors.keyBar);
  mark.SetForKeysOnly(true);
  viewport()->update();
}

QModelIndex NavigationTree::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) {
  // Nothing opens or closes here: left leads out to the group, right into it.
  const QModelIndex current = currentIndex();
  // Always in the shown column: a step marks what is at the place of its cell, and a hidden one has none.
  if (action == MoveLeft) return (current.parent().isValid() ? current.parent() : current).siblingAtColumn(dxc_Text);
  if (action == MoveRight) {
    const QModelIndex child = model()->index(0, dxc_Text, current.siblingAtColumn(0));
    return child.isValid() ? child : current.siblingAtColumn(dxc_Text);
  }
  return QTreeWidget::moveCursor(action, modifiers).siblingAtColumn(dxc_Text);
}

QItemSelectionModel::SelectionFlags NavigationTree::selectionCommand(const QModelIndex& index,
                                                                     const QEvent* /*event*/) const {
  // The focused node is always the selected one; the Ctrl key would take the selection away.
  if (!index.isValid()) return QItemSelectionModel::NoUpdate;
  return QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows;
}

void NavigationTree::drawBranches(QPainter* painter, const QRect& rect, const QModelIndex& index) const {
  const bool isSelected = selectionModel()->isSelected(index);
  if (isSelected) painter->fillRect(rect, colors_.selectedRow);
  if (!index.parent().isValid()) return;
  // A line down from the group, with a branch to every caption; it ends at the last one.
  const int x = rect.right() - kIndentation / 2;
  const int middle = rect.center().y();
  const bool isLast = index.row() == index.model()->rowCount(index.parent()) - 1;
  DrawLine_(*painter, {x, rect.top()}, {x, isLast ? middle : rect.bottom()}, Qt::SolidLine, colors_.line);
  DrawLine_(*painter, {x, middle}, {rect.right(), middle}, Qt::SolidLine, colors_.line);
  if (isSelected && hasFocus()) PaintKeyBar(*painter, rect, colors_.keyBar);
}

}  // namespace holdwise
