"""Class shape: holders, groups, open content, derivation, presence bits."""

import unittest

from ooxmlgen import cpp, emit_cpp

from . import support
from .support import find, member, shape, target


class Holders(unittest.TestCase):
    def test_one_holder_per_choice(self):
        choices = find("CT_Choices")
        self.assertEqual(shape(choices), [("First", "child", "first", False),
                                          ("Data__", "holder", None, False),
                                          ("Data__1", "holder", None, True)])
        self.assertEqual(target(member(choices, "Data__")), "fx::CT_ChoicesData__")
        self.assertEqual(target(member(choices, "Data__1")), "fx::CT_ChoicesData__1")
        # Holders follow their owner in the schema's class order, nested ones first.
        names = [c.name for c in support.model().by_key("fx").classes]
        start = names.index("CT_Choices")
        self.assertEqual(names[start:start + 4], ["CT_Choices", "CT_ChoicesData__",
                                                  "CT_ChoicesData__Data__", "CT_ChoicesData__1"])

    def test_nested_choice_is_a_holder_of_the_holder(self):
        holder = find("CT_ChoicesData__")
        self.assertEqual(holder.kind, "holder")
        self.assertEqual(shape(holder), [("A", "child", "a", False), ("B", "child", "b", False),
                                         ("Data__", "holder", None, False)])
        self.assertEqual(target(member(holder, "Data__")), "fx::CT_ChoicesData__Data__")
        self.assertEqual([m.name for m in find("CT_ChoicesData__Data__").members], ["C", "D"])

    def test_repeating_choice_is_an_array_of_holders(self):
        # Its alternatives stay single: one holder per child, in document order.
        data = member(find("CT_Choices"), "Data__1")
        self.assertEqual(data.kind.storage(find("CT_Choices"), data), "XMLPtrArray<CT_ChoicesData__1>")
        self.assertEqual(shape(find("CT_ChoicesData__1")), [("E", "child", "e", False),
                                                           ("EG_Shared", "group", None, False)])

    def test_group_content_choice_and_top_level_choice(self):
        self.assertEqual(shape(find("EG_Pick")), [("Data__", "holder", None, False)])
        self.assertEqual([m.name for m in find("EG_PickData__").members], ["X", "Y", "O_note"])
        self.assertEqual(shape(find("CT_Dimension")), [("Data__", "holder", None, False)])

    def test_shared_name_of_two_branches_is_guarded(self):
        # Branch 1 is (f, lvl*), branch 2 is lvl*: the first "lvl" takes a
        # child only once "f" of its branch was read, so the second is reachable.
        holder = find("CT_DimensionData__")
        self.assertEqual(shape(holder), [("F", "value_element", "f", False), ("Lvl", "child", "lvl", True),
                                         ("Lvl_1", "child", "lvl", True)])
        self.assertEqual([m.branch_guard for m in holder.members], [[], [0], []])


class Groups(unittest.TestCase):
    def test_groups_and_attribute_groups_are_members(self):
        groups = find("CT_Groups")
        self.assertEqual(shape(groups), [
            ("EG_Shared", "group", None, False),
            ("EG_Shared_1", "group", None, True),
            ("P", "child", "p", True),          # in a repeated sequence
            ("AG_Common", "attribute_group", None, False),
            ("O_AG_Other", "attribute_group", None, False),
        ])
        self.assertEqual([target(m) for m in groups.members if m.target.kind != "complex_type"],
                         ["fx::EG_Shared", "fx::EG_Shared", "fx::AG_Common", "fo::AG_Other"])
        self.assertEqual(shape(find("AG_Common")), [("Lang", "attribute", "lang", False),
                                                    ("Hidden", "attribute", "hidden", False)])

    def test_group_member_named_by_its_class(self):
        self.assertEqual(target(member(find("CT_Naming"), "LowerGroup")), "fx::lowerGroup")
        self.assertEqual(target(member(find("CT_Naming"), "O_EG_Other")), "fo::EG_Other")

    def test_only_groups_have_the_group_operations(self):
        self.assertEqual([c.is_group for c in (find("EG_Shared"), find("AG_Common"),
                                               find("CT_ChoicesData__"), find("CT_Groups"))],
                         [True, True, True, False])


class OpenContent(unittest.TestCase):
    def test_any_is_skipped(self):
        self.assertEqual(shape(find("CT_Open")), [("Known", "child", "known", False)])

    def test_closed_any_becomes_its_elements(self):
        extension = find("CT_Extension")
        self.assertEqual(shape(extension), [("O_note", "child", "o:note", False),
                                            ("O_extra", "child", "o:extra", False),
                                            ("Uri", "attribute", "uri", False)])
        # A declared element has the type of its declaration; an undeclared one the binding's.
        self.assertEqual([target(m) for m in extension.members[:2]], ["fo::CT_Note", "fo::CT_Note"])


class Derivation(unittest.TestCase):
    def test_extension_derives_with_own_members_only(self):
        derived = find("CT_Derived")
        self.assertIs(derived.base, find("CT_Base"))
        self.assertEqual(shape(derived), [("F", "child", "f", False), ("B", "attribute", "b", False)])

    def test_simple_content(self):
        self.assertEqual([(m.name, m.kind.name, m.value.cpp) for m in find("CT_Text").members],
                         [("Value", "text", "double"), ("Unit", "attribute", "wxString")])
        more = find("CT_MoreText")
        self.assertIs(more.base, find("CT_Text"))
        self.assertEqual(shape(more), [("Extra", "attribute", "extra", False)])

    def test_restriction_of_any_type_derives_from_wxany(self):
        literal = find("CT_Literal")
        self.assertTrue(literal.any_base)
        self.assertEqual(literal.members, [])
        self.assertIn("class OOXML_API CT_Literal : public wxAny", self._header())

    def test_base_declared_before_derived(self):
        names = [c.name for c in support.model().by_key("fx").classes]
        self.assertLess(names.index("CT_Derived"), names.index("CT_Base"))   # schema order kept
        header = self._header()
        self.assertLess(header.index("class OOXML_API CT_Base\n"),
                        header.index("class OOXML_API CT_Derived : public CT_Base\n"))

    def _header(self):
        return emit_cpp.emit_header(support.model().by_key("fx"), support.model())


class PresenceBits(unittest.TestCase):
    def test_bit_i_for_member_i_elements_then_attributes(self):
        for cls in support.model().by_key("fx").classes:
            self.assertEqual([m.bit for m in cls.members], list(range(len(cls.members))), cls.name)
        retyped = find("CT_Retyped")
        self.assertEqual(member(retyped, "O_note").bit, 7)    # trailing element after the attributes

    def test_mask_width(self):
        cases = [("CT_Naming", 8, "std::uint32_t m_presence;", "m_presence", "(1u << 8)"),
                 ("CT_Wide", 32, "std::uint64_t m_presence;", "m_presence", "(std::uint64_t(1) << 32)"),
                 ("CT_Widest", 64, "std::uint64_t m_presence[2];", "m_presence[1]", "(std::uint64_t(1) << 0)")]
        for name, bit, declaration, word, value in cases:
            with self.subTest(name):
                cls = find(name)
                self.assertEqual(cpp.mask_declaration(cls), declaration)
                self.assertEqual(cpp.test(cls, bit), f"({word} & {value}) != 0")
                self.assertEqual(cpp.mark(cls, bit), f"{word} |= {value};")


if __name__ == "__main__":
    unittest.main()
