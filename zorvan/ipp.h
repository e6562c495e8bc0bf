#pragma once

/// @file
/// The whole public interface of the library.

#include "zorvan/foundation/Geometry.h"
#include "zorvan/foundation/IppException.h"
#include "zorvan/foundation/IppIMemory.h"
#include "zorvan/foundation/IppSMemory.h"
#include "zorvan/foundation/Status.h"
#include "zorvan/operations/arithmetic/IppIArithmetic.h"
#include "zorvan/operations/computervision/ComputerVision.h"
#include "zorvan/operations/filtering/FilteringFunction.h"
#include "zorvan/operations/initializer/Initializer.h"
#include "zorvan/operations/logical/Comparer.h"
#include "zorvan/operations/logical/IppILogical.h"
#include "zorvan/operations/morphology/IppIMorphology.h"
#include "zorvan/operations/statistic/Statistic.h"

/// Records of places, sizes and results, and the choices that operations take.
namespace Zorvan {

/// Status codes, the exception that carries one, and the images with their operations.
namespace Ipp {

/// Images of one channel, and a class for each family of operations on them.
namespace Image {}

}  // namespace Ipp

/// Buffers of one dimension.
namespace IppS {}

}  // namespace Zorvan
