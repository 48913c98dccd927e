// SPDX-License-Identifier: MIT
#include "common/host/host_access.h"

#include <QtGlobal>

namespace holdwise {
namespace {
Host* moduleHost = nullptr;
}

Host& ModuleHost() {
  Q_ASSERT(moduleHost != nullptr);
  return *moduleHost;
}

void SetModuleHost(Host* host) {
  moduleHost = host;
}

}  // namespace holdwise
