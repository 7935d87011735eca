"""Builds the model from the XSD records and binding.toml.

This is where the rules that hold for every schema live (namespaces, class
shape, storage, reading):
- one class per top-level complex type, element group and attribute group, plus
  one `Data__` holder per `xsd:choice` (nested sequences are flattened into their
  owner, nested choices become holders of the holder);
- members in declaration order: particles first, then attributes, as the XSD
  writes them; names of other schemas in mapped form with the comparing schema's
  prefix; repeated names numbered "_1", "_2";
- storage of simple values by the table below; presence bit i for member i;
- one name constant per distinct text that the readers compare or offer,
  created in this order: member names, enumeration values, string defaults
  (the emitters only look them up);
- the deviations of binding.toml, where the classes differ from what the XSDs
  alone would give, applied to the XSD records first.
"""

from __future__ import annotations

import re
import tomllib
from typing import Dict, List, Optional, Tuple

from . import xsd
from .kinds import ATTRIBUTE, ATTRIBUTE_GROUP, CHILD, GROUP, HOLDER, TEXT, VALUE_ELEMENT
from .model import (ATTR_GROUP, COMPLEX_TYPE, ELEMENT_GROUP, HOLDER_CLASS, Class, Member, Model,
                    Schema, ValueType)

UNBOUNDED = 1 << 30


class BindingError(Exception):
    pass


# -- namespace identifiers ----------------------------------------------------

def namespace_identifier(uri: str) -> str:
    """'http://purl.org/dc/elements/1.1/' -> 'purl_org_dc_elements_x1_x1_'."""
    text = uri
    if not text.startswith("urn:"):
        text = re.sub(r"^[A-Za-z][A-Za-z0-9+.-]*://", "", text)
    text = re.sub(r"[./:-]", "_", text)
    return "_".join("x" + t if t[:1].isdigit() else t for t in text.split("_"))


# -- storage of simple values -------------------------------------------------

_BOOL = ValueType("bool", "ParseBool")
_STRING = ValueType("wxString", "ParseString")
_VARIANT = ValueType("wxAny", "ParseVariant")
_INT = ValueType("int", "ParseInt32")
_UINT = ValueType("unsigned int", "ParseUInt32")
_DOUBLE = ValueType("double", "ParseDouble")

_BUILTIN = {
    "boolean": _BOOL,
    "byte": ValueType("char", "ParseInt8"),
    "unsignedByte": ValueType("unsigned char", "ParseUInt8"),
    "short": ValueType("short", "ParseInt16"),
    "unsignedShort": ValueType("unsigned short", "ParseUInt16"),
    "int": _INT,
    "unsignedInt": _UINT,
    "long": ValueType("long long", "ParseInt64"),
    "unsignedLong": ValueType("unsigned long long", "ParseUInt64"),
    # Unbounded integer types of XSD: held in 32 bits, signed or not as their
    # range says (chartex "numPoints", an xsd:integer, is a signed 32-bit number).
    "integer": _INT,
    "nonPositiveInteger": _INT,
    "negativeInteger": _INT,
    "nonNegativeInteger": _UINT,
    "positiveInteger": _UINT,
    "float": ValueType("float", "ParseFloat"),
    "double": _DOUBLE,
    "decimal": _DOUBLE,
}
_BUILTIN_LISTS = {"NMTOKENS", "IDREFS", "ENTITIES"}


def _list_of(item: ValueType) -> ValueType:
    return ValueType(item.cpp, item.parse, is_list=True)


def _capitalised(text: str) -> str:
    return text[:1].upper() + text[1:]


def _identifier(text: str) -> str:
    return re.sub(r"[^A-Za-z0-9_]", "_", text)


