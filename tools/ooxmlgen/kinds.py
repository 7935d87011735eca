"""The member kinds.  One object per kind answers every question that the
emitters ask about a member of that kind: its storage, its accessor style, its
initial value, how the reader recognises and reads it, how the traversal
reports it, and the comment of its getter.  The emitters never test a kind.

Kinds that hold a value (attribute, text, value element) store it natively;
the others own objects of their target class (child element, group, holder,
attribute group).  Kinds compared by name match the member's own XML name;
nested kinds ask their target class's HasProperty instead.
"""

from __future__ import annotations

from typing import Callable, List, Optional

from . import cpp
from .model import Class, Member

# Where the reader finds a member.
ATTRIBUTES = "attributes"
CHILDREN = "children"
CONTENT = "content"          # the element's own text

_SCALARS = {"bool", "char", "unsigned char", "short", "unsigned short", "int", "unsigned int",
            "long long", "unsigned long long", "float", "double"}


class MemberKind:
    name = ""               # as --dump-model prints it: "attribute"
    label = ""              # enumerator of the traversal's MemberKind: "Attribute"
    source = CHILDREN
    by_name = False         # compared with the member's own XML name
    nested = False          # hands names on to its target class's HasProperty
    marks_presence = True   # a read sets the presence bit

    def storage(self, cls: Class, m: Member) -> str:
        """C++ type of the member's storage."""
        raise NotImplementedError

    def by_value(self, m: Member) -> bool:
        """Accessors defined in the class (scalars, pointers) rather than in
        the source (copies of strings, variants and arrays)."""
        raise NotImplementedError

    def initializer(self, cls: Class, m: Member) -> Optional[str]:
        """Constructor initializer, or None for a default-constructed member."""
        raise NotImplementedError

    def default_names(self, m: Member) -> List[str]:
        """Texts of the default whose literals are name constants."""
        raise NotImplementedError

    def release(self, m: Member) -> Optional[str]:
        """Destructor statement, or None when nothing is owned."""
        raise NotImplementedError

    def match(self, cls: Class, m: Member, matcher: str, unmapped: str) -> str:
        """Condition under which the reader gives a name to the member."""
        raise NotImplementedError

    def read_call(self, cls: Class, m: Member, source: str, name: str) -> str:
        """Expression that reads `source` (node or attribute value) into the member, false on failure."""
        raise NotImplementedError

    def read_statement(self, cls: Class, m: Member, source: str, name: str) -> str:
        return f"if (!{self.read_call(cls, m, source, name)}) return false;"

    def listed(self, m: Member) -> bool:
        """Whether the traversal reports the member item by item."""
        return m.repeated

    def visit(self, m: Member, member: str, getter: str, info: Callable[[Class], str]) -> str:
        """The traversal's statement; `info` names the ClassInfo of a class."""
        raise NotImplementedError

    def comment(self, cls: Class, m: Member) -> str:
        """The getter's comment: XML name and kind."""
        raise NotImplementedError

    def _repeated(self, m: Member) -> str:
        return ", repeated" if m.repeated else ""


class _ByName(MemberKind):
    by_name = True

    def match(self, cls: Class, m: Member, matcher: str, unmapped: str) -> str:
        return f"{matcher}.Is({cls.schema.names[m.xml]})"


class _Nested(MemberKind):
    nested = True

    def match(self, cls: Class, m: Member, matcher: str, unmapped: str) -> str:
        return f"{cpp.class_ref(cls, m.target)}::HasProperty({unmapped}, context)"


# -- kinds that hold a value ----------------------------------------------------

class _ValueKind(MemberKind):
    def storage(self, cls: Class, m: Member) -> str:
        return f"std::vector<{m.value.cpp}>" if m.repeated else m.value.storage

    def by_value(self, m: Member) -> bool:
        return not (m.repeated or m.value.is_list) and m.value.cpp in _SCALARS

    def _default_items(self, m: Member) -> List[str]:
        if m.default is None:
            return []
        return [t for t in m.default.split(" ") if t] if m.value.is_list else [m.default]

    def default_names(self, m: Member) -> List[str]:
        return [t for t in self._default_items(m) if cpp.needs_constant(m.value, t)]

    def initializer(self, cls: Class, m: Member) -> Optional[str]:
        value = m.value
        if m.default is not None:
            literals = [cpp.value_literal(value, t, cls.schema.names) for t in self._default_items(m)]
            if value.is_list or m.repeated:
                return "{" + ", ".join(literals) + "}"
            return literals[0]
        if value.is_list or m.repeated or value.cpp in ("wxString", "wxAny"):
            return None
        # Such scalars have no schema default; they start at zero (false for
        # booleans) so that a new object, and every copy of it, holds defined values.
        return "false" if value.cpp == "bool" else "0"

    def release(self, m: Member) -> Optional[str]:
        return None

    def listed(self, m: Member) -> bool:
        return m.repeated or m.value.is_list

    def visit(self, m: Member, member: str, getter: str, info: Callable[[Class], str]) -> str:
        return f"{'VisitValues' if self.listed(m) else 'VisitValue'}(visitor, {member}, {getter});"

    def _value(self, m: Member) -> str:
        text = f"list of {m.value.cpp}" if m.value.is_list else m.value.cpp
        return text + (f', default "{m.default}"' if m.default is not None else "")


