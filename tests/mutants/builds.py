"""The commands of a build folder, and what they compile and link when one source file is another."""

import functools
import json
import os
import re
import shlex
import subprocess

ENTRY = re.compile(r"\b(ippi\w+|core\w+)\(")
KERNELS = re.compile(r"zorvan/CMakeFiles/zorvan_(lowered_)?kernels_(Variant\w+)\.dir/")


def run(command, **options):
    return subprocess.run(command, capture_output=True, text=True, errors="replace", **options)


def namesForOthers(path):
    """The defined symbols that are global, or weak and exported."""
    rows = (line.split() for line in run(["readelf", "--symbols", "--wide", path]).stdout.splitlines())
    return {row[7] for row in rows if len(row) > 7 and row[6] != "UND"
            and (row[4] == "GLOBAL" or row[4:6] == ["WEAK", "DEFAULT"])}


class Build:
    """A build folder of the tests, which is only read. Paths of objects and programs are relative to it."""

    def __init__(self, root, folder):
        self.root, self.folder = root, folder
        with open(os.path.join(folder, "compile_commands.json"), encoding="utf-8") as commands:
            self.compilers = {}
            for command in json.load(commands):
                words = shlex.split(command["command"])
                self.compilers[words[words.index("-o") + 1]] = words
        self.sources = self._sources()
        self.programs = self._programs()

    def _ninja(self, *words):
        return run(["ninja", "-C", self.folder, *words], check=True).stdout

    def _sources(self):
        """The files of the repository that each object includes, by their paths from the root."""
        sources, obj = {}, None
        for line in self._ninja("-t", "deps").splitlines():
            if line[:1].strip():
                obj = line.split(":")[0]
                sources[obj] = set()
            elif line.strip():
                path = os.path.relpath(os.path.normpath(os.path.join(self.folder, line.strip())), self.root)
                if path.startswith(("zorvan/", "tests/")):
                    sources[obj].add(path)
        return sources

    def _programs(self):
        """The test programs, by their names: the words of the command that links each."""
        programs = {}
        for line in self._ninja("-t", "targets", "all").splitlines():
            name = line.split(":")[0]
            if re.fullmatch(r"tests/(foundation|frame|entries|facades)/\w+", name) and "EXECUTABLE" in line:
                words = shlex.split(self._ninja("-t", "commands", "-s", name).splitlines()[-1])
                programs[name] = words[words.index("&&") + 1:words.index("&&", 2)]
        return programs

    def ownObjects(self, program):
        """The objects of the program that no library has."""
        return [word for word in self.programs[program] if word.startswith("tests/") and word.endswith(".o")]

    def includers(self, path):
        return [obj for obj in self.compilers if path in self.sources.get(obj, ())]

    @functools.cache
    def entries(self, obj):
        """The entries that the object defines."""
        return set(ENTRY.findall(run(["nm", "--defined-only", "--demangle", obj], cwd=self.folder).stdout))

    def missesNames(self, obj, output):
        """Whether the new object lacks a name that the linker would then take from the old one. Weak names that are
        not exported may be missing: the compiler has inlined the function everywhere."""
        return not namesForOthers(os.path.join(self.folder, obj)) <= namesForOthers(output)

    def initialData(self, path):
        """The bytes with which the object's variables start."""
        lines = run(["objdump", "-s", "-j", ".data", path], cwd=self.folder).stdout.splitlines()
        return [line for line in lines if line.startswith(" ")]

    @functools.cache
    def namesOfTests(self, program):
        return set(re.findall(r"\b(?:ippi|core)\w+", run([os.path.join(self.folder, program), "--gtest_list_tests"]).stdout))

    def tests(self, program, entries):
        """Whether the program tests one of the entries; those whose tests are named otherwise test any."""
        names = self.namesOfTests(program)
        return not names or any(name.startswith(entry) for name in names for entry in entries)

    def comparable(self, obj):
        """Whether the build folder has the object as it is compiled here: kernels would take long at -O3."""
        return not re.match(r"zorvan/CMakeFiles/zorvan_kernels_", obj)

    def _command(self, obj, overlay, source):
        words = [word for word in self.compilers[obj] if word != "-Werror"]
        if not self.comparable(obj):
            words = ["-O1" if word == "-O3" else word for word in words]
        changed = os.path.join(overlay, source)
        if words[-1] == os.path.join(self.root, source) and os.path.exists(changed):
            words[-1] = changed
        return [words[0], "-w", f"-I{overlay}"] + words[1:]

    def preprocessed(self, obj, text):
        """The text as the preprocessor leaves it with the object's options, without the files that it includes."""
        words = self.compilers[obj]
        own = "\n".join(line for line in text.split("\n") if not line.startswith("#include"))
        return run(words[:words.index("-o")] + ["-E", "-P", "-x", "c++", "-"], input=own, cwd=self.folder).stdout

    def compile(self, obj, overlay, source, output):
        """Compiles the object with the files in the overlay in front of the repository's. Returns whether it
        compiles."""
        words = self._command(obj, overlay, source)
        words[words.index("-o") + 1] = output
        return run(words, cwd=self.folder).returncode == 0

    def link(self, program, objects, output):
        """Links the program with `objects`, new objects by the paths of those that they replace. Returns whether it
        links: with another signature a function has another name."""
        own = self.ownObjects(program)
        others = [new for old, new in objects.items() if old not in own]
        words, taken = [], False
        for word in self.programs[program]:
            if word in objects:
                word = objects[word]
            elif re.search(r"libzorvan_ipp\.so", word):
                word = "zorvan/libzorvan_ipp_static.a"
            if word.endswith(".a") and not taken:
                # Objects in front of the archives take the place of their members. A test's replacement of a
                # library's function stays first.
                words += others + ["-Wl,--allow-multiple-definition"]
                taken = True
            words.append(word)
        words[words.index("-o") + 1] = output
        return run(words, cwd=self.folder).returncode == 0
