// Reads any text as a size: two numbers, finite or not, and the same ones each time.

#include "generation/IconSizeCatalogue.h"
#include "tests/fuzz/Require.h"

#include <cmath>
#include <cstdint>

namespace {

bool isSame(double a, double b) {
    return a == b || (std::isnan(a) && std::isnan(b));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const QString text =
        QString::fromUtf8(QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)));
    const QSizeF parsed = sizeFromString(text);
    const QSizeF again = sizeFromString(text);
    require(isSame(parsed.width(), again.width()) && isSame(parsed.height(), again.height()));
    // Text before the first number and after the second one changes nothing.
    const QSizeF framed = sizeFromString(QLatin1String("{ ") + text + QLatin1String(" }"));
    require(isSame(parsed.width(), framed.width()) && isSame(parsed.height(), framed.height()));
    return 0;
}
