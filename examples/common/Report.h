#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "zorvan/ipp.h"

namespace Examples {

/// What a program did, step by step. Each step leaves pictures in the output folder and a line in the table.
class Report {
 public:
  struct Figure {
    std::string title;
    std::string file;
    Zorvan::Ipp::Image::IppIMemory<Zorvan::u8> picture;
  };

  struct Step {
    /// What the step and its neighbours are about.
    std::string section;
    std::string heading;
    std::string text;
    /// Names of the functions that did it.
    std::vector<std::string> functions;
    double milliseconds = 0;
    std::deque<Figure> figures;
  };

  /// Called with the heading of each step as it begins.
  using Begins = std::function<void(const std::string& heading)>;

  /// Creates the folder if it is missing.
  explicit Report(
      std::string folder, Begins begins = [](const std::string&) {});

  /// Heads the steps to come.
  void section(const std::string& title) { section_ = title; }

  /// Takes a step: returns what `work` returns, and keeps the time that it took.
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
  /// copied: what is drawn into it later shows in the report too.
  void show(const std::string& title, const Zorvan::Ipp::Image::IppIMemory<Zorvan::u8>& picture);

  const std::deque<Step>& steps() const { return steps_; }
  const std::string& folder() const { return folder_; }

  /// The picture of this title. Throws std::logic_error if no step has shown it.
  const Figure& figure(const std::string& title) const;

  /// The steps as lines of a table: number, heading, milliseconds.
  std::string table() const;

 private:
  std::string folder_;
  Begins begins_;
  std::string section_;
  // Containers that never move their elements: copying an image copies its pixels.
  std::deque<Step> steps_;
  int figures_ = 0;
};

}  // namespace Examples
