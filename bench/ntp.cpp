#include "harness.h"

namespace bench {

void RegisterNtp() {}

}  // namespace bench
