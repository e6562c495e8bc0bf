#!/usr/bin/env python3
"""Compiles a source of the copied library again, to compare the object with that of another build.

usage: compile_again.py build source copy variant compiler argument...

Starts the compiler; CMake calls it as a launcher. For kernels of other variants it compares only what the compiler
would read, which takes a tenth of the time: the options and the preprocessed text. If both are those of the build,
so is the object."""

import json
import pathlib
import re
import shlex
import shutil
import subprocess
import sys


def preprocessed(arguments, folder):
    position = arguments.index("-o")
    arguments = [*arguments[:position], *arguments[position + 2 :]]
    arguments[arguments.index("-c")] = "-E"
    return subprocess.run([*arguments, "-P"], cwd=folder, check=True, stdout=subprocess.PIPE).stdout


def options(arguments, source):
    """Without warnings, which only this build has as errors, and without names of files."""
    text = shlex.join(arguments[1:]).replace(str(source), "source")
    return re.sub(r" -(MD|MT \S+|MF \S+|o \S+|c \S+|W[a-z-]+)(?= |$)", "", text)


def main():
    build, source, copy = map(pathlib.Path, sys.argv[1:4])
    variant, command = sys.argv[4], sys.argv[5:]
    made = pathlib.Path(command[command.index("-o") + 1]) if "-c" in command else pathlib.Path()
    if not re.search(f"_kernels_(?!{variant}[.])", str(made)):
        return subprocess.run(command).returncode

    original = pathlib.Path(*made.parts[1:])  # in the copy's build the library is in a folder
    entries = json.loads((build / "compile_commands.json").read_text())
    twin = next(shlex.split(e["command"]) for e in entries if f" -o {original} " in e["command"])
    if options(command, copy) != options(twin, source) or preprocessed(command, ".") != preprocessed(twin, build):
        return subprocess.run(command).returncode
    shutil.copyfile(build / original, made)
    return 0


if __name__ == "__main__":
    sys.exit(main())
