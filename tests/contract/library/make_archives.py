#!/usr/bin/env python3
"""Makes the archives that the extraction tests unpack: sound ones of all five kinds, and hostile ones.

  make_archives.py FOLDER
"""
import binascii
import bz2
import gzip
import io
import lzma
import os
import subprocess
import sys
import tarfile
import zipfile

XCUR = b"Xcur cursor file"

# How files begin that archivers like to hand to a program of that name, and how some do that are other kinds of
# archives.
FOREIGN = {
    "lrzip": b"LRZI\x00\x06" + bytes(60),
    "lzop": b"\x89LZO\x00\r\n\x1a\n" + bytes(60),
    "grzip": b"GRZipII\x00\x02\x04:)" + bytes(60),
    "zstd": b"\x28\xb5\x2f\xfd" + bytes(60),
    "lz4": b"\x04\x22\x4d\x18\x64\x40\xa7" + bytes(60),
    "compress": b"\x1f\x9d\x90" + bytes(60),
    "lzip": b"LZIP\x01\x0c" + bytes(60),
    "rpm": b"\xed\xab\xee\xdb\x03\x00" + bytes(90),
    "7z": b"7z\xbc\xaf\x27\x1c\x00\x04" + bytes(60),
    "rar": b"Rar!\x1a\x07\x00" + bytes(60),
    "ar": b"!<arch>\n",
    "cpio": b"07070100000001000081a4" + b"0" * 88,
    "mtree": b"#mtree\n./cursors type=dir\n",
    "warc": b"WARC/1.0\r\nWARC-Type: resource\r\n\r\n",
}


def entry(name, kind=tarfile.REGTYPE, mode=0o644, link="", size=0):
    info = tarfile.TarInfo(name)
    info.type, info.mode, info.linkname, info.size = kind, mode, link, size
    return info


class Archive:
    def __init__(self, path, mode="w"):
        self.tar = tarfile.open(path, mode, format=tarfile.PAX_FORMAT)

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.tar.close()

    def file(self, name, data=XCUR, mode=0o644):
        self.tar.addfile(entry(name, mode=mode, size=len(data)), io.BytesIO(data))
        return self

    def folder(self, name, mode=0o755):
        self.tar.addfile(entry(name, tarfile.DIRTYPE, mode))
        return self

    def link(self, name, text):
        self.tar.addfile(entry(name, tarfile.SYMTYPE, 0o777, text))
        return self

    def hard(self, name, text):
        self.tar.addfile(entry(name, tarfile.LNKTYPE, 0o644, text))
        return self

    def special(self, name, kind, mode=0o644):
        self.tar.addfile(entry(name, kind, mode))
        return self


def sound(archive):
    archive.file("Theme/index.theme", b"[Icon Theme]\n").file("Theme/cursors/left_ptr")
    archive.link("Theme/cursors/default", "left_ptr").link("Theme/cursors/watch", "../common/watch")
    archive.file("Theme/common/watch").file("Theme/cursors/x\u00fc b")


