#include "FreshFolder.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <system_error>

namespace Examples {
namespace {

namespace fs = std::filesystem;

/// An empty folder with a new name beside `target`, on the same file system.
fs::path folderBeside(const fs::path& target) {
  std::string name = target.string() + ".unfinished-XXXXXX";
  if (mkdtemp(name.data()) == nullptr) {
    throw std::runtime_error(name + ": cannot be created: " + std::strerror(errno));
  }
  return name;
}

/// The folder without links, dots and a closing slash, so that a name can be appended to it.
fs::path plain(const std::string& target) {
  fs::path path = fs::weakly_canonical(fs::absolute(target));
  return path.has_filename() ? path : path.parent_path();
}

void requireReplaceable(const fs::path& target, const FreshFolder::Accepts& isResult) {
  if (!fs::exists(target)) return;
  if (!fs::is_directory(target)) throw std::runtime_error(target.string() + ": is not a folder");
  for (const fs::directory_entry& entry : fs::directory_iterator(target)) {
    if (entry.is_regular_file() && isResult(entry.path())) continue;
    throw std::runtime_error(target.string() + ": would be replaced, and contains " +
                             entry.path().filename().string() +
                             ", which is not from an earlier run; move that away or name another folder");
  }
}

}  // namespace

FreshFolder::FreshFolder(const std::string& target, const Accepts& isResult) : target_(plain(target)) {
  requireReplaceable(target_, isResult);
  fs::create_directories(target_.parent_path());
  fresh_ = folderBeside(target_);
}

FreshFolder::~FreshFolder() {
  std::error_code ignored;
  if (!fresh_.empty()) fs::remove_all(fresh_, ignored);
}

void FreshFolder::putInPlace() {
  // Only the owner can read a temporary folder. The result gets the permissions of an ordinary new folder.
  const mode_t hidden = umask(0);
  umask(hidden);
  fs::permissions(fresh_, static_cast<fs::perms>(0777 & ~hidden));

  // A folder cannot replace a folder with files by a rename, so the old one is renamed first.
  if (!fs::exists(target_)) {
    fs::rename(fresh_, target_);
    fresh_.clear();
    return;
  }
  const fs::path aside = folderBeside(target_);
  std::error_code error, ignored;
  fs::rename(target_, aside, error);
  if (error) {
    fs::remove(aside, ignored);
  } else {
    fs::rename(fresh_, target_, error);
    if (error) fs::rename(aside, target_, ignored);
  }
  if (error) throw std::runtime_error(target_.string() + ": cannot be replaced: " + error.message());
  fresh_ = aside;  // the destructor removes it
}

}  // namespace Examples
