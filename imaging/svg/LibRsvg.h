#pragma once

#include <librsvg/rsvg.h>

/// The functions of librsvg, and of the libraries below it, that SVG pictures are drawn with. They are loaded
/// when the first one of them is: librsvg brings some thirty libraries with it, and to load these takes
/// longer than to write a small icon. Each member is the function whose name it stands behind, with the
/// ownership that it has there.
struct LibRsvg {
    /// Null where librsvg can't be loaded. What GLib and the libraries above it print goes to Qt's logging
    /// category "glib" from the first call on, instead of to standard error.
    static const LibRsvg* loaded();

    decltype(&::rsvg_handle_new_from_data) newFromData = nullptr;
    decltype(&::rsvg_handle_set_dpi) setDpi = nullptr;
    decltype(&::rsvg_handle_get_intrinsic_size_in_pixels) sizeInPixels = nullptr;
    decltype(&::rsvg_handle_get_intrinsic_dimensions) dimensions = nullptr;
    decltype(&::rsvg_handle_get_geometry_for_layer) geometryForLayer = nullptr;
    decltype(&::rsvg_handle_render_document) renderDocument = nullptr;
    decltype(&::g_object_unref) unref = nullptr;

    decltype(&::cairo_image_surface_create) createSurface = nullptr;
    decltype(&::cairo_image_surface_create_for_data) createSurfaceForData = nullptr;
    decltype(&::cairo_surface_finish) finishSurface = nullptr;
    decltype(&::cairo_surface_destroy) destroySurface = nullptr;
    decltype(&::cairo_create) createContext = nullptr;
    decltype(&::cairo_destroy) destroyContext = nullptr;
    decltype(&::cairo_translate) translate = nullptr;
    decltype(&::cairo_scale) scale = nullptr;

    decltype(&::g_error_free) freeError = nullptr;
    decltype(&::g_free) free = nullptr;
    decltype(&::g_log_set_default_handler) setLogHandler = nullptr;
    decltype(&::g_log_set_writer_func) setLogWriter = nullptr;
    decltype(&::g_log_writer_format_fields) formatLogFields = nullptr;
};
