#pragma once

#include "zorvan/foundation/Geometry.h"
#include "zorvan/foundation/Status.h"

namespace Zorvan::Primitives {
namespace {

using Ipp::ippStsNoErr;
using Ipp::ippStsNullPtrErr;
using Ipp::ippStsSizeErr;
using Ipp::ippStsStepErr;

inline bool isEmpty(Size roi) { return roi.width < 1 || roi.height < 1; }

}  // namespace
}  // namespace Zorvan::Primitives
