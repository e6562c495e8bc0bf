#pragma once

#include "bench/support/Suite.h"

namespace Zorvan::Bench {

void addChains(Suite& suite);
void addComputerVision(Suite& suite);
void addFiltering(Suite& suite);
void addArithmetic(Suite& suite);
void addInitializer(Suite& suite);
void addLogical(Suite& suite);
void addMorphology(Suite& suite);
void addStatistic(Suite& suite);

}  // namespace Zorvan::Bench
