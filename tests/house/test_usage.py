"""Whatever tells how the programs are called knows the same options as they do."""
import re
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent.parent
COMPLETIONS = ("resources/completion/{}.bash", "resources/completion/_{}",
               "resources/completion/{}.fish")
MANUAL = ("docs/man/{}.1",)
# The sources with the text that --help prints, and what is to tell of the same.
TOLD = {
    "orlop": (["src/main_desktop.cpp"], MANUAL),
    "orlop-browser": (["src/main_browser.cpp"], MANUAL),
    "orlop-log": (["src/diagnostics/log_arguments.cpp"], MANUAL + COMPLETIONS),
    "orlop-terminal": (["src/scripting/verbs/verb_words.cpp", "src/app/terminal/usage.cpp"],
                       MANUAL + COMPLETIONS),
}


def options(text):
    return set(re.findall(r"(?<![\w-])--([a-z][a-z-]+)", text))


def told_in(path):
    text = (ROOT / path).read_text(encoding="utf-8")
    if path.endswith(".fish"):
        return set(re.findall(r"(?m)^complete .* -l ([a-z-]+)", text))
    return options(text.replace("\\-", "-"))


class UsageTest(unittest.TestCase):
    def test_options_are_told_everywhere(self):
        for program, (sources, tellers) in TOLD.items():
            known = set().union(*(told_in(source) for source in sources)) - {"help", "version"}
            self.assertTrue(known, program)
            for path in (teller.format(program) for teller in tellers):
                with self.subTest(path):
                    self.assertEqual(told_in(path) - {"help", "version"}, known)


if __name__ == "__main__":
    unittest.main()
