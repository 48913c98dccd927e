// SPDX-License-Identifier: MIT
#pragma once
#include <QByteArray>
#include <QString>
#include <QStringList>
#include <memory>
#include <vector>

class QWidget;

namespace holdwise {

/// Texts of one grid: one title per column (empty for a hidden key column), and the rows.
struct GridText {
  QString name;
  QStringList titles;
  std::vector<bool> hidden;  ///< one per column
  std::vector<QStringList> rows;
};

/// A window that belongs to an address, made for a host that wants to look at it and not shown to anybody. It fetches
/// what it shows by itself. User-interface thread only.
class CatalogueWindow {
 public:
  virtual ~CatalogueWindow() = default;
  /// Laid out in its usual size; owned by this object.
  [[nodiscard]] virtual QWidget& Frame() = 0;
  /// Texts of its grids, as they stand in the cells.
  [[nodiscard]] virtual std::vector<GridText> Grids() const = 0;
  /// True when it has all it asked for, or knows that it does not come.
  [[nodiscard]] virtual bool IsSettled() const = 0;
};

/// What a host may ask of an address that holds several views: visit them, read their grids. User-interface thread
/// only.
class ViewCatalogue {
 public:
  virtual ~ViewCatalogue() = default;
  struct View {
    int frameId = 0;  ///< above 0
    QString caption;  ///< as in the tree, for the user
  };
  /// The views that exist in this build, in tree order; empty before the item has been entered.
  [[nodiscard]] virtual std::vector<View> List() const = 0;
  /// Shows a view as a click on its tree node does. False, and nothing changes, when there is none with that id.
  virtual bool Show(int frameId) = 0;
  /// Id of the view now shown; 0 when none.
  [[nodiscard]] virtual int Current() const = 0;
  /// True when the shown view has all it asked for: no download or calculation under way, first prices in and shown.
  /// False while no view is shown.
  [[nodiscard]] virtual bool IsSettled() const = 0;
  /// A number that changes whenever the work that the view waits for has come further; its size says nothing.
  [[nodiscard]] virtual int Progress() const = 0;
  /// What a reader of the figures has to know because they are not the latest, in words for the user; empty when there
  /// is nothing. Throws what a failing statement throws.
  [[nodiscard]] virtual QString Shortcoming() const = 0;
  /// In words for the user: a line for what all figures of a view visited so far lack, then one for each saved
  /// portfolio whose figures lack something: its name, and what is missing. Throws what a failing statement throws.
  [[nodiscard]] virtual QStringList Incomplete() const = 0;
  /// The shown view's frame; null when none. Owned by the module.
  [[nodiscard]] virtual QWidget* Frame() const = 0;
  /// Texts of the shown view's grids, as they stand in the cells, whole; in a cell whose column shows another unit than
  /// the cell holds, in the unit that the title says. Empty when none is shown.
  [[nodiscard]] virtual std::vector<GridText> Grids() const = 0;

  struct Holdings {
    QString gridName;          ///< name of the grid that follows the selected portfolio; empty when the view has none
    QStringList portfolioIds;  ///< selectable portfolios, in list order
  };
  /// Which grid of the shown view follows the selected portfolio, and what can be selected; all empty when no view is
  /// shown or it has no such grid.
  [[nodiscard]] virtual Holdings HoldingsGrid() const = 0;
  /// Selects a portfolio of the shown view, by its id in decimal digits, as a click on its row does. False, and the
  /// selection stays, when it is not listed.
  virtual bool SelectPortfolio(const QString& portfolioId) = 0;

  /// Where the user has got to in the shown view: the portfolio that is selected, what is typed into a filter, how far
  /// the grids are scrolled. For PutPlace of a view with the same id, also a later one; what it consists of is the
  /// views' own affair. Empty when no view is shown or none of this is kept.
  [[nodiscard]] virtual QByteArray Place() const { return {}; }
  /// Puts it back into the shown view. What is not there any more stays as it is, and so does all for a text that is no
  /// place of this view.
  virtual void PutPlace(const QByteArray& /*place*/) {}

  struct Input {
    QString name;       ///< of the control, as the view's makers call it
    QString value;      ///< what stands in it now
    QString caption{};  ///< what it means, for the user; empty: nothing but the name says it
    QString inForce{};  ///< what the figures shown rest on, where that can be another value; empty: `value`
  };
  /// What a user can set in the shown view.
  [[nodiscard]] virtual std::vector<Input> Inputs() const = 0;
  /// Sets an input of the shown view as a user would, and applies it. @return what the user would be told when it is
  /// refused (a name that is none of Inputs() included); empty when it was taken
  virtual QString SetInput(const QString& name, const QString& value) = 0;
  /// Puts into an input what a user has typed or chosen there and not applied; the figures shown stay. It may be any
  /// text that has stood there. @return as SetInput; also when the input takes nothing that is not applied
  virtual QString PutInput(const QString& name, const QString& value) = 0;
  /// Names of the windows that a user can open beside the views: letters and digits, in the order they are offered;
  /// empty before the item has been entered.
  [[nodiscard]] virtual QStringList Windows() const { return {}; }
  /// A new one, the caller's, to be destroyed before the item's views are; null for a name that is none of them.
  [[nodiscard]] virtual std::unique_ptr<CatalogueWindow> MakeWindow(const QString& /*name*/) { return nullptr; }
  /// The data behind the views has changed (an import): reload the shown view and ask for prices again. Nothing happens
  /// before the item has been entered.
  virtual void DataChanged() = 0;
  /// What the user is working on in the views and has not stored, a line each in words for the user: it is lost with
  /// the views. Empty when there is nothing. What stands in Inputs is not meant.
  [[nodiscard]] virtual QStringList Unstored() const { return {}; }
};

}  // namespace holdwise
