#!/usr/bin/env python3
"""debian/changelog against the CMake project: the newest entry carries the project's
version (the packages are native: no Debian revision) and its release date.

usage: package_version_agrees.py CHANGELOG VERSION YYYY-MM-DD
"""
import email.utils
import re
import sys


def main():
    changelog, version, date = sys.argv[1:4]
    with open(changelog, encoding="utf-8") as f:
        text = f.read()
    head = re.match(r"kova \(([^)]+)\) ", text)
    if not head:
        sys.exit(f"{changelog}: the first line is not \"kova (VERSION) ...\"")
    trailer = re.search(r"^ -- .+?>  (.+)$", text, re.MULTILINE)
    if not trailer:
        sys.exit(f"{changelog}: the first entry has no \" -- NAME <ADDRESS>  DATE\" line")
    entry_date = email.utils.parsedate_to_datetime(trailer.group(1)).date().isoformat()
    failures = []
    if head.group(1) != version:
        failures.append(f"version {head.group(1)}, the project (CMakeLists.txt) {version}")
    if entry_date != date:
        failures.append(f"date {entry_date}, the project (cmake/KovaVersion.cmake) {date}")
    if failures:
        sys.exit(f"{changelog}: " + "; ".join(failures))
    print(f"debian/changelog and the project agree: {version} of {date}")


if __name__ == "__main__":
    main()
