#pragma once

#include "Report.h"

namespace Coins {

/// Writes four of the report's pictures side by side, as `montage.png`.
void writeMontage(const Examples::Report& report);

}  // namespace Coins
