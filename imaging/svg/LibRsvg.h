#pragma once

#include "base/Result.h"

#include <librsvg/rsvg.h>

/// The functions of librsvg, and of the libraries below it, that draw SVG pictures. They are loaded with the
/// first SVG picture: librsvg brings some thirty libraries with it, and loading these takes longer than
/// writing a small icon. Each member points to the function in its declaration; ownership is the same as
/// there.
struct LibRsvg {
    /// Unsupported where librsvg can't be loaded. From the first call on, messages of GLib and of the
    /// libraries above it go to Qt's logging category "glib" instead of to standard error.
    static const Result<LibRsvg>& loaded();

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
    decltype(&::cairo_status) contextStatus = nullptr;
    decltype(&::cairo_translate) translate = nullptr;
    decltype(&::cairo_scale) scale = nullptr;

    decltype(&::g_error_free) freeError = nullptr;
    decltype(&::g_free) free = nullptr;
    decltype(&::g_log_set_default_handler) setLogHandler = nullptr;
    decltype(&::g_log_set_writer_func) setLogWriter = nullptr;
    decltype(&::g_log_writer_format_fields) formatLogFields = nullptr;
};
