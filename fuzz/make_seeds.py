#!/usr/bin/env python3
"""Writes the hand-made seeds into the corpus of each target: one small Xcursor file per rule and per defect, and for
the other formats texts and descriptions that reach their rules."""
import json
import pathlib
import plistlib
import struct

MAGIC, IMAGE = 0x72756358, 0xFFFD0002


def chunk(size, width, height, delay=0, pixel=0xFF102030, pixels=None):
    count = width * height if pixels is None else pixels
    return struct.pack("<9I", 36, IMAGE, size, 1, width, height, 1, 2, delay) + struct.pack("<I", pixel) * count


def file(chunks, magic=MAGIC, header=16, count=None, types=None, positions=None, gap=0):
    entries, body = b"", b""
    start = 16 + 12 * len(chunks)
    for i, (size, data) in enumerate(chunks):
        body += b"\xee" * gap
        position = start + len(body)
        if positions and positions.get(i) is not None:
            position = positions[i]
        entries += struct.pack("<3I", (types or {}).get(i, IMAGE), size, position)
        body += data
    head = struct.pack("<4I", magic, header, 0x10000, len(chunks) if count is None else count)
    return head + entries + body


def seeds():
    one = [(4, chunk(4, 4, 4))]
    two = [(4, chunk(4, 4, 4, 50)), (6, chunk(6, 6, 6, 70))]
    yield "one-image", file(one)
    yield "two-sizes", file(two)
    yield "animation", file([(s, chunk(s, s, s, d)) for d in (10, 0, 30) for s in (2, 3)])
    yield "above-the-limit", file([(64, chunk(64, 3, 3)), (96, chunk(96, 2, 2)), (24, chunk(24, 2, 2))])
    yield "only-above-the-limit", file([(64, chunk(64, 3, 3)), (96, chunk(96, 2, 2))])
    yield "fifteen-bytes", file(one)[:15]
    yield "header-alone", file(one)[:16]
    yield "wrong-magic", file(one, magic=MAGIC + 1)
    yield "header-size-12", file(one, header=12)
    yield "header-size-20", file(one, header=20)
    yield "no-entries", file(one, count=0)
    yield "more-entries-than-fit", file(two, count=0xFFFFFFFF)
    yield "table-cut-in-an-entry", file(two)[:39]
    yield "other-types", file(two, types={0: 0xFFFE0001})
    yield "width-zero", file([(4, chunk(4, 0, 4)), (6, chunk(6, 6, 6))])
    yield "count-too-large", file([(4, chunk(4, 5000, 5000, pixels=1)), (6, chunk(6, 6, 6))])
    yield "count-overflows-32-bits", file([(4, chunk(4, 65536, 65536, pixels=1)), (6, chunk(6, 6, 6))])
    yield "count-overflows-64-bits", file([(4, chunk(4, 0xFFFFFFFF, 0xFFFFFFFF, pixels=1))])
    yield "one-byte-short", file(two)[:-1]
    yield "header-only", file([(4, chunk(4, 4, 4, 9, pixels=0))])
    yield "header-one-byte-short", file([(4, chunk(4, 4, 4, 9, pixels=0))])[:-1]
    yield "position-at-the-end", file(two, positions={0: 0xFFFFFFFF})
    yield "position-wraps-with-header", file(two, positions={0: 0xFFFFFFDC})
    yield "position-zero", file(two, positions={0: 0})
    yield "same-position", file(two, positions={0: 40, 1: 40})
    yield "descending-positions", file(two, positions={0: 40 + 36 + 64, 1: 40})
    yield "odd-positions", file(two, gap=1)
    yield "overlapping", file([(8, chunk(8, 2, 30, pixel=2)), (8, b""), (8, b"")], positions={1: 92, 2: 100})
    yield "reaches-into-the-next", file([(4, chunk(4, 6, 6, pixels=9)), (4, chunk(4, 3, 3, pixels=40))])
    yield "larger-than-its-size", file([(1, chunk(1, 40, 20)), (2, chunk(2, 2, 2))])


def xsettings(settings, big=False):
    order = ">" if big else "<"

    def padded(data):
        return data + b"\0" * (-len(data) % 4)

    body = b""
    for name, value in settings:
        kind = 0 if isinstance(value, int) else 2 if isinstance(value, tuple) else 1
        body += struct.pack(order + "BBH", kind, 0, len(name)) + padded(name) + struct.pack(order + "I", 7)
        if kind == 0:
            body += struct.pack(order + "i", value)
        elif kind == 2:
            body += struct.pack(order + "4H", *value)
        else:
            body += struct.pack(order + "I", len(value)) + padded(value)
    return struct.pack(order + "BBHII", 1 if big else 0, 0, 0, 3, len(settings)) + body


def text(data):
    return bytes([len(data)]) + data


def link(parent, name, head, *parts):
    """See linkText() of the target; every part but the last is followed by a slash."""
    data = bytes([6, parent, name, head, len(parts) - 1])
    for i, part in enumerate(parts):
        data += bytes([part]) + (b"\1" if i + 1 == len(parts) else b"")
    return data


