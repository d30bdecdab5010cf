#include "tests/support/Fixtures.h"

#include <QFile>

QByteArray fixture(const char* name) {
    QFile file(QStringLiteral(TEST_DATA_DIR "/pictures/") + QLatin1String(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}
