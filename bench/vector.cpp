#include "harness.h"

namespace bench {

void RegisterVector() {}

}  // namespace bench
