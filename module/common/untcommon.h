#pragma once
#include <QString>
#include <QTimer>
#include <array>
#include <memory>

#include "common/close_price.h"
#include "common/now_price.h"
#include "common/stock_close_price.h"
#include "common/user_value.h"
#include "holdwise/sdk/database.h"

namespace holdwise {

/// One entry of the navigation tree.
struct TNodeData {
  int Id = 0;
  int ParentId = 0;  ///< 0 for a top-level node
  QString Text;
};

/// The navigation tree, parents before children.
extern const std::array<TNodeData, 10> Nodes;

/// The host's local database; set by the main frame before and released after the shared objects below exist. Null
/// otherwise. Not owned.
extern UserDataServices* FDBServer;
/// The database, or Error(Refused) when no main frame has set it.
[[nodiscard]] UserDataServices& Database();

/// The shared objects. The main frame creates and frees them, in this order; null outside its life. The pointers
/// themselves belong to the user-interface thread.
extern std::unique_ptr<TNowPrice> g_NowPrice;
extern std::unique_ptr<TClosePrice> g_ClosePrice;
extern std::unique_ptr<TUserValue> g_UserValue;
extern std::unique_ptr<TStockClosePrice> g_StockClosePrice;
/// One-shot, 10 ms: a view enables it to have the host open the intraday chart of the current security.
extern std::unique_ptr<QTimer> g_Timer;

/// The last six characters of a code, all of it when it is shorter.
[[nodiscard]] QString GetCodeCNum(const QString& code);
/// The host's code number of a code: "1" and its six digits, except that a code the host knows as fund or bond, an
/// index and the empty text stay as they are.
[[nodiscard]] QString GetCodeNum(const QString& code);

}  // namespace holdwise
