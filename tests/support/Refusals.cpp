#include "tests/support/Refusals.h"

#include "imaging/io/ImageSource.h"
#include "tests/support/Slowness.h"

#include <QElapsedTimer>

#include <gtest/gtest.h>

void Refusals::expectError(const QByteArray& picture, ErrorCode code) {
    const Result<DecodedPicture> decoded = ImageSource::decode(picture);
    ASSERT_FALSE(decoded) << picture.left(40).toHex().constData();
    EXPECT_EQ(decoded.error().code, code) << decoded.error().sentence.toStdString();
    EXPECT_FALSE(decoded.error().sentence.isEmpty());
}

void Refusals::eachBeginning(const QByteArray& whole,
                             const std::function<void(const QByteArray&)>& expectation, qsizetype spare) {
    for (qsizetype length = 0; length < whole.size() - spare; ++length) {
        SCOPED_TRACE(testing::Message() << length << " of " << whole.size() << " bytes");
        expectation(whole.left(length));
    }
}

void Refusals::expectNeedsEveryByte(const QByteArray& picture, qsizetype spare) {
    ASSERT_TRUE(ImageSource::decode(picture));
    eachBeginning(
        picture, [](const QByteArray& beginning) { EXPECT_FALSE(ImageSource::load(beginning)); }, spare);
}

void Refusals::expectAtOnce(const std::function<void()>& body) {
    QElapsedTimer timer;
    timer.start();
    body();
    EXPECT_LT(timer.elapsed(), 500 * slowness);
}
