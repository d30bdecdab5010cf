#include "platform/LibraryMessages.h"

#include <QLoggingCategory>

#include <glib.h>

#include <utility>

namespace {

Q_LOGGING_CATEGORY(glibLog, "glib")

void toQt(const gchar* domain, GLogLevelFlags /*level*/, const gchar* message, gpointer /*data*/) {
    qCDebug(glibLog) << domain << message;
}

/// Some libraries log in fields instead.
GLogWriterOutput fieldsToQt(GLogLevelFlags level, const GLogField* fields, gsize count, gpointer /*data*/) {
    gchar* text = g_log_writer_format_fields(level, fields, count, FALSE);
    qCDebug(glibLog) << text;
    g_free(text);
    return G_LOG_WRITER_HANDLED;
}

} // namespace

void routeLibraryMessages() {
    static bool isDone = false;
    if (std::exchange(isDone, true))
        return; // a writer may be set only once
    g_log_set_default_handler(toQt, nullptr);
    g_log_set_writer_func(fieldsToQt, nullptr, nullptr);
}
