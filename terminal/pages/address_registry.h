// SPDX-License-Identifier: MIT
#pragma once
#include <QStringList>
#include <functional>
#include <memory>
#include <vector>

#include "holdwise/sdk/address.h"
#include "holdwise/sdk/services.h"

namespace holdwise {

/// The host's navigation: knows every address and which one is entered. User-interface thread only.
class AddressRegistry : public AddressServices {
 public:
  explicit AddressRegistry(DebugServers& debug) : debug_(debug) {}

  void RegisterAddressItem(std::shared_ptr<TAddressItem> item) override;
  void UnregisterAddressItem(const std::shared_ptr<TAddressItem>& item) override;
  /// An item that throws while it is entered or left is logged; it counts as entered.
  bool GotoAddress(const QString& name, const QString& parameter) override;

  /// Leaves the current address, if any.
  void LeaveCurrent();
  /// Tells every item that the theme has changed.
  void ChangeColorTheme();
  /// Items by number, smallest first; equal numbers in order of registration.
  [[nodiscard]] const std::vector<std::shared_ptr<TAddressItem>>& Items() const { return items_; }
  /// Names of the listed items in that order.
  [[nodiscard]] QStringList ListedNames() const;
  [[nodiscard]] TAddressItem* Find(const QString& name) const;
  /// The item now entered; null when none.
  [[nodiscard]] TAddressItem* Current() const { return current_.get(); }
  /// What an address was last entered with.
  [[nodiscard]] const QString& Parameter() const { return parameter_; }

  std::function<void()> OnListChanged;
  std::function<void(const QString& name)> OnEntered;
  /// Before the item is left for another one.
  std::function<void(const QString& name)> OnLeft;

 private:
  void Guard(const TAddressItem& item, const char* step, const std::function<void()>& call);

  DebugServers& debug_;
  std::vector<std::shared_ptr<TAddressItem>> items_;
  std::shared_ptr<TAddressItem> current_;
  QString parameter_;
};

}  // namespace holdwise
