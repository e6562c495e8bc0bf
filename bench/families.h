#pragma once

#include "bench/support/Suite.h"

namespace Zorvan::Bench {

void addInitializer(Suite& suite);
void addLogical(Suite& suite);
void addStatistic(Suite& suite);

}  // namespace Zorvan::Bench
