#include "app/terminal_application.h"

#include <exception>

namespace holdwise {

bool TerminalApplication::notify(QObject* receiver, QEvent* event) {
  const char* className = receiver->metaObject()->className();  // the receiver may be gone afterwards
  try {
    return QApplication::notify(receiver, event);
  } catch (const std::exception& error) {
    if (log_ != nullptr) {
      log_->WriteLog(QStringLiteral("事件处理出错（%1）：%2")
                         .arg(QString::fromLatin1(className), QString::fromUtf8(error.what())));
    }
  } catch (...) {
    if (log_ != nullptr) log_->WriteLog(QStringLiteral("事件处理出错：未知异常"));
  }
  return true;
}

}  // namespace holdwise
