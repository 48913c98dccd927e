// SPDX-License-Identifier: MIT
#pragma once
#include <gtest/gtest.h>

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QProcess>
#include <map>

namespace holdwise {

inline QString Program() {
  return qEnvironmentVariable("HOLDWISE_BIN") + QStringLiteral("/holdwise-market");
}

/// What a run of a program gave; exit code -1 = it crashed or did not end.
struct Result {
  int exitCode = -1;
  QByteArray out;
  QByteArray error;
};

inline Result Execute(const QString& program, const QStringList& arguments, const QStringList& environment = {}) {
  QProcess process;
  if (!environment.isEmpty()) process.setEnvironment(environment);
  process.start(program, arguments);
  Result result;
  if (!process.waitForFinished(120000) || process.exitStatus() != QProcess::NormalExit) return result;
  result.exitCode = process.exitCode();
  result.out = process.readAllStandardOutput();
  result.error = process.readAllStandardError();
  return result;
}

inline Result RunProgram(const QStringList& arguments) {
  return Execute(Program(), arguments);
}

/// The system's own has the packages that `setup` installs.
inline const QString kPython = QStringLiteral("/usr/bin/python3");

inline QString Script(const char* name) {
  return qEnvironmentVariable("HOLDWISE_SOURCE") + QStringLiteral("/tests/unit/market/") + QString::fromUtf8(name);
}

inline QStringList SimulateArguments(const QString& out, int securities, int days, int seed) {
  return {QStringLiteral("simulate"), QStringLiteral("--securities"), QString::number(securities),
          QStringLiteral("--days"),   QString::number(days),          QStringLiteral("--seed"),
          QString::number(seed),      QStringLiteral("--out"),        out};
}

inline QStringList BuildArguments(const QString& source, const QString& out) {
  return {QStringLiteral("build"),
          QStringLiteral("--bars"),
          source + QStringLiteral("/bars"),
          QStringLiteral("--indices"),
          source + QStringLiteral("/indices"),
          QStringLiteral("--securities"),
          source + QStringLiteral("/securities.csv"),
          QStringLiteral("--out"),
          out};
}

// Relative name and content hash of every file in a folder.
inline std::map<QString, QByteArray> Contents(const QString& folder) {
  std::map<QString, QByteArray> contents;
  QDirIterator names(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
  while (names.hasNext()) {
    QFile file(names.next());
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    contents[QDir(folder).relativeFilePath(file.fileName())] =
        QCryptographicHash::hash(file.readAll(), QCryptographicHash::Sha1);
  }
  return contents;
}

}  // namespace holdwise
