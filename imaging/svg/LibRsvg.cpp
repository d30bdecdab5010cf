#include "imaging/svg/LibRsvg.h"

#include <QLibrary>
#include <QLoggingCategory>

#include <type_traits>

namespace {

Q_LOGGING_CATEGORY(glibLog, "glib")

void toQt(const gchar* domain, GLogLevelFlags /*level*/, const gchar* message, gpointer /*data*/) {
    qCDebug(glibLog) << domain << message;
}

/// For libraries that log in fields.
GLogWriterOutput fieldsToQt(GLogLevelFlags level, const GLogField* fields, gsize count, gpointer /*data*/) {
    const Result<LibRsvg>& rsvg = LibRsvg::loaded();
    gchar* text = rsvg->formatLogFields(level, fields, count, FALSE);
    qCDebug(glibLog) << text;
    rsvg->free(text);
    return G_LOG_WRITER_HANDLED;
}

/// In the loader's own words: whether the library is missing or memory is short, it tells by nothing else.
Error notLoaded(const QLibrary& library) {
    return {ErrorCode::Unsupported,
            QStringLiteral("the SVG document can't be drawn, since librsvg can't be loaded (%1)")
                .arg(library.errorString())};
}

Result<LibRsvg> resolved() {
    // The version of librsvg's binary interface. The headers included here belong to it.
    constexpr int version = 2;
    QLibrary library(QStringLiteral("rsvg-2"), version);
    if (!library.load()) {
        // The system may not look where the library was at build time.
        library.setFileNameAndVersion(QStringLiteral(LIBRSVG_FOLDER "/librsvg-2"), version);
        if (!library.load())
            return notLoaded(library);
    }
    LibRsvg rsvg;
    bool isComplete = true;
    // Functions of the libraries that librsvg is linked with are found through it.
    const auto resolve = [&](auto& function, const char* name) {
        function = reinterpret_cast<std::remove_reference_t<decltype(function)>>(library.resolve(name));
        isComplete = isComplete && function != nullptr;
    };
    resolve(rsvg.newFromData, "rsvg_handle_new_from_data");
    resolve(rsvg.setDpi, "rsvg_handle_set_dpi");
    resolve(rsvg.sizeInPixels, "rsvg_handle_get_intrinsic_size_in_pixels");
    resolve(rsvg.dimensions, "rsvg_handle_get_intrinsic_dimensions");
    resolve(rsvg.geometryForLayer, "rsvg_handle_get_geometry_for_layer");
    resolve(rsvg.renderDocument, "rsvg_handle_render_document");
    resolve(rsvg.unref, "g_object_unref");
    resolve(rsvg.createSurface, "cairo_image_surface_create");
    resolve(rsvg.createSurfaceForData, "cairo_image_surface_create_for_data");
    resolve(rsvg.finishSurface, "cairo_surface_finish");
    resolve(rsvg.destroySurface, "cairo_surface_destroy");
    resolve(rsvg.createContext, "cairo_create");
    resolve(rsvg.destroyContext, "cairo_destroy");
    resolve(rsvg.contextStatus, "cairo_status");
    resolve(rsvg.translate, "cairo_translate");
    resolve(rsvg.scale, "cairo_scale");
    resolve(rsvg.freeError, "g_error_free");
    resolve(rsvg.free, "g_free");
    resolve(rsvg.setLogHandler, "g_log_set_default_handler");
    resolve(rsvg.setLogWriter, "g_log_set_writer_func");
    resolve(rsvg.formatLogFields, "g_log_writer_format_fields");
    return isComplete ? Result<LibRsvg>(rsvg) : notLoaded(library);
}

} // namespace

const Result<LibRsvg>& LibRsvg::loaded() {
    static Result<LibRsvg> library = Error{ErrorCode::Unsupported, {}};
    // What failed once may succeed the next time.
    if (!library) {
        library = resolved();
        // GLib lets a process set a writer only once.
        if (library) {
            library->setLogHandler(toQt, nullptr);
            library->setLogWriter(fieldsToQt, nullptr, nullptr);
        }
    }
    return library;
}
