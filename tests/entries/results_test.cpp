// The results of every exported operation on a set of pictures, as sums in results.txt: the same in every
// variant, built by every compiler with every option. Only the results that differ between variants by
// contract have no sum.
//
//     results_tests --write=tests/entries/results.txt
//
// writes the file anew, from the oldest variant, and compares the others with it.

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "tests/entries/Pictures.h"
#include "tests/facades/ExportedOperations.h"
#include "tests/support/Cache.h"
#include "tests/support/EntryTests.h"
#include "tests/support/Options.h"
#include "tests/support/VariantTests.h"

namespace Zorvan::Test {
namespace {

using namespace Ipp::Image;

/// An operation whose results differ between variants, with the pictures for which they do not. The
/// difference has the name of its row in docs/variants.md.
struct Difference {
  const char* operation;
  const char* name;
  bool (*isEqualOn)(const Picture&);
};

bool onFinite(const Picture& picture) { return picture.isFinite(); }
bool onWhole(const Picture& picture) { return picture.isWhole(); }
bool onOdd(const Picture& picture) { return picture.isOdd(); }
bool onEmpty(const Picture& picture) { return picture.motif == Motif::empty; }
bool onNarrow(const Picture& picture) { return picture.size.width < 8; }  // less than a vector

constexpr Difference differences[] = {
    {"Comparer<float>::Compare", "nanComparesAsGreater", onFinite},
    {"IppIArithmetic<u8>::AddWithMask", "unselectedPixelsOfSums", onFinite},
    {"IppIArithmetic<float>::AddWithMask", "unselectedPixelsOfSums", onFinite},
    {"IppIArithmetic<float>::Divide", "floatQuotients", onNarrow},
    {"IppIArithmetic<u8>::Divide", "byteQuotients", onOdd},
    {"IppIArithmetic<float>::SquareRoot", "floatRoots", onEmpty},
    {"Statistic<float>::Min", "infiniteExtremes", onFinite},
    {"Statistic<float>::Max", "nanInExtremes", onFinite},
    {"Statistic<float>::Mean", "floatMeans", onWhole},
    {"Statistic<float>::MeanAndStandardDeviationWithMask", "deviations", onEmpty},
    {"Statistic<float>::MinMaxIndexWithMask", "nanAmongPlaces", onFinite},
    {"FilteringFunction::LaplaceBorder<float>", "floatLaplace", onWhole},
    {"FilteringFunction::LaplaceBorder3x3<float>", "floatLaplace", onWhole},
    {"FilteringFunction::LaplaceBorder5x5<float>", "floatLaplace", onWhole},
    {"IppIMorphology<float>::Erode", "nanInMorphology", onFinite},
    {"IppIMorphology<float>::Dilate", "nanInMorphology", onFinite},
    {"IppIMorphology<float>::Open", "nanInMorphology", onFinite},
    {"IppIMorphology<float>::Close", "nanInMorphology", onFinite},
};

bool isEqualInAllVariants(const std::string& operation, const Picture& picture) {
  const std::string name = operation.substr(0, operation.find(": "));
  for (const Difference& difference : differences) {
    if (difference.operation == name) return difference.isEqualOn(picture);
  }
  return true;
}

// ---- sums ----

/// FNV-1a over words of 8 bytes, with one more step that mixes the high half into the low one.
class Sum {
 public:
  void add(std::uint64_t word) {
    sum_ = (sum_ ^ word) * 0x100000001B3U;
    sum_ ^= sum_ >> 32;
  }
  void add(const std::string& text) {
    for (const char character : text) add(static_cast<std::uint64_t>(static_cast<unsigned char>(character)));
  }
  /// The bits of a NaN are not part of the contract.
  void add(float value) {
    std::uint32_t bits = 0x7FC00000;
    if (!std::isnan(value)) std::memcpy(&bits, &value, sizeof bits);
    add(std::uint64_t{bits});
  }
  void add(int value) { add(static_cast<std::uint64_t>(static_cast<std::int64_t>(value))); }
  template <class T>
  void add(const T* pixels, int count) {
    for (int i = 0; i < count; ++i) add(pixels[i]);
  }
  void add(u8 value) { add(int{value}); }
  void add(u16 value) { add(int{value}); }
  void add(s16 value) { add(int{value}); }
  void add(Point point) {
    add(point.x);
    add(point.y);
  }
  /// The last bits of means and deviations differ by variant.
  void add(const MeanStdDev& record) {
    add(static_cast<float>(record.Mean));
    add(static_cast<float>(record.StdDev));
  }
  void add(const MinMaxIndex& record) {
    add(record.Min);
    add(record.Max);
    add(record.MinIndex);
    add(record.MaxIndex);
  }
  void add(const ConnectionInfo& record) {
    for (const double number : {record.area, record.value[0], record.value[1], record.value[2]}) {
      std::uint64_t bits;
      std::memcpy(&bits, &number, sizeof bits);
      add(bits);
    }
    for (const int number : {record.rect.x, record.rect.y, record.rect.width, record.rect.height})
      add(number);
  }

