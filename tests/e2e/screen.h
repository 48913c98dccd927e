// SPDX-License-Identifier: MIT
#pragma once
#include <QColor>
#include <QElapsedTimer>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QThread>
#include <QtEndian>

#include "terminal_process.h"

namespace holdwise::e2e {

/// Which of the programs that Screen needs is not installed; empty when all are.
inline QString MissingProgram() {
  for (const char* program : {"Xvfb", "xdotool"})
    if (QStandardPaths::findExecutable(program).isEmpty()) return program;
  return {};
}

/// A screen that nobody sees, and hands for its keyboard and mouse.
class Screen {
 public:
  Screen() {
    // Without the last word it begins anew when its last window goes, and turns away who comes just then.
    server_.start(QStringLiteral("Xvfb"), {"-displayfd", "1", "-screen", "0", "1280x800x24", "-nolisten", "tcp",
                                           "-fbdir", picture_.path(), "-noreset"});
    if (!server_.waitForStarted() || !server_.waitForReadyRead(kMilliseconds)) return;
    display_ = ':' + QString::fromLatin1(server_.readAllStandardOutput()).trimmed();
  }
  ~Screen() {
    server_.terminate();
    server_.waitForFinished();
  }
  Screen(const Screen&) = delete;
  Screen& operator=(const Screen&) = delete;

  [[nodiscard]] bool IsThere() const { return display_.size() > 1; }
  [[nodiscard]] QProcessEnvironment Environment() const {
    QProcessEnvironment environment = BareEnvironment();
    environment.insert("DISPLAY", display_);
    environment.insert("QT_QPA_PLATFORM", "xcb");
    return environment;
  }
  [[nodiscard]] QString Do(const QStringList& arguments) const {
    const Outcome outcome = Run(QStringLiteral("xdotool"), arguments, Environment());
    return outcome.out.trimmed();
  }
  /// Gives the keyboard to the window of that title, once it is there.
  [[nodiscard]] bool Enter(const QString& title) const {
    const QString window = Find(title, true);
    if (window.isEmpty()) return false;
    (void)Do({"windowfocus", "--sync", window});
    QThread::msleep(200);
    return true;
  }
  [[nodiscard]] bool IsGone(const QString& title) const { return Find(title, false).isEmpty(); }
  void Keys(const QStringList& keys) const { (void)Do(QStringList{"key", "--delay", "60"} + keys); }
  void Type(const QString& text) const { (void)Do({"type", "--delay", "60", text}); }
  /// How many points of the screen's lower eighth, where a status bar is, have that colour.
  [[nodiscard]] int PointsBelow(const QColor& colour) const {
    const QByteArray all = Points();
    int points = 0;
    for (qsizetype at = all.size() - all.size() / 8; at + 4 <= all.size(); at += 4)
      if ((qFromLittleEndian<quint32>(all.constData() + at) & 0xFFFFFF) == (colour.rgb() & 0xFFFFFF)) ++points;
    return all.isEmpty() ? -1 : points;
  }
  /// The points of the rest of the screen, to be compared.
  [[nodiscard]] QByteArray PictureAbove() const {
    const QByteArray all = Points();
    return all.first(all.size() - all.size() / 8);
  }
  void Click(int x, int y) const {
    (void)Do({"mousemove", QString::number(x), QString::number(y), "click", "1"});
    QThread::msleep(200);
  }

 private:
  static constexpr int kMilliseconds = 30'000 * kSlowness;  ///< that something may take to come

  /// The window that has come (or, with `isAwaited` false, that still is there at the end of the time); empty for none.
  [[nodiscard]] QString Find(const QString& title, bool isAwaited) const {
    QElapsedTimer timer;
    timer.start();
    QString window;
    do {
      window = Do({"search", "--onlyvisible", "--name", title}).section('\n', 0, 0);
      if (window.isEmpty() != isAwaited) return window;
      QThread::msleep(100);
    } while (timer.elapsed() < kMilliseconds);
    return window;
  }

  /// Four bytes each, line by line from the top; none when they cannot be had.
  [[nodiscard]] QByteArray Points() const {
    QFile file(picture_.filePath(QStringLiteral("Xvfb_screen0")));
    if (!file.open(QIODevice::ReadOnly)) return {};
    const QByteArray dump = file.readAll();  // a window dump: numbers of four bytes, then a colour map, then the points
    const auto number = [&dump](int place) { return qFromBigEndian<quint32>(dump.constData() + 4 * place); };
    constexpr int kHeaderBytes = 0, kHeight = 5, kLineBytes = 12, kColours = 19, kColourBytes = 12;
    return dump.mid(number(kHeaderBytes) + number(kColours) * kColourBytes,
                    qsizetype{number(kHeight)} * number(kLineBytes));
  }

  QTemporaryDir picture_;
  QProcess server_;
  QString display_;
};

}  // namespace holdwise::e2e
