"""The corpora of the fuzzers: a text file for each, with an input in hexadecimal digits on each line.

    corpus.py replay PROGRAM FILE          runs the program once on each input
    corpus.py unpack FILE FOLDER           writes each input into a file of the folder
    corpus.py keep PROGRAM FOLDER FILE     replaces the text file by the fewest inputs of the folder and of the file
                                           that reach what all of them reach
"""

import hashlib
import subprocess
import sys
import tempfile
from pathlib import Path


def inputs_of(file):
    return [bytes.fromhex(line) for line in Path(file).read_text().splitlines()]


def unpack(file, folder):
    Path(folder).mkdir(parents=True, exist_ok=True)
    for data in inputs_of(file):
        (Path(folder) / hashlib.sha1(data).hexdigest()).write_bytes(data)


def replay(program, file):
    if not inputs_of(file):
        sys.exit(f"{file} has no inputs")
    with tempfile.TemporaryDirectory() as folder:
        unpack(file, folder)
        # The program prints the name of each input before it runs it, and its bytes if it finds something.
        sys.exit(subprocess.run([program, *map(str, Path(folder).iterdir())]).returncode)


def keep(program, found, file):
    with tempfile.TemporaryDirectory() as folder:
        known, least = Path(folder) / "known", Path(folder) / "least"
        known.mkdir()
        least.mkdir()
        if Path(file).exists():
            unpack(file, known)
        subprocess.run([program, "-merge=1", "-use_counters=0", str(least), str(known), str(found)], check=True)
        lines = sorted((path.read_bytes().hex() for path in least.iterdir()), key=lambda line: (len(line), line))
        Path(file).write_text("".join(line + "\n" for line in lines if line))


commands = {"replay": replay, "unpack": unpack, "keep": keep}
if len(sys.argv) < 2 or sys.argv[1] not in commands:
    sys.exit(__doc__)
commands[sys.argv[1]](*sys.argv[2:])