  std::uint64_t value() const { return sum_; }

 private:
  std::uint64_t sum_ = 0xCBF29CE484222325U;
};

// ---- calls ----

/// One picture, and the kind of operation that is called on it.
struct Call {
  const Picture& picture;
  bool returnsImage;
  bool takesRegion;

  std::size_t number() const { return static_cast<std::size_t>(&picture - pictures); }

  /// The whole picture, or a part of it that fits its size and its transposed size. In a new image the region
  /// begins with the first pixel, where all operations put it.
  Rect rect() const {
    const auto [width, height] = picture.size;
    if (number() % 2 == 0 || width < 8 || height < 8) return {0, 0, width, height};
    const Rect part{1, 2, width - 3, height - 3};
    return returnsImage ? Rect{0, 0, part.width, part.height} : part;
  }
};

/// Where an argument stands: images are numbered.
struct Place {
  const Call& call;
  int imagesBefore;
};

template <class P>
struct Argument {
  P value{};
  explicit Argument(const Place& place) {
    constexpr Size masks[] = {{3, 3}, {4, 2}, {5, 5}, {1, 7}, {9, 3}};
    constexpr eBorderType borders[] = {eBorderReplicate, eBorderConstant};
    constexpr eComparison comparisons[] = {eLess, eLessEqual, eEqual, eGreaterEqual, eGreater};
    const std::size_t number = place.call.number();
    const Rect rect = place.call.rect();
    if constexpr (std::is_same_v<P, Rect>) value = rect;
    if constexpr (std::is_same_v<P, bool>) value = number % 4 < 2;
    if constexpr (std::is_same_v<P, Size>) value = masks[number % std::size(masks)];
    if constexpr (std::is_same_v<P, Point>) value = {rect.width / 2, rect.height / 2};
    if constexpr (std::is_same_v<P, eComparison>) value = comparisons[number % std::size(comparisons)];
    if constexpr (std::is_same_v<P, eBorderType>) value = borders[number % std::size(borders)];
    if constexpr (std::is_arithmetic_v<P> && !std::is_same_v<P, bool>)
      value = static_cast<P>(5 + 38 * (number % 4));
  }
  P get() { return value; }
  void addTo(Sum&) const {}
};

template <class T>
struct Argument<IppIMemory<T>&> {
  std::vector<T> pixels;
  IppIMemory<T> image;
  explicit Argument(const Place& place)
      : pixels(pixelsOf<T>(place.call.picture, place.imagesBefore)),
        image(IppIMemory<T>::CreateContainer(pixels.data(), place.call.picture.size)) {}
  Argument(const Argument&) = delete;
  IppIMemory<T>& get() { return image; }
  void addTo(Sum& sum) const { sum.add(pixels.data(), static_cast<int>(pixels.size())); }
};

/// AddCWithMask does not specify pixels that the mask does not select.
template <class List>
void clearUnselected(List&) {}
template <class T, class... More>
void clearUnselected(std::tuple<Argument<IppIMemory<T>&>, Argument<IppIMemory<u8>&>, More...>& list) {
  for (std::size_t i = 0; i < std::get<0>(list).pixels.size(); ++i) {
    if (std::get<1>(list).pixels[i] == 0) std::get<0>(list).pixels[i] = T(0);
  }
}

template <class R>
void addResult(Sum& sum, const R& result, const Call&) {
  sum.add(result);
}
/// Of a new image only the region is set, and without a region nothing.
template <class T>
void addResult(Sum& sum, const IppIMemory<T>& image, const Call& call) {
  sum.add(image.width());
  sum.add(image.height());
  if (!call.takesRegion) return;
  const auto pixels = image.buffer();
  const Rect rect = call.rect();
  for (int row = 0; row < rect.height; ++row) sum.add(pixels.get() + row * image.width(), rect.width);
}

template <class... P, std::size_t... i>
std::tuple<Argument<P>...> argumentsOf(const Call& call, std::index_sequence<i...>) {
  constexpr bool isImage[] = {std::is_reference_v<P>...};
  return std::tuple<Argument<P>...>(Place{call, static_cast<int>(std::count(isImage, isImage + i, true))}...);
}

template <class R, class... P>
std::uint64_t sumOf(const std::string& name, R (*operation)(P...), const Picture& picture) {
  const Call call{picture, !std::is_void_v<R> && !std::is_trivially_copyable_v<R>,
                  (std::is_same_v<P, Rect> || ...)};
  auto arguments = argumentsOf<P...>(call, std::index_sequence_for<P...>{});
  Sum sum;
  try {
    std::apply(
        [&](auto&... argument) {
          if constexpr (std::is_void_v<R>) {
            operation(argument.get()...);
          } else {
            addResult(sum, operation(argument.get()...), call);
          }
        },
        arguments);
  } catch (const std::exception& thrown) {
    sum.add(std::string(thrown.what()));
  }
  if (name.find("::AddCWithMask:") != std::string::npos) clearUnselected(arguments);
  std::apply([&](const auto&... argument) { (argument.addTo(sum), ...); }, arguments);
  return sum.value();
}

// ---- the file ----

constexpr std::size_t pictureCount = std::size(pictures);
static_assert(pictureCount == 20);

/// Of each operation the sums of all pictures, as texts; without a sum, a dash.
using Results = std::map<std::string, std::vector<std::string>>;

const std::string noSum(16, '-');

Results resultsInFile(const std::string& path) {
  std::ifstream file(path);
  Results results;
  std::vector<std::string>* sums = nullptr;
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line[0] == '#') continue;
    if (line[0] != ' ') sums = &results[line];
    std::istringstream words(line[0] == ' ' ? line : "");
    for (std::string word; words >> word;) sums->push_back(word);
  }
  return results;
}

