// SPDX-License-Identifier: MIT
#include "terminal_process.h"

#include <gtest/gtest.h>
#include <signal.h>

#include <QDate>
#include <QDir>
#include <QDirIterator>
#include <QElapsedTimer>
#include <QFile>

#include "holdwise/packet/csv_reader.h"
#include "holdwise/packet/text_file.h"

namespace holdwise::e2e {
namespace {

void WriteText(const QString& path, const QByteArray& text) {
  QFile file(path);
  ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
  ASSERT_EQ(file.write(text), text.size());
}

/// Weekdays up to Friday, 31 May 2024, oldest first.
std::vector<QDate> Weekdays(int count) {
  std::vector<QDate> days;
  for (QDate day(2024, 5, 31); static_cast<int>(days.size()) < count; day = day.addDays(-1))
    if (day.dayOfWeek() <= 5) days.insert(days.begin(), day);
  return days;
}

/// Bars whose close is `base` + day / 100, in hundredths of a yuan.
QByteArray Bars(int baseHundredths, const QString& last) {
  QByteArray text = "date,close\n";
  int day = 0;
  for (const QDate& date : Weekdays(60)) {
    if (!last.isEmpty() && date > QDate::fromString(last, Qt::ISODate)) break;
    const int hundredths = baseHundredths + ++day;
    text += date.toString(Qt::ISODate).toLatin1() + ',' + QByteArray::number(hundredths / 100) + '.' +
            QByteArray::number(hundredths % 100).rightJustified(2, '0') + '\n';
  }
  return text;
}

}  // namespace

QString Program(const QString& name) {
  return qEnvironmentVariable("HOLDWISE_BIN") + '/' + name;
}

QProcessEnvironment BareEnvironment() {
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM", "HOLDWISE_PLUGIN_DIR"})
    environment.remove(name);
  return environment;
}

Outcome Run(const QString& program, const QStringList& arguments, const QProcessEnvironment& environment,
            int timeOutMilliseconds) {
  QProcess process;
  process.setProcessEnvironment(environment);
  process.start(program, arguments);
  Outcome outcome;
  if (process.waitForFinished(timeOutMilliseconds) && process.exitStatus() == QProcess::NormalExit)
    outcome.exitCode = process.exitCode();
  outcome.out = QString::fromUtf8(process.readAllStandardOutput());
  outcome.err = QString::fromUtf8(process.readAllStandardError());
  if (process.state() != QProcess::NotRunning) {
    process.kill();
    process.waitForFinished();
  }
  return outcome;
}

Outcome RunTerminal(const QStringList& arguments, const QProcessEnvironment& environment) {
  return Run(Program("holdwise-terminal"), arguments, environment);
}

Market::Market() : data_(folder_.filePath("data")) {
  const QDir root(folder_.path());
  root.mkpath("bars");
  root.mkpath("indices");
  WriteBars();
  QByteArray securities = "code,name,industry,market,list_date\n";
  for (int stock = 1; stock <= 12; ++stock) {
    securities += QByteArray::number(600000 + stock) + ",股票" + QByteArray::number(stock) + ",行业,1,2010-01-04\n";
  }
  WriteText(root.filePath("securities.csv"), securities);
  Build(data_);
}

void Market::WriteBars(const QString& last) const {
  for (int stock = 1; stock <= 12; ++stock)
    WriteText(folder_.filePath(QString("bars/%1.csv").arg(600000 + stock)), Bars(stock * 100, last));
  for (const char* index : {"1", "399001", "399300"})
    WriteText(folder_.filePath(QString("indices/%1.csv").arg(index)), Bars(300000, last));
}

void Market::RemoveBars(const QString& code, const QString& first, const QString& last) const {
  const QString path = folder_.filePath("bars/" + code + ".csv");
  QByteArray kept;
  for (const QByteArray& line : ReadTextFile(path).split('\n')) {
    const QString day = QString::fromLatin1(line.left(10));
    if (!line.isEmpty() && (day < first || day > last)) kept += line + '\n';
  }
  WriteText(path, kept);
}

void Market::CorrectIndex(const QString& date, const QByteArray& close) const {
  const QString path = folder_.filePath("indices/1.csv");
  QByteArray corrected;
  for (const QByteArray& line : ReadTextFile(path).split('\n')) {
    if (line.isEmpty()) continue;
    const bool isTheDay = QString::fromLatin1(line.left(10)) == date;
    corrected += (isTheDay ? date.toLatin1() + ',' + close : line) + '\n';
  }
  WriteText(path, corrected);
}

QStringList Market::BuildArguments(const QString& out) const {
  return {"build",
          "--bars",
          folder_.filePath("bars"),
          "--indices",
          folder_.filePath("indices"),
          "--securities",
          folder_.filePath("securities.csv"),
          "--out",
          out};
}

void Market::Build(const QString& out, const QStringList& more) const {
  const Outcome built = Run(Program("holdwise-market"), BuildArguments(out) + more);
  EXPECT_EQ(built.exitCode, 0) << built.err.toStdString();
}

const Market& SharedMarket() {
  static const Market market;
  return market;
}

void CopyFolder(const QString& from, const QString& to) {
  const QDir source(from);
  QDirIterator walk(from, QDir::Files, QDirIterator::Subdirectories);
  while (walk.hasNext()) {
    const QString target = to + '/' + source.relativeFilePath(walk.next());
    QDir().mkpath(QFileInfo(target).path());
    ASSERT_TRUE(QFile::copy(walk.filePath(), target)) << target.toStdString();
  }
}

Bench::Bench() = default;

QStringList Bench::Arguments(const QStringList& more) const {
  return QStringList{"--data", data, "--work", Work()} + more;
}

QString Bench::Write(const QString& name, const QByteArray& text) const {
  WriteText(File(name), text);
  return File(name);
}

Outcome Bench::Import(const QByteArray& csv, const QString& out) const {
  return RunTerminal(Arguments({"--import", Write("p.csv", csv), "--export", File(out)}));
}

std::vector<QStringList> Bench::Export(const QString& grid) const {
  const QTemporaryDir folder;
  const Outcome exported = RunTerminal(Arguments({"--export", folder.path()}));
  EXPECT_EQ(exported.exitCode, 0) << exported.err.toStdString();
  std::vector<QStringList> rows = ReadCsv(folder.filePath(grid + ".csv"));
  if (!rows.empty()) rows.erase(rows.begin());
  return rows;
}

QByteArray Bytes(const QString& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(none)");
}

std::vector<QStringList> ReadCsv(const QString& path) {
  std::vector<QStringList> rows;
  QByteArray text;
  try {
    text = ReadTextFile(path);
  } catch (const std::exception& error) {
    ADD_FAILURE() << error.what();
    return rows;
  }
  CsvReader reader(std::string_view(text.constData(), static_cast<std::size_t>(text.size())));
  while (reader.Next()) {
    QStringList row;
    for (const std::string_view field : reader.Fields())
      row.append(QString::fromUtf8(field.data(), static_cast<qsizetype>(field.size())));
    rows.push_back(row);
  }
  return rows;
}

RunningTerminal::RunningTerminal(const QStringList& arguments, QProcessEnvironment environment,
                                 const std::function<void()>& inChild) {
  if (!environment.contains("QT_QPA_PLATFORM")) environment.insert("QT_QPA_PLATFORM", "offscreen");
  environment.insert("HOLDWISE_TRACE_START", "1");
  process_.setProcessEnvironment(environment);
  if (inChild) process_.setChildProcessModifier(inChild);
  process_.start(Program("holdwise-terminal"), arguments);
  EXPECT_TRUE(process_.waitForStarted());
}

RunningTerminal::~RunningTerminal() {
  if (process_.state() == QProcess::NotRunning) return;
  process_.kill();
  process_.waitForFinished();
}

bool RunningTerminal::WaitForWindow() {
  QElapsedTimer timer;
  timer.start();
  QByteArray text;
  while (!text.contains("HOLDWISE_FIRST_PAINT_MS")) {
    if (timer.elapsed() > qint64{30'000} * kSlowness || process_.state() == QProcess::NotRunning) return false;
    process_.waitForReadyRead(100);
    text += process_.readAllStandardError();
  }
  return true;
}

qint64 RunningTerminal::Signal(int signal) {
  QElapsedTimer timer;
  timer.start();
  ::kill(static_cast<pid_t>(process_.processId()), signal);
  return process_.waitForFinished(10'000 * kSlowness) ? timer.elapsed() : -1;
}

QByteArray TwoPortfolios(const QByteArray& boughtOn) {
  QByteArray csv = boughtOn.isEmpty() ? "name,code,quantity,price\n" : "name,code,quantity,price,date\n";
  for (const char* holding :
       {"甲,600001,100,1.00", "甲,600002,200,2.00", "乙,600010,1000,10.00", "乙,600012,300,12.00"})
    csv += boughtOn.isEmpty() ? QByteArray(holding) + '\n' : QByteArray(holding) + ',' + boughtOn + '\n';
  return csv;
}

QByteArray OneMore() {
  return "name,code,quantity,price\n丙,600003,10,3\n丙,600004,10,4\n";
}

}  // namespace holdwise::e2e
