#pragma once

namespace Zorvan::Primitives {

/// The size of a filter's kernel, as the entries take it.
enum MaskCode : int { mask3x3 = 33, mask5x5 = 55 };

/// The type of pixels, as the entries take it.
enum DataType : int { dataType8u = 1, dataType16s = 7, dataType32f = 13 };

}  // namespace Zorvan::Primitives
