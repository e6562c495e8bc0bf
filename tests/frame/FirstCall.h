#pragma once

// Makes one call through an entry's stub while no variant has been selected, and compares it with the same
// call of the selected routine itself. Entries with other parameters than EntryCall handles have an overload
// of callFirst.

#include <cstring>
#include <string>
#include <type_traits>

#include "tests/support/EntryCheck.h"
#include "zorvan/primitives/frame/Processor.h"
#include "zorvan/primitives/frame/Table.h"

namespace Zorvan::Test {

/// The routine to which the stub of `row` jumps; null while none has been selected.
template <class Routine>
Routine* selectedRoutine(const Primitives::Row<Routine>& row) {
  const std::int32_t index = Primitives::variantIndex;
  return index >= 0 && index < Primitives::variantCount ? row.routine[1 + index] : nullptr;
}

template <class... Parameters>
std::string callFirst(int (*entry)(Parameters...), const Primitives::Row<int(Parameters...)>& row) {
  using Call = EntryCall<int(Parameters...)>;
  Case c{{13, 3}, {}, 42};
  c.images.assign(static_cast<std::size_t>(Call::imageCount()),
                  {StepType::onePixelMore, {Placement::Edge::inside, 4}, Content::halfEmpty});
  const Call first(c, 1, 0), second(c, 1, 1);
  if (Primitives::variantIndex != -1) return "a variant had been selected before";
  const int status = first.run(entry);
  const auto routine = selectedRoutine(row);
  if (routine == nullptr) return "no variant has been selected";
  if (status != second.run(routine)) return "the status differs: " + std::to_string(status);
  for (std::size_t b = 0; b < first.blocks().size(); ++b) {
    if (!first.blocks()[b].sameBytes(second.blocks()[b])) {
      return first.blocks()[b].difference(second.blocks()[b]);
    }
  }
  return "";
}

/// Flood fill: the routine receives the seed, the value and the record.
template <class T>
std::string callFirst(
    int (*entry)(T*, int, Size, Point, T, Primitives::_IppiConnectedComp*, u8*),
    const Primitives::Row<int(T*, int, Size, Point, T, Primitives::_IppiConnectedComp*, u8*)>& row) {
  T pixels[4] = {};
  Primitives::_IppiConnectedComp region{};
  u8 work[128];
  if (entry(pixels, 2 * sizeof(T), {2, 2}, {1, 0}, T(5), &region, work) != 0) return "the status differs";
  if (selectedRoutine(row) == nullptr) return "no variant has been selected";
  if (region.area != 4 || region.value[0] != 5 || region.rect.width != 2) return "an argument was lost";
  return "";
}

/// The Laplace filter: the routine receives mask, border word, value and work memory.
template <class T>
std::string callFirst(int (*entry)(const T*, int, T*, int, Size, int, int, T, u8*),
                      const Primitives::Row<int(const T*, int, T*, int, Size, int, int, T, u8*)>& row) {
  const T src[4] = {T(1), T(1), T(1), T(1)};
  T dst[4] = {};
  u8 work[256];
  const int status = entry(src, 2 * sizeof(T), dst, 2 * sizeof(T), {2, 2}, 33, 6, T(0), work);
  if (selectedRoutine(row) == nullptr) return "no variant has been selected";
  return status == 0 && dst[0] == T(5) && dst[3] == T(5) ? "" : "an argument was lost";
}

/// The size entry of the Laplace filter.
inline std::string callFirst(int (*entry)(Size, int, int, int, int, int*),
                             const Primitives::Row<int(Size, int, int, int, int, int*)>& row) {
  int bytes = 0;
  const int status = entry({5, 5}, 33, 1, 1, 1, &bytes);
  if (selectedRoutine(row) == nullptr) return "no variant has been selected";
  return status == 0 && bytes == 32 + 32 + 32 ? "" : "an argument was lost";
}

/// Sizes and state of morphology, over memory that is large enough for a mask of 3 by 3.
inline std::string callFirst(int (*entry)(Size, Size, int*, int*),
                             const Primitives::Row<int(Size, Size, int*, int*)>& row) {
  int sizes[2] = {}, again[2] = {};
  const int status = entry({100, 90}, {3, 3}, &sizes[0], &sizes[1]);
  const auto routine = selectedRoutine(row);
  if (routine == nullptr) return "no variant has been selected";
  routine({100, 90}, {3, 3}, &again[0], &again[1]);
  const bool same = sizes[0] == again[0] && sizes[1] == again[1];
  return status == 0 && same && sizes[0] >= 193 && sizes[1] != 0 ? "" : "an argument was lost";
}

template <class Spec>
std::string callFirst(int (*entry)(Size, const u8*, Size, Spec*, u8*),
                      const Primitives::Row<int(Size, const u8*, Size, Spec*, u8*)>& row) {
  const u8 mask[9] = {0, 1, 0, 1, 1, 1, 0, 1, 0};
  alignas(8) u8 state[1024] = {};
  const int status = entry({4, 4}, mask, {3, 3}, reinterpret_cast<Spec*>(state), state);
  if (selectedRoutine(row) == nullptr) return "no variant has been selected";
  // The record may lie at any address.
  const void* record = state;
  if constexpr (std::is_same_v<Spec, Primitives::MorphAdvSpec>) {
    Primitives::MorphAdvSpec both;
    std::memcpy(&both, state, sizeof both);
    record = both.second;
  }
  if (status != 0 || record == nullptr) return "an argument was lost";
  Primitives::MorphSpec spec;
  std::memcpy(&spec, record, sizeof spec);
  return spec.flags == 0x130 ? "" : "an argument was lost";
}

/// Erosion, dilation, opening and closing: the routine receives border word, value, state and work memory.
/// The test fills the state itself, since the entries that do so would select a variant.
template <class T, class Spec>
std::string callFirst(
    int (*entry)(const T*, int, T*, int, Size, int, T, const Spec*, u8*),
    const Primitives::Row<int(const T*, int, T*, int, Size, int, T, const Spec*, u8*)>& row) {
  u8 cells[9] = {255, 255, 255, 255, 255, 255, 255, 255, 255};
  Primitives::MorphSpec mask{};
  mask.cells = cells;
  mask.maskWidth = mask.maskHeight = 3;
  mask.flags = Primitives::MorphSpec::allSet | Primitives::MorphSpec::contiguous;
  Primitives::MorphAdvSpec both{};
  both.first = both.second = &mask;
  const Spec* spec = nullptr;
  if constexpr (std::is_same_v<Spec, Primitives::MorphSpec>) {
    spec = &mask;
  } else {
    spec = &both;
  }
  T src[25], first[25] = {}, second[25] = {};
  for (int i = 0; i < 25; ++i) src[i] = static_cast<T>(40 + 7 * i % 11);
  u8 work[4096];
  constexpr int step = 5 * sizeof(T);
  const int status = entry(src, step, first, step, {5, 5}, 6, T(43), spec, work);
  const auto routine = selectedRoutine(row);
  if (routine == nullptr) return "no variant has been selected";
  routine(src, step, second, step, {5, 5}, 6, T(43), spec, work);
  for (int i = 0; i < 25; ++i) {
    if (first[i] != second[i] || first[i] == T(0)) return "an argument was lost";
  }
  return status == 0 ? "" : "the status differs";
}

/// Image memory: the pixels of a new image can be written, and the step is returned.
template <class T>
std::string callFirst(T* (*entry)(int, int, int*), const Primitives::Row<T*(int, int, int*)>& row) {
  int step = 0;
  T* const pixels = entry(5, 3, &step);
  if (selectedRoutine(row) == nullptr) return "no variant has been selected";
  if (pixels == nullptr || step != 64) return "no image";
  pixels[0] = pixels[2 * step / static_cast<int>(sizeof(T)) + 4] = T(1);
  Primitives::ippiFree(pixels);
  return "";
}

template <class T>
std::string callFirst(T* (*entry)(int), const Primitives::Row<T*(int)>& row) {
  T* const elements = entry(5);
  if (selectedRoutine(row) == nullptr) return "no variant has been selected";
  if (elements == nullptr) return "no signal";
  elements[4] = T(1);
  Primitives::ippsFree(elements);
  return "";
}

/// A null pointer may be freed.
inline std::string callFirst(void (*entry)(void*), const Primitives::Row<void(void*)>& row) {
  entry(nullptr);
  return selectedRoutine(row) != nullptr ? "" : "no variant has been selected";
}

}  // namespace Zorvan::Test
