// SPDX-License-Identifier: MIT
#include "commands.h"

#include <unistd.h>

#include <QString>
#include <algorithm>
#include <cstdio>

#include "holdwise/market/data_folder_builder.h"
#include "holdwise/market/simulated_market.h"
#include "holdwise/packet/csv_result_set.h"
#include "holdwise/packet/dates.h"
#include "holdwise/packet/number_text.h"
#include "holdwise/packet/packet_file.h"
#include "holdwise/packet/text_file.h"
#include "input_watch.h"

namespace holdwise {
namespace {

QString Path(const std::string& argument) {
  return QString::fromStdString(argument);
}

int ReadDateArgument(const char* option, const std::string& text) {
  const std::optional<int> date = ReadMarketDate(text);
  if (!date) throw Error(ErrorCategory::Refused, std::string(option) + " 的日期无法识别：“" + text + "”");
  return *date;
}

/// Progress on standard error: one line that renews itself on a terminal, else a line every tenth of the way.
class ProgressLine {
 public:
  explicit ProgressLine(const char* label) : label_(label), isTerminal_(::isatty(STDERR_FILENO) == 1) {}

  void Show(int done, int total) {
    const int step = std::max(1, total / (isTerminal_ ? 200 : 10));
    if (done % step != 0 && done != total) return;
    std::fprintf(stderr, isTerminal_ ? "\r%s %d/%d" : "%s %d/%d\n", label_, done, total);
    if (isTerminal_ && done == total) std::fputc('\n', stderr);
  }

