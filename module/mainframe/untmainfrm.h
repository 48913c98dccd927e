// SPDX-License-Identifier: MIT
#pragma once
#include <QLabel>
#include <QTimer>
#include <QWidget>
#include <vector>

#include "common/frames/frame_parts.h"
#include "common/frames/view_frame.h"
#include "common/host/theme_colors.h"
#include "common/store/incomplete_portfolios.h"
#include "mainframe/frame_splitter.h"
#include "mainframe/navigation_tree.h"

class QStackedLayout;

namespace holdwise {

class TextLink;

/// Did the main frame's construction read the portfolios from the exchange files?
extern bool IsLoadDataFromFile;

/// The module's one top-level frame: navigation tree, title bar, and the view shown. It creates and frees the shared
/// objects, keeps every view it has created, and runs the timers. One at a time; user-interface thread only. Failures
/// inside timers and tree clicks go to the host's debug log.
class TMainFrm : public QWidget {
 public:
  /// Opens the database and the shared objects; a failure reaches the caller.
  explicit TMainFrm(QWidget* parent = nullptr);
  ~TMainFrm() override;

  /// Starts (stops) the real-time prices; on every enter (leave) of the address.
  void InitProc();
  void FinalProc();
  /// Applies the theme here and passes the change on to every view.
  void MakeSkin();
  /// Has the host open its fund toolbar.
  void Button1Click();
  /// A group's id stands for its first child.
  [[nodiscard]] static int GetFID(int nodeId);

  [[nodiscard]] FrameSplitter& Splitter1() const { return *splitter_; }
  [[nodiscard]] NavigationTree& dxTL() const { return *tree_; }
  /// Every view created so far, in creation order.
  [[nodiscard]] const std::vector<TViewFrame*>& FrameList() const noexcept { return FFrameList; }
  /// The view shown; null when none.
  [[nodiscard]] TViewFrame* CurFrame() const noexcept { return FCurFrame; }
  /// What the views visited so far have to say of themselves, each line once; what their figures lack comes to
  /// `lacking`.
  [[nodiscard]] QStringList NoticesOfViews(std::vector<IncompletePortfolio>& lacking) const;
  /// No recalculation waits or runs, no risk file is on its way, and prices are in and shown if the view is a live one.
  [[nodiscard]] bool IsSettled() const;
  /// The database has changed behind the views: recalculates, reads the shown view again and asks for prices again,
  /// from the event loop. What is not read yet counts as out of date from now on, and nothing is settled.
  void DataChanged();

 private:
  void BuildPanels();
  void BuildTimers();
  /// Opens the stock pool list.
  static void Label1Click();
  void dxTLChangeNode(const QTreeWidgetItem* newNode);
  [[nodiscard]] static QString CaptionFor(const QTreeWidgetItem& node);
  /// Says on the page that the view of a node did not open.
  void ShowFailure(const QTreeWidgetItem& node);
  void ShowView(const TNodeData& view, const QTreeWidgetItem& node, TViewFrame* previous);
  void Timer1Timer();
  void Timer_NowPriceTimer();
  void g_TimerOnTimer();
  void EnableTimer1();
  /// F6: gives the keys to the next pane, Shift+F6 to the one before: the tree, and what the shown view has.
  void NextPane(int step);
  void SendInit();
  void SendInitAlone();
  /// Reads anew what is shown, a piece a turn of the event loop: the window answers in between.
  void Timer_ReloadTimer();
  /// Says in the title strip what the figures of the shown view lack. `readAgain`: the stored figures may have changed.
  void ShowNotice(bool readAgain);

  FrameSplitter* splitter_ = nullptr;
  QWidget* RzPanel2 = nullptr;
  NavigationTree* tree_ = nullptr;
  QWidget* RzPanel1 = nullptr;
  TitleStrip* RzPanel3 = nullptr;
  TextLink* Label1 = nullptr;
  QWidget* RzPanel4 = nullptr;
  QLabel* failure_ = nullptr;  ///< in the place of a view that did not open
  QStackedLayout* views_ = nullptr;
  QTimer Timer_NowPrice;
  QTimer Timer1;
  QTimer Timer_Reload;
  /// What Timer_Reload comes to next.
  enum class Reload { Series, View, Notice };
  Reload reload_ = Reload::Series;

  std::vector<TViewFrame*> FFrameList;
  TViewFrame* FCurFrame = nullptr;
  GridColors themeColors_;
  bool arePricesShown_ = false;
  bool isReloadDue_ = false;                     ///< the data changed while the address was left
  std::vector<IncompletePortfolio> incomplete_;  ///< by their stored figures, as last read
};

}  // namespace holdwise
