"""The C++ of each member kind: storage, initializers, literals, accessors, reading, traversal, comments."""

import re
import unittest

from ooxmlgen import cpp, emit_cpp, emit_traversal
from ooxmlgen.model import ValueType

from .support import find, member, model

# Member of CT_Values: storage, converter, constructor initializer (None: default-constructed).
# Integers by the XSD type's range; unbounded ones (Big, Count_1) in 32 bits, signed as their range says.
VALUES = [
    ("B", "bool", "ParseBool", "true"), ("PlainBool", "bool", "ParseBool", "false"),
    ("I8", "char", "ParseInt8", "0"), ("U8", "unsigned char", "ParseUInt8", "0"),
    ("I16", "short", "ParseInt16", "0"), ("U16", "unsigned short", "ParseUInt16", "0"),
    ("I32", "int", "ParseInt32", "-5"), ("U32", "unsigned int", "ParseUInt32", "7u"),
    ("I64", "long long", "ParseInt64", "0"), ("U64", "unsigned long long", "ParseUInt64", "18446744073709551615ull"),
    ("Big", "int", "ParseInt32", "0"), ("Count_1", "unsigned int", "ParseUInt32", "0"),
    ("Small", "unsigned char", "ParseUInt8", "static_cast<unsigned char>(3)"),   # restriction of a restriction
    ("Inline", "unsigned short", "ParseUInt16", "0"),                           # anonymous restriction
    ("F", "float", "ParseFloat", "0.5f"), ("D", "double", "ParseDouble", "std::numeric_limits<double>::quiet_NaN()"),
    ("Dec", "double", "ParseDouble", "0"), ("When", "wxString", "ParseString", None),
    ("S", "wxString", "ParseString", "s_r_id_1"), ("Label", "wxString", "ParseString", "s_light_grey_1"),
    ("Colour", "wxString", "ParseString", "s_red"), ("Shade", "wxString", "ParseString", None),   # enumerations
    ("Auto", "wxAny", "ParseVariant", "wxAny(s_auto)"),                                          # unions
    ("AutoNum", "wxAny", "ParseVariant", "wxAny(static_cast<wxLongLong_t>(12ll))"),
    ("Ints", "std::vector<int>", "ParseInt32", "{1, 2}"), ("Tokens", "std::vector<wxString>", "ParseString", None),
    ("Flags", "std::vector<bool>", "ParseBool", None), ("Count", "std::vector<int>", "ParseInt32", None),  # repeated
]

# Member: getter comment; accessors inline (scalars, pointers) or in the source (copies); the reader's
# condition (matcher "c", name "u") and call (source "s", name "n"); the traversal's call.
KINDS = {
    "CT_Naming.ZoomScale": ('"zoomScale": attribute, unsigned int', True, "c.Is(s_zoomScale)",
                            "ParseUInt32(&m_ZoomScale, s)", "VisitValue"),
    "CT_Values.Ints": ('"ints": attribute, list of int, default "1 2"', False, "c.Is(s_ints)",
                       "ParseList(&m_Ints, s, ParseInt32)", "VisitValues"),
    "CT_Values.Auto": ('"auto": attribute, wxAny, default "auto"', False, "c.Is(s_auto)",
                       "ParseVariant(&m_Auto, s)", "VisitValue"),
    "CT_Values.Title": ('"title": value element, wxString', False, "c.Is(s_title)",
                        "ReadValue(m_Title, s, ParseString)", "VisitValue"),
    "CT_Values.Count": ('"count": value element, int, repeated', False, "c.Is(s_count)",
                        "AppendValue(m_Count, s, ParseInt32)", "VisitValues"),
    "CT_Naming.O_note": ('"o:note": child element', True, "c.Is(s_o_note)", "ReadSingle(m_O_note, s, context)",
                         "VisitObject"),
    "CT_Groups.P": ('"p": child element, repeated', False, "c.Is(s_p)", "ReadAppend(m_P, s, context)", "VisitObjects"),
    "CT_Naming.O_EG_Other": ("group o:EG_Other", True, "urn_fixture_other::EG_Other::HasProperty(u, context)",
                             "SetSingle(m_O_EG_Other, n, s, context)", "VisitObject"),
    "CT_Groups.EG_Shared_1": ("group EG_Shared, repeated", False, "EG_Shared::HasProperty(u, context)",
                              "SetAppend(m_EG_Shared_1, n, s, context)", "VisitObjects"),
    "CT_Choices.Data__1": ("choice holder, repeated", False, "CT_ChoicesData__1::HasProperty(u, context)",
                           "SetAppend(m_Data__1, n, s, context)", "VisitObjects"),
    "CT_Groups.O_AG_Other": ("attribute group o:AG_Other", True, "urn_fixture_other::AG_Other::HasProperty(u, context)",
                             "SetAttribute(m_O_AG_Other, n, s, context)", "VisitObject"),
}


