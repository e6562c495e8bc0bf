// The pictures that the demo wrote for its drawn scene agree with each other in every pixel.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include "folder.h"
#include "png_file.h"
#include "text_file.h"

namespace {

using Examples::Picture;
using Examples::readText;

Picture step(const std::string& title) {
  for (const auto& file : std::filesystem::directory_iterator(folder)) {
    const std::string name = file.path().filename().string();
    if (name.size() > 3 && name.substr(3) == title + ".png") return Examples::readPng(file.path().string());
  }
  ADD_FAILURE() << "There is no picture of the step " << title;
  return {};
}

int at(const Picture& picture, int column, int row) {
  return picture.pixels[static_cast<std::size_t>(row) * static_cast<std::size_t>(picture.width) +
                        static_cast<std::size_t>(column)];
}

/// Calls `right(column, row)` for every pixel of an image of the scene's size.
template <class Right>
bool everywhere(const Picture& picture, Right right) {
  for (int row = 0; row < picture.height; ++row) {
    for (int column = 0; column < picture.width; ++column) {
      if (!right(column, row)) return false;
    }
  }
  return picture.width > 0;
}

/// Number of areas of selected pixels that touch along their edges.
int countAreas(Picture mask) {
  int areas = 0;
  std::vector<std::pair<int, int>> open;
  const auto take = [&](int column, int row) {
    if (column < 0 || row < 0 || column >= mask.width || row >= mask.height || at(mask, column, row) == 0)
      return;
    mask.pixels[static_cast<std::size_t>(row * mask.width + column)] = 0;
    open.emplace_back(column, row);
  };
  for (int row = 0; row < mask.height; ++row) {
    for (int column = 0; column < mask.width; ++column) {
      if (at(mask, column, row) == 0) continue;
      ++areas;
      for (take(column, row); !open.empty();) {
        const auto [c, r] = open.back();
        open.pop_back();
        take(c - 1, r), take(c + 1, r), take(c, r - 1), take(c, r + 1);
      }
    }
  }
  return areas;
}

/// The files in the page's folder to which it refers.
std::set<std::string> references(const std::string& html) {
  std::set<std::string> files;
  for (const std::string attribute : {" src=\"", " href=\""}) {
    for (std::size_t at = html.find(attribute); at != std::string::npos; at = html.find(attribute, at + 1)) {
      const std::size_t begin = at + attribute.size();
      const std::string target = html.substr(begin, html.find('"', begin) - begin);
      if (target[0] != '#') files.insert(target);
    }
  }
  return files;
}

TEST(Scene, ThePageShowsItsFilesOnly) {
  const std::string html = readText(folder + "/index.html");
  EXPECT_TRUE(html.find("<h1>24 coins</h1>") != std::string::npos);
  EXPECT_TRUE(html.find("://") == std::string::npos);
  const std::set<std::string> files = references(html);
  EXPECT_TRUE(files.size() > 20);
  for (const std::string& file : files) {
    const std::string bytes = readText(folder + "/" + file);
    EXPECT_TRUE(!bytes.empty());
  }
  // The page shows the sources of the steps.
  EXPECT_TRUE(html.find("outline</span>(") != std::string::npos &&
              html.find("Dilate</span>(picture") != std::string::npos);
}

TEST(Scene, ThePicturesAgree) {
  const Picture picture = step("picture"), quarter = step("quarter"), middle = step("middle"),
                spot = step("spot"), outline = step("outline"), rising = step("rising"),
                whole = step("whole"), mask = step("mask"), labels = step("labels"), found = step("found"),
                filled = step("filled"), board = step("board"), pasted = step("pasted"),
                bright = step("bright"), both = step("both"), either = step("either"),
                onlyOne = step("only-one"), ground = step("background"), flat = step("flat");
  EXPECT_TRUE(picture.width == 384 && picture.height == 303);
  for (const Picture* same : {&spot, &outline, &rising, &whole, &mask, &labels, &found, &filled, &board,
                              &pasted, &bright, &both, &either, &onlyOne, &ground, &flat}) {
    EXPECT_TRUE(same->width == 384 && same->height == 303);
  }
  EXPECT_TRUE(quarter.width == 192 && quarter.height == 152 && middle.width == 192 && middle.height == 152);
  if (HasFailure()) return;

  EXPECT_TRUE(everywhere(quarter, [&](int c, int r) { return at(quarter, c, r) == at(picture, c, r); }));
  EXPECT_TRUE(
      everywhere(middle, [&](int c, int r) { return at(middle, c, r) == at(picture, c + 96, r + 75); }));
  // The window is 152 pixels wide and high and ends at column 303. A Rect cannot reach further to the right.
  EXPECT_TRUE(everywhere(spot, [&](int c, int r) {
    return at(spot, c, r) == (c >= 151 && c < 303 && r < 152 ? at(picture, c, r) : 0);
  }));
  EXPECT_TRUE(everywhere(
      rising, [&](int c, int r) { return at(rising, c, r) == (at(outline, c, r) > 30 ? 255 : 0); }));
  EXPECT_TRUE(
      everywhere(whole, [&](int c, int r) { return at(whole, c, r) == 255 || at(rising, c, r) == 0; }));
  EXPECT_TRUE(everywhere(mask, [&](int c, int r) { return at(mask, c, r) == 0 || at(mask, c, r) == 255; }));
  EXPECT_TRUE(
      everywhere(labels, [&](int c, int r) { return (at(labels, c, r) > 0) == (at(mask, c, r) > 0); }));
  EXPECT_TRUE(everywhere(
      filled, [&](int c, int r) { return at(filled, c, r) == (at(mask, c, r) ? 255 : at(picture, c, r)); }));
  EXPECT_TRUE(everywhere(
      board, [&](int c, int r) { return at(board, c, r) == ((c / 24 + r / 24) % 2 ? 228 : 250); }));
  EXPECT_TRUE(everywhere(pasted, [&](int c, int r) {
    return at(pasted, c, r) == (at(mask, c, r) ? at(picture, c, r) : at(board, c, r));
  }));
  EXPECT_TRUE(
      everywhere(both, [&](int c, int r) { return at(both, c, r) == (at(mask, c, r) & at(bright, c, r)); }));
  EXPECT_TRUE(everywhere(
      either, [&](int c, int r) { return at(either, c, r) == (at(mask, c, r) | at(bright, c, r)); }));
  EXPECT_TRUE(everywhere(
      onlyOne, [&](int c, int r) { return at(onlyOne, c, r) == (at(mask, c, r) ^ at(bright, c, r)); }));
  EXPECT_TRUE(everywhere(flat, [&](int c, int r) {
    return at(ground, c, r) <= at(picture, c, r) && at(flat, c, r) == at(picture, c, r) - at(ground, c, r);
  }));
  EXPECT_EQ(countAreas(mask), 24);

  const Picture montage = Examples::readPng(folder + "/montage.png");
  EXPECT_TRUE(montage.width == 776 && montage.height == 614);
  EXPECT_TRUE(everywhere(picture, [&](int c, int r) {
    return at(montage, c, r) == at(picture, c, r) && at(montage, c + 392, r) == at(outline, c, r) &&
           at(montage, c, r + 311) == at(mask, c, r) && at(montage, c + 392, r + 311) == at(found, c, r);
  }));
}

}  // namespace
