// SPDX-License-Identifier: MIT
#pragma once
#include <QTreeWidget>
#include <span>

#include "mainframe/view_table.h"

namespace holdwise {

/// The navigation tree: a hidden column with the node id, a shown one with the caption. Always expanded, without
/// buttons; groups are bold. The focused node is the current item.
class NavigationTree : public QTreeWidget {
 public:
  enum Column : int { dxc_Id, dxc_Text };

  struct Colors {
    QColor background;
    QColor font;          ///< of the control; the captions are drawn in the next one
    QColor text;          ///< captions
    QColor line;          ///< tree lines, solid
    QColor selectedRow;   ///< background of the selected node
    QColor selectedText;  ///< its caption
    QColor keyBar;        ///< the sign that the keys act here
  };

  explicit NavigationTree(QWidget* parent = nullptr);

  /// Replaces all nodes by rows 0 to `highest` of the table.
  void BuildTree(std::span<const TNodeData> nodes, int highest);
  /// Appends a node under the first node with that id, or at the top level when the id is 0 or not found.
  QTreeWidgetItem* AppendNode(int parentId);

  /// Id of a node; 0 for none.
  [[nodiscard]] static int IdOf(const QTreeWidgetItem* node);
  [[nodiscard]] static QString CaptionOf(const QTreeWidgetItem* node);
  /// First node with that id in tree order; null when there is none.
  [[nodiscard]] QTreeWidgetItem* FindId(int id) const;
  /// Incremental search: the first node in tree order whose caption begins with the text. The empty text finds nothing.
  [[nodiscard]] QTreeWidgetItem* FindCaption(const QString& beginning) const;

  /// Makes a node the current one, as a click on its caption does.
  void GoTo(QTreeWidgetItem* node);

  void SetColors(const Colors& colors);
  [[nodiscard]] const Colors& CurrentColors() const noexcept { return colors_; }

 protected:
  QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
  void drawBranches(QPainter* painter, const QRect& rect, const QModelIndex& index) const override;
  QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index, const QEvent* event) const override;

 private:
  Colors colors_;
};

}  // namespace holdwise
