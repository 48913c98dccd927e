// SPDX-License-Identifier: MIT
#include "own_stocks.h"

#include <QByteArrayList>

namespace holdwise {

QByteArray WithoutOwnStock(const QByteArray& text, const QByteArray& code) {
  QByteArrayList lines = text.split('\n');
  lines.removeIf([&code](const QByteArray& line) { return line.trimmed() == code; });
  return lines.join('\n');
}

QByteArray WithOwnStock(const QByteArray& text, const QByteArray& code) {
  QByteArray more = text;
  if (!more.isEmpty() && !more.endsWith('\n')) more += '\n';
  return more + code + '\n';
}

}  // namespace holdwise
