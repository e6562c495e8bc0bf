#include "pipeline.h"

#include <cstdio>
#include <string>

#include "noisy_frames.h"

namespace Coins {

using Examples::Report;

namespace {

constexpr int kFrames = 16;

std::string oneDecimal(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.1f", value);
  return text;
}

std::string square(int side) { return std::to_string(side) + " by " + std::to_string(side); }

IppIMemory<u8> findMask(IppIMemory<u8>& picture, Report& report, const Settings& settings) {
  IppIMemory<u8> rims =
      report.run("Outline", {"outline"},
                 "Dilate takes the brightest pixel of every 3 by 3 square, Erode the darkest. Their "
                 "difference is large where the picture changes: at the rims.",
                 [&] { return outline(picture); });
  report.show("outline", rims);

  IppIMemory<u8> rising = report.run(
      "Threshold", {"above", "toFloat"},
      "Compare makes a mask: 255 where the outline rises above " + std::to_string(settings.threshold) +
          ", 0 elsewhere. It takes floats; adding bytes to float zeros converts them.",
      [&] { return above(rims, settings.threshold); });
  report.show("rising", rising);

  IppIMemory<u8> inner = report.run("Without the sides", {"withoutSides"},
                                    "Scans and photographs often end in a line of another brightness. In the "
                                    "two outermost rows and columns, runs of 61 pixels and more, or a fifth "
                                    "of the side, are taken off, so that nothing grows together with them.",
                                    [&] { return withoutSides(rising); });
  report.show("inner", inner);

  IppIMemory<u8> whole = report.run(
      "Fill the holes", {"fillHoles"},
      "A flood from outside stops at the rims. What it does not reach is inside. A frame of one pixel lets "
      "it run all round. What the picture's edge cuts stays open, and is not counted.",
      [&] { return fillHoles(inner); });
  report.show("whole", whole);

  IppIMemory<u8> mask = report.run("Clean", {"clean"},
                                   "Opening removes everything that a square of " + square(settings.open) +
                                       " does not fit into, and leaves the " + settings.name +
                                       "; closing rounds off their notches.",
                                   [&] { return clean(whole, settings.open); });
  report.show("mask", mask);
  return mask;
}

std::vector<Coin> measureAll(IppIMemory<u8>& picture, IppIMemory<u8>& mask, Report& report) {
  const std::deque<Object> separated = report.run(
      "Separate", {"separate"},
      "The maximum of a band of rows is a pixel of an object that is still there. Flood fill takes the "
      "object "
      "away, and returns its area and its box; an exclusive or of before and after is the object's own mask.",
      [&] { return separate(mask); });
  report.remark(std::to_string(separated.size()) + " objects.");

  std::deque<Object> objects =
      report.run("Number", {"inReadingOrder"}, "Line by line from the top, each line from the left.",
                 [&] { return inReadingOrder(separated); });

  std::vector<Coin> coins = report.run(
      "Measure", {"measure"},
      "Mean, deviation, darkest and brightest place of the picture under each object's mask. The time "
      "is that of all objects.",
      [&] {
        std::vector<Coin> measured;
        for (Object& object : objects) {
          const int number = static_cast<int>(measured.size()) + 1;
          measured.push_back({number, object.box, object.area, measure(picture, object)});
        }
        return measured;
      });

  IppIMemory<u8> labels =
      report.run("Label", {"drawLabels"},
                 "Each object filled with its own value in an image of 32-bit integers, converted to bytes.",
                 [&] { return drawLabels(mask, objects); });
  report.show("labels", labels);

  IppIMemory<u8> found = report.run(
      "Draw", {"drawBoxes"},
      "Boxes are four thin regions each, filled through views; a digit is a small mask, filled with white.",
      [&] { return drawBoxes(picture, objects); });
  report.show("found", found);
  return coins;
}

void useMask(IppIMemory<u8>& picture, IppIMemory<u8>& mask, Report& report, const Settings& settings) {
  IppIMemory<u8> filled =
      report.run("Fill through the mask", {"fillCoins"}, "One value wherever the mask selects.",
                 [&] { return fillCoins(picture, mask); });
  report.show("filled", filled);

  IppIMemory<u8> board = report.run("A new ground", {"chequers"}, "Regions filled one by one.",
                                    [&] { return chequers(picture.size()); });
  report.show("board", board);

  IppIMemory<u8> pasted =
      report.run("Copy through the mask", {"paste"}, "The picture's pixels, wherever the mask selects.",
                 [&] { return paste(picture, mask, board); });
  report.show("pasted", pasted);

  const int mean = Zorvan::Ipp::Image::Statistic<u8>::Mean(picture, picture.SizeToRoi());
  IppIMemory<u8> bright = report.run("Brighter than the mean", {"above"},
                                     "Another mask: the mean of the picture is " + std::to_string(mean) + ".",
                                     [&] { return above(picture, mean); });
  report.show("bright", bright);

  Combined combined = report.run("Combine masks", {"combine"},
                                 "The mask of the " + settings.name +
                                     " and the bright pixels: in both (and), in either (or), in one of them "
                                     "only (exclusive or).",
                                 [&] { return combine(mask, bright); });
  report.show("both", combined.both);
  report.show("either", combined.either);
  report.show("only-one", combined.onlyOne);
}

void improve(IppIMemory<u8>& picture, Report& report, const Settings& settings) {
  IppIMemory<u8> ground =
      report.run("Background", {"background"},
                 "An opening with a square of 61 by 61 keeps nothing of " + settings.name +
                     " that do not hold it: what is left is the ground and its light.",
                 [&] { return background(picture); });
  report.show("background", ground);

  IppIMemory<u8> flat = report.run("Without the background", {"withoutBackground"},
                                   "The picture minus its background: the fall of the light is gone.",
                                   [&] { return withoutBackground(picture, ground); });
  report.show("flat", flat);

  IppIMemory<u8> lines = report.run("Edges", {"edges"},
                                    "The Laplace filter answers to both sides of an edge with different "
                                    "signs. Filtering the negative too, and adding, gives its magnitude.",
                                    [&] { return edges(picture); });
  report.show("edges", lines);
}

void averageFrames(IppIMemory<u8>& picture, IppIMemory<u8>& mask, Report& report) {
  std::deque<IppIMemory<u8>> frames = noisyFrames(picture, kFrames);
  IppIMemory<float> mean = report.run(
      "Average noisy frames", {"average", "grain"},
      std::to_string(kFrames) +
          " frames with artificial noise, added up in floats under the mask, divided by their number.",
      [&] { return average(frames, mask); });
  IppIMemory<float> first = toFloat(frames.front());
  report.remark("The noise's standard deviation falls from " + oneDecimal(grain(first, picture, mask)) +
                " to " + oneDecimal(grain(mean, picture, mask)) + ".");
  report.show("noisy", frames.front());
  report.show("average", rounded(mean));
}

void cutRegions(IppIMemory<u8>& picture, Report& report) {
  IppIMemory<u8> quarter =
      report.run("A corner", {"cropCorner"}, "A copy into a new image, region at the origin.",
                 [&] { return cropCorner(picture); });
  report.show("quarter", quarter);

  IppIMemory<u8> middle = report.run("The middle", {"cropMiddle"}, "A copy of a region from elsewhere.",
                                     [&] { return cropMiddle(picture); });
  report.show("middle", middle);

  IppIMemory<u8> spot = report.run("A window", {"keepWindow"},
                                   "Black everywhere, then a copy of one region into the same place.",
                                   [&] { return keepWindow(picture); });
  report.show("spot", spot);
}

}  // namespace

std::vector<Coin> takeApart(Examples::Picture& decoded, Report& report, const Settings& settings) {
  report.section("From the picture to a mask");
  IppIMemory<u8> picture =
      report.run("Wrap the picture", {"wrap"}, "An image around the decoder's memory: no pixel is copied.",
                 [&] { return wrap(decoded); });
  report.show("picture", picture);
  IppIMemory<u8> mask = findMask(picture, report, settings);

  report.section("One by one");
  std::vector<Coin> coins = measureAll(picture, mask, report);
  report.section("What a mask is good for");
  useMask(picture, mask, report, settings);
  report.section("Light, edges and noise");
  improve(picture, report, settings);
  if (!coins.empty()) averageFrames(picture, mask, report);
  report.section("Regions");
  cutRegions(picture, report);
  return coins;
}

std::string whyNothing(const Report& report, const Settings& settings) {
  IppIMemory<u8> rims;
  rims = report.figure("outline").picture;
  const int steepest = Zorvan::Ipp::Image::Statistic<u8>::Max(rims, rims.SizeToRoi());
  const std::string none = "No " + settings.name + " were found: ",
                    limit = std::to_string(settings.threshold);
  if (steepest == 0) return none + "all pixels are equal. Take another picture: no option helps here.";
  if (steepest <= settings.threshold) {
    return none + "brightness nowhere changes by more than " + std::to_string(steepest) +
           ", and a rim must change by more than " + limit +
           ". Try a lower limit: --threshold=" + std::to_string(steepest / 2) + ".";
  }
  std::string text = none + "brightness changes by more than " + limit +
                     " in places, but these places neither hold nor enclose a square of " +
                     square(settings.open) + ".";
  if (settings.open > 1) {
    text += " If the " + settings.name +
            " are smaller, try --open=" + std::to_string((settings.open + 1) / 2) + ".";
  }
  return text + " If their rims have gaps, try a lower limit: --threshold=" +
         std::to_string(settings.threshold / 2) + ". What the edge of the picture cuts is not counted.";
}

}  // namespace Coins
