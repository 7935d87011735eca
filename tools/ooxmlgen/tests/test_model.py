"""The model: class shape, presence bits, names, the binding's operations and checks."""

import json
import pathlib
import tempfile
import unittest

from ooxmlgen import cpp, emit_cpp, rules

from .support import BINDING, FIXTURES, find, member, model, shape

# Names are capitalised; other schemas' carry the binding's prefix ("o", "r"), not the XSD's ("oth", "rel");
# a name met again is numbered "_1", "_2" across elements and attributes, holders by their own suffix.
# One holder per choice, a nested choice a holder of the holder, a repeating one an array of holders.
# xsd:any is skipped unless the binding closes it; a derived class has its own members only.
SHAPES = {
    "CT_Naming": "Item/C=item O_note/C=o:note Item_1/C=item Item_2/C=item O_EG_Other/G LowerGroup/G "
                 "ZoomScale/A=zoomScale R_id/A=r:id Item_3/A=item",
    "CT_Choices": "First/C=first Data__/H Data__1/H*",
    "CT_ChoicesData__": "A/C=a B/C=b Data__/H",
    "CT_ChoicesData__Data__": "C/C=c D/C=d", "CT_ChoicesData__1": "E/C=e EG_Shared/G",
    "EG_Pick": "Data__/H", "EG_PickData__": "X/C=x Y/C=y O_note/C=o:note",   # add_alternatives
    "CT_DimensionData__": "F/VE=f Lvl/C*=lvl Lvl_1/C*=lvl",
    "CT_Groups": "EG_Shared/G EG_Shared_1/G* P/C*=p AG_Common/AG O_AG_Other/AG",
    "AG_Common": "Lang/A=lang Hidden/A=hidden", "CT_Open": "Known/C=known",
    "CT_Extension": "O_note/C=o:note O_extra/C=o:extra Uri/A=uri",     # close_any
    "CT_Derived": "F/C=f B/A=b", "CT_Text": "Value/T Unit/A=unit", "CT_MoreText": "Extra/A=extra",
    "CT_Replaced": "Z/VE=z O_note/C=o:note",                           # content
    # element_type v, insert_elements w, single_elements many, element_name old, attribute_type n,
    # drop_attributes r:id, add_attributes o:flag, trailing_elements o:note (after the attributes)
    "CT_Retyped": "V/VE=v W/VE=w Many/C=many Old/C=New Moved/C=moved N/A=n O_flag/A=o:flag O_note/C=o:note",
}
TARGETS = {"CT_Choices.Data__": "fx::CT_ChoicesData__", "CT_Choices.Data__1": "fx::CT_ChoicesData__1",
           "CT_ChoicesData__.Data__": "fx::CT_ChoicesData__Data__", "CT_Groups.EG_Shared_1": "fx::EG_Shared",
           "CT_Groups.O_AG_Other": "fo::AG_Other", "CT_Naming.LowerGroup": "fx::lowerGroup",
           "CT_Naming.O_EG_Other": "fo::EG_Other", "CT_Extension.O_note": "fo::CT_Note",
           "CT_Extension.O_extra": "fo::CT_Note", "CT_Retyped.Moved": "fx::CT_Moved"}   # move_type


def build_with(old="", new="", **deviation):
    text = pathlib.Path(BINDING).read_text(encoding="utf-8")
    assert old in text, old
    if deviation:
        text += '\n[[deviation]]\nwhy = "test"\n' + "".join(f"{k} = {json.dumps(v)}\n" for k, v in deviation.items())
    with tempfile.TemporaryDirectory() as folder:
        path = pathlib.Path(folder, "binding.toml")
        path.write_text(text.replace(old, new, 1), encoding="utf-8")
        return rules.build(FIXTURES, str(path))


