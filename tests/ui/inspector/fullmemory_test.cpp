// Inspections when there is no memory for them: what this program allocates goes by its own operators.

#include "tests/ui/inspector/inspectedframes.h"
#include "ui/inspector/inspectionrunner.h"

#include <gtest/gtest.h>

#include <QSignalSpy>

#include <atomic>
#include <cstdlib>
#include <new>

using namespace InspectedFrames;

namespace {

std::atomic<bool> isMemoryFull{false}; ///< but for little things

constexpr std::size_t little = 1 << 20; ///< bytes

} // namespace

void *operator new(std::size_t size)
{
    void *memory = isMemoryFull && size >= little ? nullptr : std::malloc(size);
    if (memory == nullptr)
        throw std::bad_alloc();
    return memory;
}

void operator delete(void *memory) noexcept
{
    std::free(memory);
}

void operator delete(void *memory, std::size_t /*size*/) noexcept
{
    std::free(memory);
}

TEST(InspectionInFullMemory, fails_and_the_next_one_does_not)
{
    qint64 now = 0;
    const std::vector<double> frame = flat(1);
    InspectionRunner runner([&] { return std::span<const double>(frame); }, [&] { return now += 1000; });
    QSignalSpy told(&runner, &InspectionRunner::inspected);
    QSignalSpy failed(&runner, &InspectionRunner::failed);
    runner.ask({{0, 0, side, side - 1}, 0, 0}); // which takes a copy
    for (qsizetype frames = 1; frames <= 2; ++frames) {
        runner.frameArrived();
        ASSERT_TRUE(told.wait(20000));
        EXPECT_EQ(told.size(), frames);
    }
    isMemoryFull = true;
    runner.frameArrived();
    EXPECT_TRUE(failed.wait(20000));
    isMemoryFull = false;
    EXPECT_EQ(told.size(), 2);
    runner.frameArrived();
    EXPECT_TRUE(told.wait(20000));
    EXPECT_EQ(failed.size(), 1);
}
