#pragma once

#include <filesystem>
#include <functional>
#include <string>

namespace Examples {

/// A folder of results that appears when it is whole. Until putInPlace() the files are written into a folder
/// of a temporary name beside the target, which is removed if the work ends early. What stood at the target
/// stays as it was until then.
class FreshFolder {
 public:
  using Accepts = std::function<bool(const std::filesystem::path& file)>;

  /// Throws std::runtime_error if no folder can be made there, or if there is something at the target that an
  /// earlier run has not left: `isResult` says which files are of one.
  FreshFolder(const std::string& target, const Accepts& isResult);
  FreshFolder(const FreshFolder&) = delete;
  FreshFolder& operator=(const FreshFolder&) = delete;
  ~FreshFolder();

  /// Where to write.
  std::string path() const { return fresh_.string(); }

  /// Replaces the target. Throws std::runtime_error, the target being as before, if that cannot be done.
  void putInPlace();

 private:
  std::filesystem::path target_;
  std::filesystem::path fresh_;
};

}  // namespace Examples
