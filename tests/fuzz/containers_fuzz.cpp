// The life of images and buffers: some objects of one element type are made, copied, shared, written and
// destroyed in any order. A plain model says after each step what every object must show.

#include <fuzzer/FuzzedDataProvider.h>

#include <array>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <typeinfo>
#include <utility>
#include <vector>

#include "tests/fuzz/Finding.h"
#include "tests/fuzz/Thrown.h"
#include "zorvan/ipp.h"

namespace Zorvan::Test {
namespace {

using Ipp::Image::IppIMemory;
using IppS::IppSMemory;

template <class T, class... List>
constexpr bool isOneOf = (std::is_same_v<T, List> || ...);

/// The pixels of a block, as bytes. Those that nobody has written have no value.
template <class T>
struct ModelBlock {
  std::vector<std::optional<T>> elements;
};

/// The objects that the model has: `Object` is the real one, `State` its expected state.
template <class Object, class State>
struct Slot {
  std::unique_ptr<Object> object;
  State state;
};

constexpr std::size_t slotCount = 4;
constexpr std::int64_t mostBlockBytes = 1 << 16;

template <class T>
class Images {
 public:
  explicit Images(FuzzedDataProvider& input) : input_(input) {}

  void run() {
    for (int steps = 0; steps < 40 && input_.remaining_bytes() > 0; ++steps) {
      step();
      for (const auto& slot : slots_) verify(slot);
    }
  }

 private:
  struct State {
    Size size{0, 0};
    int step = 0;
    std::shared_ptr<ModelBlock<T>> block;
  };
  using Image = Slot<IppIMemory<T>, State>;

  static constexpr int elementBytes = sizeof(T);
  static constexpr bool isAllocated = isOneOf<T, u8, u16, s16, int, float>;
  static constexpr bool isCopied = isOneOf<T, u8, int, float>;

  Image& anySlot() { return slots_[input_.ConsumeIntegralInRange<std::size_t>(0, slotCount - 1)]; }

  int anyExtent() {
    constexpr int edges[] = {0,
                             -1,
                             std::numeric_limits<int>::min(),
                             std::numeric_limits<int>::max(),
                             1 << 29,
                             1 << 30,
                             std::numeric_limits<int>::max() - 62,
                             46341,
                             0x1FFFFF,
                             std::numeric_limits<int>::max() - 63};
    if (input_.ConsumeIntegralInRange(0, 7) != 0) return input_.ConsumeIntegralInRange(1, 70);
    return input_.ConsumeBool() ? input_.PickValueInArray(edges) : input_.ConsumeIntegral<int>();
  }
  Size anySize() {
    const int width = anyExtent();
    return {width, anyExtent()};
  }

  struct Allocation {
    std::string text;  ///< that is thrown; empty for none
    int step = 0;
    std::int64_t bytes = 0;  ///< of the block, 0 if there is none
  };

  /// What an allocation does by its definition.
  static Allocation allocationOf(Size size) {
    if (size.width < 1 || size.height < 1) return {"invalid image size"};
    if (!isAllocated)
      return {std::string("Cannot allocate memory.\nNot supported type.\ntype is ") + typeid(T).name()};
    constexpr std::int64_t most = std::numeric_limits<std::int32_t>::max();
    const std::int64_t rowBytes = std::int64_t{size.width} * elementBytes;
    const std::int64_t step = (rowBytes + 63) / 64 * 64;
    if (step > most) return {};
    const std::int64_t bytes = step * size.height;
    return {"", static_cast<int>(step), bytes + 72 > most ? 0 : bytes};
  }
  /// Blocks that would be large are not requested.
  static bool isAffordable(const Allocation& allocation) { return allocation.bytes <= mostBlockBytes; }

  static std::shared_ptr<ModelBlock<T>> blockOf(std::int64_t elements) {
    auto block = std::make_shared<ModelBlock<T>>();
    block->elements.resize(static_cast<std::size_t>(elements));
    return block;
  }
  static std::shared_ptr<ModelBlock<T>> blockOf(const Allocation& allocation) {
    return allocation.bytes == 0 ? nullptr : blockOf(allocation.bytes / elementBytes);
  }

  void step() {
    switch (input_.ConsumeIntegralInRange(0, 9)) {
      case 0:
        return makeEmpty();
      case 1:
        return allocate();
      case 2:
        return allocateAlone();
      case 3:
        return wrapPointer();
      case 4:
        return wrapShared();
      case 5:
        return copy();
      case 6:
        return assign();
      case 7:
        return write();
      case 8:
        return destroy();
      default:
        return address();
    }
  }

