"""The generator's intermediate representation.

Every rule of class shape, storage and reading is applied while this model is
built (rules.py);
the emitters only print it.  Names here are already the C++ names, and member
lists are already in presence-bit order.
"""

from __future__ import annotations

from dataclasses import dataclass, field
from typing import Dict, List, Optional


@dataclass(frozen=True)
class ValueType:
    """Native storage of a simple value (the storage table of rules.py)."""
    cpp: str          # storage type of one value: "unsigned int", "wxString", "wxAny", ...
    parse: str        # value converter for one value: "ParseUInt32", ...
    is_list: bool = False   # a list type: std::vector<cpp>, converted by ParseList

    @property
    def storage(self) -> str:
        return f"std::vector<{self.cpp}>" if self.is_list else self.cpp


# Member kinds.
ATTRIBUTE = "attribute"          # attribute value, stored natively
ATTRIBUTE_GROUP = "attribute_group"  # owned AG_ object, fed by the attribute SetProperty
TEXT = "text"                    # simple content of the element itself ("Value")
VALUE_ELEMENT = "value_element"  # child element of simple type, stored natively
CHILD = "child"                  # child element of complex type, owned object(s)
GROUP = "group"                  # element group or Group_ object(s)
HOLDER = "holder"                # choice holder object(s) Data__

SCALAR_KINDS = (ATTRIBUTE, TEXT, VALUE_ELEMENT)
OBJECT_KINDS = (ATTRIBUTE_GROUP, CHILD, GROUP, HOLDER)


@dataclass
class Member:
    name: str                       # "ZoomScale", "R_id", "Data__1", "EG_SerShared"
    kind: str
    bit: int = 0
    xml: Optional[str] = None       # compared name in mapped form: "val", "r:id"
    repeated: bool = False          # growable array
    value: Optional[ValueType] = None   # ATTRIBUTE, TEXT, VALUE_ELEMENT
    target: Optional["Class"] = None    # ATTRIBUTE_GROUP, CHILD, GROUP, HOLDER
    default: Optional[str] = None   # schema default, lexical form
    # A member of a choice branch that another branch also names: taken only
    # when a member of its own branch was already read (see rules.py).
    branch_guard: List[int] = field(default_factory=list)

    @property
    def is_value(self) -> bool:
        return self.kind in (ATTRIBUTE, TEXT, VALUE_ELEMENT)


# Class kinds.
COMPLEX_TYPE = "complex_type"
ELEMENT_GROUP = "element_group"
ATTR_GROUP = "attribute_group"
HOLDER_CLASS = "holder"


@dataclass(eq=False)
class Class:
    schema: "Schema"
    name: str                        # C++ class name
    xsd_name: str                    # name in the schema ("ISO639-2")
    kind: str
    members: List[Member] = field(default_factory=list)
    base: Optional["Class"] = None   # complexContent/simpleContent extension
    any_base: bool = False           # content is any simple value: derives from wxAny
    order: int = 0                   # position among the schema's classes

    @property
    def qualified(self) -> str:
        return f"{self.schema.cpp_namespace}::{self.name}"

    @property
    def is_group(self) -> bool:
        """Has the choice operations SetProperty/HasProperty/GetProperty."""
        return self.kind in (ELEMENT_GROUP, ATTR_GROUP, HOLDER_CLASS)

    @property
    def mask_bits(self) -> int:
        n = len(self.members)
        if n <= 32:
            return 32
        return 64 * ((n + 63) // 64)

    def element_members(self) -> List[Member]:
        return [m for m in self.members if m.kind in (VALUE_ELEMENT, CHILD, GROUP, HOLDER)]

    def attribute_members(self) -> List[Member]:
        return [m for m in self.members if m.kind in (ATTRIBUTE, ATTRIBUTE_GROUP)]

    def text_member(self) -> Optional[Member]:
        for m in self.members:
            if m.kind == TEXT:
                return m
        return None


@dataclass(eq=False)
class Schema:
    key: str                         # short name of files: "sml", "dml"
    uri: str
    family: Optional[str]            # folder under src/ooxml/, None without classes
    prefix: Optional[str]            # prefix under which other maps know it
    cpp_namespace: str               # C++ namespace derived from the URI
    map: Dict[str, str]              # namespace map: URI -> prefix (own URI -> "")
    expected_classes: int
    classes: List[Class] = field(default_factory=list)
    # name text -> C++ identifier of its constant, in first-use order
    names: Dict[str, str] = field(default_factory=dict)
    enumerations: List[str] = field(default_factory=list)

    @property
    def header(self) -> str:
        return f"ooxml/{self.family}/{self.key}.h"

    def constant(self, text: str) -> str:
        """C++ identifier of the name constant for `text`, created on first use."""
        ident = self.names.get(text)
        if ident is None:
            ident = constant_identifier(text)
            if ident in self.names.values():
                suffix = 1
                while f"{ident}_{suffix}" in self.names.values():
                    suffix += 1
                ident = f"{ident}_{suffix}"
            self.names[text] = ident
        return ident


def constant_identifier(text: str) -> str:
    """A readable C++ identifier for a name or enumeration text: s_val, s_r_id."""
    out = []
    for ch in text:
        if ch.isascii() and (ch.isalnum() or ch == "_"):
            out.append(ch)
        elif ch == ":":
            out.append("_")
        else:
            out.append(f"_x{ord(ch):02X}_")
    return "s_" + "".join(out)


@dataclass
class Model:
    schemas: List[Schema]

    def by_key(self, key: str) -> Schema:
        for schema in self.schemas:
            if schema.key == key:
                return schema
        raise KeyError(key)

    def class_schemas(self) -> List[Schema]:
        return [s for s in self.schemas if s.family]
