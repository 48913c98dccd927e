// SPDX-License-Identifier: MIT
#include "window/restore_dialog.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>
#include <QVBoxLayout>
#include <utility>

namespace holdwise {
namespace {

constexpr QSize kSize{640, 520};
constexpr int kTimeColumn = 0;

}  // namespace

RestoreDialog::RestoreDialog(QWidget* parent, const std::vector<RestoreChoice>& choices, Preview preview,
                             std::function<QString()> askForFile)
    : QDialog(parent), preview_(std::move(preview)), askForFile_(std::move(askForFile)) {
  setWindowTitle(QStringLiteral("恢复组合"));
  Build();
  for (const RestoreChoice& choice : choices) AddRow(files_->rowCount(), choice);
  SelectFirst();
  Show();
  connect(files_, &QTableWidget::itemSelectionChanged, this, [this] { Show(); });
  connect(everything_, &QRadioButton::toggled, this, [this] { Show(); });
  resize(kSize);
}

void RestoreDialog::Build() {
  auto* layout = new QVBoxLayout(this);
  files_ = new QTableWidget(0, 3);
  files_->setObjectName(QStringLiteral("files"));
  files_->setAccessibleName(QStringLiteral("备份"));
  files_->setHorizontalHeaderLabels({QStringLiteral("备份时间"), QStringLiteral("组合"), QStringLiteral("持股")});
  files_->horizontalHeader()->setSectionResizeMode(kTimeColumn, QHeaderView::Stretch);
  files_->verticalHeader()->hide();
  files_->setSelectionBehavior(QAbstractItemView::SelectRows);
  files_->setSelectionMode(QAbstractItemView::SingleSelection);
  files_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  layout->addWidget(files_);
  missingOnly_ = new QRadioButton(QStringLiteral("只恢复现在没有的组合，其他组合不变(&M)"));
  everything_ = new QRadioButton(QStringLiteral("全部恢复成所选备份里的样子(&A)"));
  for (QRadioButton* button : {missingOnly_, everything_}) layout->addWidget(button);
  missingOnly_->setChecked(true);
  text_ = new QPlainTextEdit;
  auto* caption = new QLabel(QStringLiteral("将要发生的改变（现在的组合会先留一份备份）："));
  caption->setBuddy(text_);
  layout->addWidget(caption);
  text_->setObjectName(QStringLiteral("preview"));
  text_->setReadOnly(true);
  layout->addWidget(text_);
  auto* buttons = new QDialogButtonBox;
  auto* other = buttons->addButton(QStringLiteral("其他文件(&O)…"), QDialogButtonBox::ActionRole);
  restore_ = buttons->addButton(QStringLiteral("恢复(&R)"), QDialogButtonBox::AcceptRole);
  restore_->setObjectName(QStringLiteral("restore"));
  auto* cancel = buttons->addButton(QStringLiteral("取消"), QDialogButtonBox::RejectRole);
  connect(other, &QPushButton::clicked, this, [this] { TakeOtherFile(); });
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  layout->addWidget(buttons);
  // In the dialog by now: before, the box would make the other one the default when it is shown.
  cancel->setDefault(true);
  for (QPushButton* button : {other, restore_}) button->setAutoDefault(false);
}

void RestoreDialog::AddRow(int row, const RestoreChoice& choice) {
  files_->insertRow(row);
  auto* time = new QTableWidgetItem(choice.time);
  time->setData(Qt::UserRole, choice.path);
  time->setToolTip(choice.path);
  files_->setItem(row, kTimeColumn, time);
  files_->setItem(row, 1, new QTableWidgetItem(choice.portfolios));
  files_->setItem(row, 2, new QTableWidgetItem(choice.holdings));
}

/// The newest file is as a rule what there is already: the one to go back to stands behind it.
void RestoreDialog::SelectFirst() {
  for (const bool isMissingOnly : {true, false}) {
    for (int row = 0; row < files_->rowCount(); ++row) {
      if (!preview_(files_->item(row, kTimeColumn)->data(Qt::UserRole).toString(), isMissingOnly).isPossible) continue;
      (isMissingOnly ? missingOnly_ : everything_)->setChecked(true);
      files_->selectRow(row);
      return;
    }
  }
  if (files_->rowCount() > 0) files_->selectRow(0);
}

QString RestoreDialog::Path() const {
  const QList<QTableWidgetItem*> selected = files_->selectedItems();
  return selected.isEmpty() ? QString()
                            : files_->item(selected.front()->row(), kTimeColumn)->data(Qt::UserRole).toString();
}

bool RestoreDialog::IsMissingOnly() const {
  return missingOnly_->isChecked();
}

void RestoreDialog::Show() {
  const QString path = Path();
  const RestorePreview preview =
      path.isEmpty() ? RestorePreview{QStringLiteral("还没有备份。"), false} : preview_(path, IsMissingOnly());
  text_->setPlainText(preview.text);
  restore_->setEnabled(preview.isPossible);
}

void RestoreDialog::TakeOtherFile() {
  const QString path = askForFile_();
  if (path.isEmpty()) return;
  AddRow(0, {path, path, QString(), QString()});
  files_->selectRow(0);
}

}  // namespace holdwise
