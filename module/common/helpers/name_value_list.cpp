// SPDX-License-Identifier: MIT
#include "common/helpers/name_value_list.h"

#include "holdwise/packet/error.h"

namespace holdwise {
namespace {

// Look-ups must not allocate: the key only borrows the caller's characters.
QString Borrowed(QStringView name) {
  return QString::fromRawData(name.data(), name.size());
}

}  // namespace

void TNameValueList::Set(const QString& name, const QString& value) {
  const int count = Count();
  int& position = positions_[name];
  // One look-up does for both cases: a name that was missing has just been given a place.
  if (positions_.size() == count) {
    lines_[static_cast<std::size_t>(position)].value = value;
    return;
  }
  position = count;
  lines_.push_back({name, value});
}

void TNameValueList::SetValueAt(int index, const QString& value) {
  static_cast<void>(LineAt(index));
  lines_[static_cast<std::size_t>(index)].value = value;
}

QString TNameValueList::ValueOf(QStringView name) const {
  const int index = IndexOfName(name);
  return index < 0 ? QString() : lines_[static_cast<std::size_t>(index)].value;
}

int TNameValueList::IndexOfName(QStringView name) const {
  const auto found = positions_.constFind(Borrowed(name));
  return found == positions_.constEnd() ? -1 : found.value();
}

const TNameValueList::Line& TNameValueList::LineAt(int index) const {
  if (index < 0 || index >= Count()) {
    throw Error(ErrorCategory::Refused, "list index out of bounds (" + std::to_string(index) + ")");
  }
  return lines_[static_cast<std::size_t>(index)];
}

const QString& TNameValueList::NameAt(int index) const {
  return LineAt(index).name;
}

const QString& TNameValueList::ValueAt(int index) const {
  return LineAt(index).value;
}

void TNameValueList::DeleteAt(int index) {
  positions_.remove(LineAt(index).name);
  lines_.erase(lines_.begin() + index);
  for (int later = index; later < Count(); ++later) positions_[lines_[static_cast<std::size_t>(later)].name] = later;
}

void TNameValueList::Clear() {
  lines_.clear();
  positions_.clear();
}

void TNameValueList::Reserve(int count) {
  lines_.reserve(static_cast<std::size_t>(count));
  positions_.reserve(count);
}

}  // namespace holdwise
