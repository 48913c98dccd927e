// SPDX-License-Identifier: MIT
#pragma once
#include <QString>
#include <cstdint>
#include <memory>
#include <utility>

namespace holdwise {

/// One address (a page of the host reachable by name). A plug-in derives its entry object from this class; the host
/// drives it on the user-interface thread only.
class TAddressItem {
 public:
  /// @param name      name of the address, shown on its tab; not empty, unique in the host
  /// @param number    ordering number of the address
  /// @param text      second text, unused by this host
  /// @param flag1     the address keeps its own history (unused by this host)
  /// @param flag2     the address is listed among the tabs
  TAddressItem(QString name, std::uint16_t number, QString text, bool flag1, bool flag2)
      : name_(std::move(name)), number_(number), text_(std::move(text)), flag1_(flag1), flag2_(flag2) {}
  virtual ~TAddressItem() = default;
  TAddressItem(const TAddressItem&) = delete;
  TAddressItem& operator=(const TAddressItem&) = delete;

  /// The user goes to this address, also when it is shown already; `parameter` may be empty. What it throws the host
  /// writes to its log, as with the two calls below.
  virtual void EnterAddress(const QString& parameter) = 0;
  /// The user leaves this address. Only after EnterAddress.
  virtual void LeaveAddress() {}
  /// True while the item shows itself in the work area.
  [[nodiscard]] virtual bool GetIsWorkState() const = 0;
  /// The host's colour theme has changed. Called for every registered item, shown or not.
  virtual void ChangeColorTheme() {}
  /// The views of this address, for hosts that visit them all; null when it has none. Owned by the item.
  [[nodiscard]] virtual class ViewCatalogue* Views() { return nullptr; }

  /// The name as constructed.
  [[nodiscard]] const QString& Name() const noexcept { return name_; }
  /// The ordering number: addresses are listed with growing numbers, equal ones in the order of registration.
  [[nodiscard]] std::uint16_t Number() const noexcept { return number_; }
  /// The second text as constructed.
  [[nodiscard]] const QString& Text() const noexcept { return text_; }
  /// Does the address keep its own history? A host may ignore it.
  [[nodiscard]] bool KeepsHistory() const noexcept { return flag1_; }
  /// Has the address a tab? One without can be gone to by name only.
  [[nodiscard]] bool IsListed() const noexcept { return flag2_; }

 protected:
  std::uint8_t byteFlag_ = 1;  ///< 0 once an item has set itself up

 private:
  QString name_;
  std::uint16_t number_;
  QString text_;
  bool flag1_;
  bool flag2_;
};

/// The host's navigation. User-interface thread only.
class AddressServices {
 public:
  virtual ~AddressServices() = default;
  /// Shares ownership of the item with the host until it is unregistered. A second item of the same name:
  /// Error(Refused), as is null.
  virtual void RegisterAddressItem(std::shared_ptr<TAddressItem> item) = 0;
  /// Leaves the item if it is entered and forgets it. An unknown item is ignored.
  virtual void UnregisterAddressItem(const std::shared_ptr<TAddressItem>& item) = 0;
  /// Leaves the entered address, unless it is the same, and goes to the named one with a parameter, which may be empty.
  /// False, and nothing happens, when no such address exists.
  virtual bool GotoAddress(const QString& name, const QString& parameter) = 0;
};

}  // namespace holdwise