  void makeEmpty() {
    Image& slot = anySlot();
    slot.object = std::make_unique<IppIMemory<T>>();
    slot.state = {};
  }

  void allocate() {
    Image& slot = anySlot();
    const Size size = anySize();
    const bool byNumbers = input_.ConsumeBool();
    const Allocation expected = allocationOf(size);
    if (!isAffordable(expected)) return;
    std::unique_ptr<IppIMemory<T>> made;
    const std::string text = thrownBy([&] {
      made = byNumbers ? std::make_unique<IppIMemory<T>>(size.width, size.height)
                       : std::make_unique<IppIMemory<T>>(size);
    });
    requireSame("the text of an allocation", text, expected.text);
    if (!made) return;
    // Of an image without a block only the size counts.
    slot.state = {size, expected.bytes == 0 ? made->step() : expected.step, blockOf(expected)};
    slot.object = std::move(made);
  }

  void allocateAlone() {
    const Size size = anySize();
    const bool byNumbers = input_.ConsumeBool();
    const Allocation expected = allocationOf(size);
    if (!isAffordable(expected)) return;
    int step = -1;
    bool hasBlock = false;
    const std::string text = thrownBy([&] {
      const auto block = byNumbers ? IppIMemory<T>::Allocate(size.width, size.height, step)
                                   : IppIMemory<T>::Allocate(size, step);
      hasBlock = block != nullptr;
      if (!hasBlock) return;
      requireSame("the alignment", static_cast<int>(reinterpret_cast<std::uintptr_t>(block.get()) % 64), 0);
      for (std::int64_t i = 0; i < expected.bytes / elementBytes; ++i) block[i] = T(1);
    });
    requireSame("the text of Allocate", text, expected.text);
    if (!text.empty()) return;
    requireSame("whether there is a block", hasBlock, expected.bytes != 0);
    if (hasBlock) requireSame("the step of Allocate", step, expected.step);
  }

  /// Elements for `size` pixels; any size is accepted with any block.
  std::int64_t anyElements(Size size) {
    const std::int64_t pixels = std::int64_t{size.width} * size.height;
    return pixels > 0 && pixels <= mostBlockBytes / elementBytes ? pixels : 1;
  }

  void wrapPointer() {
    Image& slot = anySlot();
    const Size size = anySize();
    const bool byNumbers = input_.ConsumeBool(), isNull = input_.ConsumeIntegralInRange(0, 7) == 0;
    State state{size, 0, nullptr};
    T* pointer = nullptr;
    if (!isNull) {
      // The caller's memory outlives every image.
      const std::int64_t elements = anyElements(size);
      callersMemory_.push_back(std::make_unique<T[]>(static_cast<std::size_t>(elements)));
      pointer = callersMemory_.back().get();
      state.block = blockOf(elements);
      for (auto& element : state.block->elements) element = T{};
    }
    const IppIMemory<T> wrapped = byNumbers ? IppIMemory<T>::CreateContainer(pointer, size.width, size.height)
                                            : IppIMemory<T>::CreateContainer(pointer, size);
    if (!isNull) requireSame("the wrapped address", wrapped.buffer().get() == pointer, true);
    slot.object = std::make_unique<IppIMemory<T>>();
    *slot.object = wrapped;
    slot.state = state;
  }

  void wrapShared() {
    Image& slot = anySlot();
    const Size size = anySize();
    const int step = input_.ConsumeIntegral<int>();
    State state{size, step, nullptr};
    std::shared_ptr<T[]> buffer;
    const Image& owner = anySlot();
    if (owner.object && input_.ConsumeBool()) {
      buffer = owner.object->buffer();
      state.block = owner.state.block;
    } else if (input_.ConsumeBool()) {
      const std::int64_t elements = anyElements(size);
      buffer = std::shared_ptr<T[]>(new T[static_cast<std::size_t>(elements)]());
      state.block = blockOf(elements);
      for (auto& element : state.block->elements) element = T{};
    }
    slot.object = input_.ConsumeBool()
                      ? std::make_unique<IppIMemory<T>>(size, buffer, step)
                      : std::make_unique<IppIMemory<T>>(size.width, size.height, buffer, step);
    slot.state = state;
  }

