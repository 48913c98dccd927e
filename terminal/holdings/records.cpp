// SPDX-License-Identifier: MIT
#include "records.h"

#include <algorithm>

#include "holdwise/packet/error.h"
#include "holdwise/packet/text_file.h"

namespace holdwise {

bool Records::Next() {
  for (;;) {
    try {
      return reader_.Next();
    } catch (const Error& error) {
      if (problems_ != nullptr) AddProblem(*problems_, Line(), QString::fromUtf8(error.what()));
    }
  }
}

bool Records::IsEmpty() const {
  const auto& fields = reader_.Fields();
  return std::all_of(fields.begin(), fields.end(), [](std::string_view field) { return field.empty(); });
}

QString TextOf(std::string_view field) {
  return QString::fromUtf8(field.data(), static_cast<qsizetype>(field.size()));
}

void AddProblem(std::vector<ImportProblem>& problems, int line, const QString& reason) {
  problems.push_back({line, ShownText(reason)});
}

}  // namespace holdwise
