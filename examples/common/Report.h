#pragma once

#include <chrono>
#include <deque>
#include <string>
#include <utility>

#include "zorvan/ipp.h"

namespace Examples {

/// Runs `work` and returns the milliseconds that it took.
template <class Work>
double timed(Work&& work) {
  const auto start = std::chrono::steady_clock::now();
  std::forward<Work>(work)();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

/// What a program did, step by step. Each step leaves a picture in the output folder and a line in the table.
class Report {
 public:
  struct Step {
    std::string title;
    std::string text;
    std::string file;
    double milliseconds = 0;
    Zorvan::Ipp::Image::IppIMemory<Zorvan::u8> picture;
  };

  /// Creates the folder if it is missing.
  explicit Report(std::string folder);

  /// Writes `picture` as `<number>-<title>.png` and keeps the step. The picture is shared, not copied: what
  /// is drawn into it later shows in the report too.
  void add(const std::string& title, const Zorvan::Ipp::Image::IppIMemory<Zorvan::u8>& picture,
           double milliseconds, const std::string& text);

  const std::deque<Step>& steps() const { return steps_; }
  const std::string& folder() const { return folder_; }

  /// The steps as lines of a table: title, size of the picture, milliseconds, text.
  std::string table() const;

 private:
  std::string folder_;
  std::deque<Step> steps_;  // never moves its elements: copying an image copies its pixels
};

}  // namespace Examples