  void copy() {
    Image& slot = anySlot();
    const Image& source = anySlot();
    if (!source.object) return;
    const State from = source.state;
    const Size size = from.size;
    Allocation expected = allocationOf(size);
    if (!isAffordable(expected)) return;
    const bool holdsAll = from.block && static_cast<std::int64_t>(from.block->elements.size()) >=
                                            std::int64_t{size.width} * size.height;
    if (expected.text.empty() && expected.bytes != 0 && from.block && !holdsAll)
      return;  // a caller's mistake
    if (expected.text.empty() && (!isCopied || expected.bytes == 0 || !from.block))
      expected.text = "Assign error in IppIMemory";
    std::unique_ptr<IppIMemory<T>> made;
    const std::string text = thrownBy([&] { made = std::make_unique<IppIMemory<T>>(*source.object); });
    requireSame("the text of a copy", text, expected.text);
    if (!made) return;
    State state{size, expected.step, blockOf(expected)};
    for (std::int64_t i = 0; i < std::int64_t{size.width} * size.height; ++i) {
      state.block->elements[static_cast<std::size_t>(i)] = from.block->elements[static_cast<std::size_t>(i)];
    }
    requireSame("whether a copy shares its block", made->buffer() == source.object->buffer(), false);
    slot.object = std::move(made);
    slot.state = state;
  }

  void assign() {
    Image& slot = anySlot();
    const Image& source = anySlot();
    if (!slot.object || !source.object) return;
    *slot.object = *source.object;
    slot.state = source.state;
    requireSame("whether an assignment shares the block", slot.object->buffer() == source.object->buffer(),
                true);
  }

  void write() {
    const Image& slot = anySlot();
    if (!slot.object || !slot.state.block) return;
    auto& elements = slot.state.block->elements;
    const auto at = input_.ConsumeIntegralInRange<std::size_t>(0, elements.size() - 1);
    const auto value = static_cast<T>(input_.ConsumeIntegral<std::int8_t>());
    slot.object->buffer()[static_cast<std::ptrdiff_t>(at)] = value;
    elements[at] = value;
  }

  void destroy() { anySlot() = {}; }

  /// The address of a region, which may lie anywhere.
  void address() {
    const Image& slot = anySlot();
    if (!slot.object) return;
    const Rect rect{input_.ConsumeIntegral<int>(), input_.ConsumeIntegral<int>(),
                    input_.ConsumeIntegral<int>(), input_.ConsumeIntegral<int>()};
    const T* const start = slot.object->ToIppStream(rect);
    if (!slot.state.block) return requireSame("whether there is an address", start != nullptr, false);
    const auto row =
        static_cast<std::int32_t>(static_cast<std::uint32_t>(std::int64_t{rect.x} * slot.state.size.width));
    const std::int64_t element = std::int64_t{row} + rect.y;
    const auto offset =
        static_cast<std::int64_t>(reinterpret_cast<std::uintptr_t>(start) -
                                  reinterpret_cast<std::uintptr_t>(slot.object->buffer().get()));
    requireSame("the offset of a region", offset, element * elementBytes);
  }

  void verify(const Image& slot) const {
    if (!slot.object) return;
    IppIMemory<T>& image = *slot.object;
    const State& state = slot.state;
    requireSame("width", image.width(), state.size.width);
    requireSame("height", image.height(), state.size.height);
    requireSame("width of size", image.size().width, state.size.width);
    requireSame("height of size", image.size().height, state.size.height);
    requireSame("step", image.step(), state.step);
    const auto rowBytes = static_cast<std::uint32_t>(std::int64_t{state.size.width} * elementBytes);
    requireSame("image step", image.imageStep(), static_cast<int>(rowBytes));
    const Rect roi = image.SizeToRoi();
    requireSame("the whole region",
                roi.x == 0 && roi.y == 0 && roi.width == state.size.width && roi.height == state.size.height,
                true);
    const std::shared_ptr<T[]> buffer = image.buffer();
    requireSame("whether there is a block", buffer != nullptr, state.block != nullptr);
    if (!buffer) return;
    for (std::size_t i = 0; i < state.block->elements.size(); ++i) {
      const auto& expected = state.block->elements[i];
      if (expected && buffer[static_cast<std::ptrdiff_t>(i)] != *expected)
        finding("element " + std::to_string(i) + " has another value");
    }
    for (const auto& other : slots_) {
      if (!other.object || !other.state.block) continue;
      requireSame("whether two images share their block", buffer == other.object->buffer(),
                  state.block == other.state.block);
    }
  }

  FuzzedDataProvider& input_;
  std::vector<std::unique_ptr<T[]>> callersMemory_;
  std::array<Image, slotCount> slots_;
};

template <class T>
class Buffers {
 public:
  explicit Buffers(FuzzedDataProvider& input) : input_(input) {}

  void run() {
    for (int steps = 0; steps < 40 && input_.remaining_bytes() > 0; ++steps) {
      step();
      for (const auto& slot : slots_) verify(slot);
    }
  }

