#!/usr/bin/env python3
"""Checks which way the layers point: scripts/layers.py [BUILD_DIR].  Silent when all is well.

Of the sources: each #include "..." is of the layer itself or of one below it, and the toolkit's headers
are included only where BELOW says so.  Of the libraries in BUILD_DIR/lib: the core refers to nothing of
the toolkit, and no library to what only a layer above it has, but for the doors.  Of BUILD_DIR/tests: a
test of the core links nothing of the toolkit."""

import pathlib
import re
import subprocess
import sys

# A layer: its folder, its library, the layers directly below it.  "toolkit" as one of them stands for
# the X toolkit itself.
BELOW = {
    "include": ("platform/include", None, []),
    "base": ("platform/base", "base", ["include"]),
    "nof": ("platform/nof", "nof", ["base"]),
    "help.h": ("platform/include/help.h", None, ["include", "toolkit"]),
    "help": ("platform/help", "nbhelp", ["base", "help.h"]),
    "vappn": ("vappn", "vappn", ["base"]),
    "v0": ("v0", "v0", ["base", "vappn"]),
    "vtamrix": ("vtamrix", "vtamrix", ["base", "vappn", "v0"]),
    "records": ("records", "records", ["base", "vappn"]),
    "frame": ("vga/frame", "vga_frame", ["nof", "vappn", "v0", "vtamrix", "records"]),
    "list": ("vga/list", "vga_list", ["frame"]),
    "model": ("vga/model", "vga_model", ["list"]),
    "events": ("vga/events", "vga_events", ["model"]),
    "looks": ("vga/toolkit", "vga_toolkit", ["frame", "toolkit"]),
    "viewer": ("vga/viewer", "vga_viewer", ["list", "looks"]),
    "dialog": ("vga/dialog", "vga_dialog", ["viewer", "help"]),
    "form": ("vga/form", "vga_form", ["dialog"]),
    "windows": ("vga/windows", "vga_windows", ["events", "form"]),
    "main": ("vga", None, ["windows"]),
    "cli": ("cli", "cli", ["events"]),
    "node": ("node", "snanode_engine", ["base", "vappn", "records"]),
}
# What may point up: the tables of viewer types and of windows.
DOORS = {"gvga_viewer_desc", "gvga_uid_desc", "gvga_part_desc", "gvga_uid_roles"}
CORE_TESTS = ["model_test", "livemodel_test", "pipeline_test"]

TOOLKIT_HEADER = re.compile(r"(X11|Xm|Mrm|uil)/")
TOOLKIT_SYMBOL = re.compile(r"(Xt|Xm|Mrm|Xrm|Xft|Xmb|Xutf8|X)[A-Z_]\w*$")
INCLUDE = re.compile(r'^#\s*include\s*(["<])([^">]+)', re.M)


def below(layer):
    """The layer itself and all that it may use, "toolkit" included."""
    found = {layer}
    for name in BELOW[layer][2]:
        found |= {name} if name == "toolkit" else below(name)
    return found


def run(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def layer_of(path):
    """The layer with the longest folder that the file lies in."""
    found = [(len(row[0]), name) for name, row in BELOW.items() if (path + "/").startswith(row[0] + "/")]
    return max(found)[1] if found else None


def check_includes(complain):
    files = [name for name in run("git", "ls-files", "*.h", "*.cpp").split()
             if layer_of(name) and pathlib.Path(name).exists()]
    home = {}
    for name in files:
        home.setdefault(pathlib.Path(name).name, set()).add(layer_of(name))
    for name in files:
        allowed = below(layer_of(name))
        for mark, header in INCLUDE.findall(pathlib.Path(name).read_text()):
            if mark == "<":
                if TOOLKIT_HEADER.match(header) and "toolkit" not in allowed:
                    complain(f"{name} includes <{header}>: no toolkit here")
            elif not home.get(header, allowed) & allowed:
                complain(f"{name} includes {header}, which lies above it")


def symbols(library, *options):
    lines = run("nm", "--format=posix", *options, library).splitlines()
    return {line.split()[0] for line in lines if len(line.split()) > 1}


def check_libraries(build, complain):
    paths = {name: build / "lib" / f"lib{row[1]}.a" for name, row in BELOW.items() if row[1]}
    paths = {name: path for name, path in paths.items() if path.exists()}
    if "frame" not in paths:
        complain(f"{build} has no libraries")
    defined = {name: symbols(path, "--defined-only", "--extern-only")
               for name, path in paths.items()}
    for name, path in paths.items():
        allowed = below(name)
        wanted = symbols(path, "--undefined-only") - DOORS
        wanted -= set().union(*(defined[other] for other in allowed if other in defined))
        for symbol in sorted(wanted):
            homes = [other for other in defined if symbol in defined[other]]
            if TOOLKIT_SYMBOL.match(symbol):
                if "toolkit" not in allowed:
                    complain(f"{path.name} refers to {symbol} of the toolkit")
            elif homes:
                complain(f"{path.name} refers to {symbol} of {' and '.join(homes)}")


def check_tests(build, complain):
    for name in CORE_TESTS:
        for library in re.findall(r"NEEDED.*\[(lib(?:X|Mrm)\w*)", run("readelf", "-d", build / "tests" / name)):
            complain(f"{name} links {library}")


def main():
    complaints = []
    check_includes(complaints.append)
    if len(sys.argv) > 1:
        build = pathlib.Path(sys.argv[1])
        check_libraries(build, complaints.append)
        if (build / "tests").is_dir():
            check_tests(build, complaints.append)
    for line in complaints:
        print(line)
    return 1 if complaints else 0


sys.exit(main())
