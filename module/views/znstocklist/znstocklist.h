// SPDX-License-Identifier: MIT
#pragma once
#include <QDialog>
#include <memory>

#include "holdwise/packet/result_set.h"
#include "holdwise/sdk/download.h"

namespace holdwise {

class HeaderStrip;
class TStringGrid;

/// "智能股票池": the securities of the stock pool with their valuation and key figures; another row opens its security
/// in the host. It asks for the pool when it is made. User-interface thread only. Needs the module's host; opening a
/// security needs the shared objects.
class TForm_Stock : public QDialog {
  Q_OBJECT
 public:
  TForm_Stock();
  ~TForm_Stock() override;

  /// Shows the form until the user closes it.
  void ShowModal();
  /// Re-reads the theme.
  void MakeSkin();
  [[nodiscard]] const TStringGrid& Grid() const { return *strngrd; }
  /// False while the pool is on its way.
  [[nodiscard]] bool IsSettled() const noexcept { return !isPending_; }

 protected:
  void showEvent(QShowEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void BuildForm();
  void BuildDownload();
  void InfoAsynDownFileRole1ReciveAFile(const QString& fileName);
  void InfoAsynDownFileRole1ReciveStearm(const QString& fileName, const QByteArray& content);
  /// `mode` 1: the pool is `stream`; 0: it is the local copy of the file.
  void CtrlReciveFile(const QString& fileName, const QByteArray& stream, int mode);
  bool strngrdSelectCell(int row);
  void Miss(const QString& problem);

  bool isPending_ = false;
  // NOLINTBEGIN(readability-identifier-naming): the names of the form's components
  TStringGrid* strngrd = nullptr;
  HeaderStrip* header_ = nullptr;
  ResultSet ClientDataSet1;
  /// Last member: it goes first, and with it its events.
  std::unique_ptr<TDSBAsynDownFileRole> InfoAsynDownFileRole1;
  // NOLINTEND(readability-identifier-naming)
};

/// The form while the main frame shows it, else null.
extern std::unique_ptr<TForm_Stock> Form_Stock;

}  // namespace holdwise
