// SPDX-License-Identifier: MIT
#pragma once
#include <QStringList>
#include <memory>

#include "common/frames/view_frame.h"
#include "holdwise/packet/result_set.h"
#include "holdwise/sdk/download.h"

namespace holdwise {

class CandidateBand;
class CapitalBand;

/// "智能配置": for an amount of capital, ready-made portfolios from the data files, what the capital buys of the
/// selected one in whole lots, and keeping one. Everything it shows rests on the capital that was applied last,
/// whatever stands in the entry.
class TFrm_ZNPZ : public TViewFrame {
 public:
  /// Asks for the stock pool and for the proposals of the default capital. The shared objects must exist and live
  /// longer.
  explicit TFrm_ZNPZ(QWidget* parent = nullptr);
  ~TFrm_ZNPZ() override;

  /// Nothing, unless the proposals did not come or the data behind them were replaced: then they are asked for again.
  void DoInit_() override;
  /// "Edit1": the capital in ten-thousands of yuan.
  [[nodiscard]] std::vector<ViewCatalogue::Input> Inputs() const override;
  QString SetInput(const QString& name, const QString& value) override;
  [[nodiscard]] ViewNotice Notice() const override;
  [[nodiscard]] bool IsSettled() const override { return pending_ == 0; }

 private:
  void InitAppear();
  void BuildDownloads();
  void RequestPool();
  /// Number of stocks for the capital; 0 after a failure, which is logged.
  int CalcFileNum(double capital);
  /// What is known of that without reading anything; 0 for nothing.
  [[nodiscard]] int KnownStockCount(double capital) const;
  /// Starts an allocation.
  void Label1Click();
  void ReflashData() { Label1Click(); }
  void strngrdSelectCell(int row);

  using Handler = void (TFrm_ZNPZ::*)(const QString& fileName, const QByteArray& content);
  /// Runs the handler of a download's event; what it throws ends as a line in the debug log.
  void Handle(const QString& routine, const QString& fileName, const QByteArray& content, Handler handler);
  void InfoAsynDownFileRole1ReciveAFile(const QString& fileName, const QByteArray& content);
  void InfoAsynDownFileRole2ReciveAFile(const QString& fileName, const QByteArray& content);
  void InfoAsynDownFileRole2ReciveStearm(const QString& fileName, const QByteArray& content);
  /// `mode` 1: the pool is `stream`; 0: it is the local copy of the file.
  void CtrlReciveFile2(const QString& fileName, const QByteArray& stream, int mode);
  void FileFailed(const QString& fileName, int errorCode);

  void ReciveCandidates();
  void ReciveComposition();
  /// Takes note of a file that is not there or not right, where it is missed.
  void ShowMissing(const QString& fileName, const QString& problem, const QString& advice);
  /// No holdings are shown, and why.
  void ClearHoldings(const QString& emptyText);
  /// Takes note of what is wrong with the candidate of a row.
  void AddProblem(int row, const QString& problem);
  void ShowCaption();

  void SaveProposal(int row);
  /// Says in the message box what the capital does not buy; false when it buys everything.
  bool IsUnaffordable();
  /// Stores the proposal that is shown and says how it went.
  void Store(int row);

  CapitalBand* upper_;
  CandidateBand* lower_;
  // NOLINTBEGIN(readability-identifier-naming): the name of the frame's component
  ResultSet ClientDataSet1;
  // NOLINTEND(readability-identifier-naming)
  double capital_ = 0;        ///< applied last, ten-thousands of yuan
  QString capitalText_;       ///< as it stood in the entry
  int stockCount_ = 0;        ///< for it
  QStringList capitalTable_;  ///< "count,limit"; read once
  bool usesFixedTable_ = false;
  QString awaitedList_;  ///< remote name of the list or composition that is to be shown; empty for none
  QString awaitedComposition_;
  int awaitedRow_ = 0;  ///< of the candidate whose composition was asked for last
  bool isFirstComposition_ = false;
  bool isFileReceived_ = false;  ///< the composition of the selected candidate is shown
  int request_ = 0;              ///< grows with each list or composition that is asked for
  bool isTableDamaged_ = false;  ///< the capital table could not be read
  bool isAsked_ = false;         ///< somebody has asked for proposals, not only opened the view
  int pending_ = 0;              ///< downloads under way
  QString edition_;              ///< of the data that the proposals come from
  QString proposals_;            ///< fingerprint of those that the list is one file of
  QString listProblem_;          ///< why the proposals did not come; empty: they did, or may still come
  QStringList problems_;         ///< of the compositions shown since the capital was applied
  /// Last members: they go first, and with them their events.
  std::unique_ptr<TDSBAsynDownFileRole> role1_;
  std::unique_ptr<TDSBAsynDownFileRole> role2_;
};

}  // namespace holdwise
