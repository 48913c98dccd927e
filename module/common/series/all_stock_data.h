// SPDX-License-Identifier: MIT
#pragma once
#include <QObject>
#include <QStringList>
#include <array>
#include <memory>
#include <optional>

#include "common/helpers/name_value_list.h"
#include "common/helpers/text_grid.h"
#include "holdwise/sdk/download.h"

namespace holdwise {

/// The indices that risk figures refer to: Shanghai Composite, Shenzhen Component, CSI 300.
enum TZS_TYPE { SH_T, SZ_T, HS_T };
/// Their names, in that order: "上证指数", "深证成指", "沪深300".
[[nodiscard]] const QStringList& IndexNames();

/// The first columns of a risk table; those behind them are as the file has them.
namespace risk_table {
enum Column : int { kCode, kBeta, kAlpha, kTreynor, kSharpe };
}
/// None for a security that the table does not have, or whose figure is no number. `code`: six digits.
[[nodiscard]] std::optional<double> BetaOf(const TTextGrid& table, QStringView code);

/// Risk figures of every security against each of three indices, from downloaded files, and the standard deviation of
/// every security's daily returns, from the database. User-interface thread only.
class TAllStockData : public QObject {
  Q_OBJECT
 public:
  /// Makes and configures the download role; asks for nothing yet. Needs the module's host.
  TAllStockData();

  /// Makes the table of that index current and asks for its file when the table is empty. The table is filled when the
  /// file has come; a download that fails, or a file that is damaged or names another edition than the host's data,
  /// leaves it as it is, and choosing the index again asks again.
  void SetZS_TYPE(TZS_TYPE type);
  void Set_SHZS() { SetZS_TYPE(SH_T); }
  void Set_SZZS() { SetZS_TYPE(SZ_T); }
  void Set_HSZS() { SetZS_TYPE(HS_T); }

  /// The index whose table is current, Shanghai Composite at first.
  [[nodiscard]] TZS_TYPE CurrentType() const noexcept { return type_; }

  /// Asks for the file of the current index unless its table is there or the file on its way. A view that reads the
  /// current table without letting the user choose an index calls it when it is shown.
  void RequestCurrentTable();

  /// The host's data are another edition now: tables of the one before are emptied, and the current one is asked for
  /// again. Nothing when the edition is the same, or the host knows none.
  void ForgetOtherEdition();

  /// The current table, Shanghai Composite's at first; its columns are risk_table's. Owned by this object, which
  /// outlives no view; its content changes when a file comes.
  [[nodiscard]] const TTextGrid& GetCurStringGrid() const { return grids_[static_cast<std::size_t>(type_)]; }
  /// Is a file on its way?
  [[nodiscard]] bool IsDownloading() const { return !underWay_.isEmpty(); }
  /// Was the current table asked for in vain? False while its file is on its way, and after another attempt was good.
  [[nodiscard]] bool LacksCurrentTable() const {
    return isMissing_[static_cast<std::size_t>(type_)] && !IsDownloading();
  }
  /// Did a file come for the current table that was not taken because it names another edition than the host's data?
  [[nodiscard]] bool IsCurrentFileOfOtherEdition() const { return isOtherEdition_[static_cast<std::size_t>(type_)]; }

  /// Names: security codes as the database gives them; values: standard deviation, shortest decimal text. Read from the
  /// database when that has not been done yet or an update is needed; what a failing query throws reaches the caller. A
  /// risk file that arrives empties the list until its next reading, which it does not bring about itself; that is
  /// intended.
  TNameValueSnapshot GetBZCStringList();
  /// True: reads the list again now.
  void SetIsGetBZCStringList(bool flag);
  void ReGetBZCStringList() { SetIsGetBZCStringList(true); }
  /// True: the next reader of the list has it read again.
  void SetIsNeedUpdate(bool flag) { isNeedUpdate_ = flag; }

 Q_SIGNALS:
  /// A table was filled from its file. Receivers must not throw.
  void TableArrived();
  /// A file that was asked for did not come, or is no table. Receivers must not throw.
  void TableFailed();

 private:
  void ReceiveFile(const QString& fileName);
  void ReceiveFileFail(const QString& fileName);

  bool isNeedUpdate_ = false;
  TZS_TYPE type_ = SH_T;
  std::array<TTextGrid, 3> grids_;
  QString edition_;  ///< of the data when a table was last asked for
  TNameValueSnapshot deviations_;
  bool isGet_ = false;
  std::array<bool, 3> isMissing_{};             ///< the table was asked for and has not come
  std::array<bool, 3> isOtherEdition_{};        ///< the last file that came was not taken for its edition
  QStringList underWay_;                        ///< files asked for and not yet come
  std::unique_ptr<TDSBAsynDownFileRole> role_;  ///< last member: it goes first, and with it the events
};

}  // namespace holdwise
