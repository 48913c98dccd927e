// SPDX-License-Identifier: MIT
#pragma once
#include <QElapsedTimer>
#include <QObject>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QTimer>
#include <functional>
#include <map>
#include <memory>
#include <vector>

#include "holdwise/sdk/catalogue.h"

class QWidget;

namespace holdwise {

/// Heading row and rows of a grid as CSV: a column without title is headed "#" and its number (from 0).
[[nodiscard]] QByteArray GridToCsv(const GridText& grid);

/// A value for an input of a view, by the names the catalogue has for them.
struct ViewInput {
  int frameId = 0;
  QString name;
  QString value;
};

/// Gives the shown view's inputs back what they were: what was in force, then what had been typed or chosen there and
/// not applied. What is refused stays as it is.
void PutBackInputs(ViewCatalogue& views, const std::vector<ViewCatalogue::Input>& former);

/// Visits every view of an address and writes what it shows into a folder: "<frame id>.png", each grid as
/// "<frame id>-<grid>.csv", the grid that follows the selected portfolio as "<frame id>-<grid>-<portfolio>.csv" for
/// each portfolio, a window that belongs to the views as "<window>.png" and "<window>-<grid>.csv", and what the figures
/// of a view with inputs rest on as "<frame id>-inputs.csv". Of a simulated market "模拟行情.txt" says so beside them.
/// Views whose inputs are set come first: others may follow what is chosen there. In the end the inputs are what they
/// were: what was in force, and what had been typed or chosen there and not applied; and each view stands where the
/// user had got to: the portfolio selected, the filter, the grids scrolled. While the portfolios of a view are gone
/// through, the picture's widget is painted ten times a second. Of an earlier export into the same
/// folder the tables of those of its grids stay no longer whose view or portfolio is gone, nor anything of a view that
/// was not written because an input was refused, nor that note when the market is none; other files are left alone.
/// Works along with the event loop; the user's mouse and keys reach nothing of the window meanwhile but what is spared.
class ViewExporter : public QObject {
 public:
  /// Longest time that one view or portfolio may take to settle without coming any further.
  static constexpr int kSettleMilliseconds = 60'000;

  /// @param picture what is painted into the picture files; both must outlive the exporter
  ViewExporter(ViewCatalogue& views, QWidget& picture, int settleMilliseconds = kSettleMilliseconds);
  ~ViewExporter() override;

  /// Called once, from the event loop. `problem` is empty when everything has been written. `lacking` says what the
  /// written figures lack, a line each; empty when they are the latest and whole, or when the export broke off.
  std::function<void(const QString& problem, const QString& lacking)> OnDone;
  /// @param folder is made when missing
  /// @param inputs are set one after the other, in this order, when their view is shown and before it is written. One
  /// that is refused, or whose view does not exist, is a problem; its view is not written, the others are.
  /// @param isSimulated of the market that the views show
  void Start(const QString& folder, std::vector<ViewInput> inputs = {}, bool isSimulated = false);
  /// A part of the window that the user's mouse and keys reach all the same, with what is in it. It outlives the
  /// export.
  void Spare(const QWidget& part) { spared_.push_back(&part); }
  /// Ends the export soon, with a problem that says so; from anywhere after Start.
  void GiveUp() { isGivenUp_ = true; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  [[nodiscard]] bool IsKeptOff(const QObject* watched) const;
  void Look();
  void NextView();
  void SetInputs();
  void KeepInputs();
  void KeepPlace();
  void RestorePlace();
  void RestoreInputs();
  void NextPortfolio();
  /// While the portfolios of a view are gone through: the picture's part of the window is painted now and then.
  void PaintSeldom();
  void PaintAlways();
  void WriteView();
  void WritePortfolio();
  void WriteInputs();
  void WriteGrid(const QString& name, const GridText& grid);
  /// What is left of an earlier export and is not of this one.
  void RemoveOld() const;
  void WriteNote() const;
  void Wait(void (ViewExporter::*whenSettled)(), int quietLooks, const QString& forWhat);
  void NextWindow();
  void WriteWindow();
  void WritePicture(QWidget& picture, const QString& name, const QString& caption);
  void WroteAll();
  void Finish(const QString& problem, const QString& lacking = {});

  ViewCatalogue& views_;
  QWidget& picture_;
  int settleMilliseconds_;
  QString folder_;
  std::vector<ViewCatalogue::View> left_;  ///< views to visit, the next one last
  std::vector<ViewInput> inputs_;          ///< those not yet set
  struct FormerInputs {
    int frameId = 0;
    std::vector<ViewCatalogue::Input> inputs;
  };
  std::vector<FormerInputs> former_;  ///< of the views whose inputs are set, as they were
  std::map<int, QByteArray> places_;  ///< where the user had got to, by view
  QStringList problems_;              ///< that do not end the export
  QStringList notWritten_;            ///< pictures of views whose input was refused
  bool isSimulated_ = false;
  std::vector<const QWidget*> spared_;
  bool isGivenUp_ = false;
  ViewCatalogue::View view_;
  int shownBefore_ = 0;
  QString followingGrid_;
  QStringList windowsLeft_;
  QString windowName_;
  std::unique_ptr<CatalogueWindow> window_;  ///< the one to be written
  QStringList portfoliosLeft_;
  QString portfolio_;
  QSet<QString> gridNames_;  ///< of this export, as they stand in file names
  QSet<QString> tables_;     ///< files of this export
  bool isPaintedSeldom_ = false;
  QElapsedTimer painted_;
  QTimer look_;
  QElapsedTimer waiting_;
  int settledLooks_ = 0;
  int progress_ = 0;
  int quietLooks_ = 1;
  void (ViewExporter::*whenSettled_)() = nullptr;
  QString waitingFor_;
};

}  // namespace holdwise
