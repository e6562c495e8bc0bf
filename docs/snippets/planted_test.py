"""check_snippets.py detects planted faults. Run by ctest."""
import pathlib
import tempfile
import unittest

import check_snippets

SOURCE = "int main() {\n  // snippet\n  first();\n  if (x) {\n    second();\n  }\n  // end of snippet\n}\n"
GOOD = "Text\n\n```cpp\nfirst();\nif (x) {\n  second();\n}\n```\n\n```\na drawing\n```\n"


class Planted(unittest.TestCase):
    def check(self, text, source=SOURCE, output="1 2\n"):
        with tempfile.TemporaryDirectory() as folder:
            root = pathlib.Path(folder)
            (root / "docs" / "snippets").mkdir(parents=True)
            (root / "docs" / "deep").mkdir()
            (root / "docs" / "snippets" / "source.cpp").write_text(source)
            (root / "docs" / "snippets" / "output.txt").write_text(output)
            (root / "docs" / "deep" / "page.md").write_text(text)
            return check_snippets.main(root)

    def test_blocks_of_sources_pass(self):
        self.assertEqual(self.check(GOOD), 0)
        self.assertEqual(self.check(GOOD + "\n```text\n1 2\n```\n"), 0)

    def test_other_blocks_fail(self):
        self.assertEqual(self.check(GOOD.replace("second", "third")), 1)
        self.assertEqual(self.check(GOOD.replace("  second", " second")), 1)
        self.assertEqual(self.check(GOOD + "\n```cpp\nfirst();\n```\n"), 1)
        self.assertEqual(self.check(GOOD + "\n```c++\nfirst();\n```\n"), 1)
        self.assertEqual(self.check(GOOD + "\n```C++\nfirst();\n```\n"), 1)
        self.assertEqual(self.check(GOOD + "\n```text\n1 3\n```\n"), 1)

    def test_blocks_and_snippets_end(self):
        self.assertEqual(self.check(GOOD + "\n```cpp\nfirst();\n"), 1)
        with self.assertRaises(SystemExit):
            self.check(GOOD, SOURCE + "// snippet\n")

    def test_snippets_without_a_text_fail(self):
        self.assertEqual(self.check(GOOD, SOURCE + "// snippet\nthird();\n// end of snippet\n"), 1)
        self.assertEqual(self.check("No block"), 1)


if __name__ == "__main__":
    unittest.main()
