#pragma once

#include <mpv/client.h>
#include <mpv/render.h>

/// The functions of libmpv that the player uses. The library is loaded at run
/// time and nothing links it: it brings some 240 others along, which would delay
/// the first window, and without it everything but the player still works.
struct MpvLibrary {
    decltype(&mpv_create) create = nullptr;
    decltype(&mpv_initialize) initialize = nullptr;
    decltype(&mpv_terminate_destroy) terminate_destroy = nullptr;
    decltype(&mpv_set_option_string) set_option_string = nullptr;
    decltype(&mpv_command_async) command_async = nullptr;
    decltype(&mpv_set_property_async) set_property_async = nullptr;
    decltype(&mpv_get_property) get_property = nullptr;
    decltype(&mpv_get_property_async) get_property_async = nullptr;
    decltype(&mpv_observe_property) observe_property = nullptr;
    decltype(&mpv_wait_event) wait_event = nullptr;
    decltype(&mpv_wakeup) wakeup = nullptr;
    decltype(&mpv_free_node_contents) free_node_contents = nullptr;
    decltype(&mpv_render_context_create) render_context_create = nullptr;
    decltype(&mpv_render_context_set_update_callback) render_context_set_update_callback = nullptr;
    decltype(&mpv_render_context_update) render_context_update = nullptr;
    decltype(&mpv_render_context_render) render_context_render = nullptr;
    decltype(&mpv_render_context_report_swap) render_context_report_swap = nullptr;
    decltype(&mpv_render_context_free) render_context_free = nullptr;

    /// Loads the library at the first call, from whichever thread; null where it is missing.
    static const MpvLibrary* Get();
};
