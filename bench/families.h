#pragma once

#include "bench/support/Suite.h"

namespace Zorvan::Bench {

void addArithmetic(Suite& suite);
void addInitializer(Suite& suite);
void addLogical(Suite& suite);

}  // namespace Zorvan::Bench