def main():
    os.chdir(sys.argv[1])
    outside = os.path.abspath("outside")
    with open(outside, "wb") as file:
        file.write(b"Xcur secret")
    for name, mode in (("plain.tar", "w"), ("t.tar.gz", "w:gz"), ("t.tar.bz2", "w:bz2"), ("t.tar.xz", "w:xz")):
        with Archive(name, mode) as archive:
            sound(archive)
    with zipfile.ZipFile("t.zip", "w", zipfile.ZIP_DEFLATED) as archive:
        archive.writestr("Theme/cursors/left_ptr", XCUR)
        archive.writestr("Theme/cursors/x\u00fc b", XCUR)
        for name, text in (("default", b"left_ptr"), ("watch", b"../common/watch")):
            info = zipfile.ZipInfo("Theme/cursors/" + name)
            info.external_attr = 0o120777 << 16
            info.create_system = 3
            archive.writestr(info, text)
        archive.writestr("Theme/common/watch", XCUR)
    with open("t.tar.xz", "rb") as whole, open("cut.tar.xz", "wb") as cut:
        cut.write(whole.read()[:-100])
    with open("words", "wb") as file:
        file.write(b"no archive at all\n" * 20)

    with Archive("absolute.tar") as a:
        a.file("cursors/left_ptr").file(os.path.abspath("written-absolute"))
    with Archive("dotdot.tar") as a:
        a.file("cursors/left_ptr").file("../../../written-dotdot")
    with Archive("through.tar") as a:
        a.file("cursors/left_ptr").link("way", os.path.dirname(outside)).file("way/written-through")
    with Archive("through-chain.tar") as a:
        a.file("cursors/left_ptr").link("one", "..").link("two", "one/..").file("two/written-chain")
    with Archive("hard.tar") as a:
        a.file("cursors/left_ptr").hard("cursors/secret", outside)
    with Archive("hard-through.tar") as a:
        a.file("cursors/left_ptr").link("way", os.path.dirname(outside)).hard("cursors/secret", "way/outside")
    with Archive("hard-overwrite.tar") as a:
        a.file("cursors/left_ptr").link("cursors/way", outside).hard("cursors/secret", "cursors/way")
        a.file("cursors/secret", b"Xcur overwritten")
    with Archive("links.tar") as a:
        a.file("cursors/left_ptr").link("cursors/a", "b").link("cursors/b", "a").link("cursors/self", "self")
        a.link("cursors/out", outside).link("cursors/up", "../../../../../etc/passwd").link("cursors/top", "/")
        a.link("cursors/here", ".").link("cursors/good", "left_ptr").link("cursors/side", "../side/file")
        a.link("cursors/lead", "out").file("side/file")
        for i in range(60):
            a.link("cursors/chain%d" % i, "chain%d" % (i + 1) if i < 59 else "left_ptr")
    with Archive("nodes.tar") as a:
        a.file("cursors/left_ptr", mode=0o6755).special("cursors/default", tarfile.FIFOTYPE)
        a.special("cursors/arrow", tarfile.FIFOTYPE)
        a.link("cursors/watch", "default")
    with Archive("device.tar") as a:
        a.file("cursors/left_ptr").special("cursors/null", tarfile.CHRTYPE)
    with Archive("modes.tar") as a:
        a.folder("closed", 0o000).folder("closed/deep", 0o000).folder("Theme", 0o500).folder("Theme/cursors", 0o500)
        a.file("Theme/cursors/left_ptr", mode=0o400).file("closed/deep/file", mode=0o000)
    with Archive("careless.tar") as a:
        a.folder("Theme", 0o644).folder("Theme/cursors", 0o644).file("Theme/cursors/left_ptr", mode=0o044)
    with Archive("many.tar") as a:
        for i in range(100_001):
            a.file("cursors/%06d" % i, b"")
    with Archive("names.tar") as a:
        a.file("line\nend/cursors/left\nptr").file("line\nend/cursors/-rf").link("line\nend/cursors/d", "left\nptr")
    with Archive("deep.tar") as a:
        a.file("/".join(["d" * 60] * 100) + "/cursors/left_ptr").file("cursors/left_ptr")
    # Many zeros in a few kilobytes: as many files, and as one.
    with Archive("bomb.tar.gz", "w:gz") as a:
        block = bytes(8 << 20)
        for i in range(24):
            a.file("cursors/%d" % i, block)
    with Archive("large.tar.gz", "w:gz") as a:
        a.tar.addfile(entry("cursors/large", size=200 << 20), Zeros(200 << 20))
    foreign()
    endless()
    subprocess.run(["chmod", "-R", "a+rX", "."], check=True)


def foreign():
    """Kinds that are none of the five, bare and inside each of the five, and a false checksum."""
    with open("plain.tar", "rb") as file:
        tar = file.read()
    with open("t.zip", "rb") as file:
        archived = file.read()
    uuencoded = b"begin 644 t.tar\n" + b"".join(
        binascii.b2a_uu(tar[i:i + 45]) for i in range(0, len(tar), 45)) + b"`\nend\n"
    kinds = {**FOREIGN, "uu": uuencoded, "lzma": lzma.compress(tar, lzma.FORMAT_ALONE), "twice": gzip.compress(tar),
             "zipped": archived}
    for name, data in kinds.items():
        if name not in ("twice", "zipped"):
            with open("foreign." + name, "wb") as file:
                file.write(data)
        for kind, compress in (("gz", gzip.compress), ("bz2", bz2.compress), ("xz", lzma.compress)):
            with open(f"foreign.{name}.{kind}", "wb") as file:
                file.write(compress(data))
        with Archive(f"foreign.{name}.tar") as archive:
            archive.file("cursors/left_ptr", data)
        with zipfile.ZipFile(f"foreign.{name}.zip", "w") as archive:
            archive.writestr("cursors/left_ptr", data)
    with open("t.tar.gz", "rb") as file:
        whole = file.read()
    with open("false.tar.gz", "wb") as file:
        file.write(whole[:-8] + bytes(byte ^ 0xFF for byte in whole[-8:-4]) + whole[-4:])


def endless():
    """Entries that are refused, each with a body that must be decoded to come to the next one."""
    with Archive("refused.tar.xz", "w:xz") as archive:
        archive.file("cursors/left_ptr")
        for i in range(32):
            archive.tar.addfile(entry("../up%d" % i, size=8 << 20), Zeros(8 << 20))


class Zeros(io.RawIOBase):
    def __init__(self, size):
        super().__init__()
        self.left = size

    def read(self, size=-1):
        size = self.left if size < 0 else min(size, self.left)
        self.left -= size
        return bytes(size)


if __name__ == "__main__":
    main()
