#!/usr/bin/env python3
"""Lists the hardware IDs of INF files, read independently of the program: one line a file, its
name, a tab and the number of IDs under every manufacturer and decoration.

Usage: count_inf_ids.py FOLDER
"""
import os
import re
import sys


def decode(data):
    if data[:2] in (b"\xff\xfe", b"\xfe\xff"):
        return data.decode("utf-16", "replace")
    return data.removeprefix(b"\xef\xbb\xbf").decode("latin-1")


def without_comment(line):
    """The line's text, an open quote closed, and whether the next line continues it."""
    line = line.strip()
    quoted = False
    for place, character in enumerate(line):
        if character == '"':
            quoted = not quoted
        elif character == ";" and not quoted:
            line = line[:place].rstrip()
            break
    if quoted:
        return line + '"', False
    return line.removesuffix("\\").rstrip(), line.endswith("\\")


def logical_lines(text):
    pending = ""
    for line in text.split("\n"):
        content, continues = without_comment(line)
        pending += content
        if not continues:
            yield pending
            pending = ""
    yield pending


TOKEN = re.compile(r'"((?:[^"]|"")*)"|(.)', re.S)


def fields(line):
    """(key or None, values): quotes taken away, blanks outside them stripped."""
    parts, key, values = [], None, []

    def finish():
        value = "".join(parts).strip(" ").replace("\0", " ")
        parts.clear()
        return value

    for token in TOKEN.finditer(line):
        quoted, plain = token.groups()
        if quoted is not None:
            # Blanks in quotes are kept from being stripped.
            parts.append(quoted.replace('""', '"').replace(" ", "\0"))
        elif plain == "=" and key is None and not values:
            key = finish()
        elif plain == ",":
            values.append(finish())
        else:
            parts.append(" " if plain.isspace() else plain)
    values.append(finish())
    return key, values


def read_sections(text):
    sections, current = {}, None
    for line in logical_lines(text):
        if line.startswith("["):
            current = sections.setdefault(line[1:].split("]")[0].lower(), [])
        elif line and current is not None:
            current.append(fields(line))
    return sections


def count_ids(sections):
    strings = {}
    for key, values in sections.get("strings", []):
        strings.setdefault((key if key is not None else values[0]).lower(), values[0])

    def expand(text):
        return re.sub(
            "%([^%]*)%",
            lambda m: strings.get(m[1].lower(), m[0]) if m[1] else "%",
            text,
        )

    total = 0
    for key, values in sections.get("manufacturer", []):
        if key is None and len(values) > 1:
            break
        name = expand(values[0])
        for section in [name] + [name + "." + expand(d) for d in values[1:99]]:
            for model_key, model in sections.get(section.lower(), []):
                if model_key is None and len(model) > 1:
                    break
                total += len(model) - 1
    return total


def main():
    folder = sys.argv[1]
    for name in sorted(os.listdir(folder)):
        with open(os.path.join(folder, name), "rb") as file:
            print(name, count_ids(read_sections(decode(file.read()))), sep="\t")


if __name__ == "__main__":
    main()
