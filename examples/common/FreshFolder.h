#pragma once

#include <filesystem>
#include <functional>
#include <string>

namespace Examples {

/// A folder of results that appears only when it is complete. Until putInPlace() the files are written into a
/// folder with a temporary name beside the target, which is removed if the program fails. The target is not
/// changed before.
class FreshFolder {
 public:
  using Accepts = std::function<bool(const std::filesystem::path& file)>;

  /// Throws std::runtime_error if no folder can be created there, or if the target contains a file for which
  /// `isResult` returns false: it is not from an earlier run.
  FreshFolder(const std::string& target, const Accepts& isResult);
  FreshFolder(const FreshFolder&) = delete;
  FreshFolder& operator=(const FreshFolder&) = delete;
  ~FreshFolder();

  /// The folder to write into.
  std::string path() const { return fresh_.string(); }

  /// Replaces the target. If that fails, throws std::runtime_error and leaves the target as it was.
  void putInPlace();

 private:
  std::filesystem::path target_;
  std::filesystem::path fresh_;
};

}  // namespace Examples
