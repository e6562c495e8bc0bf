#!/usr/bin/env python3
"""Passes if gdb loads the library's script automatically, shows the expected texts and writes the right pictures.

usage: gdb_session.py program folder-of-the-library sources output-folder
Exit code 77, which reports the test as skipped, if there is no gdb with Python or it may not run programs.
"""

import difflib
import os
import shutil
import struct
import subprocess
import sys
import zlib

program, library, sources, out = sys.argv[1:]


def skip(reason):
    print("Skipped:", reason)
    sys.exit(77)


def run(*arguments):
    environment = dict(os.environ, LD_LIBRARY_PATH=library, LC_ALL="C", DEBUGINFOD_URLS="")
    done = subprocess.run(["gdb", "-nx", "-q", "-batch", "-iex", "add-auto-load-safe-path " + library, *arguments],
                          cwd=out, env=environment, stdin=subprocess.DEVNULL, capture_output=True, text=True)
    return done.stdout, done.stderr


def read_pgm(path):
    with open(path, "rb") as file:
        assert file.readline() == b"P5\n"
        width, height = map(int, file.readline().split())
        size = {255: 1, 65535: 2}[int(file.readline())]
        return width, height, levels(file.read(), size)


def read_png(path):
    with open(path, "rb") as file:
        content = file.read()
    assert content[:8] == b"\x89PNG\r\n\x1a\n"
    at, chunks = 8, {}
    while at < len(content):
        length, name = struct.unpack_from(">I4s", content, at)
        body = content[at + 8:at + 8 + length]
        assert struct.unpack_from(">I", content, at + 8 + length)[0] == zlib.crc32(name + body)
        chunks[name] = body
        at += 12 + length
    assert list(chunks) == [b"IHDR", b"IDAT", b"IEND"]
    width, height, bits, *others = struct.unpack(">IIBBBBB", chunks[b"IHDR"])
    assert others == [0, 0, 0, 0]
    data = zlib.decompress(chunks[b"IDAT"])
    row = 1 + width * bits // 8
    assert len(data) == row * height and not any(data[::row])
    return width, height, levels(b"".join(data[r * row + 1:(r + 1) * row] for r in range(height)), bits // 8)


def levels(data, size):
    return [int.from_bytes(data[i:i + size], "big") for i in range(0, len(data), size)]


if not shutil.which("gdb"):
    skip("there is no gdb")
shutil.rmtree(out, ignore_errors=True)
os.makedirs(out)
if "works" not in run("-ex", "python print('works')")[0]:
    skip("this gdb has no Python")

output, errors = run("-x", os.path.join(sources, "session.gdb"), program)
if "ptrace" in errors and "not permitted" in errors:
    skip("gdb may not run programs here")
print(output, errors, sep="\n")
assert "Python Exception" not in output + errors

_, _, shown = output.partition("== What follows is compared\n")
with open(os.path.join(sources, "session.txt")) as file:
    expected = file.read()
shown = "".join(line + "\n" for line in shown.splitlines() if not line.startswith("[Inferior"))
difference = "".join(difflib.unified_diff(expected.splitlines(True), shown.splitlines(True), "expected", "shown"))
if difference:
    sys.exit(difference)

bytes_ = (6, 4, [1] * 6 + [1, 1, 7, 7, 7, 1] * 2 + [1] * 6)
words = (20, 5, list(range(1000, 31000, 300)))
os.chdir(out)
assert read_pgm("bytes.pgm") == bytes_
assert read_png("bytes.png") == bytes_
assert read_png("bytes_again.png") == bytes_
assert read_pgm("words.pgm") == words
assert read_png("words.png") == words
# From -0.5, which is black, to 1.25, which is white; the third is a NaN.
assert read_png("floats.png") == (4, 2, [0, 36, 0, 109, 146, 182, 219, 255])
assert read_pgm("first.PGM") == (2, 2, [0, 85, 170, 255])
assert not os.path.exists("a.png")
