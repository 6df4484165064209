#!/usr/bin/env python3
"""Writes the hand-made seeds: one small Xcursor file per rule and per defect, into the corpus of each target."""
import pathlib
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


for name, data in seeds():
    for target in ("parse", "parse_toc", "parse_headers"):
        folder = pathlib.Path(__file__).parent / "corpus" / target
        folder.mkdir(parents=True, exist_ok=True)
        (folder / name).write_bytes(data)
