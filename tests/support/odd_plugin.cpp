// SPDX-License-Identifier: MIT
// A plug-in that goes wrong in the one way ODD_PLUGIN names; 6 and 7 lack an entry function, 6 is of another version
// too; 10 throws before anything of it can be called. It writes down in the host's log what is called of it.
#include <memory>
#include <stdexcept>

#include "holdwise/sdk/host.h"

namespace {

constexpr int kOtherVersion = 1, kThrowsAtStart = 2, kThrowsAtEnter = 3, kThrowsAnything = 4, kThrowsAtEnd = 5,
              kOtherVersionAndLess = 6, kThrowsAfterAnAddress = 8, kHasNoName = 9, kThrowsWhenLoaded = 10;
holdwise::Host* theHost = nullptr;

class Page final : public holdwise::TAddressItem {
 public:
  Page() : TAddressItem(QStringLiteral("异常插件%1").arg(ODD_PLUGIN), 200, QString(), false, true) {}
  void EnterAddress(const QString& /*parameter*/) override {}
  [[nodiscard]] bool GetIsWorkState() const override { return false; }
};

struct AtLoad {
  AtLoad() {
    if (ODD_PLUGIN == kThrowsWhenLoaded) throw std::runtime_error("刚装入就坏了");
  }
} const kAtLoad;

void Say(const char* what) {
  if (theHost != nullptr)
    theHost->Debug().WriteLog(QStringLiteral("%1 %2").arg(ODD_PLUGIN).arg(QString::fromUtf8(what)));
}

}  // namespace

extern "C" {

Q_DECL_EXPORT int GetPlugInContract() {
  const bool isOther = ODD_PLUGIN == kOtherVersion || ODD_PLUGIN == kOtherVersionAndLess;
  return isOther ? holdwise::kSdkVersion + 1 : holdwise::kSdkVersion;
}

Q_DECL_EXPORT bool Initialize(holdwise::Host* host, int /*sdkVersion*/) {
  theHost = host;
  Say("Initialize");
  if (ODD_PLUGIN == kThrowsAfterAnAddress) theHost->Addresses().RegisterAddressItem(std::make_shared<Page>());
  if (ODD_PLUGIN == kThrowsAtStart || ODD_PLUGIN == kThrowsAfterAnAddress) throw std::runtime_error("装不上");
  return true;
}

Q_DECL_EXPORT const char* GetPlugInName() {
  if (ODD_PLUGIN == kHasNoName) throw std::runtime_error("没有名称");
  return "异常插件";
}

Q_DECL_EXPORT const char* GetPlugInVersion() {
  return "0";
}

Q_DECL_EXPORT void GetPlugInEnter() {
  Say("GetPlugInEnter");
  theHost->Addresses().RegisterAddressItem(std::make_shared<Page>());
  if (ODD_PLUGIN == kThrowsAtEnter) throw std::runtime_error("进不去");
  if (ODD_PLUGIN == kThrowsAnything) throw 5;
}

Q_DECL_EXPORT void GetPlugInExit() {
  Say("GetPlugInExit");
  if (ODD_PLUGIN == kThrowsAtEnd) throw 6;
}

#if ODD_PLUGIN != 6 && ODD_PLUGIN != 7
Q_DECL_EXPORT void Finalize() {
  Say("Finalize");
}
#endif
}
