// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

#include "packet_test_support.h"

namespace holdwise {
namespace {

/// Runs the reader and writer that shares nothing with ours; returns what it prints.
QByteArray RunPython(const QString& command, const QString& file) {
  const QString script =
      qEnvironmentVariable("HOLDWISE_SOURCE") + QStringLiteral("/tests/unit/packet/packet_with_python.py");
  QProcess python;
  python.start(QStringLiteral("/usr/bin/python3"), {script, command, file});
  EXPECT_TRUE(python.waitForFinished(60'000));
  EXPECT_EQ(python.exitCode(), 0) << python.readAllStandardError().toStdString();
  return python.readAllStandardOutput();
}

TEST(PacketAndPython, PythonReadsWhatWeWrite) {
  if (!qEnvironmentVariableIsSet("HOLDWISE_SOURCE")) GTEST_SKIP() << "HOLDWISE_SOURCE is not set";
  const QTemporaryDir folder;
  const QString path = folder.filePath(QStringLiteral("sample.dat"));
  const ResultSet set = SampleSet();
  WritePacketFile(path, set, Durability::Replaceable);
  const QJsonArray columns = QJsonDocument::fromJson(RunPython(QStringLiteral("decode"), path)).array();
  ASSERT_EQ(columns.size(), set.ColumnCount());
  const char* types[] = {"integer", "real", "text", "datetime", "integer"};
  for (int column = 0; column < set.ColumnCount(); ++column) {
    const QJsonObject object = columns[column].toObject();
    EXPECT_EQ(object[QStringLiteral("name")].toString().toStdString(), set.ColumnName(column));
    EXPECT_EQ(object[QStringLiteral("type")].toString(), QLatin1String(types[column]));
    const QJsonArray values = object[QStringLiteral("values")].toArray();
    ASSERT_EQ(values.size(), set.RowCount());
    for (int row = 0; row < set.RowCount(); ++row) {
      const Value ours = set.ValueAt(row, column);
      ASSERT_EQ(values[row].isNull(), ours.isNull) << row << " " << column;
      if (ours.isNull) continue;
      if (ours.type == ColumnType::Real) {
        EXPECT_EQ(values[row].toDouble(), ours.real);
      } else if (ours.type == ColumnType::Text) {
        EXPECT_EQ(values[row].toString().toStdString(), ours.text);
      } else {
        EXPECT_EQ(values[row].toString().toStdString(), std::to_string(ours.integer));
      }
    }
  }
}

TEST(PacketAndPython, WeReadWhatPythonWrites) {
  if (!qEnvironmentVariableIsSet("HOLDWISE_SOURCE")) GTEST_SKIP() << "HOLDWISE_SOURCE is not set";
  const QTemporaryDir folder;
  const QString path = folder.filePath(QStringLiteral("python.dat"));
  RunPython(QStringLiteral("encode"), path);
  const ResultSet set = ReadPacketFile(path);
  ASSERT_EQ(set.RowCount(), 3);
  EXPECT_EQ(set.Integers(set.Column("code")), (std::vector<std::int64_t>{600000, 0, -1}));
  EXPECT_TRUE(set.IsNull(1, set.Column("code")));
  EXPECT_EQ(set.Reals(set.Column("price")), (std::vector<double>{10.25, -0.5, 1e-300}));
  EXPECT_EQ(set.Utf8At(0, set.Column("name")), "浦发银行");
  EXPECT_TRUE(set.IsNull(1, set.Column("name")));
  EXPECT_EQ(set.Utf8At(0, set.Column("at")), "2024-01-02");
}

}  // namespace
}  // namespace holdwise
