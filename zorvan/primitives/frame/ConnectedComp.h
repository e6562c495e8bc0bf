#pragma once

#include "zorvan/foundation/Geometry.h"

namespace Zorvan::Primitives {

/// The result of a flood fill: the number of pixels filled, the new value (in `value[0]`; the other two are
/// 0), and the bounding rectangle of the filled pixels, whose `x` is a column and `y` a row of the region.
struct _IppiConnectedComp {
  double area;
  double value[3];
  Rect rect;
};

}  // namespace Zorvan::Primitives
