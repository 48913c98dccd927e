#include <dlfcn.h>
#include <gtest/gtest.h>

#include <fstream>
#include <string>

namespace holdwise {
namespace {

/// "libicuuc.so.72" of this process, from the kernel's list of what is mapped ("libicuuc.so.72.1").
std::string LoadedIcu() {
  std::ifstream maps("/proc/self/maps");
  for (std::string line; std::getline(maps, line);) {
    const std::size_t at = line.find("libicuuc.so.");
    if (at != std::string::npos) return line.substr(at, line.rfind('.') - at);
  }
  return {};
}

TEST(IcuSearch, OnlyTheLoadedVersionIsFound) {
  const std::string loaded = LoadedIcu();
  ASSERT_FALSE(loaded.empty());
  EXPECT_NE(dlopen(loaded.c_str(), RTLD_LAZY), nullptr) << loaded;
  for (const char* other : {"libicuuc.so.4_19", "libicuuc.so.5", "libicuuc.so."}) {
    (void)dlerror();
    EXPECT_EQ(dlopen(other, RTLD_LAZY), nullptr) << other;
    EXPECT_NE(dlerror(), nullptr) << other;  // who asks is told why
  }
}

TEST(IcuSearch, EverythingElseIsLeftToTheLibrary) {
  EXPECT_NE(dlopen(nullptr, RTLD_LAZY), nullptr);
  EXPECT_NE(dlopen("libc.so.6", RTLD_LAZY), nullptr);
  EXPECT_EQ(dlopen("libno-such-library.so.1", RTLD_LAZY), nullptr);
  const std::string text = dlerror();
  EXPECT_NE(text.find("libno-such-library"), std::string::npos) << text;
}

}  // namespace
}  // namespace holdwise
