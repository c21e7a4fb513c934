// What every family of the benchmark shares: the random order in which values are drawn, the check
// of a column's answers before it is timed, and the registration of a column.

#ifndef BENCH_HARNESS_H
#define BENCH_HARNESS_H

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <random>
#include <string>
#include <type_traits>
#include <utility>

namespace bench {

// Distinct values a job is measured on.
constexpr std::size_t kValues = 1024;

// Values are drawn in an order that is too long for a branch predictor to learn: a fixed cycle of a
// thousand would be learned, and hide most of the cost of branches that depend on the value.
constexpr std::size_t kDraws = std::size_t{1} << 18;
const std::uint16_t* Order();

// Keeps a result, and everything it was made of, from the optimiser. Arithmetic results may stay
// in a register.
template <class T>
inline void Keep(const T& value)
{
    if constexpr (std::is_scalar_v<T>) {
        asm volatile("" : : "r"(value) : "memory");
    } else {
        asm volatile("" : : "m"(value) : "memory");
    }
}

// The library's own copy of a function whose body the compiler would otherwise inline.
template <class Function>
inline Function* Exported(Function* function)
{
    asm("" : "+r"(function));
    return function;
}

// Moves the calling thread to the n-th processor that the process may use, modulo their number.
void PinThread(int n);

// Sets the time zone of the process; null unsets TZ, so that the C library reads /etc/localtime.
void SetZone(const char* zone);

// Set by any check that fails: nothing is timed then.
extern bool g_failed;
void ReportMismatch(const std::string& job, const std::string& column, std::size_t value);

// One job, in several columns: ours, the peers, and the hand kernel.
//
// A column is a callable that does the job on the value of an index and returns its result. Before
// it is registered its results for all values are compared with the reference's; `view` turns a
// result into what the reference speaks. A column that does only part of the job, or documents
// another result, carries a remark and is not taken for the best peer.
template <class Reference>
class Job {
  public:
    Job(std::string name, Reference reference) : name_(std::move(name)), reference_(reference) {}

    // Run by that many threads at a time, each on a processor of its own.
    Job& Threads(int threads)
    {
        threads_ = threads;
        return *this;
    }

    // The zone of the process while the job is checked and timed.
    Job& Zone(const char* zone)
    {
        zone_ = zone;
        setsZone_ = true;
        return *this;
    }

    // Operations in a call, where a call does the job on many elements.
    Job& Elements(int elements)
    {
        elements_ = elements;
        return *this;
    }

    // Calls in each repetition, for a peer that keeps what it makes.
    Job& Calls(int calls)
    {
        calls_ = calls;
        return *this;
    }

    // Seconds that a repetition takes at least, instead of what the command line says.
    Job& MinTime(double seconds)
    {
        minTime_ = seconds;
        return *this;
    }

    // There are only so many values, of which a column takes the remainder of its index. For jobs
    // on many elements, of which the check would take longer than the measurement.
    Job& Values(std::size_t values)
    {
        values_ = values;
        return *this;
    }

    template <class Op, class View>
    void Add(const std::string& column, Op op, View view, const std::string& remark = "")
    {
        if (setsZone_) {
            SetZone(zone_);
        }
        for (std::size_t i = 0; i < values_; ++i) {
            if (!(view(op(i)) == reference_(i))) {
                ReportMismatch(name_, column, i);
                return;
            }
        }
        Register(column, op, remark);
    }

    template <class Op>
    void Add(const std::string& column, Op op)
    {
        Add(column, op, [](const auto& result) { return result; });
    }

    // For a result of the peer's own, which the reference cannot speak for: only `accept` looks.
    template <class Op, class Accept>
    void AddOther(const std::string& column, const std::string& remark, Op op, Accept accept)
    {
        for (std::size_t i = 0; i < values_; ++i) {
            if (!accept(i, op(i))) {
                ReportMismatch(name_, column, i);
                return;
            }
        }
        Register(column, op, remark);
    }

  private:
    template <class Op>
    void Register(const std::string& column, Op op, const std::string& remark)
    {
        auto measure = [=, zone = zone_, setsZone = setsZone_,
                        elements = elements_](benchmark::State& state) {
            PinThread(state.thread_index());
            if (setsZone) {
                SetZone(zone);
            }
            const std::uint16_t* order = Order();
            std::size_t draw = 0;
            for (auto _ : state) {
                Keep(op(order[draw]));
                draw = (draw + 1) % kDraws;
            }
            state.counters["elements"] =
                benchmark::Counter(elements, benchmark::Counter::kAvgThreads);
            state.SetLabel(remark);
        };
        auto* registered = benchmark::RegisterBenchmark((name_ + "/" + column).c_str(), measure);
        if (calls_ > 0) {
            registered->Iterations(calls_);
        }
        if (minTime_ > 0) {
            registered->MinTime(minTime_);
        }
        if (threads_ > 1) {
            registered->Threads(threads_)->UseRealTime();
        }
    }

    std::string name_;
    Reference reference_;
    const char* zone_ = nullptr;
    bool setsZone_ = false;
    int threads_ = 1;
    int elements_ = 1;
    int calls_ = 0;
    std::size_t values_ = kValues;
    double minTime_ = 0;
};

// The families, a file each.
void RegisterParse();
void RegisterPrint();
void RegisterBreakdown();
void RegisterComposition();
void RegisterLocal();
void RegisterZones();
void RegisterClocks();
void RegisterCompact();
void RegisterRanges();
void RegisterRangeSets();
void RegisterVector();
void RegisterNtp();

}  // namespace bench

#endif
