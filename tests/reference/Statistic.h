#pragma once

namespace Zorvan::Reference {

/// How far a float result may lie from the last one that the reference has found, in either direction: the
/// order of additions is a variant's own. Follows from the pixels' magnitudes; infinite where single
/// precision overflows.
inline double slack = 0;

}  // namespace Zorvan::Reference
