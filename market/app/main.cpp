// SPDX-License-Identifier: MIT
#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <exception>

#include "argument_errors.h"
#include "commands.h"

namespace {

using holdwise::BuildCommand;
using holdwise::PacketCommand;
using holdwise::SimulateCommand;

void SetHelpFlag(CLI::App& command) {
  command.set_help_flag("-h,--help", "显示用法");
}

CLI::App* AddCommand(CLI::App& program, const char* name, const char* description) {
  CLI::App* command = program.add_subcommand(name, description)->group("命令");
  SetHelpFlag(*command);  // the one it has been born with stands in a group of its own
  return command;
}

// An empty value is a script's unset variable, never a wish for the default.
CLI::Option* AddText(CLI::App* command, const char* name, std::string& value, const char* description) {
  return command->add_option(name, value, description)->check([](const std::string& text) {
    return text.empty() ? "值为空" : "";
  });
}

template <typename Number>
void AddNumber(CLI::App* command, const char* name, Number& value, const char* description) {
  // The parser would take "-1" for the largest number there is.
  const auto isWhole = [](const std::string& text) -> std::string {
    const bool isPlain =
        !text.empty() && std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
    return isPlain ? "" : "“" + text + "”不是非负整数";
  };
  command->add_option(name, value, description)->capture_default_str()->check(isWhole);
}

// What portfolios are proposed of, and within which bounds.
void AddProposalOptions(CLI::App* build, holdwise::ProposalOptions& options) {
  AddNumber(build, "--pool-returns", options.pool.leastReturns, "股票池：窗口内有收益率的交易日至少这么多");
  AddNumber(build, "--pool-size", options.pool.most, "股票池：最近 60 个交易日日均成交额最高的股票，最多这么多只");
  build->add_flag("--pool-suspended", options.pool.takesSuspended, "股票池：也收当日停牌的股票");
  build->add_flag("--pool-limit", options.pool.takesLimitLocked, "股票池：也收当日涨停或跌停的股票");
  build->add_flag("--pool-star", options.pool.takesStar, "股票池：也收科创板（688、689，200 股起买）");
  build->add_flag("--pool-st", options.pool.takesSpecialTreatment, "股票池：也收名称带 ST 或退的股票");
  AddNumber(build, "--least-weight", options.leastWeight, "候选组合：一只股票的权重至少为等权的百分之几");
  AddNumber(build, "--most-weight", options.mostWeight, "候选组合：一只股票的权重最多为等权的百分之几");
  AddNumber(build, "--industry-weight", options.mostOfIndustry,
            "候选组合：一个行业最多占百分之几（股票少时为等权的一倍半）");
  AddNumber(build, "--premium", options.premium, "候选组合：大盘预期收益率高出一年期利率的百分点，每年");
  build->add_flag_callback(
      "--no-proposals", [&options] { options.areWanted = false; }, "不生成候选组合和股票池");
}

void AddBuild(CLI::App& program, BuildCommand& command, int& exitCode) {
  CLI::App* build = AddCommand(program, "build", "把日线数据做成终端用的数据目录");
  build->footer(
      "日线：每只股票一个 CSV "
      "文件，以六位代码命名（600519.csv、sh600519.csv、sh.600519.csv、600519.SH.csv、600519.SS."
      "csv），或带代码一列的文件，\n"
      "第一行是表头；列的顺序不限，"
      "表头中英文均可：日期和收盘价必须有，开盘、最高、最低、成交量如有则核对。日期写作 YYYY-M-D、YYYYMMDD 或 "
      "YYYY/M/D；\n"
      "编码为 UTF-8 或 "
      "GB18030。不能采用的行连同文件名和行号列在标准错误上，其余照常采用。原有数据目录最后一步整体替换，\n"
      "其中不由本命令生成的文件保留。\n"
      "退出码：0 完成，1 没有作任何改动（--check：没有可用的行情），大于 100 参数错误。");
  AddText(build, "--bars", command.bars, "日线：目录（每只股票一个 CSV 文件，或每天一个），或所有股票的一个文件")
      ->required();
  AddText(build, "--indices", command.indices, "指数目录，内有 1.csv、399001.csv、399300.csv，或三个指数的一个文件")
      ->required();
  AddText(build, "--securities", command.securities, "证券表 CSV：code、name、industry、market（SH、SZ）、list_date")
      ->required();
  AddText(build, "--industries", command.industries, "行业 CSV：code、industry，补证券表里没有的行业");
  AddText(build, "--factors", command.factors,
          "复权因子 CSV 或目录：date 和 adj_factor（累计）或 event_factor（每次除权一个），用于不复权又没有昨收的行情");
  AddText(build, "--dates", command.dates, "交易日 CSV：date，如有 is_open 则只取开市的日子（默认：指数日线的日期）");
  AddText(build, "--rates", command.rates,
          "存款利率 CSV：date、one_year 及其他期限，年利率百分数（默认：2015-10-24 起一年期 1.50）");
  AddText(build, "--quotes", command.quotes,
          "行情 CSV：code、price、prev_close，price 为 0 即停牌（默认：最近两个收盘价）");
  AddText(build, "--estimates", command.estimates, "股票估值 CSV：code、price（默认：没有）");
  AddText(build, "--accounts", command.accounts,
          "每股指标 CSV：code、eps、bps（每股净资产，元），如有 end_date 取最晚的（默认：保留目录里原有的）");
  AddText(build, "--date", command.date, "市场当前日期，其后的日线不读（默认：指数的最后一个交易日）");
  AddNumber(build, "--days", command.days, "窗口的交易日数");
  CLI::Option* out = AddText(build, "--out", command.out, "要生成或替换的数据目录");
  CLI::Option* check = build->add_flag("--check", command.onlyChecks,
                                       "只检查：列出各文件的列被当作什么、行情是否复权和有无缺漏，不写文件");
  build->add_flag("--simulated", command.isSimulated, "注明为虚构数据");
  build->add_flag("--replace", command.replacesOtherKind, "允许用虚构数据替换真实行情的目录，或用真实行情替换虚构的");
  AddProposalOptions(build, command.proposals);
  build->add_flag("--watch", command.watches, "生成后继续运行，输入文件有变化就重新生成，直到被终止")->excludes(check);
  build->callback([&command, &exitCode, out, check] {
    if (out->empty() && check->empty()) throw CLI::RequiredError("--out");
    exitCode = RunBuild(command);
  });
}

void AddSimulate(CLI::App& program, SimulateCommand& command, int& exitCode) {
  CLI::App* simulate = AddCommand(program, "simulate", "生成虚构市场的日线 CSV 文件");
  simulate->footer(
      "写出 bars/、indices/、securities.csv、trading_dates.csv、deposit_rates.csv、estimates.csv，供 build --simulated "
      "使用。\n"
      "参数相同则文件逐字节相同。股价随大盘、行业和自身波动，不超出涨跌停限制；部分股票停牌一段时间或上市较晚。");
  AddNumber(simulate, "--securities", command.securities, "股票数，最多 8000");
  AddNumber(simulate, "--days", command.days, "交易日数，最多 5000");
  AddNumber(simulate, "--seed", command.seed, "随机数种子");
  AddText(simulate, "--end", command.end, "最后一天，YYYY-MM-DD")->capture_default_str();
  AddText(simulate, "--out", command.out, "要生成或替换的目录")->required();
  simulate->callback([&] { exitCode = RunSimulate(command); });
}

void AddPacket(CLI::App& program, PacketCommand& command, int& exitCode) {
  CLI::App* packet = AddCommand(program, "packet", "查看数据文件，与 CSV 互转");
  packet->require_subcommand(1);
  CLI::App* show = AddCommand(*packet, "show", "显示数据文件的列和行");
  AddText(show, "file", command.file, "数据文件")->required();
  AddNumber(show, "--rows", command.rows, "显示的行数");
  show->callback([&] { exitCode = RunPacketShow(command); });
  CLI::App* toCsv = AddCommand(*packet, "to-csv", "把数据文件写成 CSV，表头为“列名:类型”");
  AddText(toCsv, "file", command.file, "数据文件")->required();
  AddText(toCsv, "--out", command.out, "要写的 CSV 文件（默认：标准输出）");
  toCsv->callback([&] { exitCode = RunPacketToCsv(command); });
  CLI::App* fromCsv = AddCommand(*packet, "from-csv", "把 to-csv 格式的 CSV 做成数据文件");
  AddText(fromCsv, "file", command.file, "CSV 文件")->required();
  AddText(fromCsv, "--out", command.out, "要写的数据文件")->required();
  fromCsv->callback([&] { exitCode = RunPacketFromCsv(command); });
}

// Before any option or command is added: they take the words over.
void SetHelpWords(CLI::App& program) {
  const auto formatter = program.get_formatter();
  formatter->label("Usage", "用法");
  formatter->label("OPTIONS", "选项");
  formatter->label("SUBCOMMAND", "命令");
  formatter->label("Positionals", "参数");
  formatter->label("REQUIRED", "[必需]");
  program.option_defaults()->group("选项");
  SetHelpFlag(program);
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App program("生成 Holdwise 的行情数据", "holdwise-market");
  SetHelpWords(program);
  program.require_subcommand(1);
  program.set_version_flag("--version", "1.0.0", "显示版本");
  int exitCode = 0;
  BuildCommand build;
  SimulateCommand simulate;
  PacketCommand packet;
  AddBuild(program, build, exitCode);
  AddSimulate(program, simulate, exitCode);
  AddPacket(program, packet, exitCode);
  program.failure_message([](const CLI::App* app, const CLI::Error& error) {
    return "参数错误：" + holdwise::ArgumentErrorText(*app, error) + "\n用法见 " + app->get_name() + " --help\n";
  });
  try {
    program.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    return program.exit(error);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "错误：%s\n", error.what());
    return 1;
  }
  return exitCode;
}
