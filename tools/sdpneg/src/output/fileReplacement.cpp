#include "output/fileReplacement.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>

#include "output/newFile.h"

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

/// The file that a name means: what a link leads to.
fs::path targetOf(const std::string& name, std::optional<Problem>& problem) {
  std::error_code unknown;
  fs::path target = fs::canonical(name, unknown);
  if (!unknown) return target;
  // A link that leads nowhere is not replaced: it says that the file belongs elsewhere.
  std::error_code none;
  if (fs::is_symlink(fs::symlink_status(name, none)))
    problem = cannotWrite("it is a symbolic link that leads to no file");
  return name;
}

}  // namespace

class FileReplacement::Parts {
 public:
  Parts(fs::path target, const std::optional<struct stat>& replaced)
      : target_(std::move(target)), replaced_(replaced), file_(target_), output_(file_.number()) {}

  bool isOpen() const { return file_.number() >= 0; }
  Output& output() { return output_; }
  bool finish() {
    if (!adoptMode(file_.number(), replaced_ ? &*replaced_ : nullptr) || ::fsync(file_.number()) != 0 ||
        !file_.close() || !file_.takePlaceOf(target_)) {
      return false;
    }
    syncFolder(target_);
    return true;
  }

 private:
  fs::path target_;
  std::optional<struct stat> replaced_;
  NewFile file_;
  Output output_;
};

FileReplacement::FileReplacement(const std::string& name) {
  fs::path target = targetOf(name, problem_);
  if (problem_) return;
  struct stat status {};
  const bool exists = ::stat(target.c_str(), &status) == 0;
  if (exists && !S_ISREG(status.st_mode)) {
    problem_ = cannotWrite("it is no regular file");
    return;
  }
  parts_ = std::make_unique<Parts>(std::move(target), exists ? std::optional(status) : std::nullopt);
  if (!parts_->isOpen()) problem_ = cannotWrite();
}

FileReplacement::~FileReplacement() = default;

std::optional<Problem> FileReplacement::problem() const {
  if (problem_ || parts_->output().good()) return problem_;
  return cannotWrite(parts_->output().failure());
}

Output& FileReplacement::output() { return parts_->output(); }

std::optional<Problem> FileReplacement::finish() {
  if (std::optional<Problem> before = problem()) return before;
  return parts_->finish() ? std::nullopt : std::optional(cannotWrite());
}

std::optional<Problem> replaceFile(const std::string& name, std::string_view bytes) {
  FileReplacement file(name);
  if (std::optional<Problem> problem = file.problem()) return problem;
  file.output().write(bytes);
  return file.finish();
}

}  // namespace tool
