// SPDX-License-Identifier: MIT
#include "pages/address_registry.h"

#include <algorithm>

#include "holdwise/packet/error.h"
#include "process/exception_text.h"

namespace holdwise {

void AddressRegistry::RegisterAddressItem(std::shared_ptr<TAddressItem> item) {
  if (item == nullptr) throw Error(ErrorCategory::Refused, "没有地址可登记");
  if (Find(item->Name()) != nullptr)
    throw Error(ErrorCategory::Refused, QStringLiteral("地址“%1”已经登记").arg(item->Name()).toStdString());
  const auto place = std::upper_bound(items_.begin(), items_.end(), item->Number(),
                                      [](std::uint16_t number, const auto& other) { return number < other->Number(); });
  items_.insert(place, std::move(item));
  if (OnListChanged) OnListChanged();
}

void AddressRegistry::UnregisterAddressItem(const std::shared_ptr<TAddressItem>& item) {
  const auto place = std::find(items_.begin(), items_.end(), item);
  if (item == nullptr || place == items_.end()) return;
  if (current_ == item) LeaveCurrent();
  items_.erase(place);
  if (OnListChanged) OnListChanged();
}

bool AddressRegistry::GotoAddress(const QString& name, const QString& parameter) {
  const auto place =
      std::find_if(items_.begin(), items_.end(), [&name](const auto& item) { return item->Name() == name; });
  if (place == items_.end()) return false;
  const std::shared_ptr<TAddressItem> item = *place;
  if (current_ != item) {
    if (current_ != nullptr && OnLeft) OnLeft(current_->Name());
    LeaveCurrent();
  }
  current_ = item;
  parameter_ = parameter;
  Guard(*item, "EnterAddress", [&] { item->EnterAddress(parameter); });
  if (OnEntered) OnEntered(name);
  return true;
}

void AddressRegistry::LeaveCurrent() {
  const std::shared_ptr<TAddressItem> left = std::exchange(current_, nullptr);
  if (left != nullptr) Guard(*left, "LeaveAddress", [&left] { left->LeaveAddress(); });
}

void AddressRegistry::ChangeColorTheme() {
  const auto items = items_;
  for (const auto& item : items) Guard(*item, "ChangeColorTheme", [&item] { item->ChangeColorTheme(); });
}

QStringList AddressRegistry::ListedNames() const {
  QStringList names;
  for (const auto& item : items_)
    if (item->IsListed()) names.append(item->Name());
  return names;
}

TAddressItem* AddressRegistry::Find(const QString& name) const {
  for (const auto& item : items_)
    if (item->Name() == name) return item.get();
  return nullptr;
}

void AddressRegistry::Guard(const TAddressItem& item, const char* step, const std::function<void()>& call) {
  try {
    call();
  } catch (...) {
    debug_.WriteLog(
        QStringLiteral("地址“%1”的 %2 出错：%3").arg(item.Name(), QString::fromLatin1(step), TextOfCurrentException()));
  }
}

}  // namespace holdwise
