#include <atomic>
#include <gtest/gtest.h>
#include <thread>

#include "geometry/ShapeLayerSupport.h"
#include "geometry/servoce/boolops.h"
#include "geometry/servoce/fillet.h"
#include "geometry/servoce/solid.h"
#include "geometry/servoce/unify.h"

using namespace servoce;

namespace {

struct Measures
{
    int index = 0;
    double volume = 0.0;
    double sectionLength = 0.0;
    double unifiedVolume = 0.0;
};

// A slotted disc whose slot count follows the index, cut by a cylinder;
// every fourth one is also unified, which serialises on its own lock.
Measures measure(int index)
{
    const int slotCount = 3 + index % 5;
    std::vector<shape> parts{tube(40, 15, 5)};
    for (int slot = 0; slot < slotCount; ++slot)
        parts.push_back(box(12, 4, 5, false).translated(30, -2, 0).transformed(rotateZ(2 * M_PI * slot / slotCount)));
    const shape disc = fillet(make_difference(parts, true), 0.5, std::vector<point3>{{40, 0, 2.5}});

    Measures result;
    result.index = index;
    result.volume = disc.volume();
    result.sectionLength = make_section(disc, cylinder(25, 7, false).translated(0, 0, -1), false).length();
    if (index % 4 == 0)
        result.unifiedVolume = unify(disc).volume();
    return result;
}

} // namespace

TEST(ShapeLayerThreads, ParallelBuildsMeasureAsSerialOnes)
{
    constexpr int count = 24;
    std::vector<Measures> serial;
    for (int i = 0; i < count; ++i)
        serial.push_back(measure(i));

    // Plain threads, whose start and join ThreadSanitizer sees (it does not see oneTBB's
    // own synchronisation), each taking the next index.
    std::vector<Measures> parallel(count);
    std::atomic<int> next{0};
    std::vector<std::thread> workers;
    for (int t = 0; t < 4; ++t) {
        workers.emplace_back([&] {
            for (int i = next++; i < count; i = next++)
                parallel[i] = measure(i);
        });
    }
    for (std::thread &worker : workers)
        worker.join();
    for (int i = 0; i < count; ++i) {
        SCOPED_TRACE(i);
        EXPECT_GT(serial[i].volume, 0.0);
        EXPECT_TRUE(closeTo(parallel[i].volume, serial[i].volume, 1e-9));
        EXPECT_GT(serial[i].sectionLength, 0.0);
        EXPECT_TRUE(closeTo(parallel[i].sectionLength, serial[i].sectionLength, 1e-9));
        EXPECT_TRUE(closeTo(parallel[i].unifiedVolume, serial[i].unifiedVolume, 1e-9));
    }
    // More slots leave less iron.
    EXPECT_GT(serial[0].volume, serial[1].volume);
}
