#pragma once

#include <functional>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include "bench/support/measurement.h"
#include "bench/support/operands.h"
#include "bench/support/streaming_limit.h"

namespace Zorvan::Bench {

/// An operation on pixels of certain types, which can be measured at any size.
struct Operation {
  std::string name;
  std::string pixels;
  int bytesPerPixel;  // what the limit moves
  std::function<Contest(Size)> contestAt;
  std::function<Contestant(Size, Layout)> oursAt;

  /// Whether the library and the plain loop write the same bytes in all operands.
  std::function<bool(Size)> agreesAt;
};

/// All operations that are measured. Each family adds its operations.
class Suite {
 public:
  /// The operands, in the order of the parameters, define which bytes the limit moves. `ours` takes the
  /// images and the rectangle, `plain` takes the pixels and the size.
  template <class... Operands, class Ours, class Plain>
  void add(const char* name, const char* pixels, Ours ours, Plain plain) {
    const auto callOurs = [ours](OperandSet<Operands...>& set) {
      std::apply([&](auto&... images) { ours(images..., set.rect()); }, set.images());
    };
    const auto callPlain = [plain](OperandSet<Operands...>& set) {
      std::apply([&](auto*... of) { plain(of..., set.size()); }, set.pixels());
    };
    const auto contestAt = [=](Size size) {
      const auto set = std::make_shared<OperandSet<Operands...>>(size);
      return Contest{{"ours", repeated([=] { callOurs(*set); })},
                     {"plain", repeated([=] { callPlain(*set); })},
                     limitLoops<Operands...>(set->pixels(), size)};
    };
    const auto oursAt = [=](Size size, Layout layout) {
      const auto set = std::make_shared<OperandSet<Operands...>>(size, layout);
      return Contestant{"ours", repeated([=] { callOurs(*set); })};
    };
    const auto agreesAt = [=](Size size) {
      OperandSet<Operands...> ofOurs(size);
      OperandSet<Operands...> ofPlain(size);
      callOurs(ofOurs);
      callPlain(ofPlain);
      return ofOurs.agreesWith(ofPlain);
    };
    constexpr int bytes = ((Operands::pixelBytes * (Operands::access == Access::update ? 2 : 1)) + ...);
    operations_.push_back({name, pixels, bytes, contestAt, oursAt, agreesAt});
  }

  const std::vector<Operation>& operations() const { return operations_; }

 private:
  std::vector<Operation> operations_;
};

}  // namespace Zorvan::Bench
