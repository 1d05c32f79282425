#!/usr/bin/env python3
"""Draws the images: one raven, its badges, the ring of the sync frames, the application's icon.

The grid is 20 by 16, the size of a status item; one unit is one pixel at 1x, so straight edges lie on whole
numbers. Only paths, transforms and the even-odd rule are used: SVG Tiny renderers know nothing more.

    trayIcons.py FOLDER        writes every image into FOLDER
"""

import pathlib
import sys

DARK_INK = "#2b2f36"   # for a light panel
LIGHT_INK = "#f3f5f8"  # for a dark panel
AMBER = "#d9822b"      # between both, so that it is seen on either

EYE = "M12.25 4a1.25 1.25 0 1 1-2.5 0a1.25 1.25 0 1 1 2.5 0Z"
HEAD = "M2 16C2 13 3.6 10.6 3.6 7C3.6 2.8 6.4 0 10.2 0C12.4 0 13.8 1 14.8 2.2C17.6 2.6 19.4 4.2 20 8"
RAVEN = HEAD + "C18.2 6.8 16.2 7 14 7.6C13.6 9.6 16 12 16 16Z"
# Beside a badge the raven is drawn a little smaller and looks over it, with two pixels of panel between them.
PERCHED = ("M0 16C0 12.6 1.6 10.4 1.6 6.6C1.6 2.6 4.4 0 8 0C10.2 0 11.4 .8 12.2 2C15 2.4 16.8 3.4 17 6.4"
           "C15.4 5.4 13 5.2 11 5.8L10 6.2L10 16Z")
PERCHED_EYE = "M10.2 4a1.2 1.2 0 1 1-2.4 0a1.2 1.2 0 1 1 2.4 0Z"

PAUSE_BARS = "M12 8h3v8h-3ZM17 8h3v8h-3Z"
UP_ARROW = "M16 7.4L20 12h-2v4h-4v-4h-2Z"

SYNC_FRAMES = 5


def image(*shapes):
    body = "\n".join(f"  {shape}" for shape in shapes)
    return ('<svg xmlns="http://www.w3.org/2000/svg" version="1.2" baseProfile="tiny"'
            f' width="20" height="16" viewBox="0 0 20 16">\n{body}\n</svg>\n')


def path(data, ink, transform=None):
    placed = f' transform="{transform}"' if transform else ""
    return f'<path fill="{ink}" fill-rule="evenodd"{placed} d="{data}"/>'


# A tail that swells into a round head over 140 degrees, seen from the centre of the ring.
COMET = "M-8 0A8 8 0 0 1 6.13-5.14A1.3 1.3 0 0 1 4.14-3.47A6.85 6.85 0 0 0-8 0Z"


def sync_frame(number, ink):
    """The ring has two comets, so half a turn brings it back to where it was."""
    turn = 180 * number // SYNC_FRAMES
    return image(
        path(RAVEN, ink, "translate(5.3 4.96) scale(.44)"),
        path(COMET, ink, f"translate(10 8) rotate({turn})"),
        path(COMET, ink, f"translate(10 8) rotate({turn + 180})"))


def application_icon():
    """The raven on a night-blue tile of 256, its eye in amber."""
    placed = "translate(27 46) scale(9.6)"
    return (
        '<svg xmlns="http://www.w3.org/2000/svg" version="1.2" baseProfile="tiny"'
        ' width="256" height="256" viewBox="0 0 256 256">\n'
        '  <defs><linearGradient id="sky" gradientUnits="userSpaceOnUse" x1="128" y1="8" x2="128" y2="248">\n'
        '    <stop offset="0" stop-color="#4c74e6"/><stop offset="1" stop-color="#1f2f78"/>\n'
        '  </linearGradient></defs>\n'
        '  <rect x="8" y="8" width="240" height="240" rx="54" ry="54" fill="url(#sky)"/>\n'
        f'  {path(RAVEN, "#ffffff", placed)}\n'
        f'  {path(EYE, "#ffb347", placed)}\n'
        '</svg>\n')


def images():
    yield "corvane", application_icon()
    for suffix, ink in (("", DARK_INK), ("_alt", LIGHT_INK)):
        yield f"menu_app{suffix}", image(path(RAVEN + EYE, ink))
        yield f"menu_pause{suffix}", image(path(PERCHED + PERCHED_EYE, ink), path(PAUSE_BARS, ink))
        yield f"menu_pause_color{suffix}", image(path(PERCHED + PERCHED_EYE, ink), path(PAUSE_BARS, AMBER))
        yield f"menu_upgrade{suffix}", image(path(PERCHED + PERCHED_EYE, ink), path(UP_ARROW, ink))
        for number in range(SYNC_FRAMES):
            yield f"sync_menubw{number + 1}{suffix}", sync_frame(number, ink)


def main():
    folder = pathlib.Path(sys.argv[1])
    folder.mkdir(parents=True, exist_ok=True)
    for name, text in images():
        (folder / f"{name}.svg").write_text(text, encoding="utf-8")


if __name__ == "__main__":
    main()
