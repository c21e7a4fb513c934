// The parser against the second reader of the tests.
#include "fuzz/fuzz.hpp"
#include "fuzz/readers_agree.hpp"

static void Target(FuzzedDataProvider& in)
{
    Require(ReadersAgree(Exact(in.ConsumeRemainingBytesAsString()).data()));
}
