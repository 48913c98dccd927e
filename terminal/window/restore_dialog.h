// SPDX-License-Identifier: MIT
#pragma once
#include <QDialog>
#include <QString>
#include <functional>
#include <vector>

class QPlainTextEdit;
class QPushButton;
class QRadioButton;
class QTableWidget;

namespace holdwise {

/// One file that can be restored, as the user sees it.
struct RestoreChoice {
  QString path;
  QString time;
  QString portfolios;
  QString holdings;
};

/// What restoring a file would do.
struct RestorePreview {
  QString text;             ///< for the user; also why the file cannot be used
  bool isPossible = false;  ///< it can be used and changes something
};

/// Lets the user choose a backup and see what it would change. Decides nothing itself. User-interface thread.
class RestoreDialog : public QDialog {
 public:
  using Preview = std::function<RestorePreview(const QString& path, bool isMissingOnly)>;
  /// @param choices newest first; the first one that would change something is selected
  /// @param askForFile asks for another file; empty when the user gives up
  RestoreDialog(QWidget* parent, const std::vector<RestoreChoice>& choices, Preview preview,
                std::function<QString()> askForFile);

  /// Of the row that is selected; empty when there is none.
  [[nodiscard]] QString Path() const;
  [[nodiscard]] bool IsMissingOnly() const;

 private:
  void Build();
  void AddRow(int row, const RestoreChoice& choice);
  void SelectFirst();
  void Show();
  void TakeOtherFile();

  Preview preview_;
  std::function<QString()> askForFile_;
  QTableWidget* files_ = nullptr;
  QRadioButton* everything_ = nullptr;
  QRadioButton* missingOnly_ = nullptr;
  QPlainTextEdit* text_ = nullptr;
  QPushButton* restore_ = nullptr;
};

}  // namespace holdwise