class Model(unittest.TestCase):
    maxDiff = None   # whole shapes in a failure
    def test_members(self):
        self.assertEqual({name: shape(find(name)) for name in SHAPES}, SHAPES)
        self.assertEqual({path: "{0.schema.key}::{0.name}".format(member(path)[1].target) for path in TARGETS}, TARGETS)
        self.assertEqual([m.value.cpp for m in find("CT_Retyped").members if m.value],
                         ["unsigned int", "wxString", "wxString", "bool"])

    def test_classes(self):
        # Schema order; holders right after their owner, nested ones first; CT_Dropped dropped, CT_Moved moved in.
        self.assertEqual(" ".join(c.name for c in model().by_key("fx").classes), (
            "CT_Empty CT_Dash_Name CT_Naming lowerGroup CT_Choices CT_ChoicesData__ CT_ChoicesData__Data__ "
            "CT_ChoicesData__1 EG_Pick EG_PickData__ CT_Dimension CT_DimensionData__ EG_Shared AG_Common CT_Groups "
            "CT_Open CT_Extension CT_Derived CT_Base CT_Text CT_MoreText CT_Literal CT_Values CT_Wide CT_Widest "
            "CT_Replaced CT_Retyped CT_Moved"))
        self.assertEqual([find(n).is_group for n in ("EG_Shared", "AG_Common", "CT_ChoicesData__", "CT_Groups")],
                         [True, True, True, False])

    def test_derivation(self):
        self.assertEqual([find(n).base for n in ("CT_Derived", "CT_MoreText")], [find("CT_Base"), find("CT_Text")])
        header = emit_cpp.emit_header(model().by_key("fx"), model())
        self.assertTrue("class OOXML_API CT_Literal : public wxAny\n" in header)   # restriction of anyType
        self.assertLess(header.index("class OOXML_API CT_Base\n"),                # declared before derived
                        header.index("class OOXML_API CT_Derived : public CT_Base\n"))

    def test_presence_bits(self):
        for cls in model().by_key("fx").classes:
            self.assertEqual([m.bit for m in cls.members], list(range(len(cls.members))), cls.name)
        for name, bit, declaration, word, value in [
                ("CT_Naming", 8, "std::uint32_t m_presence;", "m_presence", "(1u << 8)"),
                ("CT_Wide", 32, "std::uint64_t m_presence;", "m_presence", "(std::uint64_t(1) << 32)"),
                ("CT_Widest", 64, "std::uint64_t m_presence[2];", "m_presence[1]", "(std::uint64_t(1) << 0)")]:
            cls = find(name)
            self.assertEqual([cpp.mask_declaration(cls), cpp.test(cls, bit), cpp.mark(cls, bit)],
                             [declaration, f"({word} & {value}) != 0", f"{word} |= {value};"])

    def test_name_constants(self):
        # Created for member names, then enumeration values, then string defaults: an identifier already
        # taken gets "_1" (enumeration "o_note" after "o:note", defaults "r_id" and "light:grey" last).
        fresh = build_with()
        before = {s.key: dict(s.names) for s in fresh.schemas}
        constants = emit_cpp.emit_all(fresh)["generated/ooxml/constants/fx_names.h"]
        self.assertEqual({s.key: s.names for s in fresh.schemas}, before)          # the emitters create none
        schema = fresh.by_key("fx")
        expected = {"r:id": "s_r_id", "zoomScale": "s_zoomScale", "a-b": "s_a_x2D_b", "o:note": "s_o_note",
                    "o_note": "s_o_note_1", "r_id": "s_r_id_1", "light_grey": "s_light_grey",
                    "light:grey": "s_light_grey_1"}
        self.assertEqual({text: schema.names[text] for text in expected}, expected)
        self.assertIn("extern const wxString s_light_grey_1;", constants)
        self.assertEqual(schema.enumerations, ["red", "o_note", "a-b", "dark", "light_grey"])
        self.assertEqual(len(set(schema.names.values())), len(schema.names))
        self.assertLessEqual({m.xml for c in schema.classes for m in c.members if m.xml}, set(schema.names))
        self.assertEqual([rules.namespace_identifier(u) for u in ("http://purl.org/dc/elements/1.1/",
                                                                  "urn:schemas-microsoft-com:office:office")],
                         ["purl_org_dc_elements_x1_x1_", "urn_schemas_microsoft_com_office_office"])

    def test_binding_errors(self):
        on = dict(schema="fx", type="CT_Base")
        for error, change in [
                ("fx: 28 classes, the binding expects 27", ("classes = 28", "classes = 27")),
                ("no XSD for urn:fixture:no", ('uri = "urn:fixture:rel"', 'uri = "urn:fixture:no"')),
                ("fo: unknown schema 'fz' in knows", ("knows = { fx", "knows = { fz")),
                ("unknown deviation op 'rename'", dict(op="rename", **on)),
                ("attribute_type: 1 of .* in CT_Base", dict(op="attribute_type", attributes=["a", "x"],
                                                            value_type="xsd:int", **on)),
                ("single_elements: no element x in CT_Base", dict(op="single_elements", elements=["e", "x"], **on)),
                ("element_type: no element x in CT_Base", dict(op="element_type", element="x", value_type="xsd:int",
                                                              **on)),
                ("drop_attributes: not every one of .* is in CT_Base",
                 dict(op="drop_attributes", attributes=["o:note"], **on)),
                ("CT_Base: no xsd:any to close", dict(op="close_any", elements=[["o:note"]], **on)),
                ("cannot resolve 'z:flag'", dict(op="add_attributes", attributes=[["z:flag"]], **on)),
                ("CT_X", dict(op="drop_types", schema="fx", types=["CT_X"])),
                ("CT_X", {"op": "move_type", "schema": "fx", "from": "fo", "type": "CT_X"})]:
            with self.subTest(change), self.assertRaisesRegex(Exception, error):
                build_with(**change) if isinstance(change, dict) else build_with(*change)
