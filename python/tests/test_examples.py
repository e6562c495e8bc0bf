"""The tutorial of docs/python.md, and the examples."""

import pathlib
import re
import subprocess
import sys

import pytest

root = pathlib.Path(__file__).resolve().parent.parent.parent


def run(*words, folder):
    done = subprocess.run([sys.executable, *map(str, words)], cwd=folder, capture_output=True, text=True, timeout=500)
    assert done.returncode == 0, done.stdout + done.stderr
    return done.stdout


def test_tutorial(tmp_path, monkeypatch):
    """The lines of the page, on the demo's photograph."""
    command = [root / "examples/coins/get_picture", tmp_path / "coins.png"]
    fetched = subprocess.run(command, capture_output=True, text=True)
    if fetched.returncode != 0:
        pytest.skip("the photograph is not available: " + fetched.stderr.strip().splitlines()[-1])
    (lines,) = re.findall(r"```python\n(.*?)```", (root / "docs/python.md").read_text(), re.DOTALL)
    (tmp_path / "tutorial.py").write_text(lines)
    monkeypatch.setenv("MPLBACKEND", "agg")
    monkeypatch.setenv("MPLCONFIGDIR", str(tmp_path))
    assert run("tutorial.py", folder=tmp_path).startswith("24 coins")
    assert (tmp_path / "found.png").stat().st_size > 10000


def test_discs(tmp_path):
    """A small picture, with a killed worker. The example itself compares its results."""
    out = run(root / "python/examples/discs.py", "--size", 4000, "--tile", 1000, "--kill", folder=tmp_path)
    assert "killed worker" in out and "found: 256 discs" in out and "the same 256 discs, to the last digit" in out
