#include "holdwise/packet/system_error.h"

#include <cerrno>
#include <system_error>

namespace holdwise {

std::string SystemReason(int errorNumber) {
  switch (errorNumber) {
    case ENOSPC:
      return "磁盘空间已用完";
    case EDQUOT:
      return "磁盘配额已用完";
    case EROFS:
      return "磁盘是只读的";
    case EACCES:
    case EPERM:
      return "没有权限";
    default:
      return std::generic_category().message(errorNumber);
  }
}

}  // namespace holdwise
