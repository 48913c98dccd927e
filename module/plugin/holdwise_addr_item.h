// SPDX-License-Identifier: MIT
#pragma once
#include <QPointer>
#include <memory>

#include "holdwise/sdk/address.h"
#include "holdwise/sdk/download.h"
#include "holdwise/sdk/services.h"
#include "mainframe/untmainfrm.h"
#include "view_catalogue.h"

namespace holdwise {

/// The module's address "投资组合". The frames are made on the first enter and kept; leaving detaches the title frame
/// and stops the prices. Needs the module's host.
class THoldwiseAddrItem final : public TAddressItem {
 public:
  /// Asks for the smart-allocation data file at once; the file simply lands in the work-data folder.
  THoldwiseAddrItem();
  ~THoldwiseAddrItem() override;

  /// "Skip" and a node caption: shows that node's view. Anything that the host does not know as a security or an index
  /// makes 600000 the host's current security. A failure goes to the host's debug log.
  void EnterAddress(const QString& parameter) override;
  void LeaveAddress() override;
  [[nodiscard]] bool GetIsWorkState() const override;
  void ChangeColorTheme() override;
  [[nodiscard]] ViewCatalogue* Views() override { return &catalogue_; }

 private:
  void RequestSmartAllocation();
  void MakeFrames();
  void Interpret(const QString& parameter);

  std::unique_ptr<TFrmQMTitle> titleFrame_;
  QPointer<TMainFrm> mainFrame_;  ///< owned by the title frame's client panel
  HoldwiseViewCatalogue catalogue_;
  std::unique_ptr<TDSBAsynDownFileRole> FInfoDown;
};

}  // namespace holdwise
