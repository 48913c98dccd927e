// SPDX-License-Identifier: MIT
#pragma once

namespace holdwise {
class Host;
}

/// The entry functions under their qualified names; the plain names of the library lead here. User-interface thread.
namespace Untpluginterface {

#define HOLDWISE_EXPORTED __attribute__((visibility("default")))

/// Takes over the host and advises its database about the statements to come. False, and nothing happens, without a
/// host or for another version of its headers.
HOLDWISE_EXPORTED bool Initialize(holdwise::Host* host, int sdkVersion);
/// Releases the address item, then the host.
HOLDWISE_EXPORTED void Finalize();

/// UTF-8, static storage.
HOLDWISE_EXPORTED const char* GetPlugInName();
HOLDWISE_EXPORTED const char* GetPlugInVersion();
/// Creates the address item and registers it with the host. What the registration throws reaches the host.
HOLDWISE_EXPORTED void GetPlugInEnter();
/// Takes the address item out of the host; nothing happens without one.
HOLDWISE_EXPORTED void GetPlugInExit();

}  // namespace Untpluginterface
