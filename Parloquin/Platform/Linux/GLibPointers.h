#pragma once

#include <gio/gio.h>

#include <memory>

namespace parloquin {

struct GLibUnref {
    void operator()(gpointer object) const { g_object_unref(object); }
    void operator()(GVariant *value) const { g_variant_unref(value); }
    void operator()(GError *error) const { g_error_free(error); }
    void operator()(gchar *text) const { g_free(text); }
};

/// \brief The owner of one reference to something of GLib's.
template <typename T> using GLibPointer = std::unique_ptr<T, GLibUnref>;

} // namespace parloquin
