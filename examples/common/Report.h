#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "zorvan/ipp.h"

namespace Examples {

/// The steps of a program. Each step writes pictures into the output folder and has a line in the table.
class Report {
 public:
  /// A picture with its title.
  struct Figure {
    std::string title;
    std::string file;
    Zorvan::Ipp::Image::IppIMemory<Zorvan::u8> picture;
  };

  struct Step {
    /// The heading of a group of steps.
    std::string section;
    std::string heading;
    std::string text;
    /// Names of the functions of the step.
    std::vector<std::string> functions;
    double milliseconds = 0;
    std::deque<Figure> figures;
  };

  /// Called with the heading of each step when the step begins.
  using Begins = std::function<void(const std::string& heading)>;

  /// Creates the folder if it is missing.
  explicit Report(
      std::string folder, Begins begins = [](const std::string&) {});

  /// The heading of the following steps.
  void section(const std::string& title) { section_ = title; }

  /// Runs `work` as a step, records its time, and returns its result.
  template <class Work>
  auto run(const std::string& heading, std::vector<std::string> functions, const std::string& text,
           Work&& work) {
    begins_(heading);
    Step& step = steps_.emplace_back();
    step.section = section_;
    step.heading = heading;
    step.text = text;
    step.functions = std::move(functions);
    const auto start = std::chrono::steady_clock::now();
    auto result = work();
    const auto end = std::chrono::steady_clock::now();
    step.milliseconds = std::chrono::duration<double, std::milli>(end - start).count();
    return result;
  }

  /// Adds a sentence to the last step.
  void remark(const std::string& text) { steps_.back().text += " " + text; }

  /// Adds a picture to the last step, and writes it as `<number>-<title>.png`. The picture is shared, not
  /// copied: later changes of its pixels also change the report.
  void show(const std::string& title, const Zorvan::Ipp::Image::IppIMemory<Zorvan::u8>& picture);

  const std::deque<Step>& steps() const { return steps_; }
  const std::string& folder() const { return folder_; }

  /// The picture with this title. Throws std::logic_error if no step has it.
  const Figure& figure(const std::string& title) const;

  /// A table with a line for each step: milliseconds, heading.
  std::string table() const;

 private:
  std::string folder_;
  Begins begins_;
  std::string section_;
  // A deque does not move its elements; moving a step would copy the pixels of its images.
  std::deque<Step> steps_;
  int figures_ = 0;
};

}  // namespace Examples
