// SPDX-License-Identifier: MIT
#pragma once
#include <QDialog>
#include <QProgressBar>
#include <QTimer>
#include <exception>
#include <functional>
#include <memory>

#include "calc/calculation_driver.h"
#include "calc/reference_tables.h"
#include "calc/unfinished_work.h"
#include "holdwise/sdk/download.h"

class QLabel;
class QWindow;

namespace holdwise {

/// The calculation dialog: downloads the base data of the unfinished portfolios' securities and the reference files,
/// puts them into Database() and runs the portfolio procedure. It closes itself when the work is done or a reference
/// download fails; the user may close it at any time, which leaves the portfolios unfinished until the next time.
/// Nothing that comes after closing has an effect. User-interface thread only. Needs the module's host.
class TfrmCalc2 : public QDialog {
  Q_OBJECT
 public:
  TfrmCalc2();

  /// Shows the dialog until it closes; other windows have no mouse and no keyboard meanwhile. One of them that the user
  /// closes is closed after the dialog, if the user agrees. What made the calculation impossible (a statement that
  /// failed) is thrown here.
  void ShowModal();

  /// Begins a run, some time after the dialog has been shown.
  void FormShow();
  void GetAllSecuCodeAry();
  /// Parts of the progress bar before the fixed three.
  [[nodiscard]] std::int64_t GetProcessBarLen() const;
  /// Asks for the next base-data file; with none left the base data is done.
  void GetBasicData();
  /// Asks for both reference files.
  void DownRMBINTERESTRATE();
  /// When all three streams are done: runs the procedure for every unfinished portfolio and closes the dialog.
  void tmrCalcTimer();

  /// Receive routines. `mode` 1: the content is `stream`; 0: it is the local copy of `fileName`, the remote name.
  /// Base data: whatever happens, the next file is asked for; a content that is no packet throws afterwards.
  void BasicDataRecv(const QString& fileName, int errorCode, const QByteArray& stream, int mode);
  /// Reference files: when the file is missing (mode 0), the dialog stays open, for the user to close; intended. A
  /// content that is damaged, or that the database does not take, closes it as a failed download does.
  void DownRecv2(const QString& fileName, int errorCode, const QByteArray& stream, int mode);
  void flrlRecv1(const QString& fileName, int errorCode, const QByteArray& stream, int mode);

  /// Ids of the portfolios whose procedure has run.
  [[nodiscard]] const QStringList& Calculated() const { return calculated_; }
  /// The user has closed it before the work was done.
  [[nodiscard]] bool IsGivenUp() const { return isGivenUp_; }
  /// Why it closed without a calculation, for the user to read: the reference file that was missing or damaged; empty
  /// when none was.
  [[nodiscard]] const QString& ReferenceProblem() const { return referenceProblem_; }

  /// Was something that had come not stored for a reason that passes (no space, a lock)?
  [[nodiscard]] bool IsWorthAnotherTry() const { return isWorthAnotherTry_; }

  [[nodiscard]] const QProgressBar& ProgressBar() const { return *rzprgrsbr1; }

  void done(int result) override;
  /// What the user's Escape and close do.
  void reject() override;

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  using Replace = void (*)(DatabaseStatements& database, const ResultSet& file, const calc::Step& step);

  void BuildForm();
  void BuildDownloads();
  /// In the middle of the window it belongs to, as far as the screen goes.
  void PlaceOver(const QWindow& owner);
  /// Closes the dialog if the user agrees to it.
  bool AgreesToClose();
  /// Runs the handler of an event for `fileName`; what it throws ends as a line in the debug log.
  void Handle(const QString& routine, const QString& fileName, const std::function<void()>& handler);
  /// Runs a step without which the calculation is impossible: what it throws closes the dialog and comes out of
  /// ShowModal.
  void Decisive(const std::function<void()>& step);
  void IngestBasicData(const QString& fileName, const ResultSet& rows);
  void ReceiveReference(calc::Reference reference, const TDSBAsynDownFileRole& role, const QString& fileName,
                        const QByteArray& stream, int mode, Replace replace);
  /// Without a reference file nothing is calculated: closes the dialog. `problem` is how the file fares.
  void GiveUpReference(calc::Reference reference, const QString& problem);
  void ShowProgress();
  /// True when what has come was not stored for a reason that passes.
  bool NoteWhetherItPasses(const std::exception& error);

  void DownBasicDataReciveAFile(const QString& fileName, int errorCode);
  void DownBasicDataReciveStearm(const QString& fileName, int errorCode, const QByteArray& stream);
  void DownBasicDataReciveAFileFail(const QString& fileName, int errorCode);
  void infsyndwnflrlDownReciveAFile(const QString& fileName, int errorCode);
  void infsyndwnflrlDownReciveStearm(const QString& fileName, int errorCode, const QByteArray& stream);
  void infsyndwnflrlDownReciveAFileFail(const QString& fileName, int errorCode);
  void infsyndwnflrlReciveAFile(const QString& fileName, int errorCode);
  void infsyndwnflrlReciveStearm(const QString& fileName, int errorCode, const QByteArray& stream);
  void infsyndwnflrlReciveAFileFail(const QString& fileName, int errorCode);

  /// What is written goes this way: none of it is the user's, who may leave an entry behind that has to be kept first.
  std::unique_ptr<UserDataSession> line_;
  calc::CalculationDriver driver_;
  QStringList codes_;
  QStringList calculated_;
  calc::DataState data_;
  QString referenceProblem_;
  bool isWorthAnotherTry_ = false;
  bool isGivenUp_ = false;
  bool isAsking_ = false;
  std::exception_ptr failure_;
  // NOLINTBEGIN(readability-identifier-naming): the names of the form's components
  QLabel* lbl1 = nullptr;
  QProgressBar* rzprgrsbr1 = nullptr;
  QTimer tmrCalc;
  /// Last members: they go first, and with them their events.
  std::unique_ptr<TDSBAsynDownFileRole> DownBasicData;
  std::unique_ptr<TDSBAsynDownFileRole> infsyndwnflrlDown;
  std::unique_ptr<TDSBAsynDownFileRole> infsyndwnflrl;
  // NOLINTEND(readability-identifier-naming)
};

/// The dialog while DownData shows it, else null.
extern std::unique_ptr<TfrmCalc2> frmCalc2;

}  // namespace holdwise