 private:
  const char* label_;
  bool isTerminal_;
};

void WriteStandardOutput(const QByteArray& bytes) {
  const auto size = static_cast<std::size_t>(bytes.size());
  if (std::fwrite(bytes.constData(), 1, size, stdout) != size || std::fflush(stdout) != 0) {
    throw Error(ErrorCategory::Io, "无法写到标准输出");
  }
}

void PrintNote(const char* before, const Rejection& note) {
  std::fprintf(stderr, "%s%s\n", before, note.ToText().toUtf8().constData());
}

void PrintLines(const std::vector<QString>& lines) {
  for (const QString& line : lines) std::printf("%s\n", line.toUtf8().constData());
}

void PrintCheck(const BuildSummary& summary) {
  std::printf("当前日期：%s\n证券：%d，有行情 %d\n未采用的行：%lld，未采用的文件：%d\n",
              DateText(summary.currentDate).c_str(), summary.securities, summary.series,
              static_cast<long long>(summary.rejectedLines), summary.rejectedFiles);
  PrintLines(summary.understood);
  PrintLines(summary.advice);
  std::printf("只作检查，没有写任何文件\n用时：%s 秒\n", FormatFixedUtf8(summary.seconds, 2).c_str());
}

const char* TypeName(ColumnType type) {
  switch (type) {
    case ColumnType::Integer:
      return "integer";
    case ColumnType::Real:
      return "real";
    case ColumnType::Text:
      return "text";
    case ColumnType::DateTime:
      return "datetime";
  }
  return "";
}

BuildOptions OptionsOf(const BuildCommand& command) {
  BuildOptions options;
  options.barsFolder = Path(command.bars);
  options.indicesFolder = Path(command.indices);
  options.securitiesFile = Path(command.securities);
  options.industriesFile = Path(command.industries);
  options.factorsPlace = Path(command.factors);
  options.datesFile = Path(command.dates);
  options.ratesFile = Path(command.rates);
  options.quotesFile = Path(command.quotes);
  options.estimatesFile = Path(command.estimates);
  options.accountsFile = Path(command.accounts);
  options.outFolder = Path(command.out);
  options.days = command.days;
  options.isSimulated = command.isSimulated;
  options.mayReplaceOtherKind = command.replacesOtherKind;
  options.proposals = command.proposals;
  if (!command.date.empty()) options.currentDate = ReadDateArgument("--date", command.date);
  return options;
}

void BuildOnce(const BuildCommand& command, const BuildOptions& options, const BuildObserver& observer,
               BuildMemory& memory) {
  const BuildSummary summary = BuildDataFolder(options, observer, memory);
  std::printf(
      "数据目录：%s\n当前日期：%s\n证券：%d，有行情 %d\n统计行：%lld\n未采用的行：%lld，未采用的文件：%d\n"
      "当日停牌（价格取最后收盘价）：%d\n",
      command.out.c_str(), DateText(summary.currentDate).c_str(), summary.securities, summary.series,
      static_cast<long long>(summary.rows), static_cast<long long>(summary.rejectedLines), summary.rejectedFiles,
      summary.suspended);
  if (command.proposals.areWanted) std::printf("候选组合：%d\n", summary.proposals);
  PrintLines(summary.remarks);
  PrintLines(summary.brief);
  PrintLines(summary.advice);
  std::printf("用时：%s 秒\n", FormatFixedUtf8(summary.seconds, 2).c_str());
}

// The folder stays as it is while something is wrong with the files.
void FollowInputs(InputWatch& watch, const BuildCommand& command, const BuildOptions& options,
                  const BuildObserver& observer, BuildMemory& memory) {
  do {
    try {
      BuildOnce(command, options, observer, memory);
    } catch (const Error& error) {
      std::fprintf(stderr, "错误：%s\n数据目录没有改动，文件再有变化时重新生成\n", error.what());
    }
    std::fflush(stdout);
  } while (watch.WaitForChange());
}

}  // namespace

int RunBuild(const BuildCommand& command) {
  const BuildOptions options = OptionsOf(command);
  ProgressLine progress("处理行情");
  BuildObserver observer;
  observer.onRejection = [](const Rejection& rejection) { PrintNote("", rejection); };
  observer.onWarning = [](const Rejection& warning) { PrintNote("请核对：", warning); };
  observer.onProgress = [&progress](int done, int total) { progress.Show(done, total); };
  if (command.onlyChecks) {
    const BuildSummary summary = CheckInputs(options, observer);
    PrintCheck(summary);
    if (summary.series > 0) return 0;
    std::fflush(stdout);
    std::fprintf(stderr, "错误：没有一只股票的行情可用，不能生成数据目录，原因见上面列出的未采用的行和文件\n");
    return 1;
  }
  BuildMemory memory;
  if (!command.watches) {
    BuildOnce(command, options, observer, memory);
    return 0;
  }
  // Knows the files before they are read: what changes meanwhile is built again.
  InputWatch watch({options.barsFolder, options.indicesFolder, options.securitiesFile, options.industriesFile,
                    options.factorsPlace, options.datesFile, options.ratesFile, options.quotesFile,
                    options.estimatesFile, options.accountsFile});
  FollowInputs(watch, command, options, observer, memory);
  return 0;
}

int RunSimulate(const SimulateCommand& command) {
  SimulationOptions options;
  options.securities = command.securities;
  options.days = command.days;
  options.seed = command.seed;
  options.endDate = ReadDateArgument("--end", command.end);
  options.outFolder = Path(command.out);
  ProgressLine progress("模拟行情");
  WriteSimulatedMarket(options, [&progress](int done, int total) { progress.Show(done, total); });
  std::printf("模拟行情：%s\n证券：%d，交易日：%d\n", command.out.c_str(), options.securities, options.days);
  return 0;
}

int RunPacketShow(const PacketCommand& command) {
  const ResultSet table = ReadPacketFile(Path(command.file));
  QByteArray text =
      "列：" + QByteArray::number(table.ColumnCount()) + "，行：" + QByteArray::number(table.RowCount()) + "\n";
  for (int column = 0; column < table.ColumnCount(); ++column) {
    text += (column == 0 ? "" : "\t") + table.ColumnName(column) + ":" + TypeName(table.TypeOf(column));
  }
  text += "\n";
  const int rows = std::min(command.rows, table.RowCount());
  for (int row = 0; row < rows; ++row) {
    for (int column = 0; column < table.ColumnCount(); ++column) {
      text += (column == 0 ? "" : "\t") + (table.IsNull(row, column) ? "-" : table.Utf8At(row, column));
    }
    text += "\n";
  }
  if (rows < table.RowCount()) text += "……\n";
  WriteStandardOutput(text);
  return 0;
}

int RunPacketToCsv(const PacketCommand& command) {
  const QByteArray csv = ResultSetToCsv(ReadPacketFile(Path(command.file)));
  if (command.out.empty()) {
    WriteStandardOutput(csv);
  } else {
    WriteFileAtomically(Path(command.out), csv, Durability::Lasting);
  }
  return 0;
}

int RunPacketFromCsv(const PacketCommand& command) {
  const QByteArray text = ReadTextFile(Path(command.file));
  ResultSet table;
  try {
    table = ResultSetFromCsv(text);
  } catch (const Error& error) {
    throw Error(error.Category(), command.file + "：" + error.what());
  }
  WritePacketFile(Path(command.out), table, Durability::Lasting);
  return 0;
}

}  // namespace holdwise
