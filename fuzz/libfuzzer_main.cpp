// SPDX-License-Identifier: MIT
#include <cstddef>
#include <cstdint>

#include "targets.h"

// The entry point and its name are the fuzzer's.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  holdwise::fuzz::HOLDWISE_FUZZ_TARGET({reinterpret_cast<const char*>(data), size});
  return 0;
}
