// SPDX-License-Identifier: MIT
#pragma once
#include "scripted_host.h"

namespace holdwise::test {

/// The scripted host behind another face, for those who need one of its services in earnest: they override it.
class WrappedHost : public Host {
 public:
  AddressServices& Addresses() override { return scripted.Addresses(); }
  CodeNumServices& CodeNums() override { return scripted.CodeNums(); }
  PlugSystemInfo& System() override { return scripted.System(); }
  UserDataServices& UserData() override { return scripted.UserData(); }
  DebugServers& Debug() override { return scripted.Debug(); }
  KeyCodeServices& KeyCodes() override { return scripted.KeyCodes(); }
  TDataCenter& DataCenter() override { return scripted.DataCenter(); }
  ColorThemeServices& ColorTheme() override { return scripted.ColorTheme(); }
  MessageBoxService& MessageBoxes() override { return scripted.MessageBoxes(); }
  ClockService& Clock() override { return scripted.Clock(); }
  [[nodiscard]] QString SysWorkDataPath() const override { return scripted.SysWorkDataPath(); }
  [[nodiscard]] std::unique_ptr<TDSBAsynDataDownRole> MakeDataDownRole() override {
    return scripted.MakeDataDownRole();
  }
  [[nodiscard]] std::unique_ptr<TDSBAsynDownFileRole> MakeDownFileRole() override {
    return scripted.MakeDownFileRole();
  }
  [[nodiscard]] std::unique_ptr<TFrmQMTitle> MakeTitleFrame() override { return scripted.MakeTitleFrame(); }

  ScriptedHost scripted;
};

}  // namespace holdwise::test
