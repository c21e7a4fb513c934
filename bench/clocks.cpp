#include "harness.h"

namespace bench {

void RegisterClocks() {}

}  // namespace bench
