#include "harness.h"

namespace bench {

void RegisterLocal() {}

}  // namespace bench
