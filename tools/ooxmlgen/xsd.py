"""Reads XML Schema files into plain records.

Nothing here knows about C++ or about the binding's rules: the records mirror the
XSD constructs that the bound schemas use (complex and simple types, element
and attribute groups, particles, attributes).  Qualified names are resolved to
(namespace URI, local name) pairs with the namespace declarations of the file
that wrote them.  `schemaLocation` is ignored: imports are resolved later by
namespace URI, because the Microsoft extension schemas point at paths that do
not exist.
"""

from __future__ import annotations

import io
import os
import xml.etree.ElementTree as ET
from dataclasses import dataclass, field
from typing import Dict, List, Optional, Tuple, Union

XSD_NS = "http://www.w3.org/2001/XMLSchema"
XML_NS = "http://www.w3.org/XML/1998/namespace"
UNBOUNDED = -1

QName = Tuple[str, str]  # (namespace URI, local name)


@dataclass
class Element:
    name: Optional[str]            # local declaration
    ref: Optional[QName]           # reference to a top-level element
    type: Optional[QName]          # named type (None: anonymous or absent)
    min: int = 1
    max: int = 1
    default: Optional[str] = None
    fixed: Optional[str] = None
    substitution_group: Optional[QName] = None
    simple_type: Optional["SimpleType"] = None    # anonymous simple type
    complex_type: Optional["ComplexType"] = None  # anonymous complex type
    qualified: bool = True


@dataclass
class Any:
    namespace: str = "##any"
    min: int = 1
    max: int = 1


@dataclass
class GroupRef:
    ref: QName
    min: int = 1
    max: int = 1


@dataclass
class Compositor:
    kind: str                      # "sequence", "choice" or "all"
    particles: List["Particle"] = field(default_factory=list)
    min: int = 1
    max: int = 1


Particle = Union[Element, Any, GroupRef, Compositor]


@dataclass
class Attribute:
    name: Optional[str]
    ref: Optional[QName]
    type: Optional[QName]
    use: str = "optional"
    default: Optional[str] = None
    fixed: Optional[str] = None
    simple_type: Optional["SimpleType"] = None
    qualified: bool = False


@dataclass
class AttributeGroupRef:
    ref: QName


AttributeUse = Union[Attribute, AttributeGroupRef]


@dataclass
class SimpleType:
    name: Optional[str]
    variety: str                   # "atomic", "list" or "union"
    base: Optional[QName] = None   # atomic: restriction base
    item: Optional[Union[QName, "SimpleType"]] = None           # list
    members: List[Union[QName, "SimpleType"]] = field(default_factory=list)  # union
    enumerations: List[str] = field(default_factory=list)
    base_type: Optional["SimpleType"] = None  # anonymous restriction base


@dataclass
class ComplexType:
    name: Optional[str]
    content: str = "empty"         # "empty", "elements" or "simple"
    derivation: Optional[str] = None   # "extension", "restriction" or None
    base: Optional[QName] = None
    particle: Optional[Compositor] = None
    attributes: List[AttributeUse] = field(default_factory=list)
    mixed: bool = False
    simple_type: Optional[SimpleType] = None  # restriction of simple content


@dataclass
class Group:
    name: str
    particle: Optional[Compositor]


@dataclass
class AttributeGroup:
    name: str
    attributes: List[AttributeUse]


@dataclass
class Schema:
    path: str
    target_ns: str
    prefixes: Dict[str, str]       # prefix -> URI, as the file declares them
    element_qualified: bool
    attribute_qualified: bool
    imports: List[str] = field(default_factory=list)
    complex_types: Dict[str, ComplexType] = field(default_factory=dict)
    simple_types: Dict[str, SimpleType] = field(default_factory=dict)
    groups: Dict[str, Group] = field(default_factory=dict)
    attribute_groups: Dict[str, AttributeGroup] = field(default_factory=dict)
    elements: Dict[str, Element] = field(default_factory=dict)
    attributes: Dict[str, Attribute] = field(default_factory=dict)
    # Top-level definitions that become classes, in document order:
    # ("complexType" | "group" | "attributeGroup", name).
    order: List[Tuple[str, str]] = field(default_factory=list)


class SchemaError(Exception):
    pass


def _tag(node: ET.Element) -> str:
    if node.tag.startswith("{" + XSD_NS + "}"):
        return node.tag[len(XSD_NS) + 2:]
    return ""


