#include "base/Log.h"

Q_LOGGING_CATEGORY(tobrimaxLog, "tobrimax")

void logLine(const QString& text) {
    qCInfo(tobrimaxLog).noquote() << text;
}
