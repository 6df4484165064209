#!/usr/bin/env python3
"""Makes what an installation has beside the program out of the sources: the description for software centres, the
manual page and the package's list of changes.

  make_documents.py --source ROOT --version VERSION --distribution NAME --out FOLDER

NAME is what the distribution adds to a package's version, "deb12" for Debian 12.
"""
import argparse
import datetime
import gzip
import pathlib
import re
import sys
import textwrap
from xml.sax.saxutils import escape

NAME = "com.pintle.app"
AUTHORS = "The Pintle authors"
HERE = pathlib.Path(__file__).resolve().parent
#: Distributions whose validator knows the older of the two ways to name the authors, and only that.
OLDER_VALIDATORS = ("deb12", "ubuntu22.04")


def changes(text):
    """(version, date, list of entries) for each version of CHANGELOG.md, the newest first."""
    found = []
    for version, day, body in re.findall(r"^## (\S+) \((\d{4}-\d\d-\d\d)\)\n(.*?)(?=^## |\Z)", text, re.M | re.S):
        entries = [" ".join(entry.split()) for entry in re.split(r"^- ", body, flags=re.M)[1:]]
        found.append((version, datetime.date.fromisoformat(day), entries))
    return found


def debian_changelog(versions, distribution, maintainer):
    text = ""
    for version, day, entries in versions:
        noon = datetime.datetime.combine(day, datetime.time(12), datetime.timezone.utc)
        text += f"pintle ({version}~{distribution}) unstable; urgency=medium\n\n"
        for entry in entries:
            text += textwrap.fill(entry, 78, initial_indent="  * ", subsequent_indent="    ") + "\n"
        # Names of days and months are those of the format, not of the locale.
        days, months = "Mon Tue Wed Thu Fri Sat Sun".split(), "Jan Feb Mar Apr May Jun Jul Aug Sep Oct Nov Dec".split()
        text += (f"\n -- {maintainer}  {days[noon.weekday()]}, {noon.day:02} {months[noon.month - 1]} {noon.year} "
                 "12:00:00 +0000\n\n")
    return text.rstrip("\n") + "\n"


def releases(versions):
    lines = ["  <releases>"]
    for version, day, entries in versions:
        lines += [f'    <release version="{escape(version)}" date="{day}">', "      <description>", "        <ul>"]
        lines += [f"          <li>{escape(entry)}</li>" for entry in entries]
        lines += ["        </ul>", "      </description>", "    </release>"]
    return "\n".join(lines + ["  </releases>", ""])


def developer(distribution):
    if distribution in OLDER_VALIDATORS:
        return f"<developer_name>{AUTHORS}</developer_name>"
    return f'<developer id="{NAME}">\n    <name>{AUTHORS}</name>\n  </developer>'


def packed(text):
    """As gzip -9n does it: the same bytes for the same text."""
    return gzip.compress(text.encode(), 9, mtime=0)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    for name in ("source", "version", "distribution", "maintainer", "out"):
        parser.add_argument("--" + name, required=True)
    options = parser.parse_args()
    source, out = pathlib.Path(options.source), pathlib.Path(options.out)
    versions = changes((source / "CHANGELOG.md").read_text(encoding="utf-8"))
    if not versions or versions[0][0] != options.version:
        sys.exit(f"The newest version of CHANGELOG.md is not {options.version}.")
    out.mkdir(parents=True, exist_ok=True)
    metainfo = (HERE / f"{NAME}.metainfo.xml.in").read_text(encoding="utf-8")
    metainfo = metainfo.replace("@DEVELOPER@", developer(options.distribution))
    metainfo = metainfo.replace("@RELEASES@", releases(versions))
    (out / f"{NAME}.metainfo.xml").write_text(metainfo, encoding="utf-8")
    manual = (HERE / "pintle.1.in").read_text(encoding="utf-8")
    manual = manual.replace("@VERSION@", options.version).replace("@DATE@", str(versions[0][1]))
    (out / "pintle.1.gz").write_bytes(packed(manual))
    (out / "changelog.gz").write_bytes(packed(debian_changelog(versions, options.distribution, options.maintainer)))


if __name__ == "__main__":
    main()
