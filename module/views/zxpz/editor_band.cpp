// SPDX-License-Identifier: MIT
#include "editor_band.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QShortcut>

#include "common/frames/entry_bar.h"
#include "common/frames/frame_parts.h"
#include "common/host/event_guard.h"
#include "holdings_editor.h"
#include "holdwise/packet/characters.h"
#include "portfolio_name.h"
#include "stock_picker.h"

namespace holdwise {
namespace {

const QString kUnit = QStringLiteral("Zxpz");
constexpr int kNameWidth = 220;
constexpr int kMargin = 6;
constexpr int kPickerShare = 4;
constexpr int kHoldingsShare = 5;

}  // namespace

EditorBand::EditorBand(QWidget* parent) : FramePart(parent), bar_(new EntryBar(kUnit, this)) {
  setObjectName(QStringLiteral("RzPanel1"));
  setFixedHeight(kHeight);
  bar_->AddLabel(QStringLiteral("请输入组合名称："));
  RzEdit1 = &bar_->AddEntry(QStringLiteral("RzEdit1"), {}, kNameWidth);
  // The limit takes away character by character: a whole document that is pasted would take its time.
  RzEdit1->setMaxLength(2 * static_cast<int>(kMostNamePoints) + 1);
  RzEdit1->setValidator(new editor::NameLimit(RzEdit1));
  RzEdit1->OnKeyPress = [this](QChar key) { return RzEdit1KeyPress(key); };
  btnOK = &bar_->AddButton(QStringLiteral("btnOK"), QStringLiteral("确 定"), [this] { Confirm(); });
  btnOK->setToolTip(QStringLiteral("Ctrl+Enter"));
  Holdings = new HoldingsEditor(this);
  Picker = new StockPicker(*Holdings, this);

  auto* columns = new QHBoxLayout;
  columns->setContentsMargins(kMargin, 0, kMargin, kMargin);
  columns->setSpacing(kMargin);
  columns->addWidget(Picker, kPickerShare);
  columns->addWidget(Holdings, kHoldingsShare);
  auto* rows = StackedIn(*this);
  rows->addWidget(bar_);
  rows->addLayout(columns, 1);

  for (const auto key : {Qt::Key_Return, Qt::Key_Enter}) {
    auto* shortcut = new QShortcut(QKeySequence(Qt::CTRL | key), this);
    shortcut->setContext(Qt::WidgetWithChildrenShortcut);
    connect(shortcut, &QShortcut::activated, this,
            [this] { GuardEvent(kUnit, QStringLiteral("btnOK"), [this] { Confirm(); }); });
  }
}

void EditorBand::Confirm() {
  if (OnConfirm) OnConfirm();
}

bool EditorBand::RzEdit1KeyPress(QChar key) {
  if (key != u'\r') return editor::IsNameKey(key);
  Picker->FocusFirstVisible();
  return true;
}

void EditorBand::FocusName() {
  StockPicker::RzEdit3Enter();
  RzEdit1->setFocus();
}

std::vector<QWidget*> EditorBand::TabOrder() const {
  std::vector<QWidget*> order = {RzEdit1};
  for (QWidget* widget : Picker->TabOrder()) order.push_back(widget);
  order.insert(order.end(), {Holdings->StringGrid3, Holdings->btnDel, btnOK});
  return order;
}

void EditorBand::ApplyTheme() {
  SetPanelColor(*this, ThemeBackground());
  bar_->ApplyTheme();
  Picker->ApplyTheme();
  Holdings->ApplyTheme();
}

void EditorBand::Fit() {
  Picker->Fit();
  Holdings->Fit();
}

}  // namespace holdwise
