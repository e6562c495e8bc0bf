#include "Road.h"

#include <cstdio>
#include <string>

#include "Frames.h"

namespace Coins {

using Examples::Report;

namespace {

// Dilate minus erode rises above this at the rim of a coin, and seldom in the grain of the ground.
constexpr int kRise = 30;
constexpr int kFrames = 16;

std::string oneDecimal(double value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.1f", value);
  return text;
}

IppIMemory<u8> findMask(IppIMemory<u8>& picture, Report& report) {
  IppIMemory<u8> rims =
      report.run("Outline", {"outline"},
                 "Dilate takes the brightest pixel of every 3 by 3 square, Erode the darkest. Their "
                 "difference is large where the picture changes: at the rims.",
                 [&] { return outline(picture); });
  report.show("outline", rims);

  IppIMemory<u8> rising =
      report.run("Threshold", {"above", "toFloat"},
                 "Compare makes a mask: 255 where the outline rises above " + std::to_string(kRise) +
                     ", 0 elsewhere. It takes floats; adding bytes to float zeros converts them.",
                 [&] { return above(rims, kRise); });
  report.show("rising", rising);

  IppIMemory<u8> whole = report.run(
      "Fill the holes", {"fillHoles"},
      "A flood from outside stops at the rims. What it does not reach is inside. A frame of one pixel lets "
      "it run all round. Coins that the picture's edge cuts stay open, and are not counted.",
      [&] { return fillHoles(rising); });
  report.show("whole", whole);

  IppIMemory<u8> mask = report.run("Clean", {"clean"},
                                   "Opening removes everything that a square of 9 by 9 does not fit into, "
                                   "and leaves the coins; closing rounds off their notches.",
                                   [&] { return clean(whole); });
  report.show("mask", mask);
  return mask;
}

std::vector<Coin> measureAll(IppIMemory<u8>& picture, IppIMemory<u8>& mask, Report& report) {
  std::deque<Object> objects = report.run(
      "Separate", {"separate"},
      "The maximum of the mask is a pixel of a coin that is still there. Flood fill takes the coin away, and "
      "tells its area and its box; an exclusive or of before and after is the coin's own mask.",
      [&] { return separate(mask); });
  report.remark(std::to_string(objects.size()) + " objects.");

  std::vector<Coin> coins =
      report.run("Measure", {"measure"},
                 "Mean, deviation, darkest and brightest place of the photograph under each coin's mask. The "
                 "time is that of all coins.",
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
                 "Each coin filled with its own value in an image of 32-bit integers, converted to bytes.",
                 [&] { return drawLabels(mask, objects); });
  report.show("labels", labels);

  IppIMemory<u8> found = report.run(
      "Draw", {"drawBoxes"},
      "Boxes are four thin regions each, filled through views; a digit is a small mask, filled with white.",
      [&] { return drawBoxes(picture, objects); });
  report.show("found", found);
  return coins;
}

void useMask(IppIMemory<u8>& picture, IppIMemory<u8>& mask, Report& report) {
  IppIMemory<u8> filled =
      report.run("Fill through the mask", {"fillCoins"}, "One value wherever the mask selects.",
                 [&] { return fillCoins(picture, mask); });
  report.show("filled", filled);

  IppIMemory<u8> board = report.run("A new ground", {"chequers"}, "Regions filled one by one.",
                                    [&] { return chequers(picture.size()); });
  report.show("board", board);

  IppIMemory<u8> pasted =
      report.run("Copy through the mask", {"paste"}, "The photograph's pixels, wherever the mask selects.",
                 [&] { return paste(picture, mask, board); });
  report.show("pasted", pasted);

  const int mean = Zorvan::Ipp::Image::Statistic<u8>::Mean(picture, picture.SizeToRoi());
  IppIMemory<u8> bright =
      report.run("Brighter than the mean", {"above"},
                 "Another mask: the mean of the photograph is " + std::to_string(mean) + ".",
                 [&] { return above(picture, mean); });
  report.show("bright", bright);

  Combined combined = report.run("Combine masks", {"combine"},
                                 "The coins' mask and the bright pixels: in both (and), in either (or), in "
                                 "one of them only (exclusive or).",
                                 [&] { return combine(mask, bright); });
  report.show("both", combined.both);
  report.show("either", combined.either);
  report.show("only-one", combined.onlyOne);
}

void improve(IppIMemory<u8>& picture, Report& report) {
  IppIMemory<u8> ground = report.run("Background", {"background"},
                                     "An opening with a square that no coin holds keeps nothing of the "
                                     "coins: what is left is the ground and its light.",
                                     [&] { return background(picture); });
  report.show("background", ground);

  IppIMemory<u8> flat = report.run("Without the background", {"withoutBackground"},
                                   "The photograph minus its background: the fall of the light is gone.",
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
          " frames with artificial noise, added up in floats under the coins' mask, divided by their number.",
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

std::vector<Coin> takeApart(Examples::Picture& decoded, Report& report) {
  report.section("From the photograph to a mask");
  IppIMemory<u8> picture =
      report.run("Wrap the picture", {"wrap"}, "An image around the decoder's memory: no pixel is copied.",
                 [&] { return wrap(decoded); });
  report.show("picture", picture);
  IppIMemory<u8> mask = findMask(picture, report);

  report.section("Coin by coin");
  std::vector<Coin> coins = measureAll(picture, mask, report);
  report.section("What a mask is good for");
  useMask(picture, mask, report);
  report.section("Light, edges and noise");
  improve(picture, report);
  if (!coins.empty()) averageFrames(picture, mask, report);
  report.section("Regions");
  cutRegions(picture, report);
  return coins;
}

}  // namespace Coins