class Builder:
    def __init__(self, schema_root: str, binding_path: str):
        with open(binding_path, "rb") as f:
            self.binding = tomllib.load(f)
        self.xsds: Dict[str, xsd.Schema] = xsd.read_directory(schema_root)
        self.schemas: Dict[str, Schema] = {}      # by URI
        self.by_key: Dict[str, Schema] = {}
        # (uri, xsd type name) -> class, for complex types, groups, attribute groups
        self.types: Dict[Tuple[str, str], Class] = {}
        self.groups: Dict[Tuple[str, str], Class] = {}
        self.attr_groups: Dict[Tuple[str, str], Class] = {}
        self.aliases: Dict[Tuple[str, str], Tuple[str, str]] = {}
        self.replaced_names: Dict[Tuple[str, str, str], str] = {}  # (uri, type, element) -> xml name
        self.trailing: Dict[Tuple[str, str], List[xsd.Element]] = {}
        self.guarded_holders: List[Class] = []

    # -- entry point ------------------------------------------------------------
    def build(self) -> Model:
        self._make_schemas()
        for dev in self.binding.get("deviation", []):
            self._apply_deviation(dev)
        self._declare_classes()
        for schema in self.schemas.values():
            for cls in list(schema.classes):
                self._fill(cls)
        for schema in self.schemas.values():
            self._number_classes(schema)
            self._collect_enumerations(schema)
            self._name_defaults(schema)
        self._mark_roots()
        return Model(list(self.schemas.values()))

    def _mark_roots(self) -> None:
        """The classes that read a whole part: by content type, by root element."""
        seen: Dict[str, str] = {}
        for entry in self.binding.get("root", []):
            key, _, name = entry["class"].partition(":")
            schema = self.by_key.get(key)
            cls = next((c for c in schema.classes if c.name == name), None) if schema else None
            if cls is None:
                raise BindingError(f"root: no class {entry['class']}")
            for content_type in entry.get("content_types", []):
                if content_type.lower() in seen:
                    raise BindingError(f"root: {content_type} is {seen[content_type.lower()]} already")
                seen[content_type.lower()] = entry["class"]
                cls.content_types.append(content_type)
            cls.root_element = entry.get("element")
            if entry.get("content_types") and not entry.get("any_root_element") and "part_elements" not in entry:
                cls.part_elements = sorted(
                    f"{{{other.target_ns}}}{name}" for other in self.xsds.values()
                    for name, element in other.elements.items() if element.type == (schema.uri, cls.name))
                if not cls.part_elements:
                    raise BindingError(f"root: no global element of type {entry['class']}: "
                                       "name the root elements (part_elements) or set any_root_element")
            cls.part_elements = entry.get("part_elements", cls.part_elements)

    # -- schemas and maps -------------------------------------------------------------
    def _make_schemas(self) -> None:
        entries = self.binding["schema"]
        uri_of = {e["key"]: e["uri"] for e in entries}
        prefix_of = {e["key"]: e.get("prefix") for e in entries}
        for e in entries:
            if e["uri"] not in self.xsds:
                raise BindingError(f"no XSD for {e['uri']}")
            ns_map = {e["uri"]: ""}
            for key, prefix in e.get("knows", {}).items():
                if key not in uri_of:
                    raise BindingError(f"{e['key']}: unknown schema {key!r} in knows")
                ns_map.setdefault(uri_of[key], prefix)
            schema = Schema(
                key=e["key"], uri=e["uri"],
                family=e.get("family") if e.get("classes", 0) else None,
                prefix=prefix_of[e["key"]],
                cpp_namespace=namespace_identifier(e["uri"]),
                map=ns_map, expected_classes=e.get("classes", 0))
            self.schemas[schema.uri] = schema
            self.by_key[schema.key] = schema

    # -- deviations -------------------------------------------------------------------
    def _xsd_for(self, key: str) -> xsd.Schema:
        return self.xsds[self.by_key[key].uri]

    def _qname(self, key: str, text: str) -> xsd.QName:
        """Resolve 'prefix:local' with the prefixes of schema `key`'s XSD, or,
        failing that, with the canonical prefixes of its map."""
        schema = self.by_key[key]
        x = self.xsds[schema.uri]
        prefix, _, local = text.rpartition(":")
        if prefix == "":
            return (schema.uri, local)
        if prefix in ("xs", "xsd"):
            return (xsd.XSD_NS, local)
        if prefix in x.prefixes:
            return (x.prefixes[prefix], local)
        for uri, p in schema.map.items():
            if p == prefix:
                return (uri, local)
        for s in self.schemas.values():
            if s.prefix == prefix:
                return (s.uri, local)
        raise BindingError(f"{key}: cannot resolve {text!r}")

    def _element_decls(self, key: str, entries) -> List[xsd.Element]:
        """[name] or [name, type] entries as optional single element references."""
        return [xsd.Element(name=None, ref=self._qname(key, entry[0]),
                            type=self._qname(key, entry[1]) if len(entry) > 1 else None, min=0)
                for entry in entries]

    def _particle_of(self, x: xsd.Schema, dev: dict) -> xsd.Compositor:
        if "group" in dev:
            return x.groups[dev["group"]].particle
        return x.complex_types[dev["type"]].particle

    def _parse_particle(self, key: str, text: str) -> xsd.Compositor:
        """A content model written in XSD syntax in binding.toml.  Prefixes are
        those of the schema's XSD, then the canonical ones of its map.  An
        element reference may carry a `type` (not valid XSD, but it says the
        type of an element that no schema here declares at top level)."""
        x = self._xsd_for(key)
        prefixes = {p: u for p, u in x.prefixes.items() if p not in ("xsd", "xs")}
        for uri, prefix in self.by_key[key].map.items():
            if prefix and prefix not in prefixes:
                prefixes[prefix] = uri
        decls = " ".join(f'xmlns:{p}="{u}"' if p else f'xmlns="{u}"' for p, u in prefixes.items())
        doc = (f'<xsd:schema xmlns:xsd="{xsd.XSD_NS}" {decls} '
               f'targetNamespace="{x.target_ns}" elementFormDefault="qualified">'
               f'<xsd:complexType name="_">{text}</xsd:complexType></xsd:schema>')
        return xsd.read_schema_text(doc, "binding.toml").complex_types["_"].particle

    def _apply_deviation(self, dev: dict) -> None:
        op = dev["op"]
        key = dev.get("schema")
        x = self._xsd_for(key) if key else None
        if op == "drop_types":
            for name in dev["types"]:
                del x.complex_types[name]
                x.order.remove(("complexType", name))
        elif op == "move_type":
            src = self._xsd_for(dev["from"])
            name = dev["type"]
            x.complex_types[name] = src.complex_types.pop(name)
            src.order.remove(("complexType", name))
            x.order.append(("complexType", name))
            self.aliases[(src.target_ns, name)] = (x.target_ns, name)
        elif op == "content":
            particle = self._parse_particle(key, dev["xsd"])
            if "group" in dev:
                x.groups[dev["group"]].particle = particle
            else:
                x.complex_types[dev["type"]].particle = particle
        elif op == "element_type":
            for elem in self._elements_named(x, dev, [dev["element"]]):
                elem.type = self._qname(key, dev["value_type"])
                elem.simple_type = None
        elif op == "attribute_type":
            # On a complex type ("type") or an attribute group ("group"); an
            # attribute declared by reference is named by its qualified name.
            uses = (x.attribute_groups[dev["group"]].attributes if "group" in dev
                    else x.complex_types[dev["type"]].attributes)
            wanted = set(dev["attributes"])
            refs = {self._qname(key, w) for w in wanted if ":" in w}
            changed = 0
            for attr in uses:
                if not isinstance(attr, xsd.Attribute):
                    continue
                if attr.name in wanted or (attr.ref is not None and attr.ref in refs):
                    attr.type = self._qname(key, dev["value_type"])
                    attr.simple_type = None
                    changed += 1
            if changed != len(wanted):
                raise BindingError(f"attribute_type: {changed} of {sorted(wanted)} found in "
                                   f"{dev.get('group') or dev.get('type')}")
        elif op == "single_elements":
            for elem in self._elements_named(x, dev, dev["elements"]):
                elem.max = 1
        elif op == "element_name":
            self.replaced_names[(x.target_ns, dev["type"], dev["element"])] = dev["xml_name"]
        elif op == "insert_elements":
            ct = x.complex_types[dev["type"]]
            seq = ct.particle
            index = [i for i, p in enumerate(seq.particles)
                     if isinstance(p, xsd.Element) and p.name == dev["after"]][0]
            for offset, (name, type_text) in enumerate(dev["elements"]):
                seq.particles.insert(index + 1 + offset, xsd.Element(
                    name=name, ref=None, type=self._qname(key, type_text), min=0))
        elif op == "close_any":
            holder = self._find_any_owner(x, dev["type"])
            owner, index = holder
            owner.particles[index:index + 1] = self._element_decls(key, dev["elements"])
        elif op == "add_alternatives":
            choice = self._first_choice(self._particle_of(x, dev))
            choice.particles.extend(self._element_decls(key, dev["elements"]))
        elif op == "add_attributes":
            ct = x.complex_types[dev["type"]]
            for entry in dev["attributes"]:
                ct.attributes.append(xsd.Attribute(
                    name=None, ref=self._qname(key, entry[0]),
                    type=self._qname(key, entry[1]) if len(entry) > 1 else None))
        elif op == "drop_attributes":
            ct = x.complex_types[dev["type"]]
            drop = {self._qname(key, name) for name in dev["attributes"]}
            kept = [a for a in ct.attributes if not (isinstance(a, xsd.Attribute) and a.ref in drop)]
            if len(ct.attributes) - len(kept) != len(drop):
                raise BindingError(f"drop_attributes: not every one of {dev['attributes']} is in {dev['type']}")
            ct.attributes = kept
        elif op == "trailing_elements":
            self.trailing[(x.target_ns, dev["type"])] = self._element_decls(key, dev["elements"])
        else:
            raise BindingError(f"unknown deviation op {op!r}")

    def _elements_named(self, x: xsd.Schema, dev: dict, names: List[str]) -> List[xsd.Element]:
        """The local elements of `dev`'s type that bear `names`; each name must be there."""
        found = [e for e in self._walk_elements(x.complex_types[dev["type"]].particle) if e.name in names]
        missing = sorted(set(names) - {e.name for e in found})
        if missing:
            raise BindingError(f"{dev['op']}: no element {', '.join(missing)} in {dev['type']}")
        return found

    def _walk_elements(self, particle):
        if isinstance(particle, xsd.Element):
            yield particle
        elif isinstance(particle, xsd.Compositor):
            for p in particle.particles:
                yield from self._walk_elements(p)

    def _find_any_owner(self, x: xsd.Schema, type_name: str):
        def walk(comp):
            for i, p in enumerate(comp.particles):
                if isinstance(p, xsd.Any):
                    return comp, i
                if isinstance(p, xsd.Compositor):
                    found = walk(p)
                    if found:
                        return found
            return None
        found = walk(x.complex_types[type_name].particle)
        if not found:
            raise BindingError(f"{type_name}: no xsd:any to close")
        return found

    def _first_choice(self, comp):
        if comp.kind == "choice":
            return comp
        for p in comp.particles:
            if isinstance(p, xsd.Compositor):
                found = self._first_choice(p)
                if found:
                    return found
        return None

    # -- classes -------------------------------------------------------------------
    def _declare_classes(self) -> None:
        for schema in self.schemas.values():
            if not schema.family:
                continue
            x = self.xsds[schema.uri]
            for kind, name in x.order:
                if kind == "complexType":
                    cls = Class(schema, _identifier(name), name, COMPLEX_TYPE)
                    self.types[(schema.uri, name)] = cls
                elif kind == "group":
                    cls = Class(schema, _identifier(name), name, ELEMENT_GROUP)
                    self.groups[(schema.uri, name)] = cls
                else:
                    cls = Class(schema, _identifier(name), name, ATTR_GROUP)
                    self.attr_groups[(schema.uri, name)] = cls
                schema.classes.append(cls)

    def _complex(self, qname: xsd.QName) -> Optional[Class]:
        qname = self.aliases.get(qname, qname)
        return self.types.get(qname)

    def _fill(self, cls: Class) -> None:
        x = self.xsds[cls.schema.uri]
        self._holder_count: Dict[str, int] = {}
        if cls.kind == COMPLEX_TYPE:
            ct = x.complex_types[cls.xsd_name]
            self._fill_complex(cls, ct)
            for elem in self.trailing.get((cls.schema.uri, cls.xsd_name), []):
                self._add_element(cls, elem, 1)
        elif cls.kind == ELEMENT_GROUP:
            self._add_content(cls, x.groups[cls.xsd_name].particle)
        else:
            self._add_attributes(cls, x.attribute_groups[cls.xsd_name].attributes)
        self._name_members(cls)

    def _fill_complex(self, cls: Class, ct: xsd.ComplexType) -> None:
        if ct.derivation == "restriction" and ct.content == "elements":
            # A restriction of anyType: content is any simple value (SimpleLiteral).
            if ct.base == (xsd.XSD_NS, "anyType"):
                cls.any_base = True
                return
            raise BindingError(f"{cls.name}: unsupported complexContent restriction")
        if ct.derivation == "extension" and ct.content == "elements":
            cls.base = self._complex(ct.base)
            if cls.base is None:
                raise BindingError(f"{cls.name}: unknown base {ct.base}")
        if ct.content == "simple":
            base_class = self._complex(ct.base)
            if base_class is None:
                # Simple content over a simple type: the element's own text.
                cls.members.append(Member("Value", TEXT, value=self._value_type(ct.base)))
            elif ct.derivation == "extension":
                cls.base = base_class
            # A restriction of a simple-content type keeps only what it declares.
        self._add_content(cls, ct.particle)
        self._add_attributes(cls, ct.attributes)

    # -- particles -------------------------------------------------------------------
    def _add_content(self, cls: Class, comp: Optional[xsd.Compositor]) -> None:
        if comp is None:
            return
        count = UNBOUNDED if comp.max == xsd.UNBOUNDED else comp.max
        if comp.kind == "choice":
            self._add_holder(cls, comp, count)
        else:
            self._add_particles(cls, comp, count, branch=None)

    def _add_particles(self, cls: Class, comp: xsd.Compositor, mult: int, branch) -> None:
        for p in comp.particles:
            count = mult * (UNBOUNDED if p.max == xsd.UNBOUNDED else p.max)
            start = len(cls.members)
            if isinstance(p, xsd.Element):
                self._add_element(cls, p, count)
            elif isinstance(p, xsd.GroupRef):
                self._add_group(cls, p, count)
            elif isinstance(p, xsd.Compositor):
                if p.kind == "choice":
                    self._add_holder(cls, p, count)
                else:
                    self._add_particles(cls, p, count, branch)
            # xsd:any is skipped unless a deviation closed it: open content is not read
            if branch is not None:
                branch.extend(range(start, len(cls.members)))

    def _add_holder(self, owner: Class, choice: xsd.Compositor, count: int) -> None:
        index = self._holder_count.get(owner.name, 0)
        self._holder_count[owner.name] = index + 1
        suffix = str(index) if index else ""
        holder = Class(owner.schema, f"{owner.name}Data__{suffix}", f"{owner.xsd_name}Data__{suffix}",
                       HOLDER_CLASS)
        schema_classes = owner.schema.classes
        schema_classes.insert(schema_classes.index(owner) + 1 + self._holders_after(owner), holder)
        branches: List[List[int]] = []
        for p in choice.particles:
            branch: List[int] = []
            start = len(holder.members)
            count_p = UNBOUNDED if p.max == xsd.UNBOUNDED else p.max
            if isinstance(p, xsd.Element):
                self._add_element(holder, p, count_p)
            elif isinstance(p, xsd.GroupRef):
                self._add_group(holder, p, count_p)
            elif isinstance(p, xsd.Compositor):
                if p.kind == "choice":
                    self._add_holder(holder, p, count_p)
                else:
                    self._add_particles(holder, p, count_p, branch=None)
            branches.append(list(range(start, len(holder.members))))
        self._guard_shared_names(holder, branches)
        self._name_members(holder)
        owner.members.append(Member(f"Data__{suffix}", HOLDER, target=holder, repeated=count > 1))

    def _holders_after(self, owner: Class) -> int:
        """Holders already placed right after `owner` (keeps schema order stable)."""
        classes = owner.schema.classes
        i = classes.index(owner) + 1
        n = 0
        while i < len(classes) and classes[i].name.startswith(owner.name + "Data__"):
            i += 1
            n += 1
        return n

    def _guard_shared_names(self, holder: Class, branches: List[List[int]]) -> None:
        """When two branches of one choice both hold an element of the
        same name, the later branch's member is reachable: the earlier branch's
        member takes the element only once its own branch has begun (another of
        its members is present); otherwise the comparison goes on.  Without this
        the chartex dimensions would never fill their second "lvl" array."""
        for i, branch in enumerate(branches):
            for j in branch:
                member = holder.members[j]
                if member.xml is None:
                    continue
                later = [k for other in branches[i + 1:] for k in other
                         if holder.members[k].xml == member.xml]
                if later:
                    member.branch_guard = [k for k in branch if k != j]
                    self.guarded_holders.append(holder)

    def _mapped(self, schema: Schema, uri: str, local: str, xsd_prefixes: Dict[str, str]) -> str:
        """A name as MapNameSpace yields it with `schema`'s map."""
        if uri in ("", schema.uri):
            return local
        if uri in schema.map:
            return f"{schema.map[uri]}:{local}"
        if uri == xsd.XML_NS:
            return f"xml:{local}"
        for prefix, u in xsd_prefixes.items():
            if u == uri and prefix:
                return f"{prefix}:{local}"
        raise BindingError(f"{schema.key}: no prefix for {uri}")

    def _member_name(self, xml: str) -> str:
        prefix, _, local = xml.rpartition(":")
        return (_capitalised(prefix) + "_" + local) if prefix else _capitalised(local)

    def _add_element(self, cls: Class, elem: xsd.Element, count: int) -> None:
        schema = cls.schema
        x = self.xsds[schema.uri]
        if elem.ref:
            uri, local = elem.ref
            decl = self.xsds[uri].elements.get(local) if uri in self.xsds else None
            elem_type = elem.type
            if decl is not None:
                # A member of a substitution group stands for the group's head
                # (Dublin Core: "dc:any", "dcterms:any").
                head = decl
                while head.substitution_group is not None:
                    hu, hl = head.substitution_group
                    local = hl
                    head = self.xsds[hu].elements[hl]
                if elem_type is None:
                    elem_type = head.type or decl.type
                simple = decl.simple_type
            else:
                simple = None
                if elem_type is None:
                    raise BindingError(f"{cls.name}: unknown element {elem.ref}")
        else:
            uri = schema.uri if elem.qualified else ""
            local = elem.name
            elem_type = elem.type
            simple = elem.simple_type
        mapped = self._mapped(schema, uri, local, x.prefixes)
        name = self._member_name(mapped)
        # Some elements are compared under another spelling than the XSD's, as
        # binding.toml lists them (the presentation's verifier as "ChangeVerifier").
        xml = self.replaced_names.get((schema.uri, cls.xsd_name, local), mapped)
        target = self._complex(elem_type) if elem_type else None
        if target is not None:
            cls.members.append(Member(name, CHILD, xml=xml, repeated=count > 1, target=target))
        else:
            value = self._value_type(elem_type, simple)
            cls.members.append(Member(name, VALUE_ELEMENT, xml=xml, repeated=count > 1,
                                      value=value, default=elem.default))
        _name_constant(schema, xml)

    def _add_group(self, cls: Class, ref: xsd.GroupRef, count: int) -> None:
        target = self.groups.get(ref.ref)
        if target is None:
            raise BindingError(f"{cls.name}: unknown group {ref.ref}")
        name = self._prefixed_class_name(cls.schema, target)
        cls.members.append(Member(name, GROUP, repeated=count > 1, target=target))

    def _prefixed_class_name(self, schema: Schema, target: Class) -> str:
        """A group member is named by its class, first letter raised
        (Dublin Core: `ElementsGroup`), with the canonical prefix of another schema."""
        if target.schema is schema:
            return _capitalised(target.name)
        return _capitalised(schema.map[target.schema.uri]) + "_" + target.name

    # -- attributes -------------------------------------------------------------------
    def _add_attributes(self, cls: Class, uses) -> None:
        schema = cls.schema
        x = self.xsds[schema.uri]
        for use in uses:
            if isinstance(use, xsd.AttributeGroupRef):
                target = self.attr_groups.get(use.ref)
                if target is None:
                    raise BindingError(f"{cls.name}: unknown attribute group {use.ref}")
                cls.members.append(Member(self._prefixed_class_name(schema, target),
                                          ATTRIBUTE_GROUP, target=target))
                continue
            if use.use == "prohibited":
                continue
            if use.ref:
                uri, local = use.ref
                decl = self.xsds[uri].attributes.get(local) if uri in self.xsds else None
                attr_type = use.type or (decl.type if decl else None)
                simple = decl.simple_type if decl and not use.type else None
                default = use.default if use.default is not None else (decl.default if decl else None)
            else:
                uri = schema.uri if use.qualified else ""
                local = use.name
                attr_type, simple, default = use.type, use.simple_type, use.default
            xml = self._mapped(schema, uri, local, x.prefixes)
            cls.members.append(Member(self._member_name(xml), ATTRIBUTE, xml=xml,
                                      value=self._value_type(attr_type, simple), default=default))
            _name_constant(schema, xml)

    # -- simple types ---------------------------------------------------------------
    def _value_type(self, qname: Optional[xsd.QName], simple: Optional[xsd.SimpleType] = None) -> ValueType:
        if simple is not None:
            return self._simple(simple)
        if qname is None:
            return _STRING
        uri, local = qname
        if uri == xsd.XSD_NS:
            if local in _BUILTIN_LISTS:
                return _list_of(_STRING)
            return _BUILTIN.get(local, _STRING)
        st = self.xsds[uri].simple_types.get(local) if uri in self.xsds else None
        if st is None:
            raise BindingError(f"unknown simple type {qname}")
        return self._simple(st)

    def _simple(self, st: xsd.SimpleType) -> ValueType:
        if st.variety == "union":
            return _VARIANT
        if st.variety == "list":
            item = st.item
            item_type = self._simple(item) if isinstance(item, xsd.SimpleType) else self._value_type(item)
            return _list_of(item_type)
        if st.base_type is not None:
            return self._simple(st.base_type)
        return self._value_type(st.base)

    # -- names and bits -----------------------------------------------------------------
    def _name_members(self, cls: Class) -> None:
        seen: Dict[str, int] = {}
        for i, member in enumerate(cls.members):
            member.bit = i
            if member.kind is HOLDER:
                continue
            n = seen.get(member.name, 0)
            seen[member.name] = n + 1
            if n:
                member.name = f"{member.name}_{n}"

    def _number_classes(self, schema: Schema) -> None:
        for i, cls in enumerate(schema.classes):
            cls.order = i
        if schema.family and len(schema.classes) != schema.expected_classes:
            raise BindingError(f"{schema.key}: {len(schema.classes)} classes, "
                               f"the binding expects {schema.expected_classes}")

    def _collect_enumerations(self, schema: Schema) -> None:
        x = self.xsds[schema.uri]
        seen = set()
        for st in x.simple_types.values():
            for value in st.enumerations:
                if value not in seen:
                    seen.add(value)
                    schema.enumerations.append(value)
                    _name_constant(schema, value)

    def _name_defaults(self, schema: Schema) -> None:
        """Constants of the string defaults that the constructors assign."""
        for cls in schema.classes:
            for member in cls.members:
                for text in member.kind.default_names(member):
                    _name_constant(schema, text)


# -- name constants -------------------------------------------------------------------

def _constant_identifier(text: str) -> str:
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


def _name_constant(schema: Schema, text: str) -> str:
    """The identifier of `schema`'s constant for `text`, created on first use;
    an identifier already taken by another text gets a suffix "_1", "_2" ..."""
    ident = schema.names.get(text)
    if ident is None:
        ident = _constant_identifier(text)
        if ident in schema.names.values():
            suffix = 1
            while f"{ident}_{suffix}" in schema.names.values():
                suffix += 1
            ident = f"{ident}_{suffix}"
        schema.names[text] = ident
    return ident


def build(schema_root: str, binding_path: str) -> Model:
    return Builder(schema_root, binding_path).build()
