#!/usr/bin/env python3
"""Writes the texts of a message table as marked C++ literals, so that lupdate finds them beside those of the code.

    messageSentences.py MonitorMessages.plist OUTPUT.cpp
"""

import pathlib
import plistlib
import sys


def literal(text):
    escapes = {"\\": "\\\\", '"': '\\"', "\n": "\\n", "\t": "\\t"}
    return '"' + "".join(escapes.get(character, character) for character in text) + '"'


def source(messages):
    lines = [f'    QT_TRANSLATE_NOOP("Localizable", {literal(text)}),' for text in dict.fromkeys(messages.values())]
    return "const char *const messageSentences[] = {\n" + "\n".join(lines) + "\n};\n"


def main():
    table, output = sys.argv[1:]
    messages = plistlib.loads(pathlib.Path(table).read_bytes())
    pathlib.Path(output).write_text(source(messages), encoding="utf-8")


if __name__ == "__main__":
    main()
