// While it attaches, the engine looks for an ICU library by trying some 450 file names of versions, from the oldest on:
// half of its work then. Qt has loaded one already; the names of other versions are turned down here without asking
// the file system. Everything else goes to the C library as it is.
#include <dlfcn.h>
#include <link.h>

#include <cstring>
#include <string>
#include <string_view>

namespace {

constexpr std::string_view kIcu = "libicuuc.so.";

/// "libicuuc.so.72" of the library in this process; empty when there is none.
std::string LoadedIcu() {
  std::string found;
  dl_iterate_phdr(
      [](dl_phdr_info* info, std::size_t /*size*/, void* data) {
        const std::string_view path = info->dlpi_name;
        const std::size_t at = path.rfind(kIcu);
        if (at == std::string_view::npos) return 0;
        static_cast<std::string*>(data)->assign(path.substr(at));
        return 1;
      },
      &found);
  return found;
}

bool IsOtherIcu(const char* name) {
  if (name == nullptr || std::strncmp(name, kIcu.data(), kIcu.size()) != 0) return false;
  static const std::string loaded = LoadedIcu();
  return !loaded.empty() && name != loaded;
}

}  // namespace

// The one place where a name of the C library is ours: it goes before the library's own for every caller.
extern "C" __attribute__((visibility("default"))) void* dlopen(const char* name, int mode) noexcept {
  using Dlopen = void* (*)(const char*, int);
  static const auto next = reinterpret_cast<Dlopen>(dlsym(RTLD_NEXT, "dlopen"));
  // Without a mode the library refuses before it looks for anything, and sets the error text that callers ask for.
  return next(name, IsOtherIcu(name) ? 0 : mode);
}
