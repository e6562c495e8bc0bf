#pragma once

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
