#include "common/untcommon.h"

#include "common/host_access.h"

namespace holdwise {

const std::array<TNodeData, 10> Nodes = {{
    {1000, 0, QStringLiteral("资产配置")},
    {1001, 1000, QStringLiteral("智能配置")},
    {1002, 1000, QStringLiteral("自选配置")},
    {2000, 0, QStringLiteral("组合跟踪")},
    {2001, 2000, QStringLiteral("组合表现")},
    {2002, 2000, QStringLiteral("风险计量")},
    {2003, 2000, QStringLiteral("压力测试")},
    {3000, 0, QStringLiteral("组合评价")},
    {3001, 3000, QStringLiteral("总体评价")},
    {3002, 3000, QStringLiteral("业绩分解")},
}};

UserDataServices* FDBServer = nullptr;
std::unique_ptr<TNowPrice> g_NowPrice;
std::unique_ptr<TClosePrice> g_ClosePrice;
std::unique_ptr<TUserValue> g_UserValue;
std::unique_ptr<TStockClosePrice> g_StockClosePrice;
std::unique_ptr<QTimer> g_Timer;

UserDataServices& Database() {
  if (FDBServer == nullptr) throw Error(ErrorCategory::Refused, "the local database is not open");
  return *FDBServer;
}

QString GetCodeCNum(const QString& code) {
  return code.right(6);
}

QString GetCodeNum(const QString& code) {
  if (code.isEmpty()) return code;
  const QString six = GetCodeCNum(code);
  const CodeNumServices& services = ModuleHost().CodeNums();
  if (services.IsFundOrBond(six) && services.IsKnownSecurity(six)) return code;
  return services.IsIndex(six) ? code : QStringLiteral("1") + six;
}

}  // namespace holdwise
