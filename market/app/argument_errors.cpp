// SPDX-License-Identifier: MIT
#include "argument_errors.h"

#include <QRegularExpression>
#include <QString>
#include <array>

namespace holdwise {
namespace {

struct Wording {
  const char* parser;
  const char* ours;
};

constexpr std::array<Wording, 6> kWordings = {{
    {"^A subcommand is required$", "没有命令"},
    {"^(\\S+) is required$", "缺少 \\1"},
    {"^(\\S+): 1 required \\S+ missing$", "\\1 后面没有值"},
    {"^(\\S+): At Most 1 required but received \\d+$", "\\1 只能给一次"},
    {"^Could not convert: (\\S+) = (.*)$", "\\1 的值“\\2”无法识别或超出范围"},
    {"^The following arguments? (?:was|were) not expected: (.*)$", "多余的参数“\\1”"},
}};

}  // namespace

std::string ArgumentErrorText(const CLI::App& program, const CLI::Error& error) {
  std::string text = error.what();
  // A misspelt command counts as a missing one.
  const CLI::App* command = &program;
  while (!command->get_subcommands().empty()) command = command->get_subcommands().front();
  if (command->get_require_subcommand_min() > 0 && command->remaining_size() > 0) {
    return "没有命令“" + command->remaining().front() + "”";
  }
  for (const Wording& wording : kWordings) {
    const QRegularExpression parser(QString::fromUtf8(wording.parser), QRegularExpression::DotMatchesEverythingOption);
    QString ours = QString::fromStdString(text);
    if (parser.match(ours).hasMatch()) return ours.replace(parser, QString::fromUtf8(wording.ours)).toStdString();
  }
  return text;
}

}  // namespace holdwise
