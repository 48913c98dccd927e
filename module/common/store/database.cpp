// SPDX-License-Identifier: MIT
#include "common/store/database.h"

namespace holdwise {

UserDataServices* FDBServer = nullptr;

UserDataServices& Database() {
  if (FDBServer == nullptr) throw Error(ErrorCategory::Refused, "the local database is not open");
  return *FDBServer;
}

}  // namespace holdwise
