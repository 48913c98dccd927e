#include <CLI/CLI.hpp>
#include <cstdio>
#include <exception>

#include "commands.h"

namespace {

using holdwise::BuildCommand;
using holdwise::PacketCommand;
using holdwise::SimulateCommand;

void AddBuild(CLI::App& program, BuildCommand& command, int& exitCode) {
  CLI::App* build = program.add_subcommand("build", "Make the data folder of the terminal from daily bars");
  build->footer(
      "Bars: one CSV file a stock, named by its six digits (600519.csv, sh600519.csv, 600519.SH.csv), with a heading\n"
      "line; columns in any order, headings in English or Chinese: date and close are needed, open, high, low and "
      "volume\n"
      "are checked when there. Dates YYYY-MM-DD, YYYYMMDD or YYYY/M/D; UTF-8 or GB18030. Lines that cannot be used "
      "are\n"
      "named on standard error with file and line and left out. The old folder is replaced in one step at the end; "
      "files\n"
      "in it that build does not make are kept.\n"
      "Exit code: 0 done, 1 nothing was changed, above 100 wrong arguments.");
  build->add_option("--bars", command.bars, "folder with one CSV file of daily bars a stock")->required();
  build->add_option("--indices", command.indices, "folder with 1.csv, 399001.csv and 399300.csv")->required();
  build->add_option("--securities", command.securities, "CSV: code, name, industry, market (SH, SZ), list_date")
      ->required();
  build->add_option("--dates", command.dates, "CSV of trading dates: date (default: the dates of the index bars)");
  build->add_option("--rates", command.rates,
                    "CSV of deposit rates: date, one_year and further terms, % a year (default: one year 1.50 since "
                    "2015-10-24)");
  build->add_option("--quotes", command.quotes,
                    "CSV of prices: code, price, prev_close (default: the last two closes)");
  build->add_option("--estimates", command.estimates, "CSV of estimate values of stocks: code, price (default: none)");
  build->add_option("--date", command.date,
                    "current date of the market; later bars are not read (default: last index bar)");
  build->add_option("--days", command.days, "trading days in the window")->capture_default_str();
  build->add_option("--out", command.out, "data folder to make or replace")->required();
  build->add_flag("--simulated", command.isSimulated, "mark the data as made up");
  build->callback([&] { exitCode = RunBuild(command); });
}

void AddSimulate(CLI::App& program, SimulateCommand& command, int& exitCode) {
  CLI::App* simulate = program.add_subcommand("simulate", "Write daily bars of a made-up market as CSV files");
  simulate->footer(
      "Writes bars/, indices/, securities.csv, trading_dates.csv and deposit_rates.csv, ready for build --simulated.\n"
      "The same arguments give the same bytes. Prices move with the market, their industry and on their own, inside\n"
      "the daily limits; some securities are suspended for a while or listed later.");
  simulate->add_option("--securities", command.securities, "number of stocks, up to 8000")->capture_default_str();
  simulate->add_option("--days", command.days, "number of trading days, up to 5000")->capture_default_str();
  simulate->add_option("--seed", command.seed, "seed of the random numbers")->capture_default_str();
  simulate->add_option("--end", command.end, "last day, YYYY-MM-DD")->capture_default_str();
  simulate->add_option("--out", command.out, "folder to make or replace")->required();
  simulate->callback([&] { exitCode = RunSimulate(command); });
}

void AddPacket(CLI::App& program, PacketCommand& command, int& exitCode) {
  CLI::App* packet = program.add_subcommand("packet", "Look into data files, to CSV and back");
  packet->require_subcommand(1);
  CLI::App* show = packet->add_subcommand("show", "Print columns and rows of a data file");
  show->add_option("file", command.file, "data file")->required();
  show->add_option("--rows", command.rows, "rows to print")->capture_default_str();
  show->callback([&] { exitCode = RunPacketShow(command); });
  CLI::App* toCsv = packet->add_subcommand("to-csv", "Write a data file as CSV; headings are name:type");
  toCsv->add_option("file", command.file, "data file")->required();
  toCsv->add_option("--out", command.out, "CSV file to write (default: standard output)");
  toCsv->callback([&] { exitCode = RunPacketToCsv(command); });
  CLI::App* fromCsv = packet->add_subcommand("from-csv", "Make a data file from a CSV file as to-csv writes it");
  fromCsv->add_option("file", command.file, "CSV file")->required();
  fromCsv->add_option("--out", command.out, "data file to write")->required();
  fromCsv->callback([&] { exitCode = RunPacketFromCsv(command); });
}

}  // namespace

int main(int argc, char** argv) {
  CLI::App program("Makes the market data of Holdwise", "holdwise-market");
  program.require_subcommand(1);
  program.set_version_flag("--version", "1.0.0");
  int exitCode = 0;
  BuildCommand build;
  SimulateCommand simulate;
  PacketCommand packet;
  AddBuild(program, build, exitCode);
  AddSimulate(program, simulate, exitCode);
  AddPacket(program, packet, exitCode);
  program.failure_message([](const CLI::App* app, const CLI::Error& error) {
    return "参数错误：" + std::string(error.what()) + "\n用法见 " + app->get_name() + " --help\n";
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
