#pragma once

#include "bench/support/Suite.h"

namespace Zorvan::Bench {

void addInitializer(Suite& suite);

}  // namespace Zorvan::Bench
