// SPDX-License-Identifier: MIT
#include "plugin/untpluginterface.h"

#include <memory>

#include "calc/download_trigger.h"
#include "common/host/host_access.h"
#include "common/store/statement_advice.h"
#include "holdwise/sdk/host.h"
#include "holdwise_addr_item.h"

namespace Untpluginterface {
namespace {

std::shared_ptr<holdwise::TAddressItem> addressItem;

}  // namespace

bool Initialize(holdwise::Host* host, int sdkVersion) {
  if (host == nullptr || sdkVersion != holdwise::kSdkVersion) return false;
  host->UserData().Advise(holdwise::sql::Advice());
  holdwise::SetModuleHost(host);
  holdwise::ForgetCalculations();
  return true;
}

void Finalize() {
  addressItem.reset();
  holdwise::SetModuleHost(nullptr);
}

const char* GetPlugInName() {
  return "投资组合";
}

const char* GetPlugInVersion() {
  return "1.0.0.0";
}

void GetPlugInEnter() {
  addressItem = std::make_shared<holdwise::THoldwiseAddrItem>();
  holdwise::ModuleHost().Addresses().RegisterAddressItem(addressItem);
}

void GetPlugInExit() {
  if (addressItem) holdwise::ModuleHost().Addresses().UnregisterAddressItem(addressItem);
}

}  // namespace Untpluginterface