def other_seeds():
    """(target, name, bytes)"""
    for name, data in seeds():
        yield "parse_file", name, struct.pack(">HHBB", 0xFFFF, 0, 24, 48) + data
    two = file([(4, chunk(4, 4, 4, 50)), (6, chunk(6, 6, 6, 70))])
    for at in (40, 60, 110):
        yield "parse_file", f"stretched-at-{at}", struct.pack(">HHBB", at, 5000, 24, 48) + two
    far = file([(4, chunk(4, 4, 4, 50)), (48, chunk(48, 6, 6, 70))], positions={0: 40 + 5000, 1: 140 + 5000})
    yield "parse_file", "far-chunks", struct.pack(">HHBB", 40, 5000, 24, 48) + far

    version = {"version": "1.4.0", "build": 10400}
    documents = [version, {**version, "notes": ["a", {"b": None}]}, {**version, "build": 1.5}, {**version, "build": "1"},
                 {"build": 1}, {**version, "build": -1}, {**version, "build": 2**63}, [version], "x"]
    for i, document in enumerate(documents):
        yield "version_document", f"document-{i}", json.dumps(document).encode()
    for number in ("10400", "-12", "+7", "9223372036854775807", "9223372036854775808", "+-1", " 1", "1x"):
        yield "version_document", "number" + number.replace(" ", "_"), number.encode()
    yield "version_document", "escapes", b'{"version":"\\u00e9\\ud83d\\ude00\\n","build":1}'
    yield "version_document", "double-key", b'{"version":"1","version":"2","build":1,"build":2}'

    entry = b"[Desktop Entry]\nType=Application\n# Exec=no\nExec = \"/opt/a b/pintle\" %u\r\nHidden=true\n[Other]\nExec=x\n"
    yield "desktop_entry", "entry", entry
    yield "desktop_entry", "percent", b"/home/100%/pintle"
    yield "desktop_entry", "specials", b"/a b/\"$`\\\\\n\t\r%%/pintle"
    yield "desktop_entry", "shell", b"[Desktop Entry]\nExec=sh -c \"exec \\\\\"\\\\$0\\\\\"\" \"/a%%b\"\n"
    yield "desktop_entry", "cut-quote", b"[Desktop Entry]\nExec=\"/a\nHidden\n"

    settings = b"[Mouse]\ntheme = old\nsize=24\n\n[Icons]\ntheme=icons\n[Mouse]\ntheme=last"
    yield "key_file", "two-groups", text(b"new") + settings
    yield "key_file", "no-group", text(b"new") + b"[Icons]\ntheme=icons"
    yield "key_file", "empty", text(b"new")
    yield "key_file", "only-the-key", text(b"new") + b"[Mouse]\r\ntheme=a\r\n\r\n"

    yield "index_theme", "usual", b"[Icon Theme]\nName=A\nInherits=hicolor, Adwaita;x\n"
    yield "index_theme", "blanks", b"Inherits2=a\nInherits \t= ,;a\r\nInherits=b\n"
    yield "index_theme", "empty", b"Inherits=\nInherits=b\n"

    both = [(b"Gtk/CursorThemeName", b"Adwaita"), (b"Gtk/CursorThemeSize", 32), (b"Net/ThemeName", b"Adwaita-dark"),
            (b"Xft/DPI", 96 * 1024), (b"Gdk/UnscaledDPI", 192 * 1024), (b"Gdk/WindowScalingFactor", 2),
            (b"Gtk/EnableAnimations", 0), (b"Gtk/ApplicationPreferDarkTheme", 1), (b"Color", (1, 2, 3, 4))]
    yield "xsettings", "little", xsettings(both)
    yield "xsettings", "big", xsettings(both, big=True)
    yield "xsettings", "cut", xsettings(both)[:-3]
    yield "xsettings", "contrast", xsettings([(b"Net/ThemeName", b"HighContrastInverse")])
    yield "xsettings", "dark-word", xsettings([(b"Net/ThemeName", b"a dark-one")])
    for i, (name, value) in enumerate(both):
        yield "xsettings", f"one-{i}", xsettings([(name, value)])
    yield "xsettings", "many", struct.pack("<BBHII", 0, 0, 0, 3, 0xFFFFFFFF) + xsettings(both)[12:]

    resources = b"Xcursor.theme:\tDMZ\nXcursor*size: 48\nXft.dpi: 144\n! x\nXcursor.size:\n"
    yield "xresources", "resources", b"\0\0\0" + struct.pack(">HH", 1920, 1080) + resources
    yield "xresources", "dpi", b"\0\0\0" + struct.pack(">HH", 1920, 1080) + b"Xft.dpi: 144\r\n"
    yield "xresources", "environment", b"\0\0\1" + text(b"64x") + struct.pack(">HH", 640, 480) + resources
    yield "xresources", "settings", b"\1" + text(b"A") + b"\1\0\0\x20\0" + struct.pack(">HH", 640, 480) + resources

    values = [{"a": 1, "b": [True, False, 2.5, -3, b"\0\1", "t\u00e9xt \U0001F600"], "c": {"d": {}}}, [], {}, "x", 0.1,
              2**63, -2**63, float("nan"), plistlib.UID(7)]
    for i, value in enumerate(values):
        for form in (plistlib.FMT_XML, plistlib.FMT_BINARY):
            if form == plistlib.FMT_XML and isinstance(value, plistlib.UID):
                continue
            yield "plist_guard", f"value-{i}-{form.name[4:].lower()}", plistlib.dumps(value, fmt=form)
    yield "plist_guard", "comments", (b"\xef\xbb\xbf<?xml version='1.0'?><!-- a --><!DOCTYPE plist><plist><dict><key>a</key>"
                                      b"<!-- b --><string>&lt;&#233;&#x1F600;</string><key>d</key><date>2001-01-01T00:00:00Z"
                                      b"</date><key>e</key><data> AAEC </data><key>f</key><integer>0x10</integer><key>g"
                                      b"</key><real>-1.5e3</real><key>h</key><true></true></dict></plist>\n<!-- c -->")
    yield "plist_guard", "cdata", b"<plist><string><![CDATA[<a>]]></string></plist>"
    yield "plist_guard", "deep", b"<plist>" + b"<array>" * 30 + b"</array>" * 30 + b"</plist>"
    yield "plist_coder", "kinds", bytes([8, 9, 0, 1, 1]) + bytes(8) + bytes([2, 255, 3]) + struct.pack(">d", 0.1) + \
        bytes([4, 1, 2, 5]) + text("é".encode()) + bytes([6]) + text(b"\0\1") + bytes([7, 1, 0, 0, 1, 9])
    yield "plist_coder", "dictionary", bytes([9, 3]) + text(b"a") + bytes([9, 1]) + text(b"b") + bytes([2, 3]) + \
        text(b"c") + bytes([7, 0, 0, 0x20, 0, 0, 9, 9])

    def cursors(*rows):
        return b"".join(bytes([width, height, *name, 9, frames, 1, 40]) for width, height, name, frames in rows)

    yield "registration_plan", "arrow", cursors((4, 4, (1, 0), 0))
    yield "registration_plan", "animations", cursors((4, 4, (1, 0), 30), (2, 3, (2, 0, 0), 24), (2, 3, (2, 12, 1), 2))
    yield "registration_plan", "no-arrow", cursors((2, 3, (2, 5, 0), 1), (2, 3, (0, 1, 65), 5))
    yield "registration_plan", "whole", cursors((3, 3, (1, 0), 0), *((2, 3, (2, row, 0), row % 3) for row in range(40)))

    usual = bytes([4, 24, 4, 24, 4, 3, 4, 4])
    yield "cursor_writer", "still", usual + bytes([0, 1, 4, 0, 1, 23, 23, 9, 26, 1, 0, 64, 1])
    yield "cursor_writer", "strip", usual + bytes([0, 3, 4, 2, 1, 23, 71, 9, 26, 2, 0, 64, 0, 128, 1])
    yield "cursor_writer", "list", usual + bytes([0, 2, 4, 1, 2, 23, 23, 9, 23, 23, 8, 26, 3, 0, 32, 0, 0, 0, 255, 1])
    yield "cursor_writer", "odd-size", usual + bytes([0, 1, 4, 0, 1, 24, 24, 9, 26, 1, 0, 64, 0, 60])

    folder, cursor_file, pipe, up = 0, 2, 5, 9
    theme = bytes([folder, 0, 1, folder, 1, 0, cursor_file, 2, 5, 0x1A])
    yield "archive_layout", "theme", b"\1" + theme
    yield "archive_layout", "link-inside", b"\1" + theme + link(2, 3, 5, 5)
    yield "archive_layout", "link-up-and-back", b"\1" + theme + link(2, 3, 5, up, 0, 5)
    yield "archive_layout", "link-to-its-folder", b"\1" + theme + link(2, 3, 5, up, up, 1, 0)
    yield "archive_layout", "link-out", b"\1" + theme + link(2, 3, 2, 5) + link(2, 4, 5, up, up, up, 14, 5)
    yield "archive_layout", "absolute", b"\1" + theme + link(2, 3, 0, 1, 0, 5)
    yield "archive_layout", "circle", b"\1" + theme + link(2, 3, 5, 4) + link(2, 4, 5, 3)
    yield "archive_layout", "pipe", b"\1" + theme + bytes([pipe, 2, 6]) + link(2, 3, 5, 6)
    yield "archive_layout", "folder-elsewhere", b"\1" + theme + bytes([folder, 0, 3, cursor_file, 3, 4, 0]) + \
        link(2, 6, 5, up, up, 3)
    yield "archive_layout", "few-copies", b"\0\1" + theme + bytes([folder, 0, 3, cursor_file, 3, 4, 0]) + \
        link(2, 6, 5, up, up, 3) + link(2, 7, 5, up, up, 3, 4)


def write(target, name, data):
    folder = pathlib.Path(__file__).parent / "corpus" / target
    folder.mkdir(parents=True, exist_ok=True)
    (folder / name).write_bytes(data)


for name, data in seeds():
    for target in ("parse", "parse_toc", "parse_headers"):
        write(target, name, data)
for target, name, data in other_seeds():
    write(target, name, data)
