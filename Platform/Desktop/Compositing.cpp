#include "Platform/Desktop/Compositing.h"

#include "Platform/Desktop/XcbReply.h"

#include <QGuiApplication>

#include <xcb/xcb.h>

bool desktopBlendsWindows()
{
    const auto *x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    xcb_connection_t *connection = x11 ? x11->connection() : nullptr;
    if (!connection)
        return true;
    static constexpr char Name[] = "_NET_WM_CM_S0"; // Qt has one X screen, which is number 0 on today's servers
    const XcbReply<xcb_intern_atom_reply_t> atom(
        xcb_intern_atom_reply(connection, xcb_intern_atom(connection, 1, sizeof Name - 1, Name), nullptr));
    if (!atom || atom->atom == XCB_ATOM_NONE)
        return false;
    const XcbReply<xcb_get_selection_owner_reply_t> owner(
        xcb_get_selection_owner_reply(connection, xcb_get_selection_owner(connection, atom->atom), nullptr));
    return owner && owner->owner != XCB_WINDOW_NONE;
}
