// SPDX-License-Identifier: MIT
#pragma once
#include <QEvent>
#include <QObject>
#include <functional>
#include <memory>
#include <vector>

#include "common/frames/view_frame.h"
#include "holdwise/packet/message.h"
#include "mainframe/untmainfrm.h"
#include "scripted_host.h"
#include "temp_database.h"

namespace holdwise::test {

/// One holding as a test writes it down; the code is the stored code number.
struct HoldingRow {
  int code = 0;
  int quantity = 0;
  double weight = 0;
  double buyPrice = 0;
};

/// Counts the messages that reach a frame.
class MessageSpy : public QObject {
 public:
  explicit MessageSpy(QObject& frame) : frame_(frame) { frame.installEventFilter(this); }
  bool eventFilter(QObject* watched, QEvent* event) override;
  [[nodiscard]] int Count(FrameMessage message) const;
  void Clear() { messages.clear(); }

  std::vector<int> messages;  ///< numbers, in order
  std::function<void(int message)> OnMessage;

 private:
  QObject& frame_;
};

/// A scripted host with a real temporary database and four stocks, and a main frame on it.
///
/// | stock | name | industry | previous close | week close | month close |
/// | 600000 | 浦发银行 | 银行 | 9.80 | 9.50 | 9.00 |
/// | 000001 | 平安银行 | 银行 | 12.50 | none | none |
/// | 600519 | 贵州茅台 | a long one | 1700.00 | 1650.00 | none |
/// | 000002 | 万科A | 房地产 | 0 (none) | none | none |
///
/// The host's date is Wednesday 2024-05-29: previous week 20 to 26 May, previous month April.
class ViewBench {
 public:
  ViewBench();
  ~ViewBench();

  /// Makes the main frame inside the work area of that width, shown, and starts the prices.
  void OpenMainFrame(int width = 1000);
  void CloseMainFrame() { mainFrame.reset(); }

  void AddPortfolio(int id, const QString& name, const std::vector<HoldingRow>& holdings, int saveFlag = 1);
  void AddClose(int code, int periodType, int date, double close);
  /// The bus answers the newest price request.
  void DeliverPrices(const std::vector<std::pair<QString, Decimal>>& prices);
  [[nodiscard]] std::shared_ptr<ScriptedDataDown> PriceRole() const;
  /// Clicks a node of the tree with the mouse.
  void ClickNode(int id);
  [[nodiscard]] QTreeWidgetItem* Node(int id) const { return mainFrame->dxTL().FindId(id); }

  TempDatabase database;
  ScriptedHost host;
  std::unique_ptr<TMainFrm> mainFrame;

 private:
  int nextHolding_ = 1;
};

/// Three holdings worth 33100 at 10.00, 12.00 and 1710.00; cost 33000.
[[nodiscard]] std::vector<HoldingRow> ThreeHoldings();
[[nodiscard]] std::vector<std::pair<QString, Decimal>> PricesOfThree();

}  // namespace holdwise::test
