#include "host/runtime/file_problem.h"

#include <cerrno>
#include <cstring>

std::string fileProblem(int errorNumber) {
  switch (errorNumber) {
    case ENOENT:
      return "no such file or folder";
    case EACCES:
    case EPERM:
      return "no permission";
    case ENOSPC:
    case EDQUOT:
      return "the disk is full";
    case EROFS:
      return "the file system is read-only";
    case EISDIR:
      return "it is a folder";
    case ENOTDIR:
      return "a part of the path is not a folder";
    case ENAMETOOLONG:
      return "the name is too long";
    default:
      return std::strerror(errorNumber);
  }
}