 private:
  struct State {
    std::optional<int> length = 0;  ///< without a value until a copy has been assigned to
    std::shared_ptr<ModelBlock<T>> block;
  };
  using Buffer = Slot<IppSMemory<T>, State>;
  static constexpr bool isAllocated = isOneOf<T, u8, float>;

  Buffer& anySlot() { return slots_[input_.ConsumeIntegralInRange<std::size_t>(0, slotCount - 1)]; }

  struct Allocation {
    std::string text;
    std::int64_t bytes = 0;
  };
  static Allocation allocationOf(int length) {
    if (length < 1) return {"invalid length"};
    if (!isAllocated) return {"not supported type"};
    const std::int64_t bytes = std::int64_t{length} * std::int64_t{sizeof(T)};
    return {"", bytes + 72 > std::numeric_limits<std::int32_t>::max() ? 0 : bytes};
  }

  void step() {
    Buffer& slot = anySlot();
    switch (input_.ConsumeIntegralInRange(0, 6)) {
      case 0:
        slot = {std::make_unique<IppSMemory<T>>(), {}};
        return;
      case 1:
      case 2:
        return allocate(slot);
      case 3: {
        const Buffer& source = anySlot();
        if (source.object) slot = {std::make_unique<IppSMemory<T>>(*source.object), {std::nullopt, nullptr}};
        return;
      }
      case 4: {
        const Buffer& source = anySlot();
        // The length of a copy is not set, so it must not be read either.
        if (!slot.object || !source.object || !source.state.length) return;
        *slot.object = *source.object;
        slot.state = source.state;
        return;
      }
      case 5: {
        if (!slot.object || !slot.state.block) return;
        auto& elements = slot.state.block->elements;
        const auto at = input_.ConsumeIntegralInRange<std::size_t>(0, elements.size() - 1);
        const auto value = static_cast<T>(input_.ConsumeIntegral<std::int8_t>());
        slot.object->buffer()[static_cast<std::ptrdiff_t>(at)] = value;
        elements[at] = value;
        return;
      }
      default:
        slot = {};
    }
  }

  void allocate(Buffer& slot) {
    const int length = input_.ConsumeIntegralInRange(0, 7) != 0 ? input_.ConsumeIntegralInRange(1, 300)
                                                                : input_.ConsumeIntegral<int>();
    const Allocation expected = allocationOf(length);
    if (expected.bytes > mostBlockBytes) return;
    std::unique_ptr<IppSMemory<T>> made;
    const bool alone = input_.ConsumeBool();
    const std::string text = thrownBy([&] {
      if (alone) {
        const auto block = IppSMemory<T>::Allocate(length);
        requireSame("whether there is a block", block != nullptr, expected.bytes != 0);
        for (int i = 0; block != nullptr && i < length; ++i) block[i] = T(1);
      } else {
        made = std::make_unique<IppSMemory<T>>(length);
      }
    });
    requireSame("the text of an allocation", text, expected.text);
    if (!made) return;
    State state{length, nullptr};
    if (expected.bytes != 0) {
      state.block = std::make_shared<ModelBlock<T>>();
      state.block->elements.resize(static_cast<std::size_t>(length));
      const auto address = reinterpret_cast<std::uintptr_t>(made->buffer().get());
      requireSame("the alignment", static_cast<int>(address % 64), 0);
    }
    slot = {std::move(made), state};
  }

  void verify(const Buffer& slot) const {
    if (!slot.object) return;
    const State& state = slot.state;
    if (state.length) requireSame("length", slot.object->length(), *state.length);
    const std::shared_ptr<T[]> buffer = slot.object->buffer();
    requireSame("whether there is a block", buffer != nullptr, state.block != nullptr);
    if (!buffer) return;
    for (std::size_t i = 0; i < state.block->elements.size(); ++i) {
      const auto& expected = state.block->elements[i];
      if (expected && buffer[static_cast<std::ptrdiff_t>(i)] != *expected)
        finding("element " + std::to_string(i) + " has another value");
    }
  }

  FuzzedDataProvider& input_;
  std::array<Buffer, slotCount> slots_;
};

}  // namespace
}  // namespace Zorvan::Test

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace Zorvan;
  using namespace Zorvan::Test;
  FuzzedDataProvider input(data, size);
  using Run = void (*)(FuzzedDataProvider&);
  const Run runs[] = {
#define RUNS(T)                                            \
  [](FuzzedDataProvider& from) { Images<T>(from).run(); }, \
      [](FuzzedDataProvider& from) { Buffers<T>(from).run(); },
      ZORVAN_IPP_ELEMENT_TYPES(RUNS)
#undef RUNS
  };
  input.PickValueInArray(runs)(input);
  return 0;
}
