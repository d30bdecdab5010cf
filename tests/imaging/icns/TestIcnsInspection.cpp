#include "imaging/icns/IcnsInspection.h"
#include "tests/support/BigEndian.h"
#include "tests/support/IcnsBytes.h"

#include <QElapsedTimer>

#include <gtest/gtest.h>

using IcnsBytes::icns;

namespace {

/// Empty elements whose types are the multiples of `step`.
QByteArray emptyElements(quint32 step, quint32 count) {
    QByteArray elements;
    for (quint32 i = 1; i <= count; ++i)
        elements += big(i * step) + big<quint32>(8);
    return icns(elements);
}

} // namespace

TEST(IcnsInspection, chosen_types_take_no_longer_than_others) {
    // Hashes that are the types themselves would all be the same: these are numbers of buckets that the
    // standard library grows to.
    for (const quint32 step : {42043U, 85229U}) {
        SCOPED_TRACE(step);
        const QByteArray file = emptyElements(step, 42000);
        QElapsedTimer timer;
        timer.start();
        const Result<IcnsInspection> inspection = inspectIcns(file);
        EXPECT_LT(timer.elapsed(), 1000);
        ASSERT_TRUE(inspection);
        ASSERT_EQ(inspection->elements.size(), 42000U);
        EXPECT_FALSE(inspection->elements.back().isRepeated);
    }
}

TEST(IcnsInspection, only_the_first_of_a_type_is_not_repeated) {
    const Result<IcnsInspection> inspection =
        inspectIcns(emptyElements(42043, 3) + emptyElements(1, 1)); // what follows is no part of it
    ASSERT_TRUE(inspection);
    EXPECT_EQ(inspection->elements.size(), 3U);
    const QByteArray one = big<quint32>(7) + big<quint32>(8);
    const QByteArray twice = icns(one + big<quint32>(9) + big<quint32>(8) + one);
    const Result<IcnsInspection> repeated = inspectIcns(twice);
    ASSERT_TRUE(repeated);
    ASSERT_EQ(repeated->elements.size(), 3U);
    EXPECT_FALSE(repeated->elements[0].isRepeated);
    EXPECT_FALSE(repeated->elements[1].isRepeated);
    EXPECT_TRUE(repeated->elements[2].isRepeated);
}
