"""Archives in the layouts that the catalog meets, made of the cursor themes that are installed here."""
import io
import os
import re
import tarfile
import zipfile

HERE = os.path.dirname(os.path.abspath(__file__))
CATALOG = os.path.join(HERE, "..", "..", "..", "themes", "catalog_rows.inc")
ICONS = "/usr/share/icons"
PNG = b"\x89PNG\r\n\x1a\n" + bytes(200)


def address_of(identifier):
    """The path of a row's archive at its server."""
    with open(CATALOG, encoding="utf-8") as file:
        found = re.search(r'"%s".*?"https://[^/"]+(/[^"]+)"' % re.escape(identifier), file.read(), re.S)
    return found.group(1)


def cursors_of(theme):
    """Name -> bytes, or the text of a link, of an installed theme."""
    folder = os.path.join(ICONS, theme, "cursors")
    files = {}
    for name in sorted(os.listdir(folder)):
        path = os.path.join(folder, name)
        if os.path.islink(path):
            files[name] = os.readlink(path)
        else:
            with open(path, "rb") as file:
                files[name] = file.read()
    return files


class Tree:
    """What goes into an archive: path -> bytes, or the text of a link."""

    def __init__(self):
        self.files = {}

    def theme(self, folder, theme):
        for name, content in cursors_of(theme).items():
            self.files[f"{folder}/{name}"] = content
        return self

    def add(self, path, content):
        self.files[path] = content
        return self

    def write(self, path):
        if path.endswith(".zip"):
            with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED) as archive:
                for name, content in self.files.items():
                    info = zipfile.ZipInfo(name)
                    info.create_system = 3
                    info.external_attr = (0o120777 if isinstance(content, str) else 0o100644) << 16
                    archive.writestr(info, content)
            return
        kind = {".xz": "xz", ".gz": "gz", ".bz2": "bz2"}.get(os.path.splitext(path)[1], "")
        with tarfile.open(path, "w:" + kind, **({"preset": 1} if kind == "xz" else {})) as archive:
            for name, content in self.files.items():
                info = tarfile.TarInfo(name)
                if isinstance(content, str):
                    info.type, info.linkname = tarfile.SYMTYPE, content
                    archive.addfile(info)
                else:
                    info.size, info.mode = len(content), 0o644
                    archive.addfile(info, io.BytesIO(content))


def one_theme():
    return Tree().add("Bibata-Modern-Ice/index.theme", b"[Icon Theme]\n").theme(
        "Bibata-Modern-Ice/cursors", "Bibata-Modern-Ice")


def four_variants():
    tree = Tree()
    for identifier, theme in (("phinger-cursors-light", "DMZ-White"), ("phinger-cursors-dark", "DMZ-Black"),
                              ("phinger-cursors-light-left", "Bibata-Modern-Classic"),
                              ("phinger-cursors-dark-left", "Bibata-Original-Ice")):
        tree.add(f"{identifier}/index.theme", b"[Icon Theme]\n").theme(f"{identifier}/cursors", theme)
    return tree


def source_snapshot():
    tree = Tree()
    for size in ("x1", "x1_25", "x2"):
        for name in cursors_of("DMZ-Black"):
            tree.add(f"LyraX-main/src/{size}/{name}.png", PNG)
    tree.add("LyraX-main/build.sh", b"#!/bin/sh\n").add("LyraX-main/src/cursors/left_ptr.svg", b"<svg/>")
    tree.add("LyraX-main/tests/old/left_ptr", cursors_of("DMZ-White")["left_ptr"])
    return tree.theme("LyraX-main/dist/linux/theme/cursors", "DMZ-Black")


def many_links():
    """Every file lies elsewhere in the archive or is reached by a way that the move would break."""
    tree = Tree()
    for name, content in cursors_of("DMZ-White").items():
        if isinstance(content, str):
            tree.add(f"Numix-Cursor/cursors/{name}", f"../../Numix-Cursor/cursors/{content}")
        else:
            tree.add(f"Numix-Cursor/.store/{name}", content)
            tree.add(f"Numix-Cursor/cursors/{name}", f"../.store/{name}")
    return tree.add("Numix-Cursor/cursors/outside", "/etc/passwd")


def strange_names():
    return Tree().theme("東方 Project (Touhou)/Reimu 靈夢 Ünïcode/cursors", "Bibata-Modern-Amber")


#: Row of the catalog, its archive's content, the installed theme that it must show like.
LAYOUTS = (
    ("bibata-modern-ice", one_theme, "Bibata-Modern-Ice"),
    ("phinger-cursors-light", four_variants, "DMZ-White"),
    ("phinger-cursors-dark-left", four_variants, "Bibata-Original-Ice"),
    ("lyra-cursors", source_snapshot, "DMZ-Black"),
    ("numix-cursor", many_links, "DMZ-White"),
    ("anime-reimu", strange_names, "Bibata-Modern-Amber"),
)


def write_all(folder, rows=None):
    """The archives of the rows of LAYOUTS, or of those named in `rows`."""
    for identifier, make, _ in LAYOUTS:
        if rows and identifier not in rows:
            continue
        make().write(os.path.join(folder, os.path.basename(address_of(identifier))))
