// SPDX-License-Identifier: MIT
#pragma once
#include <QDialog>
#include <QString>
#include <functional>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace holdwise {

/// What there is to agree to before an import.
struct ImportQuestion {
  QString file;       ///< shown
  QString text;       ///< what would be written and what not
  QString name;       ///< of the new portfolio; empty: the file has the names
  int strangers = 0;  ///< rows that are left out with consent only
};

/// Shows what an import would bring. It goes on only when rows that would be left out are agreed to and the portfolio's
/// name can be taken. User-interface thread.
class ImportDialog : public QDialog {
  Q_OBJECT

 public:
  /// Why a name cannot be taken (Chinese); empty when it can.
  using NameProblem = std::function<QString(const QString& name)>;

  ImportDialog(QWidget* parent, const ImportQuestion& question, NameProblem nameProblem);
  /// The name as it stands in the entry; empty when the file has the names.
  [[nodiscard]] QString Name() const;
  /// Is it agreed to leave the rows out?
  [[nodiscard]] bool SkipsStrangers() const;

 private:
  void Build(const ImportQuestion& question);
  void Check();

  NameProblem nameProblem_;
  QLineEdit* name_ = nullptr;
  QLabel* problem_ = nullptr;
  QCheckBox* skip_ = nullptr;
  QPushButton* import_ = nullptr;
};

}  // namespace holdwise
