"""Prints the class samples (tests/generated/class_samples.inc): for every
generated class, an element that gives each member a value once (each
attribute a value of its type, each child element once, the text if the class
has one) and what the generic traversal must then report, member by member.

The expectation is worked out here from the model, independently of the C++
readers: which member takes each attribute and child (the first that accepts
its name, in declaration order, as the readers compare), and the value that
the member's converter must produce.  A reader, a name mapping or a converter
that goes wrong makes the traversal report differ."""

from __future__ import annotations

import struct
from typing import Dict, List, Optional, Set, Tuple

from .cpp import BANNER, string_literal
from .kinds import ATTRIBUTES, CHILDREN, CONTENT
from .model import Class, Member, Model, Schema, ValueType

XML_NS = "http://www.w3.org/XML/1998/namespace"

# Per converter: the extreme value of the type, moved inwards by k so that two
# members of one type never hold the same value; and how the traversal reports it.
_INTEGERS = {"ParseInt8": (-128, 1, "i"), "ParseUInt8": (255, -1, "u"), "ParseInt16": (-32768, 1, "i"),
             "ParseUInt16": (65535, -1, "u"), "ParseInt32": (-2**31, 1, "i"), "ParseUInt32": (2**32 - 1, -1, "u"),
             "ParseInt64": (-2**63, 1, "i"), "ParseUInt64": (2**64 - 1, -1, "u")}


def _float32(x: float) -> float:
    return struct.unpack("f", struct.pack("f", x))[0]


def _sample(value: ValueType, k: int) -> Tuple[str, str]:
    """(lexical form, reported form) of sample number k of a value type."""
    parse = value.parse
    if parse in _INTEGERS:
        extreme, step, tag = _INTEGERS[parse]
        n = extreme + step * k
        return str(n), f"{tag}{n}"
    if parse in ("ParseFloat", "ParseDouble"):
        text = f"{k}.1"
        number = _float32(float(text)) if parse == "ParseFloat" else float(text)
        return text, "d%.17g" % number
    if parse == "ParseBool":
        return ("true", "b1") if k % 2 == 0 else ("false", "b0")
    if parse == "ParseVariant":
        return str(-10 - k), f"i{-10 - k}"
    if parse == "ParseString":
        return f"v{k}", f"sv{k}"
    raise ValueError(f"no sample for converter {parse}")


def _reported_default(value: ValueType, text: Optional[str]) -> str:
    """What the traversal reports for a value never read: its default."""
    cpp = value.cpp
    if text is None:
        return {"wxString": "s", "wxAny": "?", "bool": "b0", "float": "d0", "double": "d0"}.get(
            cpp, "u0" if cpp.startswith("unsigned") else "i0")
    if cpp == "bool":
        return "b1" if text in ("true", "1") else "b0"
    if cpp in ("float", "double"):
        special = {"NaN": "nan", "INF": "inf", "-INF": "-inf"}
        if text in special:
            return "d" + special[text]
        number = _float32(float(text)) if cpp == "float" else float(text)
        return "d%.17g" % number
    if cpp == "wxString":
        return "s" + text
    if cpp == "wxAny":
        try:
            return f"i{int(text)}"
        except ValueError:
            pass
        try:
            return "d%.17g" % float(text)
        except ValueError:
            return "s" + text
    return ("u" if cpp.startswith("unsigned") else "i") + str(int(text))


# -- names across schemas --------------------------------------------------------

def _uri_of(schema: Schema, prefix: str) -> str:
    """The URI of a prefix of `schema`'s mapped names; a prefix that its map
    does not know stands for itself, as an unbound prefix does when read."""
    if prefix == "":
        return schema.uri
    if prefix == "xml":
        return XML_NS
    for uri, p in schema.map.items():
        if p == prefix:
            return uri
    return prefix


def _foreign_uris(schema: Schema) -> List[str]:
    return [uri for uri in schema.map if uri not in (schema.uri, XML_NS)]