def _occurs(node: ET.Element, name: str) -> int:
    value = node.get(name)
    if value is None:
        return 1
    if value == "unbounded":
        return UNBOUNDED
    return int(value)


class _Reader:
    def __init__(self, path: str, text: str):
        self.path = path
        self.prefixes: Dict[str, str] = {}
        for event, (prefix, uri) in ET.iterparse(io.StringIO(text), events=("start-ns",)):
            # The bound schemas declare each prefix once; the first wins.
            self.prefixes.setdefault(prefix, uri)
        self.root = ET.fromstring(text)
        self.tns = self.root.get("targetNamespace", "")

    def qname(self, text: Optional[str]) -> Optional[QName]:
        if text is None:
            return None
        # Some extension schemas carry stray white space in type names.
        prefix, _, local = text.strip().rpartition(":")
        if prefix == "xml":
            return (XML_NS, local)
        if prefix not in self.prefixes:
            raise SchemaError(f"{self.path}: unknown prefix in {text!r}")
        return (self.prefixes[prefix], local)

    def read(self) -> Schema:
        root = self.root
        schema = Schema(
            path=self.path,
            target_ns=self.tns,
            prefixes=dict(self.prefixes),
            element_qualified=root.get("elementFormDefault") == "qualified",
            attribute_qualified=root.get("attributeFormDefault") == "qualified",
        )
        for node in root:
            kind = _tag(node)
            name = node.get("name")
            if kind == "import":
                schema.imports.append(node.get("namespace", ""))
            elif kind == "complexType":
                schema.complex_types[name] = self.complex_type(node, schema)
                schema.order.append(("complexType", name))
            elif kind == "simpleType":
                schema.simple_types[name] = self.simple_type(node)
            elif kind == "group":
                schema.groups[name] = Group(name, self.first_compositor(node, schema))
                schema.order.append(("group", name))
            elif kind == "attributeGroup":
                schema.attribute_groups[name] = AttributeGroup(
                    name, self.attribute_uses(node, schema))
                schema.order.append(("attributeGroup", name))
            elif kind == "element":
                schema.elements[name] = self.element(node, schema, top=True)
            elif kind == "attribute":
                schema.attributes[name] = self.attribute(node, schema, top=True)
        return schema

    # -- particles -----------------------------------------------------------
    def first_compositor(self, node: ET.Element, schema: Schema) -> Optional[Compositor]:
        for child in node:
            if _tag(child) in ("sequence", "choice", "all"):
                return self.compositor(child, schema)
            if _tag(child) == "group":
                # A type whose content is a lone group reference.
                return Compositor("sequence", [self.particle(child, schema)])
        return None

    def compositor(self, node: ET.Element, schema: Schema) -> Compositor:
        comp = Compositor(_tag(node), [], _occurs(node, "minOccurs"), _occurs(node, "maxOccurs"))
        for child in node:
            particle = self.particle(child, schema)
            if particle is not None:
                comp.particles.append(particle)
        return comp

    def particle(self, node: ET.Element, schema: Schema) -> Optional[Particle]:
        kind = _tag(node)
        if kind == "element":
            return self.element(node, schema, top=False)
        if kind in ("sequence", "choice", "all"):
            return self.compositor(node, schema)
        if kind == "group":
            return GroupRef(self.qname(node.get("ref")),
                            _occurs(node, "minOccurs"), _occurs(node, "maxOccurs"))
        if kind == "any":
            return Any(node.get("namespace", "##any"),
                       _occurs(node, "minOccurs"), _occurs(node, "maxOccurs"))
        return None  # annotations

    def element(self, node: ET.Element, schema: Schema, top: bool) -> Element:
        form = node.get("form")
        qualified = top or (form == "qualified" if form else schema.element_qualified)
        elem = Element(
            name=node.get("name"),
            ref=self.qname(node.get("ref")),
            type=self.qname(node.get("type")),
            min=_occurs(node, "minOccurs"),
            max=_occurs(node, "maxOccurs"),
            default=node.get("default"),
            fixed=node.get("fixed"),
            substitution_group=self.qname(node.get("substitutionGroup")),
            qualified=qualified,
        )
        for child in node:
            if _tag(child) == "simpleType":
                elem.simple_type = self.simple_type(child)
            elif _tag(child) == "complexType":
                elem.complex_type = self.complex_type(child, schema)
        return elem

    # -- attributes ----------------------------------------------------------
    def attribute_uses(self, node: ET.Element, schema: Schema) -> List[AttributeUse]:
        uses: List[AttributeUse] = []
        for child in node:
            kind = _tag(child)
            if kind == "attribute":
                uses.append(self.attribute(child, schema, top=False))
            elif kind == "attributeGroup":
                uses.append(AttributeGroupRef(self.qname(child.get("ref"))))
        return uses

    def attribute(self, node: ET.Element, schema: Schema, top: bool) -> Attribute:
        form = node.get("form")
        qualified = top or (form == "qualified" if form else schema.attribute_qualified)
        attr = Attribute(
            name=node.get("name"),
            ref=self.qname(node.get("ref")),
            type=self.qname(node.get("type")),
            use=node.get("use", "optional"),
            default=node.get("default"),
            fixed=node.get("fixed"),
            qualified=qualified,
        )
        for child in node:
            if _tag(child) == "simpleType":
                attr.simple_type = self.simple_type(child)
        return attr

    # -- types ---------------------------------------------------------------
    def simple_type(self, node: ET.Element) -> SimpleType:
        name = node.get("name")
        for child in node:
            kind = _tag(child)
            if kind == "restriction":
                st = SimpleType(name, "atomic", base=self.qname(child.get("base")))
                for facet in child:
                    if _tag(facet) == "enumeration":
                        st.enumerations.append(facet.get("value"))
                    elif _tag(facet) == "simpleType":
                        st.base_type = self.simple_type(facet)
                return st
            if kind == "list":
                item: Union[QName, SimpleType, None] = self.qname(child.get("itemType"))
                for sub in child:
                    if _tag(sub) == "simpleType":
                        item = self.simple_type(sub)
                return SimpleType(name, "list", item=item)
            if kind == "union":
                members: List[Union[QName, SimpleType]] = [
                    self.qname(t) for t in (child.get("memberTypes") or "").split()]
                for sub in child:
                    if _tag(sub) == "simpleType":
                        members.append(self.simple_type(sub))
                return SimpleType(name, "union", members=members)
        raise SchemaError(f"{self.path}: simple type {name!r} has no content")

    def complex_type(self, node: ET.Element, schema: Schema) -> ComplexType:
        ct = ComplexType(node.get("name"), mixed=node.get("mixed") == "true")
        for child in node:
            kind = _tag(child)
            if kind in ("sequence", "choice", "all", "group"):
                ct.content = "elements"
                ct.particle = self.first_compositor(node, schema)
            elif kind in ("attribute", "attributeGroup"):
                pass
            elif kind in ("complexContent", "simpleContent"):
                for deriv in child:
                    dkind = _tag(deriv)
                    if dkind not in ("extension", "restriction"):
                        continue
                    ct.derivation = dkind
                    ct.base = self.qname(deriv.get("base"))
                    ct.content = "simple" if kind == "simpleContent" else "elements"
                    ct.particle = self.first_compositor(deriv, schema)
                    ct.attributes = self.attribute_uses(deriv, schema)
                    for sub in deriv:
                        if _tag(sub) == "simpleType":
                            ct.simple_type = self.simple_type(sub)
                return ct
        ct.attributes = self.attribute_uses(node, schema)
        return ct


def read_schema(path: str) -> Schema:
    with open(path, encoding="utf-8-sig") as f:
        return _Reader(path, f.read()).read()


def read_schema_text(text: str, origin: str) -> Schema:
    """A schema written inline (the deviation snippets of binding.toml)."""
    return _Reader(origin, text).read()


def read_directory(root: str) -> Dict[str, Schema]:
    """Every .xsd file under `root`, keyed by target namespace URI."""
    schemas: Dict[str, Schema] = {}
    for folder, _, files in sorted(os.walk(root)):
        for name in sorted(files):
            if name.endswith(".xsd"):
                schema = read_schema(os.path.join(folder, name))
                if schema.target_ns in schemas:
                    raise SchemaError(f"two schemas for {schema.target_ns}: "
                                      f"{schemas[schema.target_ns].path}, {schema.path}")
                schemas[schema.target_ns] = schema
    return schemas