class Attribute(_ByName, _ValueKind):
    name, label, source = "attribute", "Attribute", ATTRIBUTES

    def read_call(self, cls, m, source, name):
        if m.value.is_list:
            return f"ParseList(&m_{m.name}, {source}, {m.value.parse})"
        return f"{m.value.parse}(&m_{m.name}, {source})"

    def read_statement(self, cls, m, source, name):
        statement = super().read_statement(cls, m, source, name)
        # The attribute's items replace the schema default (a diagram's "st" of
        # "1 2 -1" gives three numbers); ParseList appends to the emptied list.
        return f"m_{m.name}.clear(); {statement}" if m.value.is_list else statement

    def comment(self, cls, m):
        return f'"{m.xml}": attribute, {self._value(m)}'


class Text(_ValueKind):
    name, label, source = "text", "Text", CONTENT
    marks_presence = False   # the text is read whenever it is there; its bit stays clear

    def read_call(self, cls, m, source, name):
        return f"ReadValue(m_{m.name}, {source}, {m.value.parse})"

    def comment(self, cls, m):
        return f"text content, {self._value(m)}"


class ValueElement(_ByName, _ValueKind):
    name, label = "value_element", "ValueElement"

    def read_call(self, cls, m, source, name):
        return f"{'AppendValue' if m.repeated else 'ReadValue'}(m_{m.name}, {source}, {m.value.parse})"

    def comment(self, cls, m):
        return f'"{m.xml}": value element, {self._value(m)}{self._repeated(m)}'


# -- kinds that own objects -------------------------------------------------------

class _ObjectKind(MemberKind):
    def storage(self, cls: Class, m: Member) -> str:
        ref = cpp.class_ref(cls, m.target)
        return f"XMLPtrArray<{ref}>" if m.repeated else ref + "*"

    def by_value(self, m: Member) -> bool:
        return not m.repeated

    def default_names(self, m: Member) -> List[str]:
        return []

    def initializer(self, cls: Class, m: Member) -> Optional[str]:
        return None if m.repeated else "nullptr"

    def release(self, m: Member) -> Optional[str]:
        return f"DeleteAll(m_{m.name});" if m.repeated else f"delete m_{m.name};"

    def visit(self, m: Member, member: str, getter: str, info: Callable[[Class], str]) -> str:
        call = "VisitObjects" if m.repeated else "VisitObject"
        return f"{call}(visitor, {member}, {getter}, {info(m.target)});"

    def _target(self, cls: Class, m: Member) -> str:
        """The target class, with the prefix of its schema when it is another's."""
        if m.target.schema is cls.schema:
            return m.target.name
        return f"{cls.schema.map[m.target.schema.uri]}:{m.target.name}"


class Child(_ByName, _ObjectKind):
    name, label = "child", "Child"

    def read_call(self, cls, m, source, name):
        return f"{'ReadAppend' if m.repeated else 'ReadSingle'}(m_{m.name}, {source}, context)"

    def comment(self, cls, m):
        return f'"{m.xml}": child element{self._repeated(m)}'


class Group(_Nested, _ObjectKind):
    name, label = "group", "Group"

    def read_call(self, cls, m, source, name):
        return f"{'SetAppend' if m.repeated else 'SetSingle'}(m_{m.name}, {name}, {source}, context)"

    def comment(self, cls, m):
        return f"group {self._target(cls, m)}{self._repeated(m)}"


class Holder(Group):
    name, label = "holder", "Holder"

    def comment(self, cls, m):
        return f"choice holder{self._repeated(m)}"


class AttributeGroup(_Nested, _ObjectKind):
    name, label, source = "attribute_group", "AttributeGroup", ATTRIBUTES

    def read_call(self, cls, m, source, name):
        return f"SetAttribute(m_{m.name}, {name}, {source}, context)"

    def comment(self, cls, m):
        return f"attribute group {self._target(cls, m)}"


ATTRIBUTE = Attribute()
TEXT = Text()
VALUE_ELEMENT = ValueElement()
CHILD = Child()
GROUP = Group()
HOLDER = Holder()
ATTRIBUTE_GROUP = AttributeGroup()