class _Names:
    """Writes names of any schema into one sample element.  Other namespaces
    get prefixes of their own ("n1", "n2" ...), not the ones the schema's map
    gives them, so that a name matches only if its prefix is resolved and
    mapped; a namespace outside the map gets an extra declaration ("x0" ...)."""

    def __init__(self, schema: Schema):
        self.schema = schema
        self.known = {uri: f"n{i + 1}" for i, uri in enumerate(_foreign_uris(schema))}
        self.extra: Dict[str, str] = {}   # URI -> prefix declared beyond the schema's map

    def prefix_for(self, uri: str) -> str:
        if uri == self.schema.uri:
            return ""
        if uri == XML_NS:
            return "xml"
        if uri in self.known:
            return self.known[uri]
        if ":" not in uri and "/" not in uri:
            return uri   # an unbound prefix, written as it is
        if uri not in self.extra:
            self.extra[uri] = f"x{len(self.extra)}"
        return self.extra[uri]

    def resolve(self, mapped: str, owner: Schema) -> Tuple[str, str]:
        """(URI, local name) of `mapped`, a name in `owner`'s mapped form."""
        prefix, _, local = mapped.rpartition(":")
        return _uri_of(owner, prefix), local

    def write(self, name: Tuple[str, str]) -> str:
        """A resolved name as this sample writes it."""
        prefix = self.prefix_for(name[0])
        return f"{prefix}:{name[1]}" if prefix else name[1]


def declarations(schema: Schema) -> str:
    """The namespace declarations of every sample of `schema`."""
    names = _Names(schema)
    out = [f"xmlns='{schema.uri}'"]
    out += [f"xmlns:{prefix}='{uri}'" for uri, prefix in names.known.items()]
    return " ".join(out)


# -- what a group takes ------------------------------------------------------------

# `side` below is kinds.ATTRIBUTES or kinds.CHILDREN: the names of one side of an element.

def _leaves(cls: Class, side: str) -> List[Member]:
    """The members of `cls` compared by their own name on `side`."""
    return [m for m in cls.members_from(side) if m.kind.by_name]


def _first_leaf(cls: Class, side: str) -> Optional[Tuple[Member, Class]]:
    """The first element (or attribute) that a group, holder or attribute group takes."""
    for m in cls.members_from(side):
        if m.kind.by_name:
            return m, cls
        leaf = _first_leaf(m.target, side)
        if leaf:
            return leaf
    return None


def _takes(cls: Class, names: _Names, side: str, seen: Optional[Set[int]] = None) -> Set[Tuple[str, str]]:
    """Every name (resolved) that a group class takes."""
    seen = seen if seen is not None else set()
    if id(cls) in seen:
        return set()
    seen.add(id(cls))
    out: Set[Tuple[str, str]] = set()
    for m in cls.members_from(side):
        if m.kind.nested:
            out |= _takes(m.target, names, side, seen)
        else:
            out.add(names.resolve(m.xml, cls.schema))
    return out


