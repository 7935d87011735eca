"""The generator's intermediate representation.

Every rule of class shape, storage and reading is applied while this model is
built (rules.py), name constants included; the emitters only print it, asking
each member's kind (kinds.py) how.  Names here are already the C++ names, and
member lists are already in presence-bit order.
"""

from __future__ import annotations

from dataclasses import dataclass, field
from typing import TYPE_CHECKING, Dict, List, Optional

if TYPE_CHECKING:
    from .kinds import MemberKind


@dataclass(frozen=True)
class ValueType:
    """Native storage of a simple value (the storage table of rules.py)."""
    cpp: str          # storage type of one value: "unsigned int", "wxString", "wxAny", ...
    parse: str        # value converter for one value: "ParseUInt32", ...
    is_list: bool = False   # a list type: std::vector<cpp>, converted by ParseList

    @property
    def storage(self) -> str:
        return f"std::vector<{self.cpp}>" if self.is_list else self.cpp


@dataclass
class Member:
    name: str                       # "ZoomScale", "R_id", "Data__1", "EG_SerShared"
    kind: "MemberKind"              # one of the objects of kinds.py
    bit: int = 0
    xml: Optional[str] = None       # compared name in mapped form: "val", "r:id"
    repeated: bool = False          # growable array
    value: Optional[ValueType] = None   # kinds that hold a value: attribute, text, value element
    target: Optional["Class"] = None    # kinds that own objects: child, group, holder, attribute group
    default: Optional[str] = None   # schema default, lexical form
    # A member of a choice branch that another branch also names: taken only
    # when a member of its own branch was already read (see rules.py).
    branch_guard: List[int] = field(default_factory=list)


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
    # A part's root: the content types whose parts it reads, and the root
    # element (in the schema's namespace) that names it in a generic XML part.
    content_types: List[str] = field(default_factory=list)
    root_element: Optional[str] = None
    # The root elements ("{namespace}local") that parts of its content types
    # may have; empty: any (VML drawings).
    part_elements: List[str] = field(default_factory=list)

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

    def members_from(self, source: str) -> List[Member]:
        """The members that the reader finds in `source` (kinds.ATTRIBUTES, CHILDREN, CONTENT)."""
        return [m for m in self.members if m.kind.source == source]


@dataclass(eq=False)
class Schema:
    key: str                         # short name of files: "sml", "dml"
    uri: str
    family: Optional[str]            # folder under generated/ooxml/, None without classes
    prefix: Optional[str]            # prefix under which other maps know it
    cpp_namespace: str               # C++ namespace derived from the URI
    map: Dict[str, str]              # namespace map: URI -> prefix (own URI -> "")
    expected_classes: int
    classes: List[Class] = field(default_factory=list)
    # name text -> C++ identifier of its constant, in creation order (rules.py)
    names: Dict[str, str] = field(default_factory=dict)
    enumerations: List[str] = field(default_factory=list)

    @property
    def header(self) -> str:
        return f"ooxml/{self.family}/{self.key}.h"


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
