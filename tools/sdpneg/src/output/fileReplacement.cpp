#include "output/fileReplacement.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>

#include "output/newFile.h"
#include "output/streams.h"

namespace tool {
namespace {

namespace fs = std::filesystem;

constexpr mode_t kPermissionBits = 07777;
constexpr mode_t kUsualMode = 0666;

Problem cannotWrite(const std::string& why) { return {{}, "cannot be written: " + why}; }
Problem cannotWrite() { return cannotWrite(std::generic_category().message(errno)); }

/// Gives a new file the owner and mode of the one that it replaces, or those of any new file.
bool adoptMode(int number, const struct stat* replaced) {
  if (replaced == nullptr) {
    const mode_t mask = ::umask(0);
    ::umask(mask);
    return ::fchmod(number, kUsualMode & ~mask) == 0;
  }
  // Who may not give files away keeps the new one. Such a file must not run with another's rights.
  const bool owned = ::fchown(number, replaced->st_uid, replaced->st_gid) == 0;
  return ::fchmod(number, replaced->st_mode & (owned ? kPermissionBits : mode_t{0777})) == 0;
}

/// Makes the new name last. A folder that cannot be told to is none to worry about: the file itself is safe.
void syncFolder(const fs::path& target) {
  const fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path(".");
  const int number = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (number < 0) return;
  ::fsync(number);
  ::close(number);
}

}  // namespace

std::optional<Problem> replaceFile(const std::string& name, std::string_view bytes) {
  std::error_code unknown;
  fs::path target = fs::canonical(name, unknown);
  if (unknown) {
    // A link that leads nowhere is not replaced: it says that the file belongs elsewhere.
    std::error_code none;
    if (fs::is_symlink(fs::symlink_status(name, none)))
      return cannotWrite("it is a symbolic link that leads to no file");
    target = name;
  }
  struct stat status {};
  const bool exists = ::stat(target.c_str(), &status) == 0;
  if (exists && !S_ISREG(status.st_mode)) return cannotWrite("it is no regular file");
  NewFile file(target);
  if (file.number() < 0) return cannotWrite();
  Output out(file.number());
  out.write(bytes);
  if (!out.good()) return cannotWrite(out.failure());
  if (!adoptMode(file.number(), exists ? &status : nullptr) || ::fsync(file.number()) != 0 || !file.close() ||
      !file.takePlaceOf(target)) {
    return cannotWrite();
  }
  syncFolder(target);
  return std::nullopt;
}

}  // namespace tool