class _Sample:
    def __init__(self, cls: Class):
        self.cls = cls
        self.names = _Names(cls.schema)
        self.k = 0
        self.attributes: List[str] = []
        self.elements: List[str] = []
        self.text = ""
        self.present: Dict[int, List[str]] = {}   # member index -> reported values ([""] for objects)

    def next_sample(self, value: ValueType) -> Tuple[str, str]:
        sample = _sample(value, self.k)
        self.k += 1
        return sample

    def build(self) -> None:
        cls = self.cls
        self.attributes = [f"{name}='{text}'" for name, text in self._side(ATTRIBUTES)]
        for text in cls.members_from(CONTENT):
            lexical, reported = self.next_sample(text.value)
            self.text = lexical
            self.present[cls.members.index(text)] = [reported]   # read, though its bit stays clear
        self.elements = [f"<{name}/>" if text is None else f"<{name}>{text}</{name}>"
                         for name, text in self._side(CHILDREN)]

    def _leaf_name(self, m: Member, owner: Class, side: str) -> Tuple[Optional[Member], Tuple[str, str]]:
        """The member that gives the sample a name for `m`, and that name, resolved."""
        if m.kind.nested:
            leaf = _first_leaf(m.target, side)
            if leaf is None:
                return None, ("", "")
            m, owner = leaf
        return m, self.names.resolve(m.xml, owner.schema)

    def _acceptor(self, name: Tuple[str, str], candidates: List[int], side: str) -> Optional[int]:
        """The member that the reader's comparison chain gives `name`."""
        cls = self.cls
        for i in candidates:
            m = cls.members[i]
            if m.kind.nested:
                if name in _takes(m.target, self.names, side):
                    return i
            elif self.names.resolve(m.xml, cls.schema) == name:
                if not m.branch_guard or any(b in self.present for b in m.branch_guard):
                    return i
        return None

    def _side(self, side: str) -> List[Tuple[str, Optional[str]]]:
        """The names the sample writes on one side (kinds.ATTRIBUTES or
        kinds.CHILDREN), each with its text (None for an element without
        any), noting in `present` what the member that takes each reports."""
        cls = self.cls
        candidates = [i for i, m in enumerate(cls.members) if m.kind.source == side]
        # The base class's names too: a derived class must leave them unread.
        inherited = [(m, base) for base in _bases(cls) for m in _leaves(base, side)]
        written: Set[Tuple[str, str]] = set()
        out: List[Tuple[str, Optional[str]]] = []
        for m, declaring in [(cls.members[i], cls) for i in candidates] + inherited:
            leaf, name = self._leaf_name(m, declaring, side)
            if leaf is None or name in written:
                continue
            written.add(name)
            owner = self._acceptor(name, candidates, side)
            lexical, reported = None, [""]
            if leaf.value is not None and owner is None:
                lexical = _sample(leaf.value, 0)[0]   # read by nobody: any valid value
            elif leaf.value is not None:
                count = 2 if leaf.value.is_list else 1
                samples = [self.next_sample(leaf.value) for _ in range(count)]
                lexical, reported = " ".join(t for t, _ in samples), [r for _, r in samples]
            if owner is not None:
                self.present[owner] = reported if cls.members[owner].value is not None else [""]
            out.append((self.names.write(name), lexical))
        return out

    def expected(self) -> str:
        tokens = []
        for base in reversed(_bases(self.cls)):
            tokens += _tokens(base, {})
        tokens += _tokens(self.cls, self.present)
        return " ".join(tokens)


def _bases(cls: Class) -> List[Class]:
    out = []
    base = cls.base
    while base is not None:
        out.append(base)
        base = base.base
    return out


def _tokens(cls: Class, present: Dict[int, List[str]]) -> List[str]:
    """The traversal's report of `cls`'s own members, as the test prints it."""
    out = []
    if cls.any_base:
        out.append("Value-?")
    for i, m in enumerate(cls.members):
        listed = m.kind.listed(m)
        values = present.get(i)
        if not m.kind.marks_presence:
            shown = values[0] if values else _reported_default(m.value, m.default)
            out.append(f"{m.name}-{shown}")
        elif values is not None:
            for index, value in enumerate(values):
                out.append(f"{m.name}{f'[{index}]' if listed else ''}+{value}")
        elif m.value is not None and m.value.is_list and m.default:
            out += [f"{m.name}[{index}]-" for index, _ in enumerate(m.default.split())]
        elif not listed:
            out.append(f"{m.name}-")
    return out


def emit_samples(model: Model) -> str:
    lines = [BANNER.rstrip("\n"), "// One sample element per class, in the order of the class registry: schema, class,",
             "// attributes, content, and the members as the traversal reports them (see class_samples_test.cpp).",
             "", "const SchemaDeclarations kSchemaDeclarations[] = {"]
    for schema in model.class_schemas():
        lines.append(f"    {{{string_literal(schema.key)}, {string_literal(declarations(schema))}}},")
    lines += ["};", "", "const ClassSample kClassSamples[] = {"]
    for schema in model.class_schemas():
        for cls in schema.classes:
            sample = _Sample(cls)
            sample.build()
            attributes = [f"xmlns:{p}='{u}'" for u, p in sample.names.extra.items()] + sample.attributes
            content = sample.text + "".join(sample.elements)
            lines.append(f"    {{{string_literal(schema.key)}, {string_literal(cls.name)}, "
                         f"{string_literal(' '.join(attributes))}, {string_literal(content)}, "
                         f"{string_literal(sample.expected())}}},")
    lines += ["};"]
    return "\n".join(lines) + "\n"


def emit_all(model: Model) -> Dict[str, str]:
    return {"tests/generated/class_samples.inc": emit_samples(model)}
