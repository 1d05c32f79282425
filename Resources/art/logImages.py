#!/usr/bin/env python3
"""Draws the images of the activity logs: one for each operation, one for each way in which a job can end.

The grid is 20 by 20. An operation has the place in ink and what happens to it in blue; a status has a shape of its
own besides its colour, so that it is told apart without colours too. Only paths, lines and round caps are used.

    logImages.py FOLDER        writes every image into FOLDER
"""

import pathlib
import sys

INK = {"": "#5a6370", "_alt": "#a9b1bc"}
BLUE = {"": "#1f6fd0", "_alt": "#5ba3f5"}
GREEN = {"": "#1b7f42", "_alt": "#5cc98a"}
RED = {"": "#c2302a", "_alt": "#ff8a80"}
AMBER = {"": "#95590a", "_alt": "#f0b455"}
GROUND = {"": "#ffffff", "_alt": "#2a2d32"}

CLOUD = "M6.9 14H6A3.6 3.6 0 0 1 5.5 6.8A4.9 4.9 0 0 1 14.8 7.5A3.3 3.3 0 0 1 14.2 14H13.1"
DRIVE = "M6.6 15.5H3.5V9.5L5.5 4.5H14.5L16.5 9.5V15.5H13.4M3.5 9.5H6.8M13.2 9.5H16.5"
BOLT = "M6.8 2.5L2.5 11H6L5 17.5L8.3 12.4"
PLUG = "M10 2.5V5.2M4.5 5.2H15.5M4.5 5.2V8.2M15.5 5.2V8.2M3 8.2H6V11.2H3ZM14 8.2H17V11.2H14Z"
UP = "M10 17.2V9.4M7.2 12.2L10 9.4L12.8 12.2"
DOWN = "M10 9.4V17.2M7.2 14.4L10 17.2L12.8 14.4"
CROSS = "M7.6 11.4L12.4 16.2M12.4 11.4L7.6 16.2"


def moved(mark, right, down=0):
    return f'<g transform="translate({right} {down})">{mark}</g>'


def line(data, ink, width=1.5):
    return (f'<path fill="none" stroke="{ink}" stroke-width="{width}" stroke-linecap="round" stroke-linejoin="round"'
            f' d="{data}"/>')


def fill(data, ink):
    return f'<path fill="{ink}" fill-rule="evenodd" d="{data}"/>'


def image(*shapes):
    body = "\n".join(f"  {shape}" for shape in shapes)
    return ('<svg xmlns="http://www.w3.org/2000/svg" version="1.2" baseProfile="tiny"'
            f' width="20" height="20" viewBox="0 0 20 20">\n{body}\n</svg>\n')


def operations(form):
    ink, blue = INK[form], BLUE[form]
    for name, place in (("online", CLOUD), ("local", DRIVE)):
        yield f"{name}_backup", image(line(place, ink), line(UP, blue))
        yield f"{name}_restore", image(line(place, ink), line(DOWN, blue))
        yield f"{name}_delete", image(line(place, ink), line(CROSS, blue))
    for name, mark in (("backup", UP), ("restore", DOWN), ("delete", CROSS)):
        yield f"express_{name}", image(line(BOLT, ink), moved(line(mark, blue), 3.6, -3.2))
    yield "network_backup", image(line(PLUG, ink), moved(line("M10 17.2V10.4M7.4 13L10 10.4L12.6 13", blue), 0, .4))
    yield "search", image(line("M8.6 3.2A5.4 5.4 0 1 1 8.6 14A5.4 5.4 0 1 1 8.6 3.2Z", ink),
                          line("M12.8 12.8L17 17", blue, 1.8))
    yield "rename", image(line("M3.5 16.5H9.5", ink), line("M5.2 11.6L13.4 3.4L16.6 6.6L8.4 14.8L4.6 15.4Z", blue))
    yield "protection", image(line("M10 2.6L16.2 5V9.8C16.2 13.4 13.6 16.2 10 17.4C6.4 16.2 3.8 13.4 3.8 9.8V5Z", ink),
                              line("M10 6.4V10.2L12.6 11.8", blue))
    yield "cleanup", image(line("M3 4H17V7.4H3ZM4.4 7.4V16.4H15.6V7.4", ink), line("M7.4 11.8L9.4 13.8L13 10", blue))
    yield "putback", image(line("M6.8 15.8H11.6A4.2 4.2 0 0 0 11.6 7.4H4.4", ink),
                           line("M7.6 4.2L4.2 7.4L7.6 10.6", blue))
    yield "sync", image(line("M3.4 9A6.8 6.8 0 0 1 15.6 6.2", ink), line("M16 2.8V6.4H12.4", blue),
                        line("M16.6 11A6.8 6.8 0 0 1 4.4 13.8", ink), line("M4 17.2V13.6H7.6", blue))
    yield "other", image(line("M5 2.8H12L15.4 6.2V17.2H5Z", ink), line("M7.6 9.4H12.8M7.6 12.8H12.8", blue))


