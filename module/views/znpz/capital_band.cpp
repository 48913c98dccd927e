// SPDX-License-Identifier: MIT
#include "capital_band.h"

#include <QLabel>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QVBoxLayout>

#include "capital_slider.h"
#include "common/frames/entry_bar.h"
#include "common/frames/frame_parts.h"
#include "holdwise/packet/number_text.h"
#include "stock_count.h"

namespace holdwise {
namespace {

const QString kUnit = QStringLiteral("Znpz");
constexpr int kEntryWidth = 80;

}  // namespace

CapitalBand::CapitalBand(QWidget* parent) : FramePart(parent), bar_(new EntryBar(kUnit, this)) {
  setObjectName(QStringLiteral("RzPanel1"));
  setFixedHeight(kHeight);
  Slider = new CapitalSlider(kUnit, QStringLiteral("Slider"), this);
  Slider->setAccessibleName(QStringLiteral("资金量（万元）"));
  bar_->AddLabel(QStringLiteral("资金量（万元）"));
  Edit1 = &bar_->AddEntry(QStringLiteral("Edit1"), QStringLiteral("50"), kEntryWidth);
  // What is pasted or dropped comes past the key filter.
  Edit1->setValidator(new QRegularExpressionValidator(QRegularExpression(allocation::kCapitalCharacters), Edit1));
  Edit1->OnKeyPress = [this](QChar key) { return Edit1KeyPress(key); };
  btnSetting = &bar_->AddButton(QStringLiteral("btnSetting"), QStringLiteral("配 置"), [this] { Configure(); });
  bar_->AddLabel(QStringLiteral("候选组合由历史价格推算得出，不代表将来的表现，不构成投资建议。"));
  connect(Edit1, &QLineEdit::textChanged, Slider, qOverload<>(&QWidget::update));
  Slider->OnRead = [this] {
    const double capital = RealOr(Edit1->text());
    return allocation::CapitalSliderState{capital, OnCaption ? OnCaption(capital) : QString(), false};
  };
  Slider->OnChoose = [this](const QString& capital) { Edit1->setText(capital); };
  auto* rows = StackedIn(*this);
  rows->addWidget(Slider);
  rows->addWidget(bar_);
  rows->addStretch();
  setTabOrder(Slider, Edit1);
  setTabOrder(Edit1, btnSetting);
}

bool CapitalBand::Edit1KeyPress(QChar key) {
  const int caret = Edit1->hasSelectedText() ? Edit1->selectionStart() : Edit1->cursorPosition();
  const bool isTaken = allocation::IsCapitalKey(key, Edit1->text().size(), caret);
  if (isTaken && key == u'\r') Configure();
  return isTaken;
}

void CapitalBand::Configure() {
  if (OnConfigure) OnConfigure();
}

void CapitalBand::ApplyTheme() {
  SetPanelColor(*this, ThemeBackground());
  bar_->ApplyTheme();
  Slider->ApplyTheme();
}

}  // namespace holdwise
