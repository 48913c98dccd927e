// SPDX-License-Identifier: MIT
#include "parts/terminal_application.h"

#include <QTranslator>
#include <cstdio>
#include <exception>
#include <utility>

#include "holdwise/packet/thread_annotations.h"

namespace holdwise {
namespace {

/// Messages wait here for the log; the first ones come while the application object is made.
struct QtMessages {
  static constexpr int kMostWaiting = 100;
  Mutex lock;
  QStringList waiting HOLDWISE_GUARDED_BY(lock);
  DebugServers* log HOLDWISE_GUARDED_BY(lock) = nullptr;
};

QtMessages& Messages() {
  static QtMessages messages;
  return messages;
}

void TakeQtMessage(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text) {
  // Writing the log may itself make Qt complain.
  static thread_local bool isWriting = false;
  if (type == QtCriticalMsg || type == QtFatalMsg) std::fprintf(stderr, "%s\n", text.toUtf8().constData());
  if (std::exchange(isWriting, true)) return;
  QtMessages& messages = Messages();
  {
    const MutexLock guard(messages.lock);
    const QString line = QStringLiteral("Qt：") + text;
    if (messages.log != nullptr) {
      messages.log->WriteLog(line);
    } else if (messages.waiting.size() < QtMessages::kMostWaiting) {
      messages.waiting.append(line);
    }
  }
  isWriting = false;
}

}  // namespace

void TerminalApplication::CatchQtMessages() {
  qInstallMessageHandler(TakeQtMessage);
}

void TerminalApplication::Translate(const QString& folder) {
  const QString file = folder + QStringLiteral("/qtbase_zh_CN.qm");
  auto* translator = new QTranslator(qApp);
  if (translator->load(file)) {
    installTranslator(translator);
    return;
  }
  delete translator;
  qWarning("没有中文翻译文件 %s，输入框的菜单是英文的；请安装 qt6-translations-l10n。", qUtf8Printable(file));
}

void TerminalApplication::SetLog(DebugServers* log) {
  log_ = log;
  QtMessages& messages = Messages();
  const MutexLock guard(messages.lock);
  messages.log = log;
  if (log == nullptr) return;
  for (const QString& line : messages.waiting) log->WriteLog(line);
  messages.waiting.clear();
}

bool TerminalApplication::notify(QObject* receiver, QEvent* event) {
  const char* className = receiver->metaObject()->className();  // the receiver may be gone afterwards
  try {
    return QApplication::notify(receiver, event);
  } catch (const std::exception& error) {
    if (log_ != nullptr) {
      log_->WriteLog(QStringLiteral("事件处理出错（%1）：%2")
                         .arg(QString::fromLatin1(className), QString::fromUtf8(error.what())));
      log_->TellFailure(QString::fromUtf8(error.what()));
    }
  } catch (...) {
    if (log_ != nullptr) log_->WriteLog(QStringLiteral("事件处理出错：未知异常"));
  }
  return true;
}

}  // namespace holdwise
