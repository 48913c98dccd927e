// SPDX-License-Identifier: MIT
#include "holdwise/sdk/host.h"
#include "plugin/untpluginterface.h"

// The plain names by which a host finds the plug-in.
extern "C" {

HOLDWISE_EXPORTED int GetPlugInContract() {
  return holdwise::kSdkVersion;
}

HOLDWISE_EXPORTED bool Initialize(holdwise::Host* host, int sdkVersion) {
  return Untpluginterface::Initialize(host, sdkVersion);
}

HOLDWISE_EXPORTED void Finalize() {
  Untpluginterface::Finalize();
}

HOLDWISE_EXPORTED const char* GetPlugInName() {
  return Untpluginterface::GetPlugInName();
}

HOLDWISE_EXPORTED const char* GetPlugInVersion() {
  return Untpluginterface::GetPlugInVersion();
}

HOLDWISE_EXPORTED void GetPlugInEnter() {
  Untpluginterface::GetPlugInEnter();
}

HOLDWISE_EXPORTED void GetPlugInExit() {
  Untpluginterface::GetPlugInExit();
}
}