void writeResults(const Results& results, const std::string& path) {
  std::ofstream file(path);
  file << "# Sums of the results of all exported operations, one for each picture of Pictures.h; dashes "
          "where variants\n"
          "# differ by contract. Written by: results_tests --write=<this file>\n";
  for (const auto& [name, sums] : results) {
    file << name;
    for (std::size_t i = 0; i < sums.size(); ++i) file << (i % 5 == 0 ? "\n  " : " ") << sums[i];
    file << '\n';
  }
}

/// The sums of the selected variant. Emulators are slow and get the small pictures only; the others' sums are
/// empty.
Results resultsOfThisVariant() {
  Results results;
  forEachExportedOperation([&](const std::string& name, auto operation, Allocates) {
    std::vector<std::string>& sums = results[name];
    for (const Picture& picture : pictures) {
      constexpr int cacheBytes[] = {0, 1 << 20, 1 << 30};
      const ForcedCache cache(cacheBytes[sums.size() % std::size(cacheBytes)]);
      const bool isLeftOut =
          options().level == Level::few && picture.size.width * picture.size.height > 10000;
      char text[20] = "";
      if (!isLeftOut) {
        std::snprintf(text, sizeof text, "%016llx",
                      static_cast<unsigned long long>(sumOf(name, operation, picture)));
      }
      sums.push_back(isEqualInAllVariants(name, picture) ? text : noSum);
    }
  });
  return results;
}

void areStored(int variant) {
  const ForcedVariant forced(variant);
  const Results found = resultsOfThisVariant();
  EXPECT_EQ(found.size(), countOfExportedOperations());
  const std::string& writtenTo = options().resultsFile;
  if (!writtenTo.empty() && variant == 0) writeResults(found, writtenTo);
  const Results stored = resultsInFile(writtenTo.empty() ? ZORVAN_RESULTS : writtenTo);
  for (const auto& [name, sums] : stored) {
    EXPECT_TRUE(found.count(name) == 1) << name << " has sums, and is no operation";
  }
  for (const auto& [name, sums] : found) {
    const auto line = stored.find(name);
    if (line == stored.end() || line->second.size() != pictureCount) {
      ADD_FAILURE() << name << " has not " << pictureCount << " sums";
      continue;
    }
    for (std::size_t i = 0; i < pictureCount; ++i) {
      if (sums[i].empty()) continue;
      EXPECT_EQ(sums[i], line->second[i]) << name << ", picture " << pictures[i].text();
    }
  }
}

/// Each difference is documented, each is one of an operation, and each operation has sums all the same.
TEST(Results, DifferencesAreDocumented) {
  std::ostringstream page;
  page << std::ifstream(ZORVAN_DIFFERENCES).rdbuf();
  const Results stored = resultsInFile(ZORVAN_RESULTS);
  for (const Difference& difference : differences) {
    EXPECT_NE(page.str().find(std::string("| ") + difference.name + " |"), std::string::npos)
        << difference.name;
    const auto line = stored.lower_bound(std::string(difference.operation) + ": ");
    EXPECT_TRUE(line != stored.end() && line->first.rfind(difference.operation, 0) == 0)
        << difference.operation;
  }
  for (const auto& [name, sums] : stored) {
    EXPECT_TRUE(std::any_of(sums.begin(), sums.end(), [](const auto& sum) { return sum != noSum; })) << name;
  }
}

}  // namespace

void registerEntryTests() { registerForEachVariant("Results", "AreStored", areStored); }

}  // namespace Zorvan::Test
