// SPDX-License-Identifier: MIT
#pragma once
#include <gtest/gtest.h>

#include "database/engine/firebird_client.h"
#include "temp_database.h"

/// How the tests open database files that are not as they should be.
namespace holdwise::test {

struct Outcome {
  ErrorCategory category{};
  QString text;
};

inline Outcome OpeningFails(const QString& file) {
  try {
    const auto service = FirebirdUserData::Open(DatabaseTarget{file, {}, {}}, TempDatabase::LockFolder());
  } catch (const Error& error) {
    return {error.Category(), QString::fromUtf8(error.what())};
  }
  ADD_FAILURE() << "opened " << file.toStdString();
  return {};
}

inline firebird::Handle<Firebird::IAttachment> AttachTo(const QString& file, bool create = false) {
  return firebird::Attach(file, {.create = create, .embedded = true, .user = {}, .password = {}});
}

}  // namespace holdwise::test
