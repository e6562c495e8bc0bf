// Operations whose results depend on many pixels: on a region, a neighbourhood or a connected area.

#include "gallery.h"

namespace Gallery {
namespace {

std::string text(const char* format, double first, double second = 0) {
  char line[100];
  std::snprintf(line, sizeof line, format, first, second);
  return line;
}

std::string text(const Zorvan::MinMaxIndex& found) {
  return text("%.0f", found.Min) + text(" in column %.0f, row %.0f; ", found.MinIndex.x, found.MinIndex.y) +
         text("%.0f", found.Max) + text(" in column %.0f, row %.0f", found.MaxIndex.x, found.MaxIndex.y);
}

}  // namespace

void showStatistic(Rows& rows) {
  rows.section("Statistic: one value of many pixels");
  IppIMemory<u8> picture = coinPicture(), mask = coinMask();
  const Rect whole = picture.SizeToRoi(), region{20, 60, 120, 100};
  int value = 0;
  Zorvan::MeanStdDev level{};
  Zorvan::MinMaxIndex found{};
  VALUE_ROW("The darkest pixel.", rows.inputs("picture", picture), text("%.0f", value),
            value = Statistic<u8>::Min(picture, whole));
  VALUE_ROW("The brightest pixel.", rows.inputs("picture", picture), text("%.0f", value),
            value = Statistic<u8>::Max(picture, whole));
  VALUE_ROW("The mean. The mean of bytes is truncated to a whole number.", rows.inputs("picture", picture),
            text("%.0f", value), value = Statistic<u8>::Mean(picture, whole));
  VALUE_ROW("The mean of the pixels that a mask selects.", rows.inputs("picture", picture, "mask", mask),
            text("%.0f", value), value = Statistic<u8>::Mean(picture, mask, whole));
  VALUE_ROW("Mean and deviation of the pixels that a mask selects.",
            rows.inputs("picture", picture, "mask", mask),
            text("mean %.2f, deviation %.2f", level.Mean, level.StdDev),
            level = Statistic<u8>::MeanAndStandardDeviationWithMask(picture, mask, whole));
  VALUE_ROW("The extremes of the pixels that a mask selects, and their positions.",
            rows.inputs("picture", picture, "mask", mask), text(found),
            found = Statistic<u8>::MinMaxIndexWithMask(picture, mask));
  VALUE_ROW("The same in a region: positions are counted from its first pixel.",
            rows.inputs("picture", picture, "mask", mask), text(found),
            found = Statistic<u8>::MinMaxIndexWithMask(picture, mask, region));
}

void showMorphology(Rows& rows) {
  rows.section("IppIMorphology: neighbourhoods");
  IppIMemory<u8> picture = coinPicture(), image, result;
  const Rect whole = picture.SizeToRoi(), corner{0, 0, 150, 100};
  makeConstant<u8>(image, picture, 0);
  const auto before = [&] { return rows.inputs("picture", picture); };
  ROW("Each pixel becomes the darkest of its neighbourhood.", before(), image,
      IppIMorphology<u8>::Erode(picture, image, whole, {5, 5}));
  ROW("A new image of the region's size.", before(), result,
      result = IppIMorphology<u8>::Erode(picture, corner, true, {5, 5}));
  ROW("Each pixel becomes the brightest of its neighbourhood.", before(), image,
      IppIMorphology<u8>::Dilate(picture, image, whole, {5, 5}));
  ROW("A new image of the region's size.", before(), result,
      result = IppIMorphology<u8>::Dilate(picture, corner, true, {5, 5}));
  ROW("Bright areas smaller than the rectangle are removed.", before(), image,
      IppIMorphology<u8>::Open(picture, image, whole, {25, 25}));
  ROW("A new image of the region's size.", before(), result,
      result = IppIMorphology<u8>::Open(picture, corner, true, {25, 25}));
  ROW("Dark areas smaller than the rectangle are removed.", before(), image,
      IppIMorphology<u8>::Close(picture, image, whole, {15, 15}));
  ROW("A new image of the region's size.", before(), result,
      result = IppIMorphology<u8>::Close(picture, corner, true, {15, 15}));
}

void showFiltering(Rows& rows) {
  rows.section("FilteringFunction: edges and spots");
  constexpr auto border = Zorvan::eBorderReplicate;
  IppIMemory<u8> bytes = coinPicture();
  IppIMemory<float> floats = toFloat(bytes), edges;
  const Rect whole = bytes.SizeToRoi(), region{20, 60, 120, 100};
  const auto before = [&] {
    makeConstant(edges, bytes, 0.0f);
    return rows.inputs("floats", floats);
  };
  ROW("The Laplace filter of a region. An argument selects 3 by 3 or 5 by 5.", before(), edges,
      FilteringFunction::LaplaceBorder<float>(floats, edges, region, true, border, 0));
  ROW("The same for the whole image.", before(), edges,
      FilteringFunction::LaplaceBorder<float>(floats, edges, false, border, 0));
  ROW("3 by 3, in a region.", before(), edges,
      FilteringFunction::LaplaceBorder3x3<float>(floats, edges, whole, border, 0));
  ROW("3 by 3, the whole image, with 0 around it.", before(), edges,
      FilteringFunction::LaplaceBorder3x3<float>(floats, edges, Zorvan::eBorderConstant, 0));
  ROW("5 by 5, in a region.", before(), edges,
      FilteringFunction::LaplaceBorder5x5<float>(floats, edges, region, border, 0));
  ROW("5 by 5, the whole image.", before(), edges,
      FilteringFunction::LaplaceBorder5x5<float>(floats, edges, border, 0));
}

void showComputerVision(Rows& rows) {
  rows.section("ComputerVision: connected areas");
  IppIMemory<u8> image = ringMask();
  const Rect whole = image.SizeToRoi();
  ROW("The pixels that are connected with the seed and equal to it get a value. Their number and their box "
      "are "
      "returned.",
      rows.inputs("image", image), image, ComputerVision::FloodFill<u8>(image, {80, 30}, 128, whole));
}

}  // namespace Gallery
