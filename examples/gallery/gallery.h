#pragma once

// Rows of the gallery: each is a call of one exported operation, with its input pictures and its result.

#include <cstdio>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "recipe.h"

namespace Gallery {

using namespace Recipes;

/// The image as a picture. Of types other than bytes the lowest value is black and the highest white.
IppIMemory<u8> look(const IppIMemory<u8>& image);
IppIMemory<u8> look(const IppIMemory<float>& image);
IppIMemory<u8> look(const IppIMemory<int>& image);

/// A picture in a file, or a text without a file.
struct Shown {
  std::string caption;
  std::string file;
};

/// Writes gallery.tsv and its pictures into the current folder. A line is a row: section, sentence, code, and
/// the pictures, each as caption=file, or as a caption without a file where there is no picture.
class Rows {
 public:
  Rows() : table_("gallery.tsv") {}

  void section(const std::string& name) { section_ = name; }

  template <class T>
  Shown picture(const std::string& caption, const IppIMemory<T>& image) {
    char file[32];
    std::snprintf(file, sizeof file, "%03d.png", ++pictures_);
    writePng(file, look(image));
    return {caption, file};
  }

  template <class T>
  std::vector<Shown> inputs(const std::string& caption, const IppIMemory<T>& image) {
    return {picture(caption, image)};
  }
  template <class T, class... More>
  std::vector<Shown> inputs(const std::string& caption, const IppIMemory<T>& image, const More&... more) {
    std::vector<Shown> all = inputs(caption, image), others = inputs(more...);
    all.insert(all.end(), others.begin(), others.end());
    return all;
  }

  /// The pictures `before` were written before the code runs; `run` runs it and writes the result.
  void row(const std::string& sentence, const std::vector<Shown>& before, const std::string& code,
           const std::function<Shown()>& run) {
    table_ << section_ << '\t' << sentence << '\t' << code;
    for (const Shown& shown : before) table_ << '\t' << shown.caption << '=' << shown.file;
    const Shown after = run();
    table_ << "\t\t" << after.caption << '=' << after.file << '\n';
  }

 private:
  std::ofstream table_;
  std::string section_;
  int pictures_ = 0;
};

/// A row whose result is an image. The code is run and shown.
#define ROW(sentence, before, result, ...)       \
  rows.row(sentence, before, #__VA_ARGS__, [&] { \
    __VA_ARGS__;                                 \
    return rows.picture(#result, result);        \
  })

/// A row whose result is a value, shown as a text.
#define VALUE_ROW(sentence, before, result, ...) \
  rows.row(sentence, before, #__VA_ARGS__, [&] { \
    __VA_ARGS__;                                 \
    return Shown{result, ""};                    \
  })

void showInitializer(Rows& rows);
void showArithmetic(Rows& rows);
void showLogical(Rows& rows);
void showComparer(Rows& rows);
void showStatistic(Rows& rows);
void showMorphology(Rows& rows);
void showFiltering(Rows& rows);
void showComputerVision(Rows& rows);

}  // namespace Gallery
