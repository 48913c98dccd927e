// SPDX-License-Identifier: MIT
#include "common/series/all_stock_data.h"

#include <algorithm>

#include "common/helpers/edition.h"
#include "common/host/download_role.h"
#include "common/host/event_guard.h"
#include "common/host/host_access.h"
#include "common/series/holding_rows.h"
#include "common/store/database.h"
#include "common/store/statements.h"
#include "holdwise/packet/code_numbers.h"
#include "holdwise/packet/number_text.h"
#include "holdwise/packet/packet_file.h"
#include "holdwise/packet/table_limits.h"

namespace holdwise {
namespace {

const QString kUnit = QStringLiteral("Untcommon");

const std::array<QString, 3> kRiskFiles = {
    QStringLiteral("QMTL\\TZZH\\风险计量\\SH.dat"),
    QStringLiteral("QMTL\\TZZH\\风险计量\\SZ.dat"),
    QStringLiteral("QMTL\\TZZH\\风险计量\\HS.dat"),
};

}  // namespace

const QStringList& IndexNames() {
  static const QStringList names = [] {
    QStringList shown;
    for (const char* name : kIndexNames) shown += QString::fromUtf8(name);
    return shown;
  }();
  return names;
}

std::optional<double> BetaOf(const TTextGrid& table, QStringView code) {
  const int row = table.RowOf(code);
  return row < 0 ? std::nullopt : ParseReal(table.Cells(risk_table::kBeta, row));
}

TAllStockData::TAllStockData()
    : deviations_(std::make_shared<TNameValueList>()),
      role_(MakeFileDownload(QStringLiteral("FInfoAsynDownFileRole"))) {
  role_->OnReciveAFile = [this](const QString& fileName, int) {
    if (!GuardEvent(kUnit, QStringLiteral("ReceiveFile"), [&] { ReceiveFile(fileName); })) Q_EMIT TableFailed();
  };
  role_->OnReciveAFileFail = [this](const QString& fileName, int) { ReceiveFileFail(fileName); };
}

void TAllStockData::SetZS_TYPE(TZS_TYPE type) {
  type_ = type;
  if (!GetCurStringGrid().Cells(0, 0).isEmpty()) return;
  const QString& file = kRiskFiles[static_cast<std::size_t>(type)];
  edition_ = ModuleHost().DataCenter().DataEdition();
  underWay_.push_back(file);
  isMissing_[static_cast<std::size_t>(type)] = true;
  isOtherEdition_[static_cast<std::size_t>(type)] = false;
  role_->Request(file);
}

void TAllStockData::RequestCurrentTable() {
  if (!underWay_.contains(kRiskFiles[static_cast<std::size_t>(type_)])) SetZS_TYPE(type_);
}

void TAllStockData::ForgetOtherEdition() {
  if (edition_ == ModuleHost().DataCenter().DataEdition()) return;
  const bool wasAsked = !GetCurStringGrid().Cells(0, 0).isEmpty() || isMissing_[static_cast<std::size_t>(type_)];
  for (TTextGrid& grid : grids_) grid.Fill(ResultSet());
  if (wasAsked) SetZS_TYPE(type_);
}

// A file fills the table of its own index: the user may have chosen another one while it was on its way.
void TAllStockData::ReceiveFile(const QString& fileName) {
  underWay_.removeOne(fileName);
  const auto known = std::find(kRiskFiles.begin(), kRiskFiles.end(), fileName);
  if (known == kRiskFiles.end()) throw Error(ErrorCategory::Refused, "not a risk file: " + fileName.toStdString());
  const ResultSet table = ReadPacketFile(role_->LocalPath(fileName), kSecuritiesLimits);
  const auto type = static_cast<std::size_t>(known - kRiskFiles.begin());
  isOtherEdition_[type] = NamesOtherEdition(table, ModuleHost().DataCenter().DataEdition());
  if (isOtherEdition_[type]) {
    throw Error(
        ErrorCategory::Refused,
        QStringLiteral("风险文件“%1”是随另一份数据生成的，没有采用，请重新生成数据目录").arg(fileName).toStdString());
  }
  deviations_ = std::make_shared<TNameValueList>();
  grids_[type].Fill(table);
  isMissing_[type] = false;
  Q_EMIT TableArrived();
}

void TAllStockData::ReceiveFileFail(const QString& fileName) {
  underWay_.removeOne(fileName);
  Q_EMIT TableFailed();
}

TNameValueSnapshot TAllStockData::GetBZCStringList() {
  if (!isGet_ || isNeedUpdate_) {
    isNeedUpdate_ = false;
    ReGetBZCStringList();
  }
  return deviations_;
}

void TAllStockData::SetIsGetBZCStringList(bool flag) {
  isGet_ = false;
  if (!flag) return;
  const ResultSet rows = Database().Query(sql::kDeviations);
  const int codeColumn = rows.Column("SECUCODE");
  const int deviationColumn = rows.Column("SYLBZC");
  auto deviations = std::make_shared<TNameValueList>(*deviations_);
  for (int row = 0; row < rows.RowCount(); ++row) {
    deviations->Set(rows.TextAt(row, codeColumn), ShortestText(NumberAt(rows, row, deviationColumn)));
  }
  deviations_ = std::move(deviations);
  isGet_ = true;
}

}  // namespace holdwise
