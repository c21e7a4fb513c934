#include "harness.h"

namespace bench {

void RegisterRanges() {}

}  // namespace bench
