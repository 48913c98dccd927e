// SPDX-License-Identifier: MIT
#include "common/frames/list_filter.h"

#include <QHBoxLayout>
#include <QLabel>

#include "common/frames/entry_bar.h"
#include "common/frames/frame_parts.h"
#include "common/host/event_guard.h"
#include "common/host/host_access.h"
#include "common/host/theme_colors.h"

namespace holdwise {
namespace {

constexpr int kMargin = 14;
constexpr int kGap = 8;
constexpr int kEntryWidth = 220;
constexpr int kEntryHeight = 22;
constexpr int kEntryMargin = 3;  // between the frame and the text

}  // namespace

ListFilter::ListFilter(const QString& unit, QWidget* parent)
    : QWidget(parent), entry_(new EntryField(unit, QStringLiteral("filter"), this)), counts_(new QLabel(this)) {
  setFixedHeight(kHeight);
  entry_->setPlaceholderText(QStringLiteral("筛选：名称中含有…"));
  entry_->setAccessibleName(QStringLiteral("按名称筛选组合"));
  entry_->setClearButtonEnabled(true);
  entry_->setTextMargins(kEntryMargin, 0, 0, 0);
  entry_->setFixedSize(kEntryWidth, kEntryHeight);
  counts_->setFont(DesignFont());
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(kMargin, 0, kMargin, 0);
  row->setSpacing(kGap);
  row->addWidget(entry_);
  row->addWidget(counts_);
  row->addStretch();
  entry_->OnKeyDown = [this](int key, Qt::KeyboardModifiers) {
    const bool leaves = key == Qt::Key_Down || key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Escape;
    if (key == Qt::Key_Escape) entry_->clear();
    if (leaves && OnLeave) OnLeave();
    return leaves;
  };
  connect(entry_, &QLineEdit::textChanged, this, [this, unit] {
    GuardEvent(unit, entry_->objectName(), [this] {
      if (OnChange) OnChange();
    });
  });
}

QString ListFilter::Text() const {
  return entry_->text().trimmed();
}

bool ListFilter::Admits(const QString& name) const {
  return name.contains(Text(), Qt::CaseInsensitive);
}

void ListFilter::Clear() {
  entry_->clear();
}

void ListFilter::SetCounts(int shown, int all) {
  counts_->setText(shown == all ? QString() : QStringLiteral("%1 / %2 个组合").arg(shown).arg(all));
}

void ListFilter::ApplyTheme() {
  SetPanelColor(*this, ThemeBackground());
  ApplyControlTheme(*entry_);
  SetTextColor(*counts_, ModuleHost().ColorTheme().Colors().ColorOf(theme::kTitleFont));
}

}  // namespace holdwise
