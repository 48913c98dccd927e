// SPDX-License-Identifier: MIT
#include "window/import_dialog.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <utility>

namespace holdwise {
namespace {

constexpr QSize kSize{720, 480};

}  // namespace

ImportDialog::ImportDialog(QWidget* parent, const ImportQuestion& question, NameProblem nameProblem)
    : QDialog(parent), nameProblem_(std::move(nameProblem)) {
  setWindowTitle(QStringLiteral("导入预览"));
  Build(question);
  Check();
  resize(kSize);
}

void ImportDialog::Build(const ImportQuestion& question) {
  auto* layout = new QVBoxLayout(this);
  auto* title = new QLabel(QStringLiteral("“%1”将这样导入（还没有写入）：").arg(question.file));
  title->setTextFormat(Qt::PlainText);
  title->setWordWrap(true);
  layout->addWidget(title);
  auto* text = new QPlainTextEdit(question.text);
  text->setObjectName(QStringLiteral("preview"));
  text->setAccessibleName(QStringLiteral("预览"));
  text->setReadOnly(true);
  layout->addWidget(text);
  if (!question.name.isEmpty()) {
    auto* row = new QHBoxLayout;
    name_ = new QLineEdit(question.name);
    name_->setObjectName(QStringLiteral("name"));
    auto* label = new QLabel(QStringLiteral("组合名称(&N)："));
    label->setBuddy(name_);
    row->addWidget(label);
    row->addWidget(name_);
    layout->addLayout(row);
    connect(name_, &QLineEdit::textChanged, this, [this] { Check(); });
  }
  if (question.strangers > 0) {
    skip_ = new QCheckBox(QStringLiteral("略去不能导入的 %1 行，导入其余的(&S)").arg(question.strangers));
    skip_->setObjectName(QStringLiteral("skip"));
    layout->addWidget(skip_);
    connect(skip_, &QCheckBox::toggled, this, [this] { Check(); });
  }
  problem_ = new QLabel;
  problem_->setObjectName(QStringLiteral("problem"));
  problem_->setTextFormat(Qt::PlainText);
  problem_->setWordWrap(true);
  layout->addWidget(problem_);
  auto* buttons = new QDialogButtonBox;
  import_ = buttons->addButton(QStringLiteral("导入(&I)"), QDialogButtonBox::AcceptRole);
  import_->setObjectName(QStringLiteral("import"));
  buttons->addButton(QStringLiteral("取消"), QDialogButtonBox::RejectRole);
  connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  layout->addWidget(buttons);
}

void ImportDialog::Check() {
  QString problem = name_ == nullptr ? QString() : nameProblem_(name_->text());
  if (problem.isEmpty() && skip_ != nullptr && !skip_->isChecked())
    problem = QStringLiteral("有不能导入的行：同意略去它们才能导入。");
  problem_->setText(problem);
  import_->setEnabled(problem.isEmpty());
}

QString ImportDialog::Name() const {
  return name_ == nullptr ? QString() : name_->text();
}

bool ImportDialog::SkipsStrangers() const {
  return skip_ != nullptr && skip_->isChecked();
}

}  // namespace holdwise
