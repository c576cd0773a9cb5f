#include "player/mpvlibrary.h"

#include <QLibrary>

#include <optional>

namespace {

template <typename Function>
bool Resolve(QLibrary& file, const char* name, Function& function) {
    function = reinterpret_cast<Function>(file.resolve(name));
    return function != nullptr;
}

std::optional<MpvLibrary> Load() {
#ifdef Q_OS_WIN
    QLibrary file(QStringLiteral("libmpv-2"));
#else
    QLibrary file(QStringLiteral("mpv"), 2);
#endif
    if (!file.load())
        return {};
    MpvLibrary table;
    const bool complete =
        Resolve(file, "mpv_create", table.create) &&
        Resolve(file, "mpv_initialize", table.initialize) &&
        Resolve(file, "mpv_terminate_destroy", table.terminate_destroy) &&
        Resolve(file, "mpv_set_option_string", table.set_option_string) &&
        Resolve(file, "mpv_command_async", table.command_async) &&
        Resolve(file, "mpv_set_property_async", table.set_property_async) &&
        Resolve(file, "mpv_get_property", table.get_property) &&
        Resolve(file, "mpv_get_property_async", table.get_property_async) &&
        Resolve(file, "mpv_observe_property", table.observe_property) &&
        Resolve(file, "mpv_wait_event", table.wait_event) &&
        Resolve(file, "mpv_wakeup", table.wakeup) &&
        Resolve(file, "mpv_free_node_contents", table.free_node_contents) &&
        Resolve(file, "mpv_render_context_create", table.render_context_create) &&
        Resolve(file, "mpv_render_context_set_update_callback",
                table.render_context_set_update_callback) &&
        Resolve(file, "mpv_render_context_update", table.render_context_update) &&
        Resolve(file, "mpv_render_context_render", table.render_context_render) &&
        Resolve(file, "mpv_render_context_report_swap", table.render_context_report_swap) &&
        Resolve(file, "mpv_render_context_free", table.render_context_free);
    return complete ? std::optional(table) : std::nullopt;
}

} // namespace

const MpvLibrary* MpvLibrary::Get() {
    static const std::optional<MpvLibrary> library = Load();
    return library ? &*library : nullptr;
}
