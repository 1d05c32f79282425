#include "Companions/Console/WindowProbe.h"

#include <QByteArray>

#include <algorithm>
#include <cstdlib>
#include <memory>

#include <xcb/xcb.h>

namespace
{
template<typename Reply>
using Owned = std::unique_ptr<Reply, decltype([](Reply *reply) { std::free(reply); })>;

/// One connection for one look: a display may come and go between two.
class Display
{
public:
    Display() : m_connection(xcb_connect(nullptr, nullptr))
    {
        if (xcb_connection_has_error(m_connection) == 0)
            m_root = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
    }
    ~Display() { xcb_disconnect(m_connection); }
    Display(const Display &) = delete;
    Display &operator=(const Display &) = delete;

    [[nodiscard]] xcb_window_t root() const { return m_root; }

    [[nodiscard]] xcb_atom_t atom(const char *name) const
    {
        const QByteArrayView text(name);
        const auto cookie = xcb_intern_atom(m_connection, 1, static_cast<uint16_t>(text.size()), name);
        const Owned<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(m_connection, cookie, nullptr));
        return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
    }
    /// The bytes of a property; empty when the window, or the property, is gone.
    [[nodiscard]] QByteArray property(xcb_window_t window, const char *name) const
    {
        constexpr uint32_t LongestInWords = 16'384;
        const auto cookie =
            xcb_get_property(m_connection, 0, window, atom(name), XCB_GET_PROPERTY_TYPE_ANY, 0, LongestInWords);
        const Owned<xcb_get_property_reply_t> reply(xcb_get_property_reply(m_connection, cookie, nullptr));
        if (!reply)
            return {};
        return {static_cast<const char *>(xcb_get_property_value(reply.get())),
                xcb_get_property_value_length(reply.get())};
    }
    /// A property of 32-bit numbers.
    [[nodiscard]] QList<uint32_t> numbers(xcb_window_t window, const char *name) const
    {
        const QByteArray bytes = property(window, name);
        QList<uint32_t> values(bytes.size() / qsizetype(sizeof(uint32_t)));
        std::copy_n(bytes.cbegin(), values.size() * qsizetype(sizeof(uint32_t)),
                    reinterpret_cast<char *>(values.data()));
        return values;
    }
    [[nodiscard]] bool isViewable(xcb_window_t window) const
    {
        const auto cookie = xcb_get_window_attributes(m_connection, window);
        const Owned<xcb_get_window_attributes_reply_t> reply(
            xcb_get_window_attributes_reply(m_connection, cookie, nullptr));
        return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
    }

private:
    xcb_connection_t *m_connection;
    xcb_window_t m_root = XCB_WINDOW_NONE;
};
} // namespace

QList<DesktopWindow> WindowProbe::shownWindows()
{
    const Display display;
    if (display.root() == XCB_WINDOW_NONE)
        return {};
    const xcb_window_t active = display.numbers(display.root(), "_NET_ACTIVE_WINDOW").value(0);
    const xcb_atom_t hidden = display.atom("_NET_WM_STATE_HIDDEN");
    QList<DesktopWindow> windows;
    for (const xcb_window_t id : display.numbers(display.root(), "_NET_CLIENT_LIST_STACKING")) {
        if (!display.isViewable(id) || display.numbers(id, "_NET_WM_STATE").contains(hidden))
            continue;
        windows.append({id, display.numbers(id, "_NET_WM_PID").value(0),
                        QString::fromUtf8(display.property(id, "_NET_WM_NAME")), id == active});
    }
    return windows;
}
