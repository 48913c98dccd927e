// SPDX-License-Identifier: MIT
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <cstdlib>
#include <vector>

#include "common/host/host_access.h"
#include "common/store/exchange_files.h"
#include "common/store/statements.h"
#include "database/statements/statement_shape.h"
#include "holdwise/packet/csv_result_set.h"
#include "properties.h"
#include "targets.h"

namespace holdwise::fuzz {
namespace {

/// An empty database that takes every statement.
class RecordingDatabase final : public UserDataServices {
 public:
  ResultSet Query(const QString&) override { return {}; }
  std::int64_t Count(const QString&) override { return 0; }
  Value Scalar(const QString&) override { return {}; }
  int Execute(const QString& sql) override {
    statements.push_back(sql);
    return 1;
  }
  void StartTransaction() override { isOpen = true; }
  void Commit() override {
    isOpen = false;
    isCommitted = true;
  }
  void RollBack() override { isOpen = false; }
  bool InTransaction() const override { return isOpen; }
  std::unique_ptr<UserDataSession> OpenSession() override { return nullptr; }

  std::vector<QString> statements;
  bool isOpen = false;
  bool isCommitted = false;
};

class CountingLog final : public DebugServers {
 public:
  void WriteLog(const QString&) override { ++lines; }
  int lines = 0;
};

class WallClock final : public ClockService {
 public:
  QDateTime Now() const override { return QDateTime::currentDateTime(); }
};

/// Only what reading the files asks for.
class FileHost final : public Host {
 public:
  explicit FileHost(QString folder) : folder_(std::move(folder)) {}
  AddressServices& Addresses() override { std::abort(); }
  CodeNumServices& CodeNums() override { std::abort(); }
  PlugSystemInfo& System() override { std::abort(); }
  UserDataServices& UserData() override { return database; }
  DebugServers& Debug() override { return log; }
  KeyCodeServices& KeyCodes() override { std::abort(); }
  TDataCenter& DataCenter() override { std::abort(); }
  ColorThemeServices& ColorTheme() override { std::abort(); }
  MessageBoxService& MessageBoxes() override { std::abort(); }
  ClockService& Clock() override { return clock; }
  QString SysWorkDataPath() const override { return folder_; }
  std::unique_ptr<TDSBAsynDataDownRole> MakeDataDownRole() override { std::abort(); }
  std::unique_ptr<TDSBAsynDownFileRole> MakeDownFileRole() override { std::abort(); }
  std::unique_ptr<TFrmQMTitle> MakeTitleFrame() override { std::abort(); }

  RecordingDatabase database;
  CountingLog log;
  WallClock clock;

 private:
  QString folder_;
};

/// The module reaches its host for as long as this stands.
class HostScope {
 public:
  explicit HostScope(Host& host) { SetModuleHost(&host); }
  ~HostScope() { SetModuleHost(nullptr); }
  HostScope(const HostScope&) = delete;
  HostScope& operator=(const HostScope&) = delete;
};

std::vector<std::string> ReadShape(const QString& statement, std::string& shapeText) {
  const std::string sql = statement.toStdString();
  firebird::StatementShape shape;
  shape.Read(sql);
  shapeText = shape.Text();
  std::vector<std::string> values;
  for (const firebird::Literal& literal : shape.Literals()) values.emplace_back(literal.text);
  return values;
}

/// Texts of a file stand in the literals of the statement and nowhere else.
void CheckStatement(const QString& statement, const QString& plain, const std::vector<std::string>& values) {
  std::string shape;
  std::string plainShape;
  const std::vector<std::string> taken = ReadShape(statement, shape);
  static_cast<void>(ReadShape(plain, plainShape));
  Require(shape == plainShape, "texts of a file do not change a statement");
  Require(taken == values, "the texts of a row are the values of its statement");
}

void CheckImported(const ResultSet& holdings, const ResultSet& portfolios, const std::vector<QString>& statements) {
  const int rows = holdings.RowCount() + portfolios.RowCount();
  Require(static_cast<int>(statements.size()) == rows + 2, "a statement for each row and each generator");
  const auto text = [](const ResultSet& set, int row, const char* name) { return set.Utf8At(row, set.Column(name)); };
  std::size_t at = 0;
  for (int row = 0; row < holdings.RowCount(); ++row) {
    std::vector<std::string> values;
    for (const char* name : {"ID", "MAINID", "SecuCode", "PZSL", "PZBL", "BUYPRICE"}) {
      values.push_back(text(holdings, row, name));
    }
    CheckStatement(statements[at++], sql::RestoreHolding({"1", "1", "1", "1", "1", "1"}), values);
  }
  Require(statements[at++].startsWith(QStringLiteral("SET GENERATOR ")), "the generator follows the holdings");
  for (int row = 0; row < portfolios.RowCount(); ++row) {
    const auto value = [&](const char* name) { return text(portfolios, row, name); };
    CheckStatement(statements[at++], sql::RestorePortfolio({"1", "1", "1", "1", "1"}),
                   {value("ID"), value("COMNAME"), value("ZSCLOSEPRICE"), "0", "0", "0", "0", value("EDITDATE"),
                    value("SAVEFLAG")});
  }
}

const QTemporaryDir& Folder() {
  static const QTemporaryDir folder(
      QFileInfo(QStringLiteral("/dev/shm")).isWritable() ? QStringLiteral("/dev/shm/holdwise-XXXXXX") : QString());
  return folder;
}

RecordingDatabase* database = nullptr;

}  // namespace
}  // namespace holdwise::fuzz

namespace holdwise {

// The module's own stands among all of its shared objects, which reading two files does not need.
UserDataServices& Database() {
  return *fuzz::database;
}

}  // namespace holdwise

namespace holdwise::fuzz {

void ExchangeFiles(std::string_view input) {
  constexpr std::string_view kBorder = "====\n";
  const std::size_t border = input.find(kBorder);
  if (border == std::string_view::npos) return;
  const QString folder = Folder().path() + QLatin1Char('/');
  ResultSet holdings;
  ResultSet portfolios;
  try {
    holdings = ResultSetFromCsv(Raw(input.substr(0, border)));
    portfolios = ResultSetFromCsv(Raw(input.substr(border + kBorder.size())));
    WritePacketFile(folder + QStringLiteral("TZZHDetail.dat"), holdings, Durability::Replaceable);
    WritePacketFile(folder + QStringLiteral("TZZHMerge.dat"), portfolios, Durability::Replaceable);
  } catch (const Error&) {
    return;  // no pair
  }
  FileHost host(folder);
  const HostScope scope(host);
  database = &host.database;
  const bool isImported = LoadZHFile();
  Require(!host.database.isOpen, "the transaction has ended");
  Require(host.database.isCommitted == isImported, "a pair is imported whole or not at all");
  Require(host.log.lines == (isImported ? 0 : 1), "a refused pair is one line in the debug log");
  if (isImported) CheckImported(holdings, portfolios, host.database.statements);
}

}  // namespace holdwise::fuzz