DISC = "M10 2A8 8 0 1 1 10 18A8 8 0 1 1 10 2Z"


def states(form):
    """A disc, a square, a triangle, an open ring, a dash: no two have one outline."""
    ground = GROUND[form]
    yield "success", image(fill(DISC, GREEN[form]), line("M6.4 10.4L9 13L13.8 7.6", ground, 1.9))
    yield "failure", image(fill("M4.6 2.4H15.4A2.2 2.2 0 0 1 17.6 4.6V15.4A2.2 2.2 0 0 1 15.4 17.6H4.6"
                                "A2.2 2.2 0 0 1 2.4 15.4V4.6A2.2 2.2 0 0 1 4.6 2.4Z", RED[form]),
                           line("M7 7L13 13M13 7L7 13", ground, 1.9))
    yield "warning", image(fill("M8.7 2.8A1.5 1.5 0 0 1 11.3 2.8L18.4 15.6A1.5 1.5 0 0 1 17.1 17.8H2.9"
                                "A1.5 1.5 0 0 1 1.6 15.6Z", AMBER[form]),
                           line("M10 7.4V11.6M10 14.6V14.7", ground, 1.9))
    yield "progress", image(line("M10 3A7 7 0 1 1 3 10", BLUE[form], 2), line("M10 6.4V10L12.6 11.8", BLUE[form], 1.7))
    yield "neutral", image(line("M10 3A7 7 0 1 1 10 17A7 7 0 1 1 10 3Z", INK[form]), line("M7 10H13", INK[form], 1.7))


def tools(form):
    yield "delete", image(line("M3.8 5.4H16.2M8 5.2V3.2H12V5.2M5.4 5.6L6.2 16.8H13.8L14.6 5.6M8.5 8.6V13.6M11.5 8.6V13.6",
                               INK[form], 1.4))
    yield "refresh", image(line("M16 8.2A6.4 6.4 0 1 0 16.2 12", INK[form], 1.6), line("M16.4 4.4V8.4H12.4", INK[form], 1.6))
    yield "help", image(line("M10 3A7 7 0 1 1 10 17A7 7 0 1 1 10 3Z", INK[form], 1.4),
                        line("M7.9 8.1A2.1 2.1 0 1 1 11 9.9C10.3 10.4 10 10.7 10 11.5M10 13.8V13.9", INK[form], 1.5))


def controls(form):
    yield "up", image(line("M4.5 13L10 7.5L15.5 13", INK[form], 2.2))
    yield "down", image(line("M4.5 7.5L10 13L15.5 7.5", INK[form], 2.2))


def images():
    for form in ("", "_alt"):
        for prefix, drawings in (("log_", operations), ("log_status_", states), ("log_tool_", tools),
                                 ("arrow_", controls)):
            for name, text in drawings(form):
                yield f"{prefix}{name}{form}", text


def main():
    folder = pathlib.Path(sys.argv[1])
    folder.mkdir(parents=True, exist_ok=True)
    for name, text in images():
        (folder / f"{name}.svg").write_text(text, encoding="utf-8")


if __name__ == "__main__":
    main()
