#!/usr/bin/env python3
"""The manual pages kova(1) and kova-cli(1) against the programs themselves: each page
renders without a groff warning, names the version the program prints, and describes
every command and every option that the program's --help lists.

usage: man_pages_cover_options.py KOVA KOVA-CLI MAN-FOLDER
(KOVA may be "-" in a build without the desktop program.)
"""
import os
import re
import subprocess
import sys


def run(*args):
    return subprocess.run(args, capture_output=True, text=True, check=True).stdout


def render(page):
    """The page as man shows it, with groff's warnings (all of them) made failures."""
    out = subprocess.run(["groff", "-man", "-Tutf8", "-ww", "-P", "-cbou", page],
                         capture_output=True, text=True, env=dict(os.environ, LC_ALL="C.UTF-8"))
    if out.returncode != 0 or out.stderr.strip():
        raise SystemExit(f"{page}: groff says: {out.stderr.strip()}")
    # Lines are filled and may break inside a phrase: compare on single blanks.
    return re.sub(r"\s+", " ", out.stdout.replace("\u2010", "-"))


def options(help_text):
    """Every -x and --long-option at the start of a line of the help's option lists."""
    found = set()
    for line in help_text.splitlines():
        m = re.match(r"\s+((?:-\w|--[\w-]+)(?:[ ,]+(?:-\w|--[\w-]+))*)", line)
        if m:
            found.update(re.findall(r"--[\w-]+|-\w", m.group(1)))
    return found


def subcommands(help_text):
    section = help_text.split("Subcommands:", 1)[1]
    names = []
    for line in section.splitlines()[1:]:
        m = re.match(r"  (\w[\w-]*)\s", line)
        if not m:
            break
        names.append(m.group(1))
    return names


def check(page_text, page, program, needed):
    missing = sorted(n for n in needed if not re.search(r"(?<![\w-])" + re.escape(n) + r"(?![\w-])", page_text))
    for n in missing:
        print(f"FAIL: {page} does not describe {n}, which {program} --help lists")
    return len(missing)


def main():
    kova, cli, man = sys.argv[1:4]
    failures = 0

    cli_page = render(f"{man}/kova-cli.1")
    version = run(cli, "--version").split()[-1]
    if f"KOVA {version}" not in cli_page:
        print(f"FAIL: kova-cli.1 does not name version {version}")
        failures += 1
    top = run(cli, "--help")
    needed = options(top)
    commands = subcommands(top)
    if not commands:
        print("FAIL: kova-cli --help lists no commands")
        failures += 1
    for command in commands:
        needed.add(f"kova-cli {command}")
        needed.update(options(run(cli, command, "--help")))
    failures += check(cli_page, "kova-cli.1", "kova-cli", needed)

    if kova != "-":
        page = render(f"{man}/kova.1")
        if f"KOVA {run(kova, '--version').split()[-1]}" not in page:
            print("FAIL: kova.1 does not name the version kova prints")
            failures += 1
        failures += check(page, "kova.1", "kova", options(run(kova, "--help")))

    if failures:
        sys.exit(1)
    print("the man pages describe every command and option of kova and kova-cli")


if __name__ == "__main__":
    main()
