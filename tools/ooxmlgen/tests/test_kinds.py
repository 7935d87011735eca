"""What each member kind prints: accessors, reading, traversal, getter comments."""

import re
import unittest

from ooxmlgen import emit_cpp, emit_traversal

from . import support
from .support import find, member


def _header():
    return emit_cpp.emit_header(support.model().by_key("fx"), support.model())


def _source():
    return "".join(emit_cpp.emit_sources(support.model().by_key("fx")).values())


class Accessors(unittest.TestCase):
    def test_scalars_and_pointers_inline_copies_out_of_line(self):
        header, source = _header(), _source()
        inline = ["unsigned int GetZoomScale() const { return m_ZoomScale; }",
                  "CT_Empty* GetItem() const { return m_Item; }",
                  "urn_fixture_other::CT_Note* GetO_note() const { return m_O_note; }"]
        for line in inline:
            self.assertIn(line, header)
        out_of_line = [("CT_Naming", "wxString", "R_id"), ("CT_Values", "wxAny", "Auto"),
                       ("CT_Values", "std::vector<int>", "Ints"),
                       ("CT_Choices", "XMLPtrArray<CT_ChoicesData__1>", "Data__1")]
        for cls, t, name in out_of_line:
            with self.subTest(name):
                self.assertIn(f"    {t} Get{name}() const;\n", header)
                self.assertIn(f"void {cls}::Set{name}({t} value) {{ m_{name} = std::move(value);", source)

    def test_destructor_releases_owned_objects_only(self):
        source = _source()
        self.assertIn("CT_Choices::~CT_Choices()\n{\n    delete m_First;\n    delete m_Data__;\n"
                      "    DeleteAll(m_Data__1);\n}", source)
        self.assertIn("CT_Values::~CT_Values()\n{\n}", source)


class Reading(unittest.TestCase):
    def _read(self, cls_name, name):
        cls = find(cls_name)
        m = member(cls, name)
        return m.kind.match(cls, m, "child", "child.Name()"), m.kind.read_statement(cls, m, "node", "name")

    def test_each_kind(self):
        cases = {
            ("CT_Naming", "ZoomScale"): ("child.Is(s_zoomScale)", "if (!ParseUInt32(&m_ZoomScale, node)) return false;"),
            ("CT_Values", "Ints"): ("child.Is(s_ints)",
                                    "m_Ints.clear(); if (!ParseList(&m_Ints, node, ParseInt32)) return false;"),
            ("CT_Values", "Title"): ("child.Is(s_title)", "if (!ReadValue(m_Title, node, ParseString)) return false;"),
            ("CT_Values", "Count"): ("child.Is(s_count)", "if (!AppendValue(m_Count, node, ParseInt32)) return false;"),
            ("CT_Naming", "O_note"): ("child.Is(s_o_note)", "if (!ReadSingle(m_O_note, node, context)) return false;"),
            ("CT_Groups", "P"): ("child.Is(s_p)", "if (!ReadAppend(m_P, node, context)) return false;"),
            ("CT_Naming", "O_EG_Other"): ("urn_fixture_other::EG_Other::HasProperty(child.Name(), context)",
                                          "if (!SetSingle(m_O_EG_Other, name, node, context)) return false;"),
            ("CT_Choices", "Data__1"): ("CT_ChoicesData__1::HasProperty(child.Name(), context)",
                                        "if (!SetAppend(m_Data__1, name, node, context)) return false;"),
            ("CT_Groups", "AG_Common"): ("AG_Common::HasProperty(child.Name(), context)",
                                         "if (!SetAttribute(m_AG_Common, name, node, context)) return false;"),
        }
        for (cls_name, name), expected in cases.items():
            with self.subTest(f"{cls_name}.{name}"):
                self.assertEqual(self._read(cls_name, name), expected)

    def test_text_is_read_before_children_without_presence(self):
        source = _source()
        self.assertIn("    if (!ReadValue(m_Value, node, ParseDouble))\n        return false;\n"
                      "    for (ChildReader child", source)
        self.assertFalse(member(find("CT_Text"), "Value").kind.marks_presence)

    def test_sides_of_the_element(self):
        naming = find("CT_Naming")
        self.assertEqual([m.name for m in naming.members_from("attributes")], ["ZoomScale", "R_id", "Item_3"])
        groups = find("CT_Groups")
        self.assertEqual([m.name for m in groups.members_from("children")], ["EG_Shared", "EG_Shared_1", "P"])
        self.assertEqual([m.name for m in find("CT_Text").members_from("content")], ["Value"])

    def test_branch_guard_in_readers_not_in_has_property(self):
        source = _source()
        body = source[source.index("bool CT_DimensionData__::SetProperty(const wxString& name, wxXmlNode*"):]
        body = body[:body.index("\n}\n")]
        guarded = "    if ((((m_presence & (1u << 0)) != 0)) && match.Is(s_lvl))"
        self.assertLess(body.index(guarded), body.index("    if (match.Is(s_lvl))"))
        has = source[source.index("bool CT_DimensionData__::HasProperty"):]
        self.assertIn("return match.Is(s_f)\n        || match.Is(s_lvl)\n        || match.Is(s_lvl);",
                      has[:has.index("\n}\n")])


