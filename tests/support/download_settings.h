// SPDX-License-Identifier: MIT
#pragma once
#include <gtest/gtest.h>

#include "holdwise/sdk/download.h"

namespace holdwise::test {

/// What the module's downloads are all told: compressed, 20 s, nothing shown by the host.
inline void ExpectQuiet(const TDSBAsynDownFileRole::Settings& settings) {
  EXPECT_EQ(settings.downWaitStartTime, 500);
  EXPECT_EQ(settings.downWaitTimeOut, 20000);
  EXPECT_FALSE(settings.downFailTips);
  EXPECT_FALSE(settings.downWaitTips);
  EXPECT_TRUE(settings.isCompress);
}

/// A download of that name into the work-data folder.
inline void ExpectFileDownload(const TDSBAsynDownFileRole::Settings& settings, const QString& name) {
  EXPECT_EQ(settings.nameString, name);
  EXPECT_EQ(settings.componentName, name);
  EXPECT_EQ(settings.communicationType, 0);
  EXPECT_EQ(settings.localDirectoryType, 2);
  EXPECT_FALSE(settings.isStream);
  ExpectQuiet(settings);
}

}  // namespace holdwise::test
