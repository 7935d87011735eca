"""The operations of binding.toml, and the binding's own checks."""

import os
import tempfile
import unittest

from ooxmlgen import rules

from . import support
from .support import find, member, shape, target


class TypeOperations(unittest.TestCase):
    def test_drop_and_move_types(self):
        fx = [c.name for c in support.model().by_key("fx").classes]
        fo = [c.name for c in support.model().by_key("fo").classes]
        self.assertNotIn("CT_Dropped", fx)
        self.assertEqual(fx[-1], "CT_Moved")            # appended to the schema that takes it
        self.assertEqual(fo, ["CT_Note", "EG_Other", "AG_Other"])
        # References to the old name find the moved class.
        self.assertEqual(target(member(find("CT_Retyped"), "Moved")), "fx::CT_Moved")

    def test_content_replaces_the_content_model(self):
        self.assertEqual(shape(find("CT_Replaced")), [("Z", "value_element", "z", False),
                                                      ("O_note", "child", "o:note", False)])


class MemberOperations(unittest.TestCase):
    def test_retyped(self):
        # element_type v, insert_elements w after v, single_elements many,
        # element_name old -> New, attribute_type n, drop_attributes r:id,
        # add_attributes o:flag, trailing_elements o:note.
        retyped = find("CT_Retyped")
        self.assertEqual(shape(retyped), [
            ("V", "value_element", "v", False),
            ("W", "value_element", "w", False),
            ("Many", "child", "many", False),
            ("Old", "child", "New", False),
            ("Moved", "child", "moved", False),
            ("N", "attribute", "n", False),
            ("O_flag", "attribute", "o:flag", False),
            ("O_note", "child", "o:note", False),
        ])
        self.assertEqual([m.value.cpp for m in retyped.members if m.value], ["unsigned int", "wxString",
                                                                             "wxString", "bool"])

    def test_add_alternatives_and_close_any(self):
        self.assertEqual([m.xml for m in find("EG_PickData__").members], ["x", "y", "o:note"])
        self.assertEqual([m.xml for m in find("CT_Extension").members], ["o:note", "o:extra", "uri"])


class Checks(unittest.TestCase):
    def _build_with(self, replace=None, extra=""):
        with open(support.BINDING, encoding="utf-8") as f:
            text = f.read()
        if replace:
            self.assertIn(replace[0], text)
            text = text.replace(replace[0], replace[1], 1)
        with tempfile.TemporaryDirectory() as folder:
            path = os.path.join(folder, "binding.toml")
            with open(path, "w", encoding="utf-8") as f:
                f.write(text + extra)
            return rules.build(support.FIXTURES, path)

    def test_class_count_must_match(self):
        with self.assertRaisesRegex(rules.BindingError, "fx: 28 classes, the binding expects 27"):
            self._build_with(replace=("classes = 28", "classes = 27"))

    def test_unknown_operation(self):
        with self.assertRaisesRegex(rules.BindingError, "unknown deviation op 'rename'"):
            self._build_with(extra='\n[[deviation]]\nwhy = "x"\nop = "rename"\nschema = "fx"\n')

    def test_attribute_type_must_find_every_attribute(self):
        extra = ('\n[[deviation]]\nwhy = "x"\nop = "attribute_type"\nschema = "fx"\ntype = "CT_Base"\n'
                 'attributes = ["a", "nope"]\nvalue_type = "xsd:string"\n')
        with self.assertRaisesRegex(rules.BindingError, "attribute_type: 1 of"):
            self._build_with(extra=extra)

    def test_schema_without_xsd(self):
        with self.assertRaisesRegex(rules.BindingError, "no XSD for urn:fixture:missing"):
            self._build_with(replace=('uri = "urn:fixture:rel"', 'uri = "urn:fixture:missing"'))


if __name__ == "__main__":
    unittest.main()
