// SPDX-License-Identifier: MIT
#pragma once
#include <gtest/gtest.h>

#include <QDirIterator>

#include "holdwise/market/data_folder_builder.h"
#include "holdwise/packet/csv_result_set.h"
#include "holdwise/packet/packet_file.h"
#include "market_files.h"

namespace holdwise {

// 2024-01-02 was a Tuesday.
inline constexpr const char* kWeek =
    "date,close\n2024-01-02,10\n2024-01-03,11\n2024-01-04,12\n2024-01-05,13\n2024-01-08,14\n2024-01-09,15\n";

// Levels that an index can have.
inline constexpr const char* kIndexWeek =
    "date,close\n2024-01-02,1000\n2024-01-03,1100\n2024-01-04,1200\n2024-01-05,1300\n2024-01-08,1400\n"
    "2024-01-09,1500\n";

struct Outcome {
  BuildSummary summary;
  std::string rejections;  // with paths relative to the test's folder
  std::string error;
};

class Build : public testing::Test {
 protected:
  void SetUp() override {
    files_.WriteMarket(kWeek);
    files_.Write(QStringLiteral("bars/600519.csv"), "date,close\n2024-01-05,13.5\n2024-01-08,14.5\n2024-01-09,15.5\n");
    options_.barsFolder = files_.Path(QStringLiteral("bars"));
    options_.indicesFolder = files_.Path(QStringLiteral("indices"));
    options_.securitiesFile = files_.Path(QStringLiteral("securities.csv"));
    options_.outFolder = files_.Path(QStringLiteral("out"));
    options_.days = 4;
  }

  Outcome Run() {
    Outcome outcome;
    BuildObserver observer;
    const QString root = files_.Path(QString()) + u'/';
    observer.onRejection = [&](const Rejection& rejection) {
      outcome.rejections += rejection.ToText().remove(root).remove(files_.Path(QString())).toStdString() + "\n";
    };
    try {
      outcome.summary = BuildDataFolder(options_, observer);
    } catch (const Error& error) {
      outcome.error = error.what();
    }
    return outcome;
  }

  [[nodiscard]] ResultSet Table(const QString& name) const {
    return ReadPacketFile(files_.Path(QStringLiteral("out/") + name));
  }
  [[nodiscard]] std::string Csv(const QString& name) const { return ResultSetToCsv(Table(name)).toStdString(); }
  // The quotes without the edition they name.
  [[nodiscard]] std::string QuotesCsv() const {
    const ResultSet table = Table(QStringLiteral("quotes.dat"));
    ResultSet quotes;
    quotes.AddColumn("code_number", ColumnType::Integer);
    for (const char* price : {"price", "prev_close"}) quotes.AddColumn(price, ColumnType::Real);
    for (int row = 0; row < table.RowCount(); ++row) {
      quotes.AppendRow();
      quotes.SetInteger(row, 0, table.IntegerAt(row, 0));
      for (const int column : {1, 2}) quotes.SetReal(row, column, table.RealAt(row, column));
    }
    return ResultSetToCsv(quotes).toStdString();
  }
  // The named columns of the daily rows.
  [[nodiscard]] std::string Rows(const QString& name, std::initializer_list<const char*> columns) const {
    const ResultSet table = Table(name);
    std::string text;
    for (int row = 0; row < table.RowCount(); ++row) {
      for (const char* column : columns) text += table.Utf8At(row, table.Column(column)) + " ";
      text += "\n";
    }
    return text;
  }
  [[nodiscard]] QStringList Names(const QString& folder) const {
    QStringList names;
    QDirIterator files(files_.Path(folder), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (files.hasNext()) names += QDir(files_.Path(folder)).relativeFilePath(files.next());
    names.sort();
    return names;
  }

  test::MarketFiles files_;
  BuildOptions options_;
};

inline const QString kMoutai = QStringLiteral("QMTL/TZZH/Day250/股票/600519.dat");

}  // namespace holdwise