class Cpp(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        fx = model().by_key("fx")
        cls.header = emit_cpp.emit_header(fx, model())
        cls.source = "".join([*emit_cpp.emit_sources(fx).values(), *emit_traversal.emit_sources(fx).values()])

    def test_each_kind(self):
        for path, (comment, inline, condition, call, visit) in KINDS.items():
            with self.subTest(path):
                owner, m = member(path)
                t, name = m.kind.storage(owner, m), m.name
                decl = self.header[self.header.index(f"class OOXML_API {owner.name}\n"):]
                decl = decl[:decl.index("\n};")]
                self.assertEqual(re.search(rf"\n    // (.*)\n    .* Get{name}\(\) const", decl).group(1), comment)
                self.assertEqual((f"{t} Get{name}() const {{ return m_{name}; }}" in decl,
                                  f"{owner.name}::Set{name}({t} value) {{ m_{name} = std::move(value);" in self.source),
                                 (inline, not inline))
                self.assertEqual((m.kind.match(owner, m, "c", "u"), m.kind.read_call(owner, m, "s", "n"),
                                  m.kind.visit(m, "M", "G", str).split("(")[0]), (condition, call, visit))
        members = sum(len(c.members) for c in model().by_key("fx").classes)   # one comment per member, at its getter
        self.assertEqual((len(re.findall(r"\n    // [^\n]*\n    [^\n]* Get\w+\(\) const", self.header)),
                          self.header.count("\n    // ")), (members, members))

    def test_reading_and_traversal(self):
        for text in ["        else if (urn_fixture_other::AG_Other::HasProperty(attribute.Name(), context))",
                     "m_Ints.clear(); if (!ParseList(&m_Ints, attribute.Value(), ParseInt32)) return false;",
                     # the text is read before the children, and its presence bit stays clear
                     "    if (!ReadValue(m_Value, node, ParseDouble))\n        return false;\n    for (ChildReader",
                     "~CT_Choices()\n{\n    delete m_First;\n    delete m_Data__;\n    DeleteAll(m_Data__1);\n}",
                     # the first of two "lvl" takes the name only once its branch began; HasProperty any "lvl"
                     "if ((((m_presence & (1u << 0)) != 0)) && match.Is(s_lvl))\n    {\n        if (!ReadAppend(m_Lvl,",
                     "    if (match.Is(s_lvl))\n    {\n        if (!ReadAppend(m_Lvl_1,",
                     "    return match.Is(s_f)\n        || match.Is(s_lvl)\n        || match.Is(s_lvl);",
                     '    VisitValues(visitor, Member{"Ints", "ints", MemberKind::Attribute, 24, o.CheckInts(), '
                     'true, 0, &info::fx::CT_Values}, o.GetInts());\n',
                     '    VisitObject(visitor, Member{"O_AG_Other", "", MemberKind::AttributeGroup, 4, '
                     'o.CheckO_AG_Other(), false, 0, &info::fx::CT_Groups}, o.GetO_AG_Other(), info::fo::AG_Other);\n']:
            self.assertTrue(text in self.source, text)
        self.assertFalse(member("CT_Text.Value")[1].kind.marks_presence)
        visit = self.source[self.source.index("void Visit_CT_Derived"):]    # the base class's members first
        self.assertLess(visit.index("info::fx::CT_Base.visit("), visit.index('Member{"F"'))

    def test_storage_converter_initializer(self):
        for name, storage, parse, initializer in VALUES:
            cls, m = member(f"CT_Values.{name}")
            self.assertEqual((m.kind.storage(cls, m), m.value.parse, m.kind.initializer(cls, m)),
                             (storage, parse, initializer), name)
        choices = find("CT_Choices")   # objects start empty
        self.assertEqual([m.kind.initializer(choices, m) for m in choices.members], ["nullptr", "nullptr", None])

    def test_literals(self):
        for t, text, literal in [("bool", "1", "true"), ("short", "-7", "static_cast<short>(-7)"),
                                 ("long long", "-9", "-9ll"), ("double", "2", "2.0"),
                                 ("float", "-INF", "-std::numeric_limits<float>::infinity()"),
                                 ("wxAny", "1.5", "wxAny(1.5)"), ("wxAny", "x", "wxAny(s_x)")]:
            with self.subTest(t=t, text=text):
                self.assertEqual(cpp.value_literal(ValueType(t, ""), text, {"x": "s_x"}), literal)
                self.assertEqual(cpp.needs_constant(ValueType(t, ""), text), literal.endswith("s_x)"))
        for t, text in [("char", "300"), ("unsigned int", "-1"), ("bool", "yes")]:   # impossible defaults
            self.assertRaises(ValueError, cpp.value_literal, ValueType(t, ""), text, {})
