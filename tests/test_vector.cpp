// The vector of time ranges against its model, and the two allocators that are ready to use.

#include <gtest/gtest.h>

#include <cstring>
#include <random>

#include "vector_model.hpp"

static std::vector<std::uint8_t> RandomBytes(std::size_t size, unsigned seed)
{
    std::vector<std::uint8_t> bytes(size);
    std::ranges::generate(bytes, std::mt19937(seed));
    return bytes;
}

template <class Face>
struct Vector : testing::Test {};
using Faces = testing::Types<CFace, CppFace>;
TYPED_TEST_SUITE(Vector, Faces, );

TYPED_TEST(Vector, DoesAsTheModelInRandomOrder)
{
    for (unsigned seed = 0; seed < 1000; ++seed) {
        std::vector<std::uint8_t> bytes = RandomBytes(1 + seed % 900, seed);
        auto refuses = [&](std::size_t request) { return bytes[request % bytes.size()] % 8 == 7; };
        BasicVectorModel<TypeParam> model{bytes.data(), bytes.data() + bytes.size(), refuses};
        ASSERT_TRUE(model.Run()) << "seed " << seed;
    }
}

// The same steps without memory for the first, the second ... request, alone or with all after it.
TYPED_TEST(Vector, LosesNothingWhicheverRequestFails)
{
    std::vector<std::uint8_t> bytes = RandomBytes(1500, 1);
    for (bool all : {false, true}) {
        for (std::size_t n = 0, requests = 100; n < requests; ++n) {
            auto refuses = [=](std::size_t request) { return all ? request >= n : request == n; };
            BasicVectorModel<TypeParam> model{bytes.data(), bytes.data() + bytes.size(), refuses};
            ASSERT_TRUE(model.Run()) << "request " << n;
            requests = model.requests;
        }
    }
}

TEST(Allocators, MallocHonoursItsLimit)
{
    ZemAllocator a;
    ASSERT_EQ(ZemAllocatorConstructMalloc(&a, 64), &a);
    EXPECT_EQ(ZemAllocatorAllocate(&a, 65), nullptr);
    EXPECT_EQ(ZemAllocatorAllocate(&a, 0), nullptr);
    void* block = ZemAllocatorAllocate(&a, 64);
    ZemAllocatorDeallocate(&a, std::memset(block, 1, 64), 64);
}

// In a buffer of every small size at every alignment: blocks of 16, 11 ... bytes until none fits,
// handed back from the oldest on, and then the whole room at once.
TEST(Allocators, FixedUsesItsBufferAndNoMore)
{
    for (std::size_t i = 0; i < 16 * 65; ++i) {
        const std::size_t skip = i % 16;
        const std::size_t size = i / 16;
        const std::size_t lost = (16 - skip) % 16;  // up to the first aligned byte
        const std::size_t count = size > lost ? (size - lost) / 16 : 0;
        std::vector<char> memory(skip + size);
        char* first = count != 0 ? memory.data() + skip + lost : nullptr;
        ZemFixedAllocator fixed;
        ASSERT_EQ(ZemFixedAllocatorConstruct(&fixed, memory.data() + skip, size), &fixed);
        ZemAllocator* a = &fixed.allocator;
        EXPECT_EQ(a->maxSize, 16 * count);
        for (std::size_t b = 0; b < count; ++b) {
            void* block = ZemAllocatorAllocate(a, 16 - 5 * b);
            ASSERT_EQ(block, first + 16 * b);
            ZemAllocatorDeallocate(a, std::memset(block, 1, 16), 16 - 5 * b);
            ASSERT_EQ(ZemAllocatorAllocate(a, 16 - 5 * b), block) << "the newest is free at once";
        }
        for (std::size_t b = 0; b < count; ++b) {
            EXPECT_EQ(ZemAllocatorAllocate(a, 1), nullptr);
            ZemAllocatorDeallocate(a, first + 16 * b, 16 - 5 * b);
        }
        EXPECT_EQ(ZemAllocatorAllocate(a, 0), nullptr);
        EXPECT_EQ(ZemAllocatorAllocate(a, 16 * count + 1), nullptr);
        EXPECT_EQ(ZemAllocatorAllocate(a, 16 * count), first);
    }
}

TEST(Allocators, FixedKeepsHolesUntilAllIsReturned)
{
    alignas(16) char memory[64];
    ZemFixedAllocator fixed;
    ZemAllocator* a = &ZemFixedAllocatorConstruct(&fixed, memory, sizeof memory)->allocator;
    void* blocks[4];
    for (void*& block : blocks)
        block = ZemAllocatorAllocate(a, 16);
    for (int b : {2, 3, 1})
        ZemAllocatorDeallocate(a, blocks[b], 16);
    EXPECT_EQ(ZemAllocatorAllocate(a, 16), blocks[3]) << "above the hole";
    EXPECT_EQ(ZemAllocatorAllocate(a, 16), nullptr);
    ZemAllocatorDeallocate(a, blocks[3], 16);
    ZemAllocatorDeallocate(a, blocks[0], 16);
    EXPECT_EQ(ZemAllocatorAllocate(a, 64), blocks[0]);
}
