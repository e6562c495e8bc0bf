#include "pipeline.h"

#include <string>

#include "coin_table.h"
#include "noisy_frames.h"
#include "to_bytes.h"

namespace Coins {

using Examples::Report;

namespace {

constexpr int frameCount = 16;

std::string square(int side) { return std::to_string(side) + " by " + std::to_string(side); }

IppIMemory<u8> findMask(IppIMemory<u8>& picture, Report& report, const Settings& settings) {
  IppIMemory<u8> rims =
      report.run("Outline", {"outline"},
                 "Dilate takes the brightest pixel of every 3 by 3 square, Erode the darkest. Their "
                 "difference is large where the picture changes, which is at the rims.",
                 [&] { return outline(picture); });
  report.show("outline", rims);

  IppIMemory<u8> rising = report.run(
      "Threshold", {"above", "toFloat"},
      "Compare writes a mask: 255 where the outline is greater than " + std::to_string(settings.threshold) +
          ", 0 elsewhere. It takes floats; bytes are converted by adding them to a float image of zeros.",
      [&] { return above(rims, settings.threshold); });
  report.show("rising", rising);

  IppIMemory<u8> inner = report.run("Without the sides", {"withoutSides"},
                                    "Scans and photographs often end in a line of another brightness. Runs "
                                    "of at least 61 pixels, or a fifth of the side, are removed from the two "
                                    "outermost rows and columns. So no object is connected with them.",
                                    [&] { return withoutSides(rising); });
  report.show("inner", inner);

  IppIMemory<u8> whole = report.run(
      "Fill the holes", {"fillHoles"},
      "A flood fill from outside stops at the rims. Pixels that it does not reach are inside. A frame of one "
      "pixel connects the outside all around. Objects that the edge of the picture cuts stay open, and are "
      "not counted.",
      [&] { return fillHoles(inner); });
  report.show("whole", whole);

  IppIMemory<u8> mask = report.run("Clean", {"clean"},
                                   "Opening removes everything into which a square of " +
                                       square(settings.open) + " does not fit, and keeps the " +
                                       settings.name + ". Closing fills small notches in their rims.",
                                   [&] { return clean(whole, settings.open); });
  report.show("mask", mask);
  return mask;
}

std::vector<Coin> measureAll(IppIMemory<u8>& picture, IppIMemory<u8>& mask, Report& report) {
  const std::deque<Object> separated = report.run(
      "Separate", {"separate"},
      "The maximum of a band of rows is a pixel of an object that has not been removed yet. Flood fill "
      "removes the object, and returns its area and its box. The exclusive or of the images before and after "
      "is the mask of the object.",
      [&] { return separate(mask); });
  report.remark(std::to_string(separated.size()) + " objects.");

  std::deque<Object> objects =
      report.run("Number", {"inReadingOrder"}, "Lines from top to bottom, each line from left to right.",
                 [&] { return inReadingOrder(separated); });

  std::vector<Coin> coins = report.run(
      "Measure", {"measure"},
      "Mean, standard deviation, darkest and brightest pixel of the picture under the mask of each object. "
      "The time is for all objects.",
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
                 "Each object is filled with its own value in an image of 32-bit integers, which is then "
                 "converted to bytes.",
                 [&] { return drawLabels(mask, objects); });
  report.show("labels", labels);

  IppIMemory<u8> found = report.run(
      "Draw", {"drawBoxes"},
      "A box is four thin regions, filled through views. A digit is a small mask, filled with white.",
      [&] { return drawBoxes(picture, objects); });
  report.show("found", found);
  return coins;
}

void useMask(IppIMemory<u8>& picture, IppIMemory<u8>& mask, Report& report, const Settings& settings) {
  IppIMemory<u8> filled =
      report.run("Fill with a mask", {"fillCoins"}, "The pixels that the mask selects get one value.",
                 [&] { return fillCoins(picture, mask); });
  report.show("filled", filled);

  IppIMemory<u8> board = report.run("A new background", {"chequers"}, "Regions are filled one by one.",
                                    [&] { return chequers(picture.size()); });
  report.show("board", board);

  IppIMemory<u8> pasted =
      report.run("Copy with a mask", {"paste"}, "The pixels of the picture that the mask selects are copied.",
                 [&] { return paste(picture, mask, board); });
  report.show("pasted", pasted);

  const int mean = Zorvan::Ipp::Image::Statistic<u8>::Mean(picture, picture.SizeToRoi());
  IppIMemory<u8> bright = report.run("Brighter than the mean", {"above"},
                                     "Another mask: the mean of the picture is " + std::to_string(mean) + ".",
                                     [&] { return above(picture, mean); });
  report.show("bright", bright);

  Combined combined =
      report.run("Combine masks", {"combine"},
                 "The mask of the " + settings.name +
                     " and the bright pixels: in both (and), in at least one (or), in exactly "
                     "one (exclusive or).",
                 [&] { return combine(mask, bright); });
  report.show("both", combined.both);
  report.show("either", combined.either);
  report.show("only-one", combined.onlyOne);
}

void improve(IppIMemory<u8>& picture, Report& report, const Settings& settings) {
  IppIMemory<u8> ground =
      report.run("Background", {"background"},
                 "An opening with a square of 61 by 61 removes all " + settings.name +
                     " into which the square does not fit. The background and its light remain.",
                 [&] { return background(picture); });
  report.show("background", ground);

  IppIMemory<u8> flat = report.run("Without the background", {"withoutBackground"},
                                   "The picture minus its background. The uneven light is removed.",
                                   [&] { return withoutBackground(picture, ground); });
  report.show("flat", flat);

  IppIMemory<u8> lines = report.run("Edges", {"edges"},
                                    "The results of the Laplace filter have different signs on the two sides "
                                    "of an edge. The negative is filtered too; the sum is the magnitude.",
                                    [&] { return edges(picture); });
  report.show("edges", lines);
}

void averageFrames(IppIMemory<u8>& picture, IppIMemory<u8>& mask, Report& report) {
  std::deque<IppIMemory<u8>> frames = noisyFrames(picture, frameCount);
  IppIMemory<float> mean = report.run(
      "Average noisy frames", {"average", "noiseOf"},
      std::to_string(frameCount) +
          " frames with artificial noise are added to a float image under the mask. The sum is divided by "
          "their number.",
      [&] { return average(frames, mask); });
  IppIMemory<float> first = toFloat(frames.front());
  report.remark("The standard deviation of the noise falls from " +
                numberText(noiseOf(first, picture, mask), 1) + " to " +
                numberText(noiseOf(mean, picture, mask), 1) + ".");
  report.show("noisy", frames.front());
  report.show("average", Examples::toBytes(mean));
}

void cutRegions(IppIMemory<u8>& picture, Report& report) {
  IppIMemory<u8> quarter =
      report.run("A corner", {"cropCorner"}, "A region at the origin is copied into a new image.",
                 [&] { return cropCorner(picture); });
  report.show("quarter", quarter);

  IppIMemory<u8> middle = report.run("The middle", {"cropMiddle"}, "A region away from the origin is copied.",
                                     [&] { return cropMiddle(picture); });
  report.show("middle", middle);

  IppIMemory<u8> spot = report.run("A window", {"keepWindow"},
                                   "The image is filled with black, then one region is copied into it.",
                                   [&] { return keepWindow(picture); });
  report.show("spot", spot);
}

}  // namespace

std::vector<Coin> runPipeline(Examples::Picture& decoded, Report& report, const Settings& settings) {
  report.section("From the picture to a mask");
  IppIMemory<u8> picture =
      report.run("Wrap the picture", {"wrap"}, "An image that uses the decoder's memory: no pixel is copied.",
                 [&] { return wrap(decoded); });
  report.show("picture", picture);
  IppIMemory<u8> mask = findMask(picture, report, settings);

  report.section("Each object");
  std::vector<Coin> coins = measureAll(picture, mask, report);
  report.section("Uses of a mask");
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
    return none + "brightness changes by at most " + std::to_string(steepest) +
           " in the picture, and a rim is a change of more than " + limit +
           ". Try a lower limit: --threshold=" + std::to_string(steepest / 2) + ".";
  }
  std::string text = none + "brightness changes by more than " + limit +
                     " in some places, but these places neither contain nor enclose a square of " +
                     square(settings.open) + ".";
  if (settings.open > 1) {
    text += " If the " + settings.name +
            " are smaller, try --open=" + std::to_string((settings.open + 1) / 2) + ".";
  }
  return text + " If their rims have gaps, try a lower limit: --threshold=" +
         std::to_string(settings.threshold / 2) +
         ". Objects that the edge of the picture cuts are not counted.";
}

}  // namespace Coins
