#pragma once

#include <gio/gio.h>

#include <memory>

namespace parloquin {

struct GLibUnref {
    void operator()(gpointer object) const { g_object_unref(object); }
    void operator()(GVariant *value) const { g_variant_unref(value); }
    void operator()(GError *error) const { g_error_free(error); }
    void operator()(GMainContext *context) const { g_main_context_unref(context); }
    void operator()(gchar *text) const { g_free(text); }
    void operator()(gchar **texts) const { g_strfreev(texts); }
    void operator()(GSource *source) const
    {
        g_source_destroy(source); // it calls nobody any more, whoever else keeps it
        g_source_unref(source);
    }
};

/// \brief The owner of one reference to something of GLib's; of a source, which ends with it.
template <typename T> using GLibPointer = std::unique_ptr<T, GLibUnref>;

} // namespace parloquin
