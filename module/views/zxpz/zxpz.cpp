// SPDX-License-Identifier: MIT
#include "views/zxpz/zxpz.h"

#include <QPointer>
#include <QPushButton>
#include <utility>

#include "common/frames/entry_bar.h"
#include "common/frames/frame_parts.h"
#include "common/helpers/date_text.h"
#include "common/host/event_guard.h"
#include "common/host/host_access.h"
#include "common/host/messages.h"
#include "common/series/shared_objects.h"
#include "common/store/database.h"
#include "common/store/statements.h"
#include "editor_band.h"
#include "editor_layout.h"
#include "holdings_editor.h"
#include "host_stocks.h"
#include "portfolio_band.h"
#include "portfolio_name.h"
#include "portfolio_rows.h"
#include "portfolio_writer.h"
#include "stock_picker.h"

namespace holdwise {
namespace {

const QString kUnit = QStringLiteral("Zxpz");
const QString kConfirm = QStringLiteral("确 定");
const QString kModify = QStringLiteral("修 改");
constexpr int kLeastOneLineWidth = 500;
constexpr std::size_t kLeastHoldings = 2;

}  // namespace

TFrm_ZXPZ::TFrm_ZXPZ(QWidget* parent)
    : TViewFrame(kUnit, parent), editor_(new EditorBand(this)), portfolios_(new PortfolioBand(this)) {
  InitAppear();
  SetLabelCaption(editor::TitleMode::OneLine);
  msg_changeskin();
  ReflashData();
}

TFrm_ZXPZ::~TFrm_ZXPZ() = default;

void TFrm_ZXPZ::InitAppear() {
  AddPart(*editor_, false);
  AddPart(*portfolios_, true);
  editor_->OnConfirm = [this] { Label1Click(); };
  portfolios_->OnSave = [this](int row) { SavePortfolio(row); };
  portfolios_->OnDelete = [this](int row) { DeletePortfolio(row); };
  portfolios_->OnModify = [this](int row) { ModifyPortfolio(row); };
  std::vector<QWidget*> tabOrder = editor_->TabOrder();
  for (QWidget* stop : portfolios_->TabStops()) tabOrder.push_back(stop);
  SetTabOrderOf(tabOrder);
}

void TFrm_ZXPZ::SetLabelCaption(editor::TitleMode mode) {
  const editor::Captions captions = editor::CaptionsOf(mode);
  portfolios_->SetTitles(captions);
  editor_->Holdings->SetTitles(captions.holdings);
}

void TFrm_ZXPZ::FrameResize() {
  TViewFrame::FrameResize();
  // Before it is shown, nothing has its size. Nobody sets one line again: intended.
  if (isVisible() && portfolios_->TitleWidth() < kLeastOneLineWidth) SetLabelCaption(editor::TitleMode::TwoLines);
}

void TFrm_ZXPZ::showEvent(QShowEvent* event) {
  TViewFrame::showEvent(event);
  GuardEvent(kUnit, QStringLiteral("FrameResize"), [this] { FrameResize(); });
}

void TFrm_ZXPZ::ReflashData() {
  editor_->Picker->SelectSource(StockPicker::kAllShares);
  UpdateGrid_();
}

void TFrm_ZXPZ::DoInit_() {
  UpdateGrid_();
}

void TFrm_ZXPZ::UpdateGrid_() {
  portfolios_->UpdateGrid_();
}

void TFrm_ZXPZ::ClearAppear_() {
  editor_->RzEdit1->clear();
  editor_->Holdings->ClearRows();
}

bool TFrm_ZXPZ::IsModifying() const {
  return editor_->btnOK->text() == kModify;
}

void TFrm_ZXPZ::SetModifying(bool modifying) {
  editor_->btnOK->setText(modifying ? kModify : kConfirm);
}

QString TFrm_ZXPZ::NameIn(int row) const {
  return portfolios_->List().Cells(editor::kName, row).trimmed();
}

QString TFrm_ZXPZ::Unstored() const {
  const QString name = editor_->RzEdit1->text().trimmed();
  if (IsModifying()) return QStringLiteral("自选配置里对组合“%1”的修改还没有存").arg(name);
  if (!name.isEmpty()) return QStringLiteral("自选配置里的组合“%1”还没有存").arg(name);
  return editor_->Holdings->GetIshaveData() ? QString() : QStringLiteral("自选配置里还没有名称的组合没有存");
}

void TFrm_ZXPZ::Label1Click() {
  const QPointer<TFrm_ZXPZ> alive(this);
  HoldingsEditor& holdings = *editor_->Holdings;
  if (holdings.GetIshaveData()) {
    if (IsModifying()) Tell(QStringLiteral("请添加股票到您的组合"));
    return;
  }
  holdings.FInplaceEditExit();
  holdings.UpdateEditor();
  EntryField::KeepKeyboard();
  const editor::PortfolioDraft draft{editor_->RzEdit1->text().trimmed(), IndexCloseText(), holdings.Rows()};
  // Two are enough, whatever the text says: intended.
  if (draft.holdings.size() < kLeastHoldings) return Tell(QStringLiteral("组合记录数应大于2"));
  if (!IsNameFit(draft.name)) return;
  if (const auto zero = editor::FirstZero(draft.holdings)) {
    const bool isPrice = zero->column == kHoldingPrice;
    Tell(isPrice ? QStringLiteral("买入价不能为零") : QStringLiteral("数量不能为零"));
    if (!alive.isNull()) holdings.EditCell(zero->column, zero->row);
    return;
  }
  const int row = IsModifying() ? RewriteFrom(draft) : CreateFrom(draft);
  if (row >= 0) ShowWritten(draft.name, row);
}

bool TFrm_ZXPZ::IsNameFit(const QString& name) {
  const QPointer<TFrm_ZXPZ> alive(this);
  const auto refuse = [&](const QString& text, bool selectAll) {
    Tell(text);
    if (alive.isNull()) return false;
    if (selectAll) editor_->RzEdit1->selectAll();
    editor_->FocusName();
    return false;
  };
  if (name.isEmpty()) return refuse(QStringLiteral("组合名称不能为空，请输入名称"), false);
  const QString problem = editor::NameProblem(name);
  if (!problem.isEmpty()) return refuse(problem, false);
  // A modification's name is not looked for in the list: intended.
  if (IsModifying()) return true;
  const TStringGrid& list = portfolios_->List();
  for (int row = 0; row < list.RowCount(); ++row) {
    // Without regard to case, as lists of names compare.
    if (list.Cells(editor::kName, row).compare(name, Qt::CaseInsensitive) == 0)
      return refuse(QStringLiteral("组合名称重复，请重新输入名称"), true);
  }
  return true;
}

int TFrm_ZXPZ::CreateFrom(const editor::PortfolioDraft& draft) {
  const QPointer<TFrm_ZXPZ> alive(this);
  const editor::CreateResult result = editor::Create(Database(), draft);
  if (result == editor::CreateResult::NameTaken) {
    Tell(QStringLiteral("组合表现已存在该组合名称"));
    if (!alive.isNull()) editor_->FocusName();
  }
  if (result != editor::CreateResult::Created) return -1;
  const TStringGrid& list = portfolios_->List();
  return list.IsEmpty() ? 0 : list.RowCount();
}

bool TFrm_ZXPZ::AgreesToShare(const QString& name) {
  const QPointer<TFrm_ZXPZ> alive(this);
  const bool isAgreed =
      Agrees(QStringLiteral("另有一个组合也叫“%1”。同名的组合都不能保存，删除其中一个会把两个都删除。\n"
                            "仍然用这个名称吗？按“取消”可以先改名称。")
                 .arg(name));
  if (alive.isNull() || isAgreed) return isAgreed && !alive.isNull();
  editor_->RzEdit1->selectAll();
  editor_->FocusName();
  return false;
}

int TFrm_ZXPZ::RewriteFrom(const editor::PortfolioDraft& draft) {
  using editor::RewriteResult;
  RewriteResult result = editor::Rewrite(Database(), currentId_, draft, editor::SharedName::Refused);
  if (result == RewriteResult::NameShared) {
    if (!AgreesToShare(draft.name)) return -1;
    result = editor::Rewrite(Database(), currentId_, draft, editor::SharedName::Taken);
  }
  if (result == RewriteResult::Failed) Tell(QStringLiteral("修改组合失败"));
  if (result != RewriteResult::Rewritten) return -1;
  SetModifying(false);
  return modifiedRow_;
}

void TFrm_ZXPZ::ShowWritten(const QString& name, int row) {
  const QPointer<TFrm_ZXPZ> alive(this);
  // What was stored stays stored when its figures cannot be calculated.
  GuardEvent(kUnit, QStringLiteral("DownData"), [download = OnDownData] {
    if (download) download();
  });
  if (alive.isNull()) return;
  TStringGrid& list = portfolios_->List();
  editor::ShowProvisional(name, DateText(ModuleHost().Clock().Now().date()), row, list);
  ClearAppear_();
  editor_->Picker->ForgetPicked();
  UpdateGrid_();
  portfolios_->SelectRow(row);
  PortfoliosChanged();
}

void TFrm_ZXPZ::SavePortfolio(int row) {
  const QPointer<TFrm_ZXPZ> alive(this);
  const QString name = NameIn(row);
  const editor::SaveState state = editor::SaveStateOf(Database(), name);
  if (state == editor::SaveState::Unfinished) return Tell(QStringLiteral("此行数据没有计算完成，不能保存"));
  if (state == editor::SaveState::NotOne) return;
  if (IsModifying()) return Tell(QStringLiteral("正处在修改状态..."));
  if (!editor::Save(Database(), name)) return;
  Tell(QStringLiteral("保存自选配置组合成功"));
  if (alive.isNull()) return;
  g_NowPrice->SetIsGetNowPrice(true);
  UpdateGrid_();
  ReCalc();
  PortfoliosChanged();
}

void TFrm_ZXPZ::DeletePortfolio(int row) {
  if (deletion_ != nullptr) return;
  const QPointer<TFrm_ZXPZ> alive(this);
  const QString name = NameIn(row);
  deletion_ = std::make_unique<editor::Deletion>(Database());
  const bool isAgreed = Agrees(QStringLiteral("确认删除当前组合?"));
  if (alive.isNull()) return;
  auto deletion = std::move(deletion_);
  if (isAgreed) {
    const editor::Deletion::Result result = deletion->Run(name);
    if (result == editor::Deletion::Result::HoldingsRefused) return;
    if (result == editor::Deletion::Result::Deleted) {
      LogDeletion(name);
      UpdateGrid_();
      PortfoliosChanged();
    }
  }
  deletion.reset();
  if (!IsModifying()) return;
  // Also when the user has refused: intended.
  SetModifying(false);
  ClearAppear_();
  UpdateGrid_();
}

void TFrm_ZXPZ::ModifyPortfolio(int row) {
  const QPointer<TFrm_ZXPZ> alive(this);
  if (IsModifying()) {
    Tell(QStringLiteral("正处在修改状态..."));
    if (!alive.isNull()) portfolios_->ReleasePicture();
    return;
  }
  currentId_ = Database().Count(sql::IdOfName(NameIn(row)));
  editor_->RzEdit1->setText(portfolios_->List().Cells(editor::kName, row));
  editor_->Holdings->SetRows(editor::HoldingsIn(portfolios_->Details()));
  modifiedRow_ = row;
  SetModifying(true);
}

}  // namespace holdwise
