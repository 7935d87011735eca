"""Names: members, classes, namespaces and name constants."""

import unittest

from ooxmlgen import emit_cpp, rules

from . import support
from .support import find, shape


class MemberNames(unittest.TestCase):
    def test_capitalised_prefixed_and_numbered(self):
        # Other schemas' names carry the prefix of the binding's map ("o", "r"),
        # not the XSD's ("oth", "rel"); a name met again is numbered across
        # elements and attributes alike; a nested sequence adds to its owner.
        self.assertEqual(shape(find("CT_Naming")), [
            ("Item", "child", "item", False),
            ("O_note", "child", "o:note", False),
            ("Item_1", "child", "item", False),
            ("Item_2", "child", "item", False),
            ("O_EG_Other", "group", None, False),
            ("LowerGroup", "group", None, False),
            ("ZoomScale", "attribute", "zoomScale", False),
            ("R_id", "attribute", "r:id", False),
            ("Item_3", "attribute", "item", False),
        ])

    def test_holders_are_not_numbered_like_names(self):
        # Holders are told apart by their own suffix: Data__, Data__1.
        self.assertEqual([m.name for m in find("CT_Choices").members], ["First", "Data__", "Data__1"])


class ClassNames(unittest.TestCase):
    def test_class_names_are_identifiers(self):
        cls = find("CT_Dash_Name")
        self.assertEqual(cls.xsd_name, "CT_Dash-Name")
        self.assertEqual(find("lowerGroup").xsd_name, "lowerGroup")

    def test_namespace_identifiers(self):
        cases = {
            "http://schemas.openxmlformats.org/spreadsheetml/2006/main":
                "schemas_openxmlformats_org_spreadsheetml_x2006_main",
            "http://purl.org/dc/elements/1.1/": "purl_org_dc_elements_x1_x1_",
            "http://purl.org/dc/terms/": "purl_org_dc_terms_",
            "urn:schemas-microsoft-com:office:office": "urn_schemas_microsoft_com_office_office",
            "http://schemas.microsoft.com/office/drawing/2018/animation/model3d":
                "schemas_microsoft_com_office_drawing_x2018_animation_model3d",
        }
        for uri, expected in cases.items():
            with self.subTest(uri=uri):
                self.assertEqual(rules.namespace_identifier(uri), expected)
        self.assertEqual(support.model().by_key("fx").cpp_namespace, "urn_fixture_main")


class NameConstants(unittest.TestCase):
    def test_identifiers(self):
        names = support.model().by_key("fx").names
        self.assertEqual(names["r:id"], "s_r_id")
        self.assertEqual(names["zoomScale"], "s_zoomScale")
        self.assertEqual(names["a-b"], "s_a_x2D_b")

    def test_creation_order_decides_suffixes(self):
        # Member names first, then enumeration values, then string defaults:
        # the enumeration "o_note" and the default "r_id" meet identifiers
        # already taken by the names "o:note" and "r:id", the default
        # "light:grey" one taken by the enumeration "light_grey".
        names = support.model().by_key("fx").names
        self.assertEqual(names["o:note"], "s_o_note")
        self.assertEqual(names["o_note"], "s_o_note_1")
        self.assertEqual(names["r_id"], "s_r_id_1")
        self.assertEqual(names["light_grey"], "s_light_grey")
        self.assertEqual(names["light:grey"], "s_light_grey_1")

    def test_every_compared_name_and_enumeration_has_one(self):
        schema = support.model().by_key("fx")
        for cls in schema.classes:
            for m in cls.members:
                if m.xml is not None:
                    self.assertIn(m.xml, schema.names, f"{cls.name}.{m.name}")
        # Each enumeration value once per schema, in schema order.
        self.assertEqual(schema.enumerations, ["red", "o_note", "a-b", "dark", "light_grey"])
        self.assertEqual(len(set(schema.names.values())), len(schema.names))

    def test_emitters_create_none(self):
        model = support.build()
        before = {s.key: dict(s.names) for s in model.schemas}
        files = emit_cpp.emit_all(model)
        self.assertEqual({s.key: s.names for s in model.schemas}, before)
        constants = files["src/ooxml/constants/fx.h"]
        for ident in ("s_r_id_1", "s_o_note_1", "s_red"):
            self.assertIn(f"extern const wxString {ident};", constants)


if __name__ == "__main__":
    unittest.main()
