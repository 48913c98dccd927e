// SPDX-License-Identifier: MIT
#include "plugins/terminal_host.h"

#include "bus/data_down_role.h"
#include "files/down_file_role.h"
#include "window/title_frame.h"

namespace holdwise {
namespace {

QString ReasonOf(int errorCode) {
  switch (errorCode) {
    case TDSBAsynDownFileRole::kNotFound:
      return QStringLiteral("数据目录里没有这个文件");
    case TDSBAsynDownFileRole::kTimedOut:
      return QStringLiteral("超时");
    case TDSBAsynDownFileRole::kRefused:
      return QStringLiteral("文件名不允许");
    case TDSBAsynDownFileRole::kUnreadable:
      return QStringLiteral("文件无法读取");
    case TDSBAsynDownFileRole::kUnwritable:
      return QStringLiteral("工作目录不能写入");
    default:
      return QString::number(errorCode);
  }
}

}  // namespace

TerminalHost::TerminalHost(const HostParts& parts, const QString& workFolder)
    : parts_(parts), workFolder_(workFolder) {}

std::unique_ptr<TDSBAsynDataDownRole> TerminalHost::MakeDataDownRole() {
  return std::make_unique<DataDownRole>(parts_.bus, parts_.onPriceRequest);
}

std::unique_ptr<TDSBAsynDownFileRole> TerminalHost::MakeDownFileRole() {
  DownFileHints hints;
  hints.onFailed = [this](const QString& remoteName, int errorCode) {
    parts_.messageBoxes.Vex_MessageBox(QStringLiteral("文件“%1”下载失败（%2）。").arg(remoteName, ReasonOf(errorCode)),
                                       QStringLiteral("提示"), MessageBoxService::kOkButton,
                                       MessageBoxService::kNotice);
  };
  hints.onAnyFailure = [this](const QString& remoteName, int errorCode) {
    parts_.debug.WriteLog(
        errorCode == TDSBAsynDownFileRole::kUnwritable
            ? QStringLiteral("下载的文件“%1”不能写入工作目录“%2”，请检查磁盘空间和权限").arg(remoteName, workFolder_)
            : QStringLiteral("文件“%1”没有取得：%2").arg(remoteName, ReasonOf(errorCode)));
  };
  return std::make_unique<DownFileRole>(parts_.files, workFolder_, std::move(hints));
}

std::unique_ptr<TFrmQMTitle> TerminalHost::MakeTitleFrame() {
  return holdwise::MakeTitleFrame(parts_.theme);
}

}  // namespace holdwise
