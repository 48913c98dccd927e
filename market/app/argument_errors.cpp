#include "argument_errors.h"

#include <regex>

namespace holdwise {
namespace {

struct Wording {
  std::regex parser;
  const char* ours;
};

const std::vector<Wording>& Wordings() {
  static const std::vector<Wording> wordings{
      {std::regex("A subcommand is required"), "没有命令"},
      {std::regex("(\\S+) is required"), "缺少 $1"},
      {std::regex("(\\S+): 1 required \\S+ missing"), "$1 后面没有值"},
      {std::regex("(\\S+): At Most 1 required but received \\d+"), "$1 只能给一次"},
      {std::regex("Could not convert: (\\S+) = (.*)"), "$1 的值“$2”无法识别或超出范围"},
      {std::regex("The following arguments? (?:was|were) not expected: (.*)"), "多余的参数“$1”"},
  };
  return wordings;
}

}  // namespace

std::string ArgumentErrorText(const CLI::App& program, const CLI::Error& error) {
  const std::string text = error.what();
  // A misspelt command counts as a missing one.
  const CLI::App* command = &program;
  while (!command->get_subcommands().empty()) command = command->get_subcommands().front();
  if (command->get_require_subcommand_min() > 0 && command->remaining_size() > 0) {
    return "没有命令“" + command->remaining().front() + "”";
  }
  for (const Wording& wording : Wordings()) {
    if (std::regex_match(text, wording.parser)) return std::regex_replace(text, wording.parser, wording.ours);
  }
  return text;
}

}  // namespace holdwise
