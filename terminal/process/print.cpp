// SPDX-License-Identifier: MIT
#include "process/print.h"

#include <cstdio>

namespace holdwise {
namespace {

void Print(std::FILE* stream, const QString& text) {
  std::fprintf(stream, "%s\n", text.toUtf8().constData());
  std::fflush(stream);
}

}  // namespace

void PrintOut(const QString& text) {
  if (!text.isEmpty()) Print(stdout, text);
}

void PrintError(const QString& text) {
  Print(stderr, text);
}

}  // namespace holdwise
