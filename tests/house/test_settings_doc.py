"""What scripts/settings-doc takes for the reading of a setting, and what it makes of limits."""
import importlib.machinery
import importlib.util
import unittest
from pathlib import Path

SCRIPT = Path(__file__).resolve().parents[2] / "scripts" / "settings-doc"
LOADER = importlib.machinery.SourceFileLoader("settings_doc", str(SCRIPT))
settings_doc = importlib.util.module_from_spec(importlib.util.spec_from_loader("settings_doc", LOADER))
LOADER.exec_module(settings_doc)


class Readings(unittest.TestCase):
    def reads(self, text, is_settings_window=False):
        return settings_doc.settings_read(settings_doc.code_of(text), is_settings_window)

    def test_a_reading_takes_the_value_to_act_upon_it(self):
        for text in ("if (defaults.get(settings::autoQuit))",
                     "defaults().get(\n    app::settings::autoQuit) > 0",
                     "defaults_.stringArrayForKey(settings::autoQuit.name())",
                     "folderPathForKey(settings::autoQuit.name(), home())",
                     "get(autoQuit)",
                     "return &settings::autoQuit;",
                     "const ScheduledTime time{settings::autoQuit, 22};",
                     'u"http://x"_s; subfolder(path, settings::autoQuit, download)'):
            self.assertEqual(self.reads(text), {"autoQuit"}, text)

    def test_words_storing_and_observing_are_none(self):
        for text in ("bool autoQuit = true;",
                     "// get(settings::autoQuit)",
                     'log("get(settings::autoQuit)")',
                     "defaults.set(settings::autoQuit, true)",
                     "defaults_.removeObject(settings::autoQuit.name())",
                     "if (key == settings::autoQuit.name())",
                     "names(settings::autoQuit, settings::autoQuit)",
                     "toggle(settings::autoQuit)"):
            self.assertEqual(self.reads(text), set(), text)

    def test_a_control_of_the_settings_window_is_none_but_what_it_asks_is(self):
        self.assertEqual(self.reads("page->addSwitch(app::settings::autoQuit)", True), set())
        self.assertEqual(self.reads("defaults.get(app::settings::autoQuit)", True), {"autoQuit"})


class LimitsText(unittest.TestCase):
    def test_names_each_bound_and_what_lies_beyond_it(self):
        for source, text in (("", ""),
                             ("{.lowest = 0}", " Below 0 counts as 0."),
                             ("{.lowest = 2, .below = 4, .highest = 9}",
                              " Below 2 counts as 4, above 9 as 9."),
                             ("{.highest = 9, .above = -1}", " Above 9 counts as -1.")):
            self.assertEqual(settings_doc.limits_of(source), text)


if __name__ == "__main__":
    unittest.main()
