// SPDX-License-Identifier: MIT
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
    case ENOENT:
      return "文件或目录不存在";
    case ENOTDIR:
      return "路径中有一段不是目录";
    case EISDIR:
      return "它是目录";
    case ELOOP:
      return "符号链接绕成了圈";
    case ENAMETOOLONG:
      return "名称过长";
    case EMFILE:
    case ENFILE:
      return "打开的文件过多";
    case EFBIG:
      return "文件过大";
    case EIO:
      return "磁盘读写出错";
    default:
      return std::generic_category().message(errorNumber);
  }
}

}  // namespace holdwise
