"""Reads an ICNS file as the format says and fails unless each size is there as a PNG of that size with a picture.

  check_icon.py MAKE_APP_ICON DRAWING.svg
"""
import os
import struct
import subprocess
import sys
import tempfile
import zlib

SIDES = {b"icp4": 16, b"icp5": 32, b"ic07": 128, b"ic08": 256, b"ic09": 512,
         b"ic11": 32, b"ic12": 64, b"ic13": 256, b"ic14": 512, b"ic10": 1024}


def entries(data):
    kind, length = struct.unpack_from(">4sI", data)
    assert kind == b"icns" and length == len(data), "the file's header is wrong"
    at = 8
    while at < length:
        kind, size = struct.unpack_from(">4sI", data, at)
        yield kind, data[at + 8:at + size]
        at += size
    assert at == length, "the last entry runs over the end"


def pixels(png):
    """Width and the inflated scan lines of a PNG."""
    assert png[:8] == b"\x89PNG\r\n\x1a\n", "an entry is no PNG"
    width, height, depth, colour = struct.unpack_from(">IIBB", png, 16)
    assert width == height and depth == 8 and colour == 6, "an entry is no square of RGBA"
    at, packed = 8, b""
    while at < len(png):
        size, kind = struct.unpack_from(">I4s", png, at)
        if kind == b"IDAT":
            packed += png[at + 8:at + 8 + size]
        at += 12 + size
    return width, zlib.decompress(packed)


def main():
    maker, drawing = sys.argv[1:]
    with tempfile.TemporaryDirectory() as folder:
        icon = os.path.join(folder, "a.icns")
        subprocess.run([maker, drawing, icon], check=True)
        with open(icon, "rb") as file:
            found = dict(entries(file.read()))
    assert found.keys() == SIDES.keys(), f"entries: {sorted(found)}"
    for kind, png in found.items():
        side, lines = pixels(png)
        assert side == SIDES[kind], f"{kind} is {side} wide"
        assert len(set(lines)) > 16, f"{kind} is empty"
    assert subprocess.run([maker, os.devnull, os.devnull], stderr=subprocess.DEVNULL, check=False).returncode == 1
    print(f"{len(found)} sizes")


if __name__ == "__main__":
    main()