class Traversal(unittest.TestCase):
    def test_visit_calls(self):
        text = "".join(emit_traversal.emit_sources(support.model().by_key("fx")).values())
        expected = [
            'VisitValues(visitor, Member{"Ints", "ints", MemberKind::Attribute, 24, o.CheckInts(), true, 0, '
            '&info::fx::CT_Values}, o.GetInts());',
            'VisitValue(visitor, Member{"Value", "", MemberKind::Text, 0, o.CheckValue(), false, 0, '
            '&info::fx::CT_Text}, o.GetValue());',
            'VisitValues(visitor, Member{"Count", "count", MemberKind::ValueElement, 1, o.CheckCount(), true, 0, '
            '&info::fx::CT_Values}, o.GetCount());',
            'VisitObject(visitor, Member{"O_note", "o:note", MemberKind::Child, 1, o.CheckO_note(), false, 0, '
            '&info::fx::CT_Naming}, o.GetO_note(), info::fo::CT_Note);',
            'VisitObjects(visitor, Member{"Data__1", "", MemberKind::Holder, 2, o.CheckData__1(), true, 0, '
            '&info::fx::CT_Choices}, o.GetData__1(), info::fx::CT_ChoicesData__1);',
            'VisitObject(visitor, Member{"O_AG_Other", "", MemberKind::AttributeGroup, 4, o.CheckO_AG_Other(), false, '
            '0, &info::fx::CT_Groups}, o.GetO_AG_Other(), info::fo::AG_Other);',
            'VisitObjects(visitor, Member{"EG_Shared_1", "", MemberKind::Group, 1, o.CheckEG_Shared_1(), true, 0, '
            '&info::fx::CT_Groups}, o.GetEG_Shared_1(), info::fx::EG_Shared);',
        ]
        for line in expected:
            self.assertIn("    " + line + "\n", text)
        # The base class's members first, through its own visit function.
        visit = text[text.index("void Visit_CT_Derived"):]
        self.assertLess(visit.index("info::fx::CT_Base.visit("), visit.index('Member{"F"'))


class GetterComments(unittest.TestCase):
    def test_one_comment_per_member_at_its_getter(self):
        header = _header()
        expected = {
            "ZoomScale": '// "zoomScale": attribute, unsigned int',
            "R_id": '// "r:id": attribute, wxString',
            "Ints": '// "ints": attribute, list of int, default "1 2"',
            "B": '// "b": attribute, bool, default "true"',
            "Count": '// "count": value element, int, repeated',
            "Item": '// "item": child element',
            "Lvl": '// "lvl": child element, repeated',
            "Value": "// text content, double",
            "O_EG_Other": "// group o:EG_Other",
            "EG_Shared_1": "// group EG_Shared, repeated",
            "Data__": "// choice holder",
            "Data__1": "// choice holder, repeated",
            "AG_Common": "// attribute group AG_Common",
            "O_AG_Other": "// attribute group o:AG_Other",
        }
        for name, comment in expected.items():
            with self.subTest(name):
                self.assertRegex(header, rf"\n    {re.escape(comment)}\n    [^\n]* Get{name}\(\) const")
        comments = re.findall(r"\n    // [^\n]*\n    [^\n]* Get\w+\(\) const", header)
        members = sum(len(c.members) for c in support.model().by_key("fx").classes)
        self.assertEqual(len(comments), members)
        self.assertEqual(header.count("\n    // "), members)


if __name__ == "__main__":
    unittest.main()
