// SPDX-License-Identifier: MIT
#pragma once
#include "common/series/all_stock_data.h"
#include "common/series/expect_value.h"
#include "common/series/shared_objects.h"
#include "common/store/database.h"
#include "common_fixture.h"
#include "injecting_user_data.h"
#include "temp_database.h"

namespace holdwise {

/// The module on a real database, through a service that can be told to fail.
class EngineTest : public CommonTest {
 protected:
  EngineTest() { Use(temporary_.Service()); }
  ~EngineTest() override {
    g_ExpectValue.reset();
    g_AllStockData.reset();
  }

  void Use(UserDataServices& service) {
    injecting_ = std::make_unique<test::InjectingUserData>(service);
    host_.SetUserData(*injecting_);
    FDBServer = injecting_.get();
  }
  [[nodiscard]] test::FailurePlan& Plan() { return injecting_->plan; }

  void Run(const QString& statement) { ASSERT_EQ(Database().Execute(statement), 1) << statement.toStdString(); }
  void Run(const char* statement) { Run(QString::fromUtf8(statement)); }
  /// The rows of a query, cells joined by "|", "-" for null.
  [[nodiscard]] QStringList Rows(const char* query) {
    const ResultSet rows = Database().Query(QString::fromUtf8(query));
    QStringList lines;
    for (int row = 0; row < rows.RowCount(); ++row) {
      QStringList cells;
      for (int column = 0; column < rows.ColumnCount(); ++column) {
        cells.append(rows.IsNull(row, column) ? QStringLiteral("-") : rows.TextAt(row, column));
      }
      lines.append(cells.join(QLatin1Char('|')));
    }
    return lines;
  }

  test::TempDatabase temporary_;

 private:
  std::unique_ptr<test::InjectingUserData> injecting_;
};

}  // namespace holdwise
