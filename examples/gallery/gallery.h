#pragma once

// Rows of the gallery: each is a call of one exported operation, with the pictures that went in and what came
// out.

#include <cstdio>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "recipe.h"

namespace Gallery {

using namespace Recipes;

/// What an image looks like: of other types than bytes the lowest value is black and the highest white.
IppIMemory<u8> look(const IppIMemory<u8>& image);
IppIMemory<u8> look(const IppIMemory<float>& image);
IppIMemory<u8> look(const IppIMemory<int>& image);

/// A picture of an image, or a text, in a file of its own or in none.
struct Shown {
  std::string caption;
  std::string file;
};

/// Writes gallery.tsv and its pictures into the current folder. A line is a row: section, sentence, code, and
/// what is shown, each as caption=file, or as a caption alone where there is no picture.
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

  /// `before` has been drawn when `code` runs; `after` is drawn when it has.
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

/// A row whose result is an image: the code that stands here is run, and shown.
#define ROW(sentence, before, result, ...)       \
  rows.row(sentence, before, #__VA_ARGS__, [&] { \
    __VA_ARGS__;                                 \
    return rows.picture(#result, result);        \
  })

/// A row whose result is a value, given as a text.
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
