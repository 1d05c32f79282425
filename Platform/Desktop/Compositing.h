#pragma once

/// Whether the desktop blends windows with what is behind them, so that a window can have soft edges. On X11
/// that takes a compositing manager, which may come and go; elsewhere it is so. Source: Extended Window Manager
/// Hints 1.5, _NET_WM_CM_Sn.
[[nodiscard]] bool desktopBlendsWindows();
