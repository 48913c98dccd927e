// SPDX-License-Identifier: MIT
#include "common/host/font.h"

#include <QFontDatabase>
#include <QStringList>
#include <algorithm>
#include <iterator>

namespace holdwise {
namespace {

/// A family that is not there would have the font system look for a substitute with every size and weight.
const QStringList& DesignFamilies() {
  static const QStringList families = [] {
    const QStringList wanted{QStringLiteral("宋体"), QStringLiteral("SimSun"), QStringLiteral("Noto Sans CJK SC")};
    QStringList installed;
    std::copy_if(wanted.begin(), wanted.end(), std::back_inserter(installed),
                 [](const QString& family) { return QFontDatabase::hasFamily(family); });
    return installed.isEmpty() ? wanted : installed;
  }();
  return families;
}

}  // namespace

QFont DesignFont(int pixels, bool bold) {
  QFont font;
  font.setFamilies(DesignFamilies());
  font.setPixelSize(pixels);
  font.setBold(bold);
  return font;
}

}  // namespace holdwise
