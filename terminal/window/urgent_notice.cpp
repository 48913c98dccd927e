// SPDX-License-Identifier: MIT
#include "window/urgent_notice.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <utility>

namespace holdwise {
namespace {

constexpr int kTextWidth = 480;

}  // namespace

UrgentNotice::UrgentNotice(QWidget* window, const QString& title, const QString& text, const QString& actionText,
                           std::function<void()> action)
    : QDialog(window) {
  setWindowTitle(title);
  auto* layout = new QVBoxLayout(this);
  auto* label = new QLabel(text);
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  label->setMinimumWidth(kTextWidth);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  layout->addWidget(label);
  auto* buttons = new QDialogButtonBox;
  if (action) {
    QPushButton* act = buttons->addButton(actionText, QDialogButtonBox::ActionRole);
    act->setDefault(true);
    connect(act, &QPushButton::clicked, this, [does = std::move(action)] { does(); });
  }
  buttons->addButton(QStringLiteral("关闭"), QDialogButtonBox::RejectRole);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  layout->addWidget(buttons);
}

}  // namespace holdwise
