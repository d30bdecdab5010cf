#include "tests/support/RecordingLog.h"

#include "base/Log.h"

#include <cstring>

namespace {

QStringList recorded;

void record(QtMsgType /*type*/, const QMessageLogContext& context, const QString& message) {
    if (context.category != nullptr && std::strcmp(context.category, tobrimaxLog().categoryName()) == 0)
        recorded << message;
}

} // namespace

RecordingLog::RecordingLog() : m_previous(qInstallMessageHandler(record)) {
    recorded.clear();
}

RecordingLog::~RecordingLog() {
    qInstallMessageHandler(m_previous);
}

const QStringList& RecordingLog::lines() const {
    return recorded;
} // NOLINT(readability-convert-member-functions-to-static)
