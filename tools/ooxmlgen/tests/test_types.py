"""Storage of simple values and the defaults that constructors give them."""

import unittest

from ooxmlgen import cpp
from ooxmlgen.model import ValueType

from .support import find, member


def _storage(cls_name, *names):
    cls = find(cls_name)
    return [member(cls, n).kind.storage(cls, member(cls, n)) for n in names]


class Storage(unittest.TestCase):
    def test_integer_widths(self):
        # By the XSD type's range; unbounded integers are 32-bit, signed or not
        # as their range says; restrictions (and restrictions of them) keep the base's.
        self.assertEqual(_storage("CT_Values", "I8", "U8", "I16", "U16", "I32", "U32", "I64", "U64",
                                  "Big", "Count_1", "Small", "Inline"),
                         ["char", "unsigned char", "short", "unsigned short", "int", "unsigned int",
                          "long long", "unsigned long long", "int", "unsigned int", "unsigned char",
                          "unsigned short"])

    def test_other_simple_types(self):
        self.assertEqual(_storage("CT_Values", "B", "F", "D", "Dec", "S", "When"),
                         ["bool", "float", "double", "double", "wxString", "wxString"])

    def test_enumerations_are_text_and_unions_variants(self):
        self.assertEqual(_storage("CT_Values", "Colour", "Shade", "Auto"), ["wxString", "wxString", "wxAny"])

    def test_lists_and_repeated_values_are_vectors(self):
        self.assertEqual(_storage("CT_Values", "Ints", "Tokens", "Flags", "Count"),
                         ["std::vector<int>", "std::vector<wxString>", "std::vector<bool>", "std::vector<int>"])
        values = find("CT_Values")
        self.assertTrue(member(values, "Ints").value.is_list)
        self.assertFalse(member(values, "Count").value.is_list)   # repeated element of single ints
        self.assertEqual(member(values, "Ints").value.parse, "ParseInt32")

    def test_converters(self):
        values = find("CT_Values")
        self.assertEqual([member(values, n).value.parse for n in ("B", "U8", "I64", "F", "Colour", "Auto")],
                         ["ParseBool", "ParseUInt8", "ParseInt64", "ParseFloat", "ParseString", "ParseVariant"])


class Defaults(unittest.TestCase):
    def test_initializers(self):
        values = find("CT_Values")
        expected = {
            "B": "true", "PlainBool": "false", "I8": "0", "I32": "-5", "U32": "7u",
            "U64": "18446744073709551615ull", "Small": "static_cast<unsigned char>(3)", "F": "0.5f",
            "D": "std::numeric_limits<double>::quiet_NaN()", "S": "s_r_id_1", "Colour": "s_red",
            "Auto": "wxAny(s_auto)", "AutoNum": "wxAny(static_cast<wxLongLong_t>(12ll))", "Ints": "{1, 2}",
            "Label": "s_light_grey_1",
            # Strings, variants and vectors without a default are default-constructed.
            "When": None, "Shade": None, "Tokens": None, "Count": None,
        }
        for name, initializer in expected.items():
            with self.subTest(name):
                m = member(values, name)
                self.assertEqual(m.kind.initializer(values, m), initializer)

    def test_objects_start_empty(self):
        choices = find("CT_Choices")
        self.assertEqual([m.kind.initializer(choices, m) for m in choices.members], ["nullptr", "nullptr", None])

    def test_literals(self):
        names = {"x": "s_x"}
        cases = [(ValueType("bool", "ParseBool"), "1", "true"),
                 (ValueType("short", "ParseInt16"), "-7", "static_cast<short>(-7)"),
                 (ValueType("long long", "ParseInt64"), "-9", "-9ll"),
                 (ValueType("float", "ParseFloat"), "-INF", "-std::numeric_limits<float>::infinity()"),
                 (ValueType("double", "ParseDouble"), "2", "2.0"),
                 (ValueType("wxAny", "ParseVariant"), "1.5", "wxAny(1.5)"),
                 (ValueType("wxAny", "ParseVariant"), "x", "wxAny(s_x)")]
        for value, text, literal in cases:
            with self.subTest(cpp=value.cpp, text=text):
                self.assertEqual(cpp.value_literal(value, text, names), literal)
                self.assertEqual(cpp.needs_constant(value, text), literal.endswith("s_x)"))

    def test_impossible_defaults_fail(self):
        for value, text in [(ValueType("char", "ParseInt8"), "300"), (ValueType("unsigned int", "ParseUInt32"), "-1"),
                            (ValueType("bool", "ParseBool"), "yes")]:
            with self.subTest(cpp=value.cpp, text=text):
                with self.assertRaises(ValueError):
                    cpp.value_literal(value, text, {})


if __name__ == "__main__":
    unittest.main()
