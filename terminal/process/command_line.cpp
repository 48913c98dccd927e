// SPDX-License-Identifier: MIT
#include "process/command_line.h"

#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QStandardPaths>
#include <algorithm>

#include "holdwise/packet/code_numbers.h"
#include "holdwise/packet/number_text.h"

namespace holdwise {
namespace {

QString Absolute(const QString& path) {
  return path.isEmpty() ? path : QDir::cleanPath(QDir::current().absoluteFilePath(path));
}

constexpr const char* kValueOptions[] = {"data",      "work",    "db",        "bus",    "theme",        "address",
                                         "parameter", "import",  "export",    "stress", "stress-index", "capital",
                                         "backup",    "restore", "import-as", "speed"};

/// A command's texts by the names they have when it is handed over.
struct Member {
  const char* key;
  QString Command::*text;
};
constexpr Member kMembers[] = {
    {"address", &Command::address},     {"parameter", &Command::parameter},      {"import", &Command::importFile},
    {"export", &Command::exportFolder}, {"data", &Command::dataFolder},          {"db", &Command::database},
    {"stress", &Command::stress},       {"stress-index", &Command::stressIndex}, {"capital", &Command::capital},
    {"backup", &Command::backupFile},   {"restore", &Command::restoreFile},      {"check", &Command::check},
    {"import-as", &Command::importAs},  {"skip-unknown", &Command::skipUnknown}};
const QString kThemeKey = QStringLiteral("theme");

QStringList StressIndices() {
  QStringList numbers;
  for (const int number : kIndexNumbers) numbers.append(QString::number(number));
  return numbers;
}

/// A number as it can be typed into the view's entry.
bool IsPercent(const QString& text) {
  static const QRegularExpression plain(
      QRegularExpression::anchoredPattern(QStringLiteral("-?([0-9]+\\.?[0-9]*|\\.[0-9]+)")));
  constexpr int kMostCharacters = 12;
  return text.size() <= kMostCharacters && plain.match(text).hasMatch();
}

/// An amount above 0 as the view takes it.
bool IsCapital(const QString& text) {
  static const QRegularExpression plain(QRegularExpression::anchoredPattern(QStringLiteral("[0-9]{0,5}(\\.[0-9]*)?")));
  constexpr int kMostCharacters = 8;
  const auto number = ParseReal(text);
  return text.size() <= kMostCharacters && plain.match(text).hasMatch() && number && *number > 0;
}

void AddOptions(QCommandLineParser& parser) {
  for (const char* name : kValueOptions) {
    const QString option = QString::fromLatin1(name);
    parser.addOption({option, QString(), option});
  }
  parser.addOption(QCommandLineOption(QStringLiteral("check")));
  parser.addOption(QCommandLineOption(QStringLiteral("skip-unknown")));
  parser.addOption(QCommandLineOption(QStringList{QStringLiteral("h"), QStringLiteral("help")}));
  parser.addOption(QCommandLineOption(QStringList{QStringLiteral("v"), QStringLiteral("version")}));
}

QString HelpText() {
  return QStringLiteral(
      "用法：holdwise-terminal [选项]\n\n"
      "  --data DIR        数据目录，由 holdwise-market build 生成（默认：工作目录下的 market）\n"
      "  --work DIR        工作目录：数据库、下载文件、设置、日志（默认：~/.local/share/holdwise）\n"
      "  --db TARGET       数据库：文件，或 Firebird 服务器的“主机:/路径”（默认：工作目录下的文件）\n"
      "  --bus inproc      消息总线\n"
      "  --speed N         模拟行情的快慢：每秒走 N 秒，1 到 600 的整数（默认：1）\n"
      "  --theme dark|light  颜色主题，下次启动仍有效\n"
      "  --address NAME    打开的地址：投资组合、分时走势、工具条、日志\n"
      "  --parameter TEXT  地址的参数，例如 Skip组合表现\n"
      "  --import FILE     导入组合（CSV：name,code,quantity,price，可加 date；或券商的持仓表），然后继续运行\n"
      "  --import-as NAME  文件里没有组合名称时组合的名称（默认：文件名）\n"
      "  --skip-unknown    导入时略去基金、债券和其他不是沪深A股的行\n"
      "  --backup FILE     把全部组合写成一个文件（可以再导入或恢复）后退出；不需要显示器和数据目录\n"
      "  --restore FILE    把全部组合恢复成这样一个文件里的样子后退出；恢复前的组合先留一份备份\n"
      "  --export DIR      依次打开每个视图，写出图片和表格后退出；不需要显示器\n"
      "  --stress PERCENT  导出前在压力测试中设定的预期涨跌幅（百分数），例如 -10\n"
      "  --stress-index 1|399001|399300  压力测试的参考指数：上证指数、深证成指、沪深300\n"
      "  --capital AMOUNT  导出前在智能配置中设定的资金量（万元），例如 50\n"
      "  --check           检查数据库、镜像、备份、行情、磁盘和日志，写出状态表后退出；一切正常时退出码为 0\n"
      "  --help, --version\n\n"
      "同一工作目录已有终端在运行时，命令交给它执行。\n"
      "窗口里试用的模拟行情是工作目录下的 demo，它也是一个工作目录。上次选的是它时，不写 --data、--db 的启动打开它；\n"
      "--export、--backup、--restore、--check 总是针对 --work 指定的目录本身。\n");
}

/// The last argument when it is an option that wants a value behind it.
QString ValueOptionAtEnd(const QStringList& arguments) {
  const QString& last = arguments.constLast();
  const bool wantsValue = std::any_of(std::begin(kValueOptions), std::end(kValueOptions), [&last](const char* name) {
    return last == QStringLiteral("--") + QLatin1String(name);
  });
  return wantsValue ? last : QString();
}

ParsedCommandLine Refuse(const QString& text) {
  return {std::nullopt, QStringLiteral("holdwise-terminal：%1\n可用 --help 查看用法。\n").arg(text), 2};
}

/// Why the stress test cannot be set as asked; empty when it can.
QString StressProblem(const Command& command) {
  const QString& percent = command.stress;
  const QString& index = command.stressIndex;
  if (!percent.isEmpty() && !IsPercent(percent))
    return QStringLiteral("--stress 要是百分数，例如 -10 或 5.5，不能是“%1”。").arg(percent);
  if (!index.isEmpty() && !StressIndices().contains(index))
    return QStringLiteral("--stress-index 只能是 1、399001 或 399300，不能是“%1”。").arg(index);
  if (command.exportFolder.isEmpty() && !(percent.isEmpty() && index.isEmpty()))
    return QStringLiteral("--stress 和 --stress-index 只用于导出，请同时用 --export 指定目录。");
  return {};
}

/// The same of the smart allocation.
QString CapitalProblem(const Command& command) {
  if (command.capital.isEmpty()) return {};
  if (!IsCapital(command.capital))
    return QStringLiteral("--capital 要是大于 0、小于 100000 的数（万元），例如 50 或 12.5，不能是“%1”。")
        .arg(command.capital);
  if (command.exportFolder.isEmpty()) return QStringLiteral("--capital 只用于导出，请同时用 --export 指定目录。");
  return {};
}

QString ImportProblem(const Command& command) {
  const bool isAsked = !command.importAs.isEmpty() || !command.skipUnknown.isEmpty();
  if (!isAsked || !command.importFile.isEmpty()) return {};
  return QStringLiteral("--import-as 和 --skip-unknown 只用于导入，请同时用 --import 指定文件。");
}

/// Seconds of a simulated day a second; 0 for what cannot be.
int SpeedOf(const QString& text) {
  constexpr std::int64_t kFastest = 600;
  const std::int64_t speed = IntegerOr(text);
  return speed >= 1 && speed <= kFastest ? static_cast<int>(speed) : 0;
}

/// The first option given with an empty value, which no option allows but the parameter.
QString EmptyOption(const QCommandLineParser& parser) {
  for (const char* name : kValueOptions) {
    QString option = QString::fromLatin1(name);
    if (option != QStringLiteral("parameter") && parser.isSet(option) && parser.value(option).isEmpty()) return option;
  }
  return {};
}

}  // namespace

bool Command::IsEmpty() const {
  return !theme && address.isEmpty() && parameter.isEmpty() && !HasWork();
}

bool Command::HasWork() const {
  return NeedsViews() || !backupFile.isEmpty() || !restoreFile.isEmpty();
}

QByteArray Command::ToJson() const {
  QJsonObject object;
  for (const Member& member : kMembers) object.insert(QLatin1String(member.key), this->*member.text);
  if (theme) object.insert(kThemeKey, ThemeKindName(*theme));
  return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

std::optional<Command> Command::FromJson(const QByteArray& json) {
  const QJsonDocument document = QJsonDocument::fromJson(json);
  if (!document.isObject()) return std::nullopt;
  const QJsonObject object = document.object();
  Command command;
  for (auto entry = object.begin(); entry != object.end(); ++entry) {
    // A wish that is not understood, of a later version say, must not be carried out without it.
    if (!entry.value().isString()) return std::nullopt;
    if (entry.key() == kThemeKey) {
      command.theme = ThemeKindFromName(entry.value().toString());
      if (!command.theme) return std::nullopt;
      continue;
    }
    const auto* member = std::find_if(std::begin(kMembers), std::end(kMembers),
                                      [&entry](const Member& one) { return entry.key() == QLatin1String(one.key); });
    if (member == std::end(kMembers)) return std::nullopt;
    command.*member->text = entry.value().toString();
  }
  return command;
}

QString ConflictOf(const Command& command, const Options& running) {
  const auto isOther = [](const QString& asked, const QString& used) {
    if (asked.isEmpty() || asked == used) return false;
    // Two ways to one place.
    const QString place = QFileInfo(asked).canonicalFilePath();
    return place.isEmpty() || place != QFileInfo(used).canonicalFilePath();
  };
  const auto text = [](const char* what, const QString& used, const QString& asked) {
    return QStringLiteral(
               "这个工作目录的终端正在运行，它使用%1“%2”，不是“%3”。请先关闭它，或用 --work 指定另一个工作目录。")
        .arg(QString::fromUtf8(what), used, asked);
  };
  if (isOther(command.dataFolder, running.dataFolder)) return text("数据目录", running.dataFolder, command.dataFolder);
  if (isOther(command.database, running.database)) return text("数据库", running.database, command.database);
  return {};
}

ParsedCommandLine ParseCommandLine(const QStringList& arguments) {
  QCommandLineParser parser;
  AddOptions(parser);
  if (!parser.parse(arguments)) {
    if (!parser.unknownOptionNames().isEmpty())
      return Refuse(QStringLiteral("没有选项“%1”。").arg(parser.unknownOptionNames().constFirst()));
    if (const QString option = ValueOptionAtEnd(arguments); !option.isEmpty())
      return Refuse(QStringLiteral("选项 %1 后面没有值。").arg(option));
    return Refuse(parser.errorText());
  }
  if (parser.isSet(QStringLiteral("help"))) return {std::nullopt, HelpText(), 0};
  if (parser.isSet(QStringLiteral("version"))) return {std::nullopt, QStringLiteral("holdwise-terminal 1.0.0\n"), 0};
  if (!parser.positionalArguments().isEmpty())
    return Refuse(QStringLiteral("多余的参数“%1”。").arg(parser.positionalArguments().constFirst()));
  if (const QString option = EmptyOption(parser); !option.isEmpty())
    return Refuse(QStringLiteral("选项 --%1 的值为空。").arg(option));
  const auto value = [&parser](const char* name) { return parser.value(QString::fromLatin1(name)); };

  Options options;
  if (parser.isSet(QStringLiteral("bus")) && value("bus") != QStringLiteral("inproc"))
    return Refuse(QStringLiteral("--bus 只能是 inproc，不能是“%1”。").arg(value("bus")));
  if (parser.isSet(QStringLiteral("theme"))) {
    options.command.theme = ThemeKindFromName(value("theme"));
    if (!options.command.theme)
      return Refuse(QStringLiteral("--theme 只能是 dark 或 light，不能是“%1”。").arg(value("theme")));
  }
  options.workFolder = Absolute(value("work"));
  if (options.workFolder.isEmpty())
    options.workFolder =
        QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/holdwise");
  options.dataFolder = Absolute(value("data"));
  if (options.dataFolder.isEmpty()) options.dataFolder = options.workFolder + QStringLiteral("/market");
  options.database = value("db");
  if (parser.isSet(QStringLiteral("speed"))) {
    options.simulationSpeed = SpeedOf(value("speed"));
    if (options.simulationSpeed == 0)
      return Refuse(QStringLiteral("--speed 要是 1 到 600 的整数，不能是“%1”。").arg(value("speed")));
  }
  options.command.dataFolder = Absolute(value("data"));
  options.command.address = value("address");
  options.command.parameter = value("parameter");
  options.command.importFile = Absolute(value("import"));
  options.command.exportFolder = Absolute(value("export"));
  options.command.backupFile = Absolute(value("backup"));
  options.command.restoreFile = Absolute(value("restore"));
  options.command.stress = value("stress");
  options.command.stressIndex = value("stress-index");
  if (parser.isSet(QStringLiteral("check"))) {
    if (!options.command.IsEmpty()) return Refuse(QStringLiteral("--check 只能和 --data、--work、--db 一起用。"));
    options.command.check = QStringLiteral("1");
  }
  options.command.capital = value("capital");
  options.command.importAs = value("import-as");
  if (parser.isSet(QStringLiteral("skip-unknown"))) options.command.skipUnknown = QStringLiteral("1");
  if (const QString problem = ImportProblem(options.command); !problem.isEmpty()) return Refuse(problem);
  if (const QString problem = StressProblem(options.command); !problem.isEmpty()) return Refuse(problem);
  if (const QString problem = CapitalProblem(options.command); !problem.isEmpty()) return Refuse(problem);
  return {options, {}, 0};
}

}  // namespace holdwise
